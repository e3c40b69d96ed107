// Memory that runs out at any allocation: work ends in std::bad_alloc or in a fault that is told, nothing half made
// stays, and the next try gives what it should.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/parfile.h"
#include "platform/response.h"
#include "set_threads.h"
#include "tables.h"

namespace triglub_test {
namespace {

// Allocations that still succeed; negative: all of them.
std::atomic<long> left = -1;
std::atomic<bool> has_failed = false;

bool may_allocate() {
  if (left < 0) return true;
  if (left == 0) {
    has_failed = true;
    return false;
  }
  --left;
  return true;
}

void* allocated(std::size_t size) {
  void* const memory = may_allocate() ? std::malloc(size == 0 ? 1 : size) : nullptr;
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace
}  // namespace triglub_test

void* operator new(std::size_t size) { return triglub_test::allocated(size); }
void* operator new[](std::size_t size) { return triglub_test::allocated(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return triglub_test::may_allocate() ? std::malloc(size == 0 ? 1 : size) : nullptr;
}
#ifdef __SANITIZE_ADDRESS__
// RE2 loses what it has made so far when memory runs out in the middle of a pattern.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libre2.so\n";
}
#endif
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace triglub_test {
namespace {

// No allocation succeeds from the n-th on, as long as it lives.
class OutOfMemory {
 public:
  explicit OutOfMemory(long after) {
    has_failed = false;
    left = after;
  }
  ~OutOfMemory() { left = -1; }
  OutOfMemory(const OutOfMemory&) = delete;
  OutOfMemory& operator=(const OutOfMemory&) = delete;
};

// Counts what is told, which needs no memory.
class CountedLog {
 public:
  CountedLog() {
    elog_set_sink([](ElogLevel, const char*, void* count) { ++*static_cast<int*>(count); }, &count_);
  }
  ~CountedLog() { elog_set_sink(nullptr, nullptr); }
  CountedLog(const CountedLog&) = delete;
  CountedLog& operator=(const CountedLog&) = delete;
  int count() const { return count_; }

 private:
  int count_ = 0;
};

enum class End { done, told, thrown };

// What work does when only so many allocations succeed: it gives true when it is done as it should be, false when it
// had a fault told.
template <typename Work>
End end_of(long allocations, const Work& work) {
  const OutOfMemory out(allocations);
  try {
    return work() ? End::done : End::told;
  } catch (const std::bad_alloc&) {
    return End::thrown;
  }
}

// Runs out of memory at each allocation of the work, one after another, until it needs no more.
template <typename Work, typename Check>
void run_out_of_memory_everywhere(const Work& work, const Check& check) {
  const CountedLog log;
  long failures = 0;
  for (long allocations = 0; allocations < 100000; ++allocations) {
    const int told = log.count();
    const End end = end_of(allocations, work);
    if (end == End::told) {
      EXPECT_GT(log.count(), told) << allocations;
    }
    const bool is_over = !has_failed;
    check();
    if (testing::Test::HasFailure()) FAIL() << "out of memory at allocation " << allocations;
    if (is_over) {
      EXPECT_EQ(end, End::done);
      EXPECT_GT(failures, 0);
      return;
    }
    ++failures;
  }
  FAIL() << "no end";
}

class MemoryFaults : public ::testing::Test {
 protected:
  MemoryFaults() {
    for (int i = 0; i < 40; ++i) {
      const std::string sta = "S" + std::to_string(i % 20);
      files_.add_row("site", {{"sta", sta}, {"ondate", std::to_string(2000001 + i)}, {"lat", std::to_string(i)}});
      files_.add_row("affiliation", {{"net", i % 2 == 0 ? "KR" : "II"}, {"sta", sta}});
    }
    prefix_ = files_.write();
  }

  // Steps over the database, and a value of what comes out. Nothing where a fault was told.
  static std::string asked_of(Dbptr db) {
    static constexpr const char* kSteps[] = {"dbopen affiliation", "dbsubset net =~ /K.*/", "dbjoin site sta",
                                             "dbsort lat sta"};
    Tbl* const steps = newtbl(0);
    const std::unique_ptr<Tbl, void (*)(Tbl*)> owned(steps, [](Tbl* list) { freetbl(list, nullptr); });
    for (const char* const step : kSteps) pushtbl(steps, step);
    Dbptr view = dbprocess(db, steps, nullptr);
    if (!is_view(view)) return "";
    view.record = 3;
    char* text = nullptr;
    if (dbex_evalstr(view, "concat(upper(sta), '/', str(lat * 2), '/', replace(net, 'K', 'L'))", dbSTRING, &text) !=
        0) {
      return "";
    }
    const std::unique_ptr<char, void (*)(void*)> freed(text, std::free);
    triglub::release_view(view);
    return text;
  }

  FlatDatabase files_;
  std::string prefix_;
};

TEST_F(MemoryFaults, LeaveNothingOfADatabaseThatIsOpened) {
  const auto open_and_ask = [&] {
    Dbptr db;
    if (dbopen(prefix_.c_str(), "r", &db) != 0) return std::string();
    const struct Closing {
      Dbptr db;
      ~Closing() { dbclose(db); }
    } closing{db};
    return asked_of(db);
  };
  const std::string expected = open_and_ask();
  EXPECT_EQ(expected, "S2/4/LR");
  run_out_of_memory_everywhere(
      [&] {
        const std::string text = open_and_ask();
        return text == expected;
      },
      [&] { EXPECT_EQ(open_and_ask(), expected); });
}

TEST_F(MemoryFaults, DoNotStayInASession) {
  Dbptr db;
  ASSERT_EQ(dbopen(prefix_.c_str(), "r", &db), 0);
  const std::string expected = asked_of(db);
  dbclose(db);
  ASSERT_EQ(dbopen(prefix_.c_str(), "r", &db), 0);
  // Each time with a session that nothing was asked of, so that all is made anew.
  run_out_of_memory_everywhere([&] { return asked_of(db) == expected; },
                               [&] {
                                 EXPECT_EQ(asked_of(db), expected);
                                 dbclose(db);
                                 ASSERT_EQ(dbopen(prefix_.c_str(), "r", &db), 0);
                               });
  dbclose(db);
}

TEST_F(MemoryFaults, LeaveNothingOfAParameterFile) {
  const std::string path = files_.write_file("x.pf", "a 1\nb &Arr{\n c &Tbl{\n  line\n  another\n }\n}\n");
  const auto read = [&] {
    Pf* pf = nullptr;
    if (pfread(path.c_str(), &pf) != 0) return false;
    const std::unique_ptr<Pf, decltype(&pffree)> owner(pf, &pffree);
    return maxtbl(pfget_tbl(pf, "b{c}")) == 2;
  };
  run_out_of_memory_everywhere(read, [&] { EXPECT_TRUE(read()); });
}

TEST_F(MemoryFaults, LeaveNothingOfAResponseFile) {
  const std::string group = "theoretical 1 a_rather_long_description paz an author with a long name\n1 1\n1\n1 2\n0\n";
  const std::string path = files_.write_file("x.paz", group + group);
  const auto read = [&] {
    Response* response = nullptr;
    if (get_response(path.c_str(), &response) != 0) return false;
    const bool is_whole = response->group_count == 2;
    free_response(response);
    return is_whole;
  };
  run_out_of_memory_everywhere(read, [&] { EXPECT_TRUE(read()); });
}

TEST_F(MemoryFaults, LetMessagesThrough) {
  const std::string text(3000, 'x');
  testing::internal::CaptureStderr();
  {
    const OutOfMemory out(0);
    elog_complain(0, "%s", "a text of some length, beyond what a string has room for");
    elog_complain(0, "%s", text.c_str());
  }
  const std::string written = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(
      written.starts_with("triglub: warning: a text of some length, beyond what a string has room for\n"
                          "triglub: warning: xxxx"))
      << written;
}

}  // namespace
}  // namespace triglub_test
