#include "platform/response_reading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>

#include "support/flat_database.h"
#include "support/open_files.h"

namespace triglub {
namespace {

using ::testing::HasSubstr;
using triglub_test::FlatDatabase;
using triglub_test::NoMoreOpenFiles;

constexpr const char* kGain = "theoretical 1 sensor paz\n1\n0\n0\n";

class ResponseReadingWithin : public ::testing::Test {
 protected:
  ResponseReadingWithin() {
    files_.write_file("net/resp/inside.paz", kGain);
    files_.write_file("outside.paz", kGain);
    files_.write_file("network/outside.paz", kGain);
    std::filesystem::create_symlink("../../outside.paz", folder() + "/resp/link.paz");
    std::filesystem::create_symlink("inside.paz", folder() + "/resp/alias.paz");
    std::filesystem::create_directory_symlink("../../network", folder() + "/resp/elsewhere");
    std::filesystem::create_directory_symlink("net", files_.folder() + "/alias");
    std::filesystem::create_symlink("loop.paz", folder() + "/resp/loop.paz");
  }

  std::string folder() const { return files_.folder() + "/net"; }
  ResponseReading read(const std::string& name) const { return read_response_within(folder() + "/" + name, folder()); }

  FlatDatabase files_;
};

TEST_F(ResponseReadingWithin, IsJudgedByWhereThePathLeads) {
  const struct {
    const char* name;
    ResponseStatus status;
  } cases[] = {
      {"resp/inside.paz", ResponseStatus::read},
      {"resp/../resp/./inside.paz", ResponseStatus::read},
      {"../net/resp/inside.paz", ResponseStatus::read},
      {"resp/alias.paz", ResponseStatus::read},
      {"../alias/resp/inside.paz", ResponseStatus::read},
      {"../outside.paz", ResponseStatus::outside},
      {"resp/../../outside.paz", ResponseStatus::outside},
      {"resp/link.paz", ResponseStatus::outside},
      {"resp/elsewhere/outside.paz", ResponseStatus::outside},
      {"../network/outside.paz", ResponseStatus::outside},  // the name begins as that of the folder
      {"../../../../../../../../etc/passwd", ResponseStatus::outside},
      {"../none.paz", ResponseStatus::outside},
      {"resp/elsewhere/none.paz", ResponseStatus::outside},
      {"resp/none.paz", ResponseStatus::missing},
      {"resp/inside.paz/none", ResponseStatus::missing},
      {"resp/loop.paz", ResponseStatus::unreadable},
      {"resp", ResponseStatus::unreadable},
  };
  for (const auto& [name, status] : cases) {
    const ResponseReading reading = read(name);
    EXPECT_EQ(reading.status, status) << name << ": " << reading.fault;
    EXPECT_EQ(reading.response != nullptr, status == ResponseStatus::read) << name;
    EXPECT_EQ(reading.fault.empty(), status == ResponseStatus::read) << name;
  }
}

TEST_F(ResponseReadingWithin, TellsWhereTheFileShouldBe) {
  EXPECT_EQ(read("../outside.paz").fault,
            folder() + "/../outside.paz: outside of " + folder() + " (--follow-outside reads it)");
}

TEST_F(ResponseReadingWithin, NamesThePathAsItWasGiven) {
  files_.write_file("net/resp/inside.paz", "theoretical 1 sensor paz\nmuch\n");
  EXPECT_THAT(read("resp/alias.paz").fault, HasSubstr("/resp/alias.paz:2: "));
}

TEST_F(ResponseReadingWithin, AFolderBehindALinkIsTheFolderThatItLeadsTo) {
  const std::string alias = files_.folder() + "/alias";
  EXPECT_EQ(read_response_within(alias + "/resp/inside.paz", alias).status, ResponseStatus::read);
  EXPECT_EQ(read_response_within(alias + "/../outside.paz", alias).status, ResponseStatus::outside);
}

TEST_F(ResponseReadingWithin, WithoutAFolderTheFileMayBeAnywhere) {
  EXPECT_EQ(read_response_within(folder() + "/../outside.paz", "").status, ResponseStatus::read);
  EXPECT_EQ(read_response_within(folder() + "/resp/link.paz", "").status, ResponseStatus::read);
  EXPECT_EQ(read_response_within(folder() + "/resp/inside.paz", "/").status, ResponseStatus::read);
}

TEST_F(ResponseReadingWithin, APipeIsNotWaitedFor) {
  ASSERT_EQ(mkfifo((folder() + "/resp/pipe.paz").c_str(), 0600), 0);
  EXPECT_EQ(read("resp/pipe.paz").status, ResponseStatus::unreadable);
}

TEST_F(ResponseReadingWithin, WhatTheMachineCannotDoIsNoMissingFile) {
  auto none = std::make_optional<NoMoreOpenFiles>();
  const ResponseReading reading = read("resp/inside.paz");
  none.reset();  // who looks at what came out may need files, too
  EXPECT_EQ(reading.status, ResponseStatus::failed);
  EXPECT_THAT(reading.fault, HasSubstr("resp/inside.paz: cannot read: Too many open files"));
}

TEST_F(ResponseReadingWithin, AFileThatIsNotForUsIsNotMissing) {
  if (geteuid() == 0) GTEST_SKIP() << "root reads every file";
  std::filesystem::permissions(folder() + "/resp/inside.paz", std::filesystem::perms::none);
  EXPECT_EQ(read("resp/inside.paz").status, ResponseStatus::unreadable);
}

}  // namespace
}  // namespace triglub
