// Work in threads; what several load is what one loads.
#include "base/threads.h"

#include <atomic>
#include <numeric>
#include <random>

#include "set_threads.h"
#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

TEST(Threads, DoAllWorkOnce) {
  for (const unsigned int threads : {1U, 2U, 7U}) {
    const SetThreads set(threads);
    EXPECT_EQ(triglub::thread_count(), threads);
    std::vector<std::atomic<int>> done(100);
    triglub::run_side_by_side(done.size(), [&](std::size_t i) { ++done[i]; });
    for (const auto& times : done) EXPECT_EQ(times, 1);
  }
  triglub::run_side_by_side(0, [](std::size_t) { FAIL(); });
}

TEST(Threads, HandOnTheFirstThatIsThrownWhenAllAreDone) {
  for (const unsigned int threads : {1U, 2U, 7U}) {
    const SetThreads set(threads);
    for (const std::size_t failing : {0u, 50u, 99u}) {
      std::atomic<int> at_work = 0;
      const auto work = [&](std::size_t i) {
        ++at_work;
        if (i >= failing) {
          --at_work;
          throw std::bad_alloc();
        }
        --at_work;
      };
      EXPECT_THROW(triglub::run_side_by_side(100, work), std::bad_alloc);
      EXPECT_EQ(at_work, 0);
    }
  }
}

TEST(Threads, AreAtLeastTheOneThatAsks) {
  const SetThreads set(0);
  EXPECT_EQ(triglub::thread_count(), 1U);
}

// A row of `affiliation` (net t8, sta t6, lddate e17) for a number: few networks, many stations.
std::string affiliation_row(int i) {
  char row[64];
  std::snprintf(row, sizeof row, "N%-7d S%05d %17.5f", i % 50, i / 3 % 100000, 1.0e9 + i % 7);
  return row;
}

constexpr int kRows = 270000;  // 9 MB, enough for a piece of each thread

std::string loaded_as_text(const std::string& bytes, unsigned int threads, Texts* complaints) {
  const CollectedLog log;
  FlatDatabase files;
  const std::string path = files.write_file("db.affiliation", bytes);
  Dbptr db;
  if (dbopen(files.prefix().c_str(), "r", &db) != 0) throw std::runtime_error("dbopen");
  const SetThreads set(threads);
  const Dbptr table = table_of(db, "affiliation");
  std::string text;
  if (is_view(table)) {
    std::vector<triglub::TextRun> runs;
    for (const char* field : {"net", "sta", "lddate"}) {
      triglub::text_runs(dblookup(table, nullptr, nullptr, field, nullptr), 0, kRows, &runs);
      for (const auto& run : runs) text.append(run.text).append(" ").append(std::to_string(run.end)).append("\n");
    }
  }
  for (std::string line : log.lines()) {
    const std::size_t found = line.find(path);
    complaints->push_back(found == line.npos ? line : line.replace(found, path.size(), "FILE"));
  }
  dbclose(db);
  return text;
}

TEST(Threads, LoadRowsOfOneLength) {
  std::string bytes;
  for (int i = 0; i < kRows; ++i) bytes += affiliation_row(i) + "\n";
  Texts complaints;
  const std::string expected = loaded_as_text(bytes, 1, &complaints);
  EXPECT_GT(expected.size(), 1000000U);
  for (const unsigned int threads : {2U, 3U, 8U}) EXPECT_TRUE(loaded_as_text(bytes, threads, &complaints) == expected);
  bytes.pop_back();  // a last line without its end
  EXPECT_TRUE(loaded_as_text(bytes, 3, &complaints) == expected);
  EXPECT_EQ(complaints, Texts());
}

TEST(Threads, LoadRowsOfManyLengths) {
  std::mt19937_64 random(random_seed());
  for (const int first_odd : {0, kRows / 2, kRows - 10}) {
    std::string bytes;
    for (int i = 0; i < kRows; ++i) {
      std::string row = affiliation_row(i);
      if (i >= first_odd && random() % 4 == 0) row.resize(15);  // without its load date
      if (i >= first_odd && random() % 4 == 0) row += "  \r";
      bytes += row + "\n";
    }
    Texts complaints;
    const std::string expected = loaded_as_text(bytes, 1, &complaints);
    for (const unsigned int threads : {2U, 3U}) EXPECT_TRUE(loaded_as_text(bytes, threads, &complaints) == expected);
    EXPECT_EQ(complaints, Texts());
  }
}

TEST(Threads, NameTheFaultsOfAFileAsOneWould) {
  std::string bytes;
  for (int i = 0; i < kRows; ++i) {
    std::string row = affiliation_row(i);
    if (i % 100000 == 99999) row[20] = '\0';
    bytes += row + "\n";
  }
  Texts expected;
  loaded_as_text(bytes, 1, &expected);
  EXPECT_THAT(expected,
              testing::ElementsAre(testing::StartsWith("warning: FILE:100000: field affiliation.lddate: a zero byte"),
                                   testing::StartsWith("warning: FILE:200000: field affiliation.lddate: a zero byte"),
                                   "warning: FILE: table affiliation is not loaded"));
  Texts complaints;
  EXPECT_EQ(loaded_as_text(bytes, 3, &complaints), "");
  EXPECT_EQ(complaints, expected);
}

TEST(Threads, NoteTheUnreadLoadDatesOfAFileOnce) {
  std::string bytes;
  for (int i = 0; i < kRows; ++i) {
    std::string row = affiliation_row(i);
    if (i % 100000 >= 99998) row[20] = 'x';
    bytes += row + "\n";
  }
  Texts expected;
  const std::string text = loaded_as_text(bytes, 1, &expected);
  ASSERT_EQ(expected.size(), 1u);
  EXPECT_THAT(expected.front(), testing::StartsWith("notify: FILE:99999: field affiliation.lddate: expected a time"));
  EXPECT_THAT(expected.front(), testing::EndsWith("taken as null (rows with such a date: 4)"));
  Texts notes;
  EXPECT_TRUE(loaded_as_text(bytes, 3, &notes) == text);
  EXPECT_EQ(notes, expected);
}

}  // namespace
}  // namespace triglub_test
