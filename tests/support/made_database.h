// Databases of rows made by hand, opened. Rows are of the station AAK, published as KR.AAK, and its channel BHZ unless
// they say otherwise.
//
//     MadeDatabase made({{"site", {{"ondate", "2000001"}}}, {"sitechan", {}}});
//     Dbptr db = made.db();
#ifndef TRIGLUB_TESTS_SUPPORT_MADE_DATABASE_H
#define TRIGLUB_TESTS_SUPPORT_MADE_DATABASE_H

#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "findings.h"
#include "platform/database.h"
#include "support/flat_database.h"

namespace triglub_test {

using FieldTexts = std::map<std::string, std::string>;
using MadeRows = std::vector<std::pair<std::string, FieldTexts>>;

// Epoch seconds of an hour, counted from 2000-01-01.
inline std::string at_hour(double hour) { return std::to_string(946684800.0 + hour * 3600); }

class MadeDatabase {
 public:
  // `files`: further files of the folder, by relative path.
  explicit MadeDatabase(const MadeRows& rows, const FieldTexts& files = {}) {
    for (const auto& [table, values] : rows) files_.add_row(table, completed(table, values));
    for (const auto& [path, text] : files) files_.write_file(path, text);
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
  }
  ~MadeDatabase() { dbclose(db_); }
  MadeDatabase(const MadeDatabase&) = delete;
  MadeDatabase& operator=(const MadeDatabase&) = delete;

  Dbptr db() const { return db_; }
  Dbptr table(const char* name) const { return dblookup(db_, nullptr, name, nullptr, nullptr); }
  // A text with the paths of files as they are within the folder: "site:1" for a row.
  std::string shortened(std::string text) const {
    for (const std::string& prefix : {files_.prefix() + ".", files_.folder() + "/"}) {
      for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at)) {
        text.erase(at, prefix.size());
      }
    }
    return text;
  }
  // Findings as lines: "warning WHAT: COUNT (PLACE; PLACE)", paths shortened.
  std::vector<std::string> lines_of(const triglub::Findings& findings) const {
    std::vector<std::string> lines;
    for (const triglub::Finding& finding : findings.all()) {
      std::string line = finding.rank == triglub::Rank::warning ? "warning " : "note ";
      line += finding.what + ": " + std::to_string(finding.count) + " (";
      for (const std::string& place : finding.places) line += (line.ends_with('(') ? "" : "; ") + place;
      lines.push_back(shortened(line + ")"));
    }
    return lines;
  }

 private:
  static FieldTexts completed(const std::string& table, FieldTexts values) {
    const auto has = [&table](const char* field) {
      for (const FlatField& known : flat_schema().at(table)) {
        if (known.name == field) return true;
      }
      return false;
    };
    if (table == "snetsta") values.insert({{"snet", "KR"}, {"fsta", "AAK"}});
    if (has("sta")) values.insert({"sta", "AAK"});
    if (has("chan")) values.insert({"chan", "BHZ"});
    return values;
  }

  FlatDatabase files_;
  Dbptr db_;
};

}  // namespace triglub_test

#endif
