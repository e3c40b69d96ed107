// The generator of the example database, run as the program it is.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "examples/example_reader.h"

namespace {

namespace fs = std::filesystem;

int run(const std::string& arguments) {
  const int status = std::system(("\"" MAKE_EXAMPLE "\" " + arguments + " 2>/dev/null").c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Relative name to content.
std::map<std::string, std::string> contents(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    files[entry.path().lexically_relative(folder).generic_string()] = example::read_file(entry.path());
  }
  return files;
}

class Generator : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "example-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }
  fs::path folder_;
};

TEST_F(Generator, WritesTheDatabaseThatIsKeptByteForByte) {
  ASSERT_EQ(run("\"" + folder_.string() + "\""), 0);
  const auto made = contents(folder_);
  const auto kept = contents(example::folder());
  ASSERT_EQ(made.size(), kept.size());
  for (const auto& [name, content] : kept) {
    ASSERT_TRUE(made.count(name)) << name;
    EXPECT_TRUE(made.at(name) == content) << name << " differs";
  }
}

TEST_F(Generator, AsksForOneFolder) {
  EXPECT_EQ(run(""), 2);
  EXPECT_EQ(run("one two"), 2);
}

TEST_F(Generator, ReportsAFolderThatItCannotMake) {
  std::ofstream(folder_ / "file") << "in the way";
  EXPECT_EQ(run("\"" + (folder_ / "file").string() + "\""), 1);
}

}  // namespace
