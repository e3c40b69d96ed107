// Files read whole: what a path may lead to, how large, and what is told of the rest.
#include "base/file_text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

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
    const FileReading reading = read_file(written(whole), FileKind::regular, 1 << 20, &text);
    EXPECT_EQ(reading.fault, FileFault::none) << size;
    EXPECT_TRUE(text == whole) << size;
  }
}

TEST_F(FileText, HoldsTheLimitButNotAByteMore) {
  for (const std::size_t limit : {0, 1, 4095, 4096, 5000}) {
    std::string text;
    const auto fault_of = [&](std::size_t size) {
      return read_file(written(std::string(size, 'x')), FileKind::regular, limit, &text).fault;
    };
    EXPECT_EQ(fault_of(limit), FileFault::none) << limit;
    EXPECT_EQ(text.size(), limit);
    EXPECT_EQ(fault_of(limit + 1), FileFault::too_large) << limit;
  }
}

TEST_F(FileText, TellsWhyThereIsNone) {
  std::string text;
  const FileReading missing = read_file(path("none"), FileKind::regular, 100, &text);
  EXPECT_EQ(missing.fault, FileFault::unreadable);
  EXPECT_EQ(missing.error, ENOENT);
  const FileReading below = read_file(written("x") + "/none", FileKind::any, 100, &text);
  EXPECT_EQ(below.fault, FileFault::unreadable);
  EXPECT_EQ(below.error, ENOTDIR);
  const FileReading folder = read_file(folder_, FileKind::any, 100, &text);
  EXPECT_EQ(folder.fault, FileFault::unreadable);
  EXPECT_EQ(folder.error, EISDIR);
}

TEST_F(FileText, RefusesWhatIsNoRegularFileWithoutWaiting) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  std::string text;
  for (const std::string& place : {path("pipe"), folder_, std::string("/dev/null")}) {
    EXPECT_EQ(read_file(place, FileKind::regular, 100, &text).fault, FileFault::other_kind) << place;
  }
}

TEST_F(FileText, ReadsADeviceToItsEndOrToTheLimit) {
  std::string text = "x";
  EXPECT_EQ(read_file("/dev/null", FileKind::any, 100, &text).fault, FileFault::none);
  EXPECT_EQ(text, "");
  EXPECT_EQ(read_file("/dev/zero", FileKind::any, 100000, &text).fault, FileFault::too_large);
  EXPECT_LE(text.size(), 100001u);
}

TEST_F(FileText, WaitsForWhatComesThroughAPipe) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const std::string sent(200000, 'x');
  std::thread writer([&] {
    std::ofstream pipe(path("pipe"), std::ios::binary);
    pipe << sent.substr(0, 7) << std::flush;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    pipe << sent.substr(7);
  });
  std::string text;
  const FileReading reading = read_file(path("pipe"), FileKind::any, 1 << 20, &text);
  writer.join();
  EXPECT_EQ(reading.fault, FileFault::none);
  EXPECT_TRUE(text == sent);
}

// Files of the kernel say that they have no bytes.
TEST_F(FileText, ReadsMoreThanTheFileWasSaidToHold) {
  struct stat status {};
  if (stat("/proc/self/status", &status) != 0 || status.st_size != 0) GTEST_SKIP() << "no such file here";
  std::string text;
  EXPECT_EQ(read_file("/proc/self/status", FileKind::regular, 1 << 20, &text).fault, FileFault::none);
  EXPECT_GT(text.size(), 0u);
  EXPECT_EQ(read_file("/proc/self/status", FileKind::regular, 10, &text).fault, FileFault::too_large);
}

}  // namespace
}  // namespace triglub
