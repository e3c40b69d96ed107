#include "parfile/search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/parfile/pf_ptr.h"
#include "support/scoped_limit.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using triglub::parfile::candidates;

// Runs in an empty folder of its own, without folders to search.
class Search : public testing::Test {
 protected:
  void SetUp() override {
    std::string folder = (fs::temp_directory_path() / "parfile-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    folder_ = folder;
    fs::current_path(folder_);
    unsetenv("TRIGLUB_PFPATH");
  }

  void TearDown() override {
    fs::current_path("/");
    fs::remove_all(folder_);
  }

  static void write(const std::string& path, const std::string& text) {
    if (fs::path(path).has_parent_path()) fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
  }

  // Reads a file that gives its own place as `from`, and tells its path too.
  static std::string found(const char* name) {
    Pf* pf = nullptr;
    const int status = pfread(name, &pf);
    const PfPtr owner(pf);
    if (status != 0) return std::to_string(status);
    return string_at(owner, "from") + " " + pf_path(pf);
  }

  fs::path folder_;
};

TEST_F(Search, TakesANameWithASlashOrTheSuffixAsAPath) {
  write("here.pf", "from here");
  write("sub/there.pf", "from sub");
  write("sub/plain", "from plain");
  write("plain", "from nowhere");
  EXPECT_EQ(found("here.pf"), "here here.pf");
  EXPECT_EQ(found("./here.pf"), "here ./here.pf");
  EXPECT_EQ(found("sub/there.pf"), "sub sub/there.pf");
  EXPECT_EQ(found("sub/plain"), "plain sub/plain");
  EXPECT_EQ(found("sub/there"), "-1");
  EXPECT_EQ(found("there.pf"), "-1");
  EXPECT_EQ(found("plain"), "-1");
  EXPECT_EQ(found((folder_ / "here.pf").c_str()), "here " + (folder_ / "here.pf").string());
}

TEST_F(Search, DoesNotLookForPathsInTheFoldersOfTheEnvironment) {
  write("lib/net.pf", "from lib");
  setenv("TRIGLUB_PFPATH", "lib", 1);
  EXPECT_EQ(found("net.pf"), "-1");
  EXPECT_EQ(found("./net"), "-1");
  EXPECT_EQ(found("net"), "lib lib/net.pf");
}

TEST_F(Search, LooksHereFirstThenInTheFoldersInTheirOrder) {
  write("one/net.pf", "from one");
  write("two/net.pf", "from two");
  setenv("TRIGLUB_PFPATH", "none:two:one", 1);
  EXPECT_EQ(found("net"), "two two/net.pf");
  setenv("TRIGLUB_PFPATH", "one:two", 1);
  EXPECT_EQ(found("net"), "one one/net.pf");
  write("net.pf", "from here");
  EXPECT_EQ(found("net"), "here net.pf");
}

TEST_F(Search, EndsInTheInstalledDataFolder) {
  setenv("TRIGLUB_PFPATH", "::one::two:/three/:", 1);
  EXPECT_THAT(candidates("net"),
              ElementsAre("net.pf", "one/net.pf", "two/net.pf", "/three//net.pf", EndsWith("/share/triglub/net.pf")));
  setenv("TRIGLUB_PFPATH", "", 1);
  EXPECT_THAT(candidates("net"), ElementsAre("net.pf", EndsWith("/share/triglub/net.pf")));
  unsetenv("TRIGLUB_PFPATH");
  EXPECT_THAT(candidates("net"), ElementsAre("net.pf", EndsWith("/share/triglub/net.pf")));
  EXPECT_THAT(candidates("net.pf"), ElementsAre("net.pf"));
  EXPECT_THAT(candidates("a/net"), ElementsAre("a/net"));
  EXPECT_THAT(candidates(".pf"), ElementsAre(".pf"));
  EXPECT_THAT(candidates("pf"), ElementsAre("pf.pf", EndsWith("/pf.pf")));
  EXPECT_THAT(candidates("net.PF"), ElementsAre("net.PF.pf", EndsWith("/net.PF.pf")));
  EXPECT_THAT(candidates(""), ElementsAre());
}

TEST_F(Search, PassesOverFoldersThatAreNone) {
  write("file", "");
  write("lib/net.pf", "from lib");
  setenv("TRIGLUB_PFPATH", "file:missing:lib", 1);
  EXPECT_EQ(found("net"), "lib lib/net.pf");
}

TEST_F(Search, GivesMinus1AndNoComplaintForWhatIsNotThere) {
  const Complaints complaints;
  const PfPtr not_null(pfnew());
  for (const char* name : {"net", "net.pf", "sub/net", "", static_cast<const char*>(nullptr)}) {
    Pf* pf = not_null.get();
    EXPECT_EQ(pfread(name, &pf), -1);
    EXPECT_EQ(pf, nullptr);
  }
  EXPECT_THAT(complaints.texts(), ElementsAre());
}

TEST_F(Search, GivesMinus2ForWhatCannotBeRead) {
  fs::create_directories("folder.pf");
  fs::create_symlink("loop.pf", "loop.pf");
  const PfPtr not_null(pfnew());
  for (const char* name : {"folder.pf", "folder", "./folder.pf", "loop.pf"}) {
    Pf* pf = not_null.get();
    EXPECT_EQ(pfread(name, &pf), -2) << name;
    EXPECT_EQ(pf, nullptr) << name;
  }
}

TEST_F(Search, GivesMinus2WithoutTheRightToRead) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to root";
  write("net.pf", "from here");
  chmod("net.pf", 0);
  EXPECT_EQ(found("net"), "-2");
}

