#include "stages/response_files.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "support/flat_database.h"

namespace triglub {
namespace {

using testing::HasSubstr;

constexpr const char* kPaz = "theoretical 1 instrument paz\n1.0 1.0\n1\n-0.1 0.2\n1\n0 0\n";

// Rows: a file, the same again, another of the same name in another folder, one without a folder, one by an absolute
// folder, none, and those with faults.
class ResponseFilesOfStages : public testing::Test {
 protected:
  ResponseFilesOfStages() {
    for (const char* path : {"resp/a.paz", "other/a.paz", "a.paz"}) files_.write_file(path, kPaz);
    files_.write_file("resp/cut.paz", "theoretical 1 instrument paz\n1.0\n3\n");
    files_.write_file("resp/two.paz", std::string(kPaz) + kPaz);
    files_.write_file("resp/none.paz", "");
    add("resp", "a.paz");
    add("resp", "a.paz");
    add("other", "a.paz");
    add("-", "a.paz");
    add(files_.folder() + "/resp", "a.paz");
    add("resp", "-");
    add("resp", "nothing.paz");
    add("resp", "cut.paz");
    add("resp", "two.paz");
    files_.write_file("resp/x.odd", "theoretical 1 instrument odd\n1\n");
    add("resp", "x.odd");
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    tables_.stage = dblookup(db_, nullptr, "stage", nullptr, nullptr);
    responses_.emplace(tables_);
  }
  ~ResponseFilesOfStages() override { dbclose(db_); }

  void add(const std::string& dir, const std::string& dfile) {
    files_.add_row("stage", {{"dir", dir}, {"dfile", dfile}});
  }

  const StageFilter* read(std::uint32_t row) {
    responses_->read(row);
    return responses_->filter(row, &fault_);
  }

  triglub_test::FlatDatabase files_;
  Dbptr db_;
  ResponseTables tables_;
  std::optional<ResponseFiles> responses_;
  std::string fault_;
};

TEST_F(ResponseFilesOfStages, AreFoundBesideTheTableOrWhereTheFolderSays) {
  for (const std::uint32_t row : {0, 1, 2, 3, 4}) {
    const StageFilter* filter = read(row);
    ASSERT_NE(filter, nullptr) << row << ": " << fault_;
    EXPECT_EQ(filter->group->type, RESPONSE_PAZ);
  }
  EXPECT_FALSE(responses_->is_named(5)) << "a row that names none";
}

TEST_F(ResponseFilesOfStages, AreReadOnce) {
  const StageFilter* filter = read(0);
  std::filesystem::remove(files_.folder() + "/resp/a.paz");
  EXPECT_EQ(read(1), filter);
  EXPECT_EQ(read(0), filter);
  EXPECT_NE(read(2), filter) << "another folder";
}

TEST_F(ResponseFilesOfStages, AFileThatIsDamagedHasItsFault) {
  const std::map<std::uint32_t, std::string> faults = {{6, "resp/nothing.paz: "},
                                                       {7, "resp/cut.paz:"},
                                                       {8, "resp/two.paz: 2 groups where one is meant"},
                                                       {9, "resp/x.odd: the type 'odd' has no form in a document"}};
  for (const auto& [row, fault] : faults) {
    EXPECT_EQ(read(row), nullptr) << row;
    EXPECT_THAT(fault_, HasSubstr(fault));
  }
}

TEST_F(ResponseFilesOfStages, RowsThatWereWorkedOutNameAGroup) {
  const auto file = read_file(files_.folder() + "/resp/two.paz", "", ResponseReach::anywhere);
  tables_.instrument_stages = {{file, 1, true}, {file, 2, false}};  // the last two rows
  std::filesystem::remove(files_.folder() + "/resp/two.paz");
  responses_.emplace(tables_);
  const StageFilter* first = read(8);
  ASSERT_NE(first, nullptr) << fault_;
  EXPECT_EQ(first->group, &file->response->groups[1]);
  EXPECT_EQ(read(9), nullptr) << "a group that the file does not have";
  EXPECT_THAT(fault_, HasSubstr("resp/two.paz: 2 groups"));
}

}  // namespace
}  // namespace triglub
