// Reads that are interrupted, come short or fail: a file is had whole, or its fault is told.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>

#include "platform/parfile.h"
#include "platform/response.h"
#include "set_threads.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// What happens at a read: the bytes that may be read, or minus the number of the error.
using Fate = std::function<long(int call, std::size_t size)>;
Fate fate;
int calls = 0;

long fate_of_call(std::size_t size) { return fate == nullptr ? static_cast<long>(size) : fate(++calls, size); }

ssize_t failed(long error) {
  errno = static_cast<int>(error);
  return -1;
}

}  // namespace
}  // namespace triglub_test

// In place of the system's.
extern "C" ssize_t pread(int file, void* to, size_t size, off_t at) {
  const long allowed = triglub_test::fate_of_call(size);
  if (allowed < 0) return triglub_test::failed(-allowed);
  return syscall(SYS_pread64, file, to, std::min(size, static_cast<size_t>(allowed)), at);
}

extern "C" ssize_t read(int file, void* to, size_t size) {
  const long allowed = triglub_test::fate_of_call(size);
  if (allowed < 0) return triglub_test::failed(-allowed);
  return syscall(SYS_read, file, to, std::min(size, static_cast<size_t>(allowed)));
}

namespace triglub_test {
namespace {

class Fated {
 public:
  explicit Fated(Fate one) {
    calls = 0;
    fate = std::move(one);
  }
  ~Fated() { fate = nullptr; }
  Fated(const Fated&) = delete;
  Fated& operator=(const Fated&) = delete;
};

Fate fails_at(int failing) {
  return [failing](int call, std::size_t size) { return call == failing ? -EIO : static_cast<long>(size); };
}

long interrupted_and_short(int call, std::size_t size) {
  if (call % 2 == 1) return -EINTR;
  return static_cast<long>(std::min<std::size_t>(size, 7));
}

class ReadFaults : public ::testing::Test {
 protected:
  ReadFaults() {
    std::string rows;
    for (int i = 0; i < kRows; ++i)
      rows += flat_row("affiliation", {{"net", "KR"}, {"sta", "S" + std::to_string(i)}}) + "\n";
    path_ = files_.write_file("db.affiliation", rows);
  }

  // The rows of the table, -1 when it is refused.
  long rows() {
    Dbptr db;
    if (dbopen(files_.prefix().c_str(), "r", &db) != 0) return -1;
    const Dbptr table = table_of(db, "affiliation");
    const long count = is_view(table) ? record_count(table) : -1;
    if (count > 0) {
      EXPECT_EQ(text_at(table, "sta", count - 1), "S" + std::to_string(count - 1));
    }
    dbclose(db);
    return count;
  }

  std::string table_text() const {
    std::ifstream file(path_);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  // The table is cut off before that read.
  Fate cuts_off_at(int cutting) {
    return [this, cutting](int call, std::size_t size) {
      if (call == cutting) std::filesystem::resize_file(path_, kCutOff);
      return static_cast<long>(size);
    };
  }

  static constexpr int kRows = 200;
  static constexpr std::uintmax_t kCutOff = 34 * 50;  // bytes of 50 rows
  FlatDatabase files_;
  std::string path_;
};

TEST_F(ReadFaults, DoNotMatterWhereTheNextReadGoesOn) {
  const Fated fated(interrupted_and_short);
  const CollectedLog log;
  EXPECT_EQ(rows(), kRows);
  Pf* pf = nullptr;
  const std::string parameters = files_.write_file("x.pf", "key value of the key\n");
  ASSERT_EQ(pfread(parameters.c_str(), &pf), 0);
  EXPECT_STREQ(pfget_string(pf, "key"), "value of the key");
  pffree(pf);
  EXPECT_GT(calls, 1000);
  EXPECT_THAT(log.lines(), IsEmpty());
}

// Whichever read it is, the table is all there or refused.
TEST_F(ReadFaults, OfATableAreTold) {
  int told = 0;
  for (int failing = 1; failing < 20; ++failing) {
    const Fated fated(fails_at(failing));
    const CollectedLog log;
    const long count = rows();
    if (log.lines().empty()) {
      EXPECT_EQ(count, kRows) << failing;
      continue;
    }
    EXPECT_EQ(count, -1) << failing;
    EXPECT_THAT(log.lines_with("warning: " + path_),
                ElementsAre("warning: " + path_ + ": cannot be read: Input/output error"));
    ++told;
  }
  EXPECT_GT(told, 0);
}

// Only a read of the table itself tells; the look at its first rows, for the dialect, goes without.
TEST_F(ReadFaults, AreOfATableThatIsCutOffBeforeAnyOfThem) {
  const std::string whole = table_text();
  int refused = 0;
  for (int cutting = 1; cutting < 8; ++cutting) {
    files_.write_file("db.affiliation", whole);
    const Fated fated(cuts_off_at(cutting));
    const CollectedLog log;
    const long count = rows();
    if (count == -1) {
      EXPECT_THAT(log.lines(), ElementsAre("warning: " + path_ + ": changed while it was read"));
      ++refused;
    } else {
      EXPECT_THAT(log.lines(), IsEmpty());
      EXPECT_TRUE(count == kRows || count == 50) << count;
    }
  }
  EXPECT_GE(refused, 2);
}

// The table is read once more to name the rows: what is not there any more cannot be named.
TEST_F(ReadFaults, AreOfATableWhoseWrongRowsAreGoneMeanwhile) {
  const std::string faulty = table_text() + std::string(100, 'x') + "\n";
  int refused = 0;
  for (int cutting = 1; cutting < 12; ++cutting) {
    files_.write_file("db.affiliation", faulty);
    const Fated fated(cuts_off_at(cutting));
    const CollectedLog log;
    const long count = rows();
    EXPECT_TRUE(count == -1 || count == 50) << count;
    if (count != -1) continue;
    EXPECT_THAT(log.lines_with("warning: " + path_), Contains(Not(HasSubstr("is not loaded")))) << "no reason";
    ++refused;
  }
  EXPECT_GE(refused, 2);
}

TEST_F(ReadFaults, OfADescriptorAreTold) {
  const std::string descriptor = files_.write_file("db", "schema css3.0\n");
  const Fated fated(fails_at(1));
  const CollectedLog log;
  EXPECT_EQ(rows(), -1);
  EXPECT_THAT(log.lines(),
              ElementsAre("warning: " + descriptor + ": the descriptor cannot be read: Input/output error"));
}

TEST_F(ReadFaults, OfAParameterFileAreTold) {
  const std::string path = files_.write_file("x.pf", "key value\n");
  for (const int failing : {1, 2}) {
    const Fated fated(fails_at(failing));
    const CollectedLog log;
    Pf* pf = nullptr;
    EXPECT_EQ(pfread(path.c_str(), &pf), -2);
    EXPECT_THAT(log.lines(), ElementsAre("warning: " + path + ": Input/output error"));
  }
}

TEST_F(ReadFaults, OfAResponseFileAreTold) {
  const std::string path = files_.write_file("x.fir", "theoretical 1 x other\n");
  for (const int failing : {1, 2}) {
    const Fated fated(fails_at(failing));
    Response* response = nullptr;
    std::string fault;
    EXPECT_EQ(read_response(path.c_str(), &response, &fault), -1);
    EXPECT_EQ(fault, path + ": cannot read: Input/output error");
  }
}

}  // namespace
}  // namespace triglub_test
