// Files that are held to what they were when they were opened.
#include "engine/source/flat/steady_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/flat_database.h"

namespace triglub_test {
namespace {

namespace fs = std::filesystem;
using triglub::SteadyFile;

constexpr const char* kChanged = "changed while it was read";

void append(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::app) << text; }

struct timespec status_time(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_ctim;
}

// Written again as soon as the clock of the file system has moved on, and with the time of writing set back.
void write_unnoticed(const std::string& path) {
  const auto written = fs::last_write_time(path);
  const struct timespec before = status_time(path);
  const auto has_moved_on = [&] {
    const struct timespec now = status_time(path);
    return now.tv_sec != before.tv_sec || now.tv_nsec != before.tv_nsec;
  };
  do {
    std::ofstream(path) << "9876543210";
    fs::last_write_time(path, written);
  } while (!has_moved_on());
}

TEST(SteadyFile, GivesTheBytesOfAnyRange) {
  const FlatDatabase files;
  std::string fault;
  const auto file = SteadyFile::open(files.write_file("file", "0123456789"), &fault);
  ASSERT_NE(file, nullptr) << fault;
  EXPECT_EQ(file->size(), 10u);
  for (const auto& [begin, end] : std::vector<std::pair<std::size_t, std::size_t>>{{0, 10}, {3, 7}, {9, 10}, {4, 4}}) {
    std::string bytes(end - begin, '-');
    EXPECT_TRUE(file->read(begin, end, bytes.data()));
    EXPECT_EQ(bytes, std::string("0123456789").substr(begin, end - begin));
  }
  EXPECT_EQ(file->fault(), "");
}

TEST(SteadyFile, TellsWhatHappenedToItMeanwhile) {
  struct Case {
    const char* what;
    std::function<void(const std::string& path)> happens;
    const char* fault;
  };
  const std::vector<Case> cases = {
      {"nothing", [](const std::string&) {}, ""},
      {"cut off", [](const std::string& path) { fs::resize_file(path, 3); }, kChanged},
      {"emptied", [](const std::string& path) { fs::resize_file(path, 0); }, kChanged},
      {"a row more", [](const std::string& path) { append(path, "x"); }, kChanged},
      {"written again", [](const std::string& path) { std::ofstream(path) << "9876543210"; }, kChanged},
      {"written again, at the same time by its words", write_unnoticed, kChanged},
      {"another in its place",
       [](const std::string& path) {
         std::ofstream(path + ".new") << "9876543210";
         fs::rename(path + ".new", path);
       },
       ""},
      {"removed", [](const std::string& path) { fs::remove(path); }, ""},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    const FlatDatabase files;
    const std::string path = files.write_file("file", "0123456789");
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    std::string fault;
    const auto file = SteadyFile::open(path, &fault);
    ASSERT_NE(file, nullptr) << fault;
    one.happens(path);
    std::string bytes(10, '-');
    const bool is_read = file->read(0, 10, bytes.data());
    EXPECT_EQ(file->fault(), one.fault);
    if (file->fault().empty()) {
      EXPECT_TRUE(is_read);
      EXPECT_EQ(bytes, "0123456789");
    }
  }
}

TEST(SteadyFile, IsNothingButARegularFile) {
  const FlatDatabase files;
  const std::string pipe = files.folder() + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {pipe, files.folder(), std::string("/dev/zero"), std::string("/dev/null")}) {
    std::string fault;
    EXPECT_EQ(SteadyFile::open(path, &fault), nullptr) << path;
    EXPECT_EQ(fault, "not a regular file") << path;
  }
  std::string fault;
  EXPECT_EQ(SteadyFile::open(files.folder() + "/none", &fault), nullptr);
  EXPECT_EQ(fault, "No such file or directory");
}

// Those say that they have no bytes: taken at their word they would be empty tables.
TEST(SteadyFile, DoesNotTakeAFileOfTheKernelForAnEmptyOne) {
  if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "no such file here";
  std::string fault;
  const auto status = SteadyFile::open("/proc/self/status", &fault);
  ASSERT_NE(status, nullptr) << fault;
  EXPECT_EQ(status->fault(), kChanged);
  const auto memory = SteadyFile::open("/proc/self/mem", &fault);
  if (memory != nullptr) {
    EXPECT_EQ(memory->fault(), "cannot be read: Input/output error");
  }
}

}  // namespace
}  // namespace triglub_test
