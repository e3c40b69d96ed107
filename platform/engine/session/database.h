// An open database: its source, the tables loaded so far, and the views made of them. Handles are resolved here.
#ifndef TRIGLUB_ENGINE_SESSION_DATABASE_H
#define TRIGLUB_ENGINE_SESSION_DATABASE_H

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/source/source.h"
#include "engine/view/view.h"
#include "platform/database.h"

namespace triglub {

class Database {
 public:
  Database(std::shared_ptr<const Source> source, std::int64_t id);

  std::int64_t id() const { return id_; }
  const Source& source() const { return *source_; }

  // The number of a table of the schema, loaded if need be, or of a named view; dbINVALID when there is none or it
  // refuses to load.
  std::int64_t find_view(std::string_view name);
  // Keeps a view under the next number; a name that is taken moves to it.
  std::int64_t add_view(std::unique_ptr<View> view, const char* name);
  // Null for a number of no view.
  const View* view(std::int64_t number) const;
  // Frees a view that is not kept.
  void release_view(std::int64_t number);

  // Views that are kept for as long as the database: base tables, and joins of kept views that step lists asked for.
  // The tables do not change, so the next step list that begins alike need not join them again.
  bool is_kept(std::int64_t view) const;
  // The view that a step made of a kept view before; dbINVALID when it was not asked for yet.
  std::int64_t kept_join(std::int64_t view, const std::string& step) const;
  void keep_join(std::int64_t view, const std::string& step, std::int64_t result);

 private:
  std::int64_t load_table(std::size_t index);

  std::shared_ptr<const Source> source_;
  std::int64_t id_;
  std::vector<std::unique_ptr<const Table>> tables_;  // by number in the schema; null: not loaded
  std::vector<bool> refused_;                         // by number in the schema
  std::vector<std::unique_ptr<View>> views_;          // the schema's tables first
  std::map<std::string, std::int64_t, std::less<>> view_by_name_;
  std::map<std::pair<std::int64_t, std::string>, std::int64_t> kept_joins_;  // by view and step
  std::set<std::int64_t> kept_;
};

// The open database of a handle, its view, and the handle of a view; null and all dbINVALID where there is none.
Database* database_of(const Dbptr& db);
const View* view_of(const Dbptr& db);
Dbptr handle_of(const Database& database, std::int64_t view);
inline constexpr Dbptr INVALID_HANDLE{};

// Opens a source as a database, as dbopen does with the one that it finds: 0 and a handle of the whole database.
int dbopen_source(std::shared_ptr<const Source> source, Dbptr* db);

// True when the handle's record is one of the view's.
bool has_record(const View& view, const Dbptr& db);

// The tables of a view at chosen records. All of its records in their order, as a sort of what is sorted gives them or
// a join in which each finds one partner, share its row numbers.
std::vector<ViewTable> tables_of_records(const View& view, const std::vector<std::uint32_t>& records);

// Adds the view that results from an operation and gives its handle.
Dbptr result_view(Database& database, std::vector<ViewTable> tables, std::uint32_t record_count, std::string operations,
                  const char* name);
// A view of chosen records of a view.
Dbptr selected_records(Database& database, const View& view, const std::vector<std::uint32_t>& records,
                       const std::string& operation, const char* name);

}  // namespace triglub

#endif
