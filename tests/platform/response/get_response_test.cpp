#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/response.h"
#include "support/collected_log.h"
#include "support/flat_database.h"
#include "support/scoped_limit.h"

namespace {

using triglub_test::CollectedLog;
using triglub_test::FlatDatabase;

const std::string kFir = "theoretical 1 instrument fir author\n100\n3\n0.25\n0.5\n0.25\n0\n";

TEST(GetResponse, ReadsAFile) {
  const FlatDatabase files;
  const std::string path = files.write_file("resp/a.fir", kFir);
  const CollectedLog log;
  Response* response = nullptr;
  ASSERT_EQ(get_response(path.c_str(), &response), 0);
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->group_count, 1);
  EXPECT_EQ(static_cast<Fir*>(response->groups.at(0).filter)->numerators, (std::vector<double>{0.25, 0.5, 0.25}));
  EXPECT_TRUE(log.lines().empty());
  free_response(response);
}

TEST(GetResponse, TellsFileLineAndFaultInADebugMessage) {
  const FlatDatabase files;
  const std::string path = files.write_file("a.fir", "theoretical 1 instrument fir\n100\n31\n1\n2\n");
  const CollectedLog log;
  Response stays;
  Response* response = &stays;
  EXPECT_EQ(get_response(path.c_str(), &response), -2);
  EXPECT_EQ(response, nullptr);
  EXPECT_EQ(log.lines(), std::vector{"debug: " + path + ":5: expected 31 numerators, found 2"});
}

TEST(GetResponse, TellsWhatCannotBeRead) {
  const FlatDatabase files;
  const CollectedLog log;
  Response* response = nullptr;
  EXPECT_EQ(get_response((files.folder() + "/none").c_str(), &response), -1);
  EXPECT_EQ(get_response(files.folder().c_str(), &response), -1);
  EXPECT_EQ(response, nullptr);
  EXPECT_EQ(log.lines(), (std::vector{"debug: " + files.folder() + "/none: cannot read: No such file or directory",
                                      "debug: " + files.folder() + ": cannot read: not a regular file"}));
}

TEST(ReadResponse, TellsTheCallerAloneOfAFault) {
  const FlatDatabase files;
  const CollectedLog log;
  Response stays;
  Response* response = &stays;
  std::string fault;
  EXPECT_EQ(read_response(files.write_file("a", "").c_str(), &response, &fault), -2);
  EXPECT_EQ(response, nullptr);
  EXPECT_EQ(fault.rfind(files.folder() + "/a:1: expected the first group", 0), 0) << fault;
  EXPECT_EQ(read_response("/dev/null", &response, &fault), -1);
  EXPECT_EQ(fault, "/dev/null: cannot read: not a regular file");
  EXPECT_TRUE(log.lines().empty());
}

TEST(ReadResponse, DoesNotWaitAtAPipe) {
  const FlatDatabase files;
  const std::string path = files.folder() + "/pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  Response* response = nullptr;
  std::string fault;
  EXPECT_EQ(read_response(path.c_str(), &response, &fault), -1);
  EXPECT_EQ(fault, path + ": cannot read: not a regular file");
}

TEST(ReadResponse, RefusesAFileThatMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to this user";
  const FlatDatabase files;
  const std::string path = files.write_file("a.fir", kFir);
  std::filesystem::permissions(path, std::filesystem::perms::none);
  Response* response = nullptr;
  std::string fault;
  EXPECT_EQ(read_response(path.c_str(), &response, &fault), -1);
  EXPECT_EQ(fault, path + ": cannot read: Permission denied");
}

TEST(ReadResponse, LimitsTheSizeOfAFile) {
  const FlatDatabase files;
  Response* response = nullptr;
  std::string fault;
  const triglub::ScopedLimit limit(triglub::Limit::response_bytes, 1000);
  for (const std::size_t size : {999u, 1000u}) {
    const std::string path = files.write_file("a.fir", kFir + std::string(size - kFir.size(), '#'));
    ASSERT_EQ(read_response(path.c_str(), &response, &fault), 0) << fault;
    free_response(response);
  }
  const std::string path = files.write_file("a.fir", kFir + std::string(1001 - kFir.size(), '#'));
  EXPECT_EQ(read_response(path.c_str(), &response, &fault), -2);
  EXPECT_EQ(fault, path + ": more than 1000 bytes of a response file (the limit response-bytes)");
  EXPECT_EQ(response, nullptr);
}

}  // namespace
