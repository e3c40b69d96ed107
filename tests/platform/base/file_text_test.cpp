// Files read whole: what a path may lead to, how large, and what is told of the rest.
#include "base/file_text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace triglub {
namespace {

namespace fs = std::filesystem;

class FileText : public testing::Test {
 protected:
  void SetUp() override {
    std::string folder = (fs::temp_directory_path() / "file-text-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    folder_ = folder;
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string path(const std::string& name) const { return folder_ + "/" + name; }

  std::string written(const std::string& text) const {
    std::ofstream(path("file"), std::ios::binary) << text;
    return path("file");
  }

  std::string folder_;
};

TEST_F(FileText, IsTheBytesOfTheFileInPlaceOfWhatWasThere) {
  std::string bytes("zero \0 and \r\n\xFF", 13);
  for (const std::size_t size : {0, 1, 13, 4095, 4096, 4097, 100000}) {
    const std::string whole = std::string(size, 'x').replace(0, std::min<std::size_t>(size, 13), bytes, 0, size);
    std::string text = "what was there";
    const FileReading reading = read_file(written(whole), 1 << 20, &text);
    EXPECT_EQ(reading.fault, FileFault::none) << size;
    EXPECT_TRUE(text == whole) << size;
  }
}

TEST_F(FileText, HoldsTheLimitButNotAByteMore) {
  for (const std::size_t limit : {0, 1, 4095, 4096, 5000}) {
    std::string text;
    const auto fault_of = [&](std::size_t size) {
      return read_file(written(std::string(size, 'x')), limit, &text).fault;
    };
    EXPECT_EQ(fault_of(limit), FileFault::none) << limit;
    EXPECT_EQ(text.size(), limit);
    EXPECT_EQ(fault_of(limit + 1), FileFault::too_large) << limit;
  }
}

TEST_F(FileText, TellsWhyThereIsNone) {
  std::string text;
  const FileReading missing = read_file(path("none"), 100, &text);
  EXPECT_EQ(missing.fault, FileFault::unreadable);
  EXPECT_EQ(missing.error, ENOENT);
  const FileReading below = read_file(written("x") + "/none", 100, &text);
  EXPECT_EQ(below.fault, FileFault::unreadable);
  EXPECT_EQ(below.error, ENOTDIR);
}

TEST_F(FileText, RefusesWhatIsNoRegularFileWithoutWaiting) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  std::string text;
  for (const std::string& place : {path("pipe"), folder_, std::string("/dev/null"), std::string("/dev/zero")}) {
    EXPECT_EQ(read_file(place, 100, &text).fault, FileFault::other_kind) << place;
  }
}

TEST_F(FileText, HasAWordForEachFault) {
  EXPECT_EQ(fault_text({FileFault::other_kind}, 7), "not a regular file");
  EXPECT_EQ(fault_text({FileFault::too_large}, 7), "more than 7 bytes");
  EXPECT_EQ(fault_text({FileFault::unreadable, EIO}, 7), "Input/output error");
}

TEST_F(FileText, TellsOfAReadThatFails) {
  std::string text;
  const FileReading reading = read_file("/proc/self/mem", 100, &text);  // nothing is mapped at its beginning
  if (reading.error != EIO) GTEST_SKIP() << "no such file here";
  EXPECT_EQ(reading.fault, FileFault::unreadable);
}

// Files of the kernel say that they have no bytes.
TEST_F(FileText, ReadsMoreThanTheFileWasSaidToHold) {
  struct stat status {};
  if (stat("/proc/self/status", &status) != 0 || status.st_size != 0) GTEST_SKIP() << "no such file here";
  std::string text;
  EXPECT_EQ(read_file("/proc/self/status", 1 << 20, &text).fault, FileFault::none);
  EXPECT_GT(text.size(), 0u);
  EXPECT_EQ(read_file("/proc/self/status", 10, &text).fault, FileFault::too_large);
}

}  // namespace
}  // namespace triglub
