#include "tool/output.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/file_text.h"
#include "tool/endings.h"
#include "tool/write_parts.h"

namespace {

using triglub::tool::Output;
using triglub_test::file_text;

class OutputFile : public testing::Test {
 protected:
  OutputFile() {
    std::string folder = (std::filesystem::temp_directory_path() / "triglub_output_XXXXXX").string();
    folder_ = mkdtemp(folder.data());
  }
  ~OutputFile() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  long files() const {
    return std::distance(std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator());
  }
  void put(const std::string& name, const std::string& text) const { std::ofstream(path(name)) << text; }

  std::filesystem::path folder_;
};

TEST_F(OutputFile, IsInPlaceOnlyWhenCommitted) {
  put("a", "old");
  auto output = Output::open(path("a"));
  output->stream() << "new" << std::endl;
  EXPECT_EQ(file_text(path("a")), "old");
  output->commit();
  EXPECT_EQ(file_text(path("a")), "new\n");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFile, LeavesTheOldOneWhenNotCommitted) {
  put("a", "old");
  { Output::open(path("a"))->stream() << std::string(3 << 20, 'x'); }
  EXPECT_EQ(file_text(path("a")), "old");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFile, LeavesNothingWhenThereWasNone) {
  { Output::open(path("a"))->stream() << "x"; }
  EXPECT_EQ(files(), 0);
}

TEST_F(OutputFile, LeavesNothingWhenTheProcessExits) {
  EXPECT_EXIT(
      {
        const auto output = Output::open(path("a"));
        output->stream() << "x";
        std::exit(1);
      },
      testing::ExitedWithCode(1), "");
  EXPECT_EQ(files(), 0);
}

TEST_F(OutputFile, LeavesNothingWhenASignalEndsTheProcess) {
  for (const int signal_number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGXCPU, SIGALRM, SIGKILL}) {
    EXPECT_EXIT(
        {
          triglub::tool::prepare_endings();
          const auto output = Output::open(path("a"));
          output->stream() << "x";
          raise(signal_number);
        },
        testing::KilledBySignal(signal_number), "");
    EXPECT_EQ(files(), 0) << signal_number;
  }
}

TEST_F(OutputFile, IsWholeWhenASignalComesBehindIt) {
  put("a", "old");
  EXPECT_EXIT(
      {
        triglub::tool::prepare_endings();
        const auto output = Output::open(path("a"));
        output->stream() << "new";
        output->commit();
        raise(SIGTERM);
      },
      testing::KilledBySignal(SIGTERM), "^triglub: ended by signal 15 \\(Terminated\\); the document is whole\n$");
  EXPECT_EQ(file_text(path("a")), "new");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFile, MakesTheFileThatALinkLeadsTo) {
  std::filesystem::create_directory(path("sub"));
  std::filesystem::create_symlink("second", path("first"));
  std::filesystem::create_symlink(path("sub/third"), path("second"));
  std::filesystem::create_symlink("new", path("sub/third"));
  const auto output = Output::open(path("first"));
  output->stream() << "x";
  output->commit();
  for (const char* link : {"first", "second", "sub/third"})
    EXPECT_TRUE(std::filesystem::is_symlink(path(link))) << link;
  EXPECT_EQ(file_text(path("sub/new")), "x");
}

TEST_F(OutputFile, IsRefusedWhereLinksGoInACircle) {
  std::filesystem::create_symlink("b", path("a"));
  std::filesystem::create_symlink("a", path("b"));
  EXPECT_EXIT(Output::open(path("a")), testing::ExitedWithCode(1), "cannot be written: Too many levels of symbolic");
  EXPECT_EQ(files(), 2);
}

TEST_F(OutputFile, HasAnyNameThatFilesMayHave) {
  const std::string longest(NAME_MAX, 'n');
  for (const char* before : {"", "old"}) {
    const auto output = Output::open(path(longest));
    output->stream() << "new" << before;
    output->commit();
    EXPECT_EQ(file_text(path(longest)), std::string("new") + before);
  }
}

