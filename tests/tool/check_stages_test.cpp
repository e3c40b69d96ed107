// What is told of response files is told of those that the document is made of.
#include "tool/check_stages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "db2stationxml.h"
#include "support/collected_log.h"
#include "support/flat_database.h"

namespace triglub::tool {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using triglub_test::CollectedLog;
using triglub_test::FlatDatabase;

class CheckOfStages : public ::testing::Test {
 protected:
  CheckOfStages() {
    for (const char* name : {"there.paz", "later.paz"}) {
      files_.add_row("stage", {{"sta", "AAK"}, {"chan", "BHZ"}, {"dir", "resp"}, {"dfile", name}});
    }
    files_.write_file("resp/there.paz", "theoretical 1 x paz\n2\n0\n0\n");
    EXPECT_EQ(dbopen(files_.write().c_str(), "r", &db_), 0);
    stage_ = dblookup(db_, nullptr, "stage", nullptr, nullptr);
  }
  ~CheckOfStages() override { dbclose(db_); }

  FlatDatabase files_;
  Dbptr db_;
  Dbptr stage_;
};

TEST_F(CheckOfStages, LooksAtNoFileAgain) {
  const ResponseCache responses(db_, "stage");
  std::filesystem::rename(files_.folder() + "/resp/there.paz", files_.folder() + "/resp/later.paz");
  const CollectedLog log;
  Gaps gaps;
  check_stages(stage_, responses, &gaps);
  gaps.report();
  EXPECT_FALSE(gaps.any_fault());
  EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("response file missing: 1 (AAK BHZ stage -1 resp/later.paz)")));
}

}  // namespace
}  // namespace triglub::tool
