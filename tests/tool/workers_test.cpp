// Pieces written side by side: their texts and messages come in order, and the first that fails ends it all.
#include "tool/workers.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "platform/elog.h"
#include "support/file_text.h"
#include "tool/messages.h"

namespace {

using triglub::tool::Output;
using triglub::tool::write_in_order;
using triglub_test::file_text;

// Of very different lengths, some beyond what is held back.
std::string text_of(std::size_t piece) {
  const std::size_t length = piece % 5 == 3 ? std::size_t{9} << 20 : piece * 37;
  return "<" + std::to_string(piece) + std::string(length, static_cast<char>('a' + piece % 26)) + ">\n";
}

class Workers : public testing::Test {
 protected:
  Workers() {
    std::string folder = (std::filesystem::temp_directory_path() / "triglub_workers_XXXXXX").string();
    folder_ = mkdtemp(folder.data());
  }
  ~Workers() override { std::filesystem::remove_all(folder_); }

  std::string path() const { return (folder_ / "out").string(); }

  // The first piece takes its time, so that the others have to wait.
  static void write_piece(std::ostream& out, std::size_t piece) {
    if (piece == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    elog_complain(0, "piece %zu", piece);
    const std::string text = text_of(piece);
    out << text.substr(0, text.size() / 2) << std::flush << text.substr(text.size() / 2);
  }

  std::filesystem::path folder_;
};

TEST_F(Workers, WriteTheSameDocumentWhateverTheirNumber) {
  constexpr std::size_t kPieces = 12;
  std::string expected = "head\n";
  for (std::size_t piece = 0; piece < kPieces; ++piece) expected += text_of(piece);
  expected += "foot\n";
  for (const unsigned int jobs : {1U, 2U, 3U, 16U}) {
    SCOPED_TRACE(jobs);
    const auto output = Output::open(path());
    output->stream() << "head\n";
    write_in_order(*output, kPieces, jobs, write_piece);
    output->stream() << "foot\n";
    output->commit();
    EXPECT_EQ(file_text(path()), expected);
  }
}

TEST_F(Workers, TellTheirMessagesInOrder) {
  const auto tell_all = [&](unsigned int jobs) {
    triglub::tool::show_messages(0);
    elog_init("test");
    const auto output = Output::open(path());
    write_in_order(*output, 5, jobs, write_piece);
    std::_Exit(7);
  };
  const std::string expected =
      "^test: warning: piece 0\ntest: warning: piece 1\ntest: warning: piece 2\ntest: warning: piece 3\ntest: warning: "
      "piece 4\n$";
  for (const unsigned int jobs : {2U, 5U}) EXPECT_EXIT(tell_all(jobs), testing::ExitedWithCode(7), expected);
}

TEST_F(Workers, HaveNothingToDoWithoutPieces) {
  const auto output = Output::open(path());
  write_in_order(*output, 0, 4, [](std::ostream&, std::size_t) { FAIL(); });
  output->commit();
  EXPECT_EQ(file_text(path()), "");
}

TEST_F(Workers, EndWithThePieceThatFailsFirstInOrder) {
  const auto fail_in_some = [&](unsigned int jobs, std::size_t slow_piece) {
    triglub::tool::show_messages(0);
    elog_init("test");
    dup2(STDERR_FILENO, STDOUT_FILENO);
    const auto output = Output::open("");
    write_in_order(*output, 8, jobs, [=](std::ostream& out, std::size_t piece) {
      if (piece == slow_piece) std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if (piece == 2 || piece == 3) elog_die(0, "piece %zu cannot be written", piece);
      out << "[" << piece << "]";
    });
    std::_Exit(7);
  };
  for (const unsigned int jobs : {2U, 4U}) {
    for (const std::size_t slow_piece : {0U, 1U, 2U}) {
      SCOPED_TRACE(testing::Message() << jobs << " jobs, piece " << slow_piece << " is slow");
      EXPECT_EXIT(fail_in_some(jobs, slow_piece), testing::ExitedWithCode(1),
                  "^\\[0\\]\\[1\\]test: fatal: piece 2 cannot be written\n$");
    }
  }
}

[[noreturn]] void fill_disk(const triglub::tool::PieceWriter& write) {
  triglub::tool::show_messages(0);
  elog_init("test");
  const auto output = Output::open("/dev/full");
  write_in_order(*output, 4, 2, write);
  std::_Exit(7);
}

TEST_F(Workers, EndWhenTheDiskIsFull) {
  EXPECT_EXIT(fill_disk(write_piece), testing::ExitedWithCode(1),
              "^test: warning: piece 0\ntest: fatal: /dev/full: cannot be written: No space left on device\n$");
}

// While one of them has gone on with another piece than the one it cannot write.
TEST_F(Workers, EndWhenTheDiskIsFullForAPieceThatWaited) {
  const auto write = [](std::ostream& out, std::size_t piece) {
    if (piece == 0) return std::this_thread::sleep_for(std::chrono::milliseconds(50));
    out << piece;
  };
  EXPECT_EXIT(fill_disk(write), testing::ExitedWithCode(1),
              "^test: fatal: /dev/full: cannot be written: No space left on device\n$");
}

TEST_F(Workers, AreMissedWhenASignalEndsThem) {
  const auto end_one = [&] {
    triglub::tool::show_messages(0);
    elog_init("test");
    const auto output = Output::open(path());
    write_in_order(*output, 4, 2, [](std::ostream&, std::size_t piece) {
      if (piece == 1) raise(SIGKILL);
    });
    std::_Exit(7);
  };
  EXPECT_EXIT(end_one(), testing::ExitedWithCode(1),
              "^test: fatal: a process that wrote a part of the document was ended by signal 9 \\(Killed\\)\n$");
}

// As of a shell that has started others before it made room for the command.
TEST_F(Workers, AreToldFromOtherChildrenOfTheProcess) {
  const auto write_beside_others = [&] {
    if (fork() == 0) _exit(3);
    const pid_t lasting = fork();
    if (lasting == 0) std::this_thread::sleep_for(std::chrono::minutes(1));
    {
      const auto output = Output::open(path());
      write_in_order(*output, 12, 3, write_piece);
      output->commit();
    }
    kill(lasting, SIGKILL);
    int status = 0;
    std::_Exit(wait(&status) > 0 ? 7 : 8);
  };
  EXPECT_EXIT(write_beside_others(), testing::ExitedWithCode(7), "");
  EXPECT_TRUE(file_text(path()).ends_with(text_of(11)));
}

TEST_F(Workers, AreFewerWhereTheSystemGivesNoMoreProcesses) {
  std::string expected;
  for (std::size_t piece = 0; piece < 6; ++piece) expected += text_of(piece);
  for (const bool is_by_threads : {false, true}) {
    const auto write_alone = [&] {
      // Not of root, which the system lets have any number of processes.
      const rlimit limit = {1, 1};
      setrlimit(RLIMIT_NPROC, &limit);
      if (geteuid() == 0 && setuid(65534) != 0) std::_Exit(8);
      triglub::tool::show_messages(2);
      const auto output = Output::open("");
      const auto write = [](std::ostream& out, std::size_t piece) { out << text_of(piece); };
      if (is_by_threads) {
        triglub::tool::write_side_by_side(*output, 6, 3, nullptr, [&write] { return write; });
      } else {
        write_in_order(*output, 6, 3, write);
      }
      output->finish();
      std::_Exit(7);
    };
    const std::string to = path();
    EXPECT_EXIT(
        {
          dup2(::open(to.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600), STDOUT_FILENO);
          write_alone();
        },
        testing::ExitedWithCode(7), "^$");
    EXPECT_EQ(file_text(to), expected) << is_by_threads;
  }
}

TEST_F(Workers, LeaveNoFileBehindWhenOneFails) {
  const auto fail = [&] {
    const auto output = Output::open(path());
    write_in_order(*output, 4, 2, [](std::ostream&, std::size_t piece) {
      if (piece == 1) elog_die(0, "no");
    });
    std::_Exit(7);
  };
  EXPECT_EXIT(fail(), testing::ExitedWithCode(1), "no");
  EXPECT_TRUE(std::filesystem::is_empty(folder_));
}

}  // namespace
