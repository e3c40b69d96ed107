// A conversion as texts: the files of a database, a tree, what is asked for; and what came of it.
#ifndef TRIGLUB_FUZZ_SUPPORT_CONVERSION_CASE_H
#define TRIGLUB_FUZZ_SUPPORT_CONVERSION_CASE_H

#include <map>
#include <string>

#include "conversion.h"
#include "reference/case.h"
#include "support/bytes.h"
#include "support/folder.h"

namespace triglub_fuzz {

struct Case {
  Files files;  // tables are db.TABLE
  std::string tree;
  std::map<std::string, std::string> conditions;  // regular expressions with their slashes
  unsigned int flags = 0;
};

// The files of tables, of their response files and of the parameter file "site".
Files files_of(const triglub_reference::Tables& tables, const std::map<std::string, std::string>& site);

// Changes to the cells of tables, which stay in their places, for as long as there are bytes that say which.
void edit(Bytes edits, triglub_reference::Tables* changed);

// Changes to the texts and conditions, for as long as there are bytes that say which.
void edit(Bytes edits, Case* changed);

// The parameter file of that name in the data folder, without its comments.
std::string shipped_parameters(const std::string& name);

// The database of a case: its files are in the folder, of which there is one. Throws std::runtime_error for one that
// does not open.
class OpenDatabase {
 public:
  explicit OpenDatabase(const Case& given);
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;
  ~OpenDatabase() { dbclose(db_); }

  Dbptr db() const { return db_; }

 private:
  Dbptr db_;
};

// What one conversion is called with, over a session of its own. Throws std::runtime_error for a malformed tree.
class Call {
 public:
  Call(Dbptr db, const Case& given);
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  ~Call();

  Dbptr db() const { return db_; }
  Pf* pf() const { return pf_; }
  rbtree* conditions() const { return conditions_; }

 private:
  Dbptr db_;
  Pf* pf_ = nullptr;
  rbtree* conditions_ = nullptr;
};

struct Outcome {
  std::string document;
  std::string end;  // "returned", "fatal: TEXT" or "exception: TEXT"

  bool is_written() const { return end == "returned" && !document.empty(); }
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

// By a conversion of its own. Several threads may have the database at a time.
Outcome convert(Dbptr db, const Case& given);
Outcome convert(const Case& given);

// The document can be read, with its namespaces.
void expect_well_formed(const std::string& document);

// Whether the input is one of the few that are worth the start of threads: the same ones at each replay.
bool is_for_threads(const std::uint8_t* data, std::size_t size);

}  // namespace triglub_fuzz

#endif