TEST_F(OutputFile, LeavesTheOldOneWhenTheFileGrowsTooLarge) {
  put("a", "old");
  EXPECT_EXIT(
      {
        triglub::tool::prepare_endings();
        rlimit limit{};
        limit.rlim_cur = limit.rlim_max = 100000;
        setrlimit(RLIMIT_FSIZE, &limit);
        Output::open(path("a"))->stream() << std::string(3 << 20, 'x');
      },
      testing::ExitedWithCode(1), "cannot be written: File too large");
  EXPECT_EQ(file_text(path("a")), "old");
  EXPECT_EQ(files(), 1);
}

TEST_F(OutputFile, KeepsThePermissionsOfTheOneItReplaces) {
  put("a", "old");
  chmod(path("a").c_str(), 0640);
  const auto output = Output::open(path("a"));
  output->commit();
  EXPECT_EQ(std::filesystem::status(path("a")).permissions(), std::filesystem::perms{0640});
}

TEST_F(OutputFile, FollowsALink) {
  put("a", "old");
  std::filesystem::create_symlink("a", path("link"));
  const auto output = Output::open(path("link"));
  output->stream() << "new";
  output->commit();
  EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
  EXPECT_EQ(file_text(path("a")), "new");
}

TEST_F(OutputFile, HoldsTextsOfAnySizeInOrder) {
  std::string expected;
  const auto output = Output::open(path("a"));
  for (const std::size_t size : {1u, 1000000u, 48575u, 1u, 3000000u, 5u}) {
    const std::string text(size, static_cast<char>('a' + expected.size() % 26));
    output->stream() << text << std::flush;
    output->stream().put('\n');
    expected += text + '\n';
  }
  output->commit();
  EXPECT_TRUE(file_text(path("a")) == expected);
}

// Signals end a call of the system after any number of bytes.
TEST(InterruptedWrites, GoOnWhereTheyEnded) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  sigset_t alarm;
  sigemptyset(&alarm);
  sigaddset(&alarm, SIGALRM);
  pthread_sigmask(SIG_BLOCK, &alarm, nullptr);  // by the reader
  std::string found;
  std::thread reader([&] {
    char bytes[3000];
    for (ssize_t count = 1; count > 0; found.append(bytes, static_cast<std::size_t>(count))) {
      count = ::read(ends[0], bytes, sizeof bytes);
      if (found.size() % 16 == 0) usleep(200);
    }
  });
  pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often = {{0, 150}, {0, 150}};
  setitimer(ITIMER_REAL, &often, nullptr);
  std::vector<std::string> texts;
  for (int i = 0; i < 500; ++i) texts.push_back(std::string(5001, 'a') + std::to_string(i));
  std::string expected;
  std::vector<iovec> parts;
  for (std::string& text : texts) {
    expected += text;
    for (int i = 0; i < 3; ++i) {  // more parts than one call of the system takes
      const std::size_t begin = text.size() * static_cast<std::size_t>(i) / 3;
      const std::size_t end = text.size() * static_cast<std::size_t>(i + 1) / 3;
      parts.push_back({text.data() + begin, end - begin});
    }
  }
  triglub::tool::write_parts(ends[1], "a pipe", parts);
  const itimerval never = {};
  setitimer(ITIMER_REAL, &never, nullptr);
  close(ends[1]);
  reader.join();
  close(ends[0]);
  EXPECT_TRUE(found == expected);
}

TEST(FullDisk, IsAFatalReport) {
  EXPECT_EXIT(
      {
        const auto output = Output::open("/dev/full");
        output->stream() << "x";
        output->commit();
      },
      testing::ExitedWithCode(1), "triglub: fatal: /dev/full: cannot be written: No space left on device");
}

TEST(FullDisk, IsAFatalReportAsSoonAsAPieceIsWritten) {
  EXPECT_EXIT(Output::open("/dev/full")->stream() << std::string(2 << 20, 'x'), testing::ExitedWithCode(1),
              "No space left on device");
}

}  // namespace
