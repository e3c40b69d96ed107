#include "platform/elog.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

// Collects what is written to standard error, byte by byte as it comes.
class StandardError {
 public:
  StandardError() : file_(std::tmpfile()), saved_(dup(STDERR_FILENO)) { dup2(fileno(file_), STDERR_FILENO); }
  ~StandardError() {
    restore();
    std::fclose(file_);
  }
  StandardError(const StandardError&) = delete;
  StandardError& operator=(const StandardError&) = delete;

  std::string text() {
    restore();
    std::string text(static_cast<std::size_t>(lseek(fileno(file_), 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(fileno(file_), text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    return text;
  }

 private:
  void restore() {
    if (saved_ < 0) return;
    dup2(saved_, STDERR_FILENO);
    close(saved_);
    saved_ = -1;
  }

  std::FILE* file_;
  int saved_;
};

struct Message {
  ElogLevel level;
  std::string text;
  bool operator==(const Message&) const = default;
};

void collect(ElogLevel level, const char* text, void* context) {
  static_cast<std::vector<Message>*>(context)->push_back({level, text});
}

TEST(ErrorLog, LeadsEachLevelOnStandardErrorWithItsWord) {
  StandardError error;
  elog_debug(0, "row %d", 1);
  elog_notify(0, "row %d", 2);
  elog_complain(0, "row %d of %s", 3, "site");
  EXPECT_EQ(error.text(), "triglub: debug: row 1\ntriglub: row 2\ntriglub: warning: row 3 of site\n");
}

TEST(ErrorLog, TakesTheNameOfTheProgram) {
  StandardError error;
  std::string name = "css2xml";
  elog_init(name.c_str());
  name = "overwritten";
  elog_notify(0, "ready");
  elog_init(nullptr);
  elog_notify(0, "ready");
  EXPECT_EQ(error.text(), "css2xml: ready\ntriglub: ready\n");
}

TEST(ErrorLog, DoesNotLookAtTheFirstArgument) {
  StandardError error;
  elog_notify(1, "one");
  elog_complain(-7, "two");
  EXPECT_EQ(error.text(), "triglub: one\ntriglub: warning: two\n");
}

TEST(ErrorLog, GivesTheSinkLevelsAndBareTexts) {
  std::vector<Message> messages;
  StandardError error;
  elog_set_sink(collect, &messages);
  elog_debug(0, "a\x1b[31m%s", "b");
  elog_notify(0, "two\nlines");
  elog_complain(0, "100%%");
  elog_set_sink(nullptr, nullptr);
  elog_notify(0, "back");
  const std::vector<Message> expected = {
      {ElogLevel::debug, "a\x1b[31mb"}, {ElogLevel::notify, "two\nlines"}, {ElogLevel::complain, "100%"}};
  EXPECT_EQ(messages, expected);
  EXPECT_EQ(error.text(), "triglub: back\n");
}

TEST(ErrorLog, LetsASinkPassMessagesOn) {
  StandardError error;
  elog_set_sink([](ElogLevel level, const char* text, void*) { elog_to_stderr(level, text); }, nullptr);
  elog_complain(0, "passed on");
  elog_set_sink(nullptr, nullptr);
  EXPECT_EQ(error.text(), "triglub: warning: passed on\n");
}

TEST(ErrorLog, DeliversTextsOfAnyLengthWhole) {
  for (const std::size_t length : {0, 1, 255, 256, 4095, 4096, 65536, 1 << 20}) {
    const std::string text(length, 'x');
    std::vector<Message> messages;
    elog_set_sink(collect, &messages);
    elog_complain(0, "%s", text.c_str());
    elog_set_sink(nullptr, nullptr);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].text == text) << length;
    StandardError error;
    elog_complain(0, "%s", text.c_str());
    EXPECT_TRUE(error.text() == "triglub: warning: " + text + "\n") << length;
  }
}

TEST(ErrorLog, ShowsControlCharactersInsteadOfSendingThem) {
  const struct {
    const char* text;
    const char* shown;
  } cases[] = {
      {"", ""},
      {"plain text, 100 %", "plain text, 100 %"},
      {"\x1b[2J", "\\x1b[2J"},
      {"\a\b\f\v\r\x7f", "\\x07\\x08\\x0c\\x0b\\x0d\\x7f"},
      {"tab\there", "tab here"},
      {"one\ntwo", "one\n    two"},
      {"one\n", "one"},
      {"one\n\n\n", "one"},
      {"\n", ""},
      {"\none", "\n    one"},
      {"one\n\ntwo", "one\n    \n    two"},
      {"one\r\ntwo", "one\\x0d\n    two"},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8C\x8B", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8C\x8B"},
      {"\xC2\x9B[31m", "\\xc2\\x9b[31m"},  // U+009B begins a control sequence as ESC [ does
      {"\xC2\xA0", "\xC2\xA0"},
      {"\xE9t\xE9", "\\xe9t\\xe9"},
      {"\xC3", "\\xc3"},
      {"\x80\xBF", "\\x80\\xbf"},
      {"\xE2\x82", "\\xe2\\x82"},
      {"\xE2\x82x", "\\xe2\\x82x"},
      {"\xC0\xAF", "\\xc0\\xaf"},
      {"\xED\xA0\x80", "\\xed\\xa0\\x80"},
      {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
      {"\xFF\xFE", "\\xff\\xfe"},
  };
  for (const auto& c : cases) EXPECT_EQ(elog_printable(c.text), c.shown) << testing::PrintToString(c.text);
  EXPECT_EQ(elog_printable(std::string_view("a\0b", 3)), "a\\x00b");
}

TEST(ErrorLog, NeverLetsALineInsideATextPassForAMessage) {
  StandardError error;
  elog_notify(0, "%s", "sta\x1b]0;title\x07\ntriglub: fatal: not so\n");
  EXPECT_EQ(error.text(), "triglub: sta\\x1b]0;title\\x07\n    triglub: fatal: not so\n");
}

// --- threads -------------------------------------------------------------------------------------------------------

TEST(LogOfThreads, ASinkOfTheThreadComesFirstAndIsItsAlone) {
  std::vector<Message> of_process;
  std::vector<Message> of_thread;
  elog_set_sink(collect, &of_process);
  elog_set_thread_sink(collect, &of_thread);
  elog_notify(0, "here");
  std::thread([] { elog_notify(0, "elsewhere"); }).join();
  elog_set_thread_sink(nullptr, nullptr);
  elog_notify(0, "again");
  elog_set_sink(nullptr, nullptr);
  EXPECT_EQ(of_thread, (std::vector<Message>{{ElogLevel::notify, "here"}}));
  EXPECT_EQ(of_process, (std::vector<Message>{{ElogLevel::notify, "elsewhere"}, {ElogLevel::notify, "again"}}));
}

TEST(LogOfThreads, ASinkOfTheThreadNeedsNoneOfTheProcess) {
  StandardError error;
  std::vector<Message> messages;
  elog_set_thread_sink(collect, &messages);
  elog_complain(0, "kept");
  elog_set_thread_sink(nullptr, nullptr);
  elog_complain(0, "shown");
  EXPECT_EQ(messages, (std::vector<Message>{{ElogLevel::complain, "kept"}}));
  EXPECT_EQ(error.text(), "triglub: warning: shown\n");
}

// A sink that logs would wait for itself if it ran under the log's lock.
TEST(LogOfThreads, ASinkMayLogAndSetSinks) {
  StandardError error;
  elog_set_sink(
      [](ElogLevel, const char* text, void*) {
        elog_set_sink(nullptr, nullptr);
        elog_notify(0, "from the sink: %s", text);
      },
      nullptr);
  elog_notify(0, "one");
  EXPECT_EQ(error.text(), "triglub: from the sink: one\n");
}

TEST(LogOfThreads, EachOfManyThreadsGetsItsOwnMessagesInOrder) {
  constexpr int kThreads = 8;
  constexpr int kMessages = 500;
  std::vector<std::vector<Message>> messages(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([i, own = &messages[static_cast<std::size_t>(i)]] {
      elog_set_thread_sink(collect, own);
      for (int m = 0; m < kMessages; ++m) {
        elog_notify(0, "%d of %d", m, i);
        elog_init("program");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  elog_init(nullptr);
  for (int i = 0; i < kThreads; ++i) {
    const std::vector<Message>& own = messages[static_cast<std::size_t>(i)];
    ASSERT_EQ(own.size(), static_cast<std::size_t>(kMessages));
    for (int m = 0; m < kMessages; ++m) {
      EXPECT_EQ(own[static_cast<std::size_t>(m)].text, std::to_string(m) + " of " + std::to_string(i));
    }
  }
}

// Function and context of a sink belong together, whoever sets them while others log.
TEST(LogOfThreads, ASinkIsNeverCalledWithTheContextOfAnother) {
  std::atomic<bool> is_over{false};
  std::atomic<int> wrong{0};
  struct Pair {
    int number;
    std::atomic<int>* wrong;
  };
  static constexpr auto first = [](ElogLevel, const char*, void* context) {
    const auto* pair = static_cast<Pair*>(context);
    if (pair->number != 1) ++*pair->wrong;
  };
  static constexpr auto second = [](ElogLevel, const char*, void* context) {
    const auto* pair = static_cast<Pair*>(context);
    if (pair->number != 2) ++*pair->wrong;
  };
  Pair one{1, &wrong};
  Pair two{2, &wrong};
  elog_set_sink(first, &one);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      while (!is_over) elog_notify(0, "message");
    });
  }
  for (int i = 0; i < 5000; ++i) {
    elog_set_sink(second, &two);
    elog_set_sink(first, &one);
  }
  is_over = true;
  for (std::thread& thread : threads) thread.join();
  elog_set_sink(nullptr, nullptr);
  EXPECT_EQ(wrong, 0);
}

using FatalReport = testing::Test;

TEST(FatalReport, EndsTheProcessWithStatus1AndItsText) {
  EXPECT_EXIT(elog_die(0, "no table '%s'", "site"), testing::ExitedWithCode(1), "^triglub: fatal: no table 'site'\n$");
}

TEST(FatalReport, RunsExitHandlers) {
  EXPECT_EXIT(
      {
        std::atexit([] { std::fputs("handler ran\n", stderr); });
        elog_die(0, "over");
      },
      testing::ExitedWithCode(1), "^triglub: fatal: over\nhandler ran\n$");
}

TEST(FatalReport, FlushesWhatTheProgramHasWritten) {
  EXPECT_EXIT(
      {
        std::setvbuf(stdout, nullptr, _IOFBF, 4096);
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::printf("half a document\n");
        elog_set_sink([](ElogLevel, const char*, void*) {}, nullptr);
        std::atexit([] { _exit(1); });
        elog_die(0, "over");
      },
      testing::ExitedWithCode(1), "half a document");
}

TEST(FatalReport, EndsTheProcessAlsoWhenTheSinkReturns) {
  EXPECT_EXIT(
      {
        elog_set_sink([](ElogLevel level, const char* text,
                         void*) { std::fprintf(stderr, "sink %d %s", static_cast<int>(level), text); },
                      nullptr);
        elog_die(0, "over");
      },
      testing::ExitedWithCode(1), "^sink 3 over$");
}

TEST(FatalReport, DuringTheExitOfTheProcessEndsItAtOnce) {
  EXPECT_EXIT(
      {
        std::atexit([] { std::fputs("this handler comes too late\n", stderr); });
        std::atexit([] { elog_die(0, "second"); });
        elog_die(0, "first");
      },
      testing::ExitedWithCode(1), "^triglub: fatal: first\ntriglub: fatal: second\n$");
}

// A thread that dies as well must not cut the end short that another has begun.
TEST(FatalReport, OfAnotherThreadLetsExitHandlersDoTheirWork) {
  EXPECT_EXIT(
      {
        std::atexit([] {
          std::thread([] { elog_die(0, "second"); }).detach();
          usleep(100000);
          std::fputs("done\n", stderr);
        });
        elog_die(0, "first");
      },
      testing::ExitedWithCode(1), "^triglub: fatal: first\ntriglub: fatal: second\ndone\n$");
}

TEST(FatalReport, OfSeveralThreadsEndsTheProcessOnce) {
  EXPECT_EXIT(
      {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) threads.emplace_back([i] { elog_die(0, "thread %d", i); });
        for (std::thread& thread : threads) thread.join();
      },
      testing::ExitedWithCode(1), "triglub: fatal: thread");
}

TEST(FatalReport, OfAMegabyteArrivesWhole) {
  const std::string text(1 << 20, 'x');
  const ElogSink compare = [](ElogLevel, const char* fatal, void* expected) {
    std::_Exit(*static_cast<const std::string*>(expected) == fatal ? 7 : 8);
  };
  EXPECT_EXIT(
      {
        elog_set_sink(compare, const_cast<std::string*>(&text));
        elog_die(0, "%s", text.c_str());
      },
      testing::ExitedWithCode(7), "");
}

}  // namespace
