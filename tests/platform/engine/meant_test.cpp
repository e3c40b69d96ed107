// What databases a text may mean.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/sources.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using triglub::databases_meant_by;

class Meant : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return files_.folder() + "/" + name; }
  FlatDatabase files_;
};

TEST_F(Meant, IsTheDatabaseOfATable) {
  files_.write_file("aak.site", "");
  for (const char* text : {"aak", "aak.", "aak..", "aak.site", "aak.site.", "aak.sensor"}) {
    EXPECT_THAT(databases_meant_by(path(text)), ElementsAre(path("aak"))) << text;
  }
  for (const char* text : {"aak.sites", "aak.site.site", "aa", "other"}) {
    EXPECT_THAT(databases_meant_by(path(text)), IsEmpty()) << text;
  }
}

TEST_F(Meant, IsEachDatabaseOfAFolder) {
  EXPECT_THAT(databases_meant_by(files_.folder()), IsEmpty());
  for (const char* file : {"b.sitechan", "b.site", "a.stage", "c.d.site", "notes.txt", ".site", "plain"}) {
    files_.write_file(file, "");
  }
  std::filesystem::create_directory(path("e.site"));
  EXPECT_THAT(databases_meant_by(files_.folder()), ElementsAre(path("a"), path("b"), path("c.d")));
}

TEST_F(Meant, IsNothingWhereThereIsNothing) {
  EXPECT_THAT(databases_meant_by(""), IsEmpty());
  EXPECT_THAT(databases_meant_by("."), IsEmpty());
  EXPECT_THAT(databases_meant_by(".site"), IsEmpty());
  EXPECT_THAT(databases_meant_by(path("none/aak.site")), IsEmpty());
}

}  // namespace
}  // namespace triglub_test