TEST_F(Search, StopsAtAFileThatIsThereButOfNoUse) {
  fs::create_directories("one/net.pf");
  write("two/net.pf", "from two");
  setenv("TRIGLUB_PFPATH", "one:two", 1);
  EXPECT_EQ(found("net"), "-2");
}

TEST_F(Search, GivesMinus3AndNamesThePathOfAMalformedFile) {
  write("lib/net.pf", "from lib\nblock &Arr{\n");
  setenv("TRIGLUB_PFPATH", "lib", 1);
  const Complaints complaints;
  EXPECT_EQ(found("net"), "-3");
  EXPECT_THAT(complaints.texts(), ElementsAre("lib/net.pf:2: the block 'block' is never closed"));
}

TEST_F(Search, TakesNoFileBeyondTheLimitOfSize) {
  const triglub::ScopedLimit limit(triglub::Limit::parameter_bytes, 1000);
  const auto with_bytes = [](std::size_t size) { return "from large\n" + std::string(size - 12, '#') + "\n"; };
  const Complaints complaints;
  for (const std::size_t size : {999, 1000}) {
    write("large.pf", with_bytes(size));
    EXPECT_EQ(found("large"), "large large.pf") << size;
  }
  write("large.pf", with_bytes(1001));
  EXPECT_EQ(found("large"), "-3");
  EXPECT_THAT(complaints.texts(),
              ElementsAre("large.pf: more than 1000 bytes of a parameter file (the limit parameter-bytes)"));
}

// A pipe that nobody writes to would be waited for, a device may have no end.
TEST_F(Search, TakesNothingButRegularFiles) {
  ASSERT_EQ(mkfifo("pipe.pf", 0600), 0);
  const Complaints complaints;
  for (const char* const name : {"pipe", "./pipe.pf", "/dev/zero", "/dev/null"}) EXPECT_EQ(found(name), "-2") << name;
  EXPECT_THAT(complaints.texts(), ElementsAre("pipe.pf: not a regular file", "./pipe.pf: not a regular file",
                                              "/dev/zero: not a regular file", "/dev/null: not a regular file"));
}

TEST_F(Search, ReadsAFileWhole) {
  std::string text = "from large\n";
  while (text.size() < 300000) text += "# filler\n";
  write("large.pf", text + "last line");
  Pf* pf = nullptr;
  ASSERT_EQ(pfread("large", &pf), 0);
  EXPECT_EQ(string_at(PfPtr(pf), "last"), "line");
}

TEST_F(Search, ReadsAFileAnewEachTime) {
  write("net.pf", "from first");
  EXPECT_EQ(found("net"), "first net.pf");
  write("net.pf", "from second");
  EXPECT_EQ(found("net"), "second net.pf");
}

}  // namespace
