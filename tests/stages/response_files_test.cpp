#include "stages/response_files.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include "support/flat_database.h"

namespace triglub {
namespace {

using testing::EndsWith;
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
    if (dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    stage_ = dblookup(db_, nullptr, "stage", nullptr, nullptr);
  }
  ~ResponseFilesOfStages() override { dbclose(db_); }

  void add(const std::string& dir, const std::string& dfile) {
    files_.add_row("stage", {{"dir", dir}, {"dfile", dfile}});
  }

  triglub_test::FlatDatabase files_;
  Dbptr db_;
  Dbptr stage_;
};

TEST_F(ResponseFilesOfStages, AreFoundBesideTheTableOrWhereTheFolderSays) {
  ResponseFiles responses(stage_);
  for (const std::uint32_t row : {0, 1, 2, 3, 4}) {
    const ResponseFile* file = responses.read(row);
    ASSERT_NE(file, nullptr) << row;
    ASSERT_NE(file->filter, nullptr) << row << ": " << file->fault;
    EXPECT_EQ(file->filter->type, RESPONSE_PAZ);
  }
  EXPECT_EQ(responses.read(5), nullptr) << "a row that names none";
}

TEST_F(ResponseFilesOfStages, AreReadOnce) {
  ResponseFiles responses(stage_);
  EXPECT_EQ(responses.find(0), nullptr) << "not read yet";
  const ResponseFile* file = responses.read(0);
  std::filesystem::remove(files_.folder() + "/resp/a.paz");
  EXPECT_EQ(responses.read(1), file);
  EXPECT_EQ(responses.find(1), file);
  EXPECT_NE(file->filter, nullptr);
  EXPECT_NE(responses.read(2), file) << "another folder";
}

TEST_F(ResponseFilesOfStages, AFileThatIsDamagedHasItsFault) {
  ResponseFiles responses(stage_);
  for (const std::uint32_t row : {6, 7, 8}) EXPECT_EQ(responses.read(row)->filter, nullptr) << row;
  EXPECT_THAT(responses.read(6)->fault, HasSubstr("resp/nothing.paz: "));
  EXPECT_THAT(responses.read(7)->fault, HasSubstr("resp/cut.paz:"));
  EXPECT_THAT(responses.read(8)->fault, EndsWith("resp/two.paz: 2 groups where one is meant"));
}

}  // namespace
}  // namespace triglub
