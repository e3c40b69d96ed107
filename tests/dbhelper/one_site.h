// A database of a few rows that the tests of single values share.
#ifndef TRIGLUB_TESTS_DBHELPER_ONE_SITE_H
#define TRIGLUB_TESTS_DBHELPER_ONE_SITE_H

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/database.h"
#include "support/flat_database.h"

namespace triglub_test {

class OneSite : public ::testing::Test {
 protected:
  using Row = std::map<std::string, std::string>;

  OneSite() {
    files_.add_row("site", {{"sta", "AAK"},
                            {"ondate", "2001001"},
                            {"lat", "42.6375"},
                            {"lon", "74.4942"},
                            {"elev", "1.5000"},
                            {"staname", "Ala Archa"}});
    files_.add_row("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "2001001"}, {"chanid", "17"}});
    files_.add_row("sensor", {{"sta", "AAK"}, {"chan", "BHZ"}, {"time", "978307200.12345"}, {"calper", "12.5"}});
    files_.add_row("sensor", {{"sta", "AAK"}, {"chan", "BHN"}});
  }
  ~OneSite() override {
    if (db_.database >= 0) dbclose(db_);
  }

  // Adds a site with these values and gives the handle of its record.
  Dbptr site_with(Row values) {
    values.try_emplace("sta", "NEW");
    values.try_emplace("ondate", "2001001");
    files_.add_row("site", values);
    Dbptr site = table("site");
    site.record = 1;
    return site;
  }
  Dbptr database() {
    if (db_.database < 0 && dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    return db_;
  }
  Dbptr table(const char* name) { return dblookup(database(), nullptr, name, nullptr, nullptr); }
  // The first record of a table.
  Dbptr first(const char* name) {
    Dbptr record = table(name);
    record.record = 0;
    return record;
  }

  FlatDatabase files_;
  Dbptr db_;
};

}  // namespace triglub_test

#endif
