// What several threads load and join is what one loads and joins.
#include "base/threads.h"

#include <atomic>
#include <numeric>
#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

// Sets the number of threads for as long as it lives.
class Threads {
 public:
  explicit Threads(unsigned int count) { triglub::set_threads(count); }
  ~Threads() { triglub::set_threads(1); }
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;
};

TEST(Threads, DoAllWorkOnce) {
  for (const unsigned int threads : {1U, 2U, 7U}) {
    const Threads set(threads);
    EXPECT_EQ(triglub::thread_count(), threads);
    std::vector<std::atomic<int>> done(100);
    triglub::run_side_by_side(done.size(), [&](std::size_t i) { ++done[i]; });
    for (const auto& times : done) EXPECT_EQ(times, 1);
  }
  triglub::run_side_by_side(0, [](std::size_t) { FAIL(); });
}

TEST(Threads, AreAtLeastTheOneThatAsks) {
  const Threads set(0);
  EXPECT_EQ(triglub::thread_count(), 1U);
}

// A row of `affiliation` (net t8, sta t6, lddate e17) for a number: few networks, many stations.
std::string affiliation_row(int i) {
  char row[64];
  std::snprintf(row, sizeof row, "N%-7d S%05d %17.5f", i % 50, i / 3 % 100000, 1.0e9 + i % 7);
  return row;
}

constexpr int ROWS = 270000;  // 9 MB, enough for a piece of each thread

std::string loaded_as_text(const std::string& bytes, unsigned int threads, Texts* complaints) {
  const CollectedLog log;
  FlatDatabase files;
  const std::string path = files.write_file("db.affiliation", bytes);
  Dbptr db;
  if (dbopen(files.prefix().c_str(), "r", &db) != 0) throw std::runtime_error("dbopen");
  const Threads set(threads);
  const Dbptr table = table_of(db, "affiliation");
  std::string text;
  if (is_view(table)) {
    std::vector<triglub::TextRun> runs;
    for (const char* field : {"net", "sta", "lddate"}) {
      triglub::text_runs(dblookup(table, nullptr, nullptr, field, nullptr), 0, ROWS, &runs);
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
  for (int i = 0; i < ROWS; ++i) bytes += affiliation_row(i) + "\n";
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
  for (const int first_odd : {0, ROWS / 2, ROWS - 10}) {
    std::string bytes;
    for (int i = 0; i < ROWS; ++i) {
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
  for (int i = 0; i < ROWS; ++i) {
    std::string row = affiliation_row(i);
    if (i % 100000 == 99999) row[20] = 'x';
    bytes += row + "\n";
  }
  Texts expected;
  loaded_as_text(bytes, 1, &expected);
  EXPECT_THAT(expected,
              testing::ElementsAre(testing::StartsWith("warning: FILE:100000: field affiliation.lddate: expected"),
                                   testing::StartsWith("warning: FILE:200000: field affiliation.lddate: expected"),
                                   "warning: FILE: table affiliation is not loaded"));
  Texts complaints;
  EXPECT_EQ(loaded_as_text(bytes, 3, &complaints), "");
  EXPECT_EQ(complaints, expected);
}

// Stations by networks, three rows of one after the other, and some of the stations.
void write_stations(const FlatDatabase& files) {
  std::string site;
  std::string affiliation;
  for (int i = 0; i < 50000; ++i) affiliation += affiliation_row(i) + "\n";
  for (int i = 1; i < 30000; i += 2) {
    char row[200];
    std::snprintf(row, sizeof row, "S%05d %8d %8d %9.4f %9.4f %9.4f %-50s %-4s %-6s %9.4f %9.4f %17.5f\n", i, 2000001,
                  -1, 1.0, 2.0, 0.5, "-", "-", "-", 0.0, 0.0, 1.0);
    site += row;
  }
  files.write_file("db.affiliation", affiliation);
  files.write_file("db.site", site);
}

// The rows of both tables that `step` makes of the first, in a database that nothing was asked of before.
std::vector<std::vector<std::uint32_t>> rows_of_step(const FlatDatabase& files, const char* table, const char* step,
                                                     unsigned int threads) {
  const Threads set(threads);
  Dbptr db;
  if (dbopen(files.prefix().c_str(), "r", &db) != 0) throw std::runtime_error("dbopen");
  const Dbptr result = process(table_of(db, table), {step});
  std::vector<std::vector<std::uint32_t>> rows = {triglub::base_rows(result, "affiliation"),
                                                  triglub::base_rows(result, "site")};
  dbclose(db);
  return rows;
}

struct Step {
  const char* table;
  const char* step;
  std::size_t least_records;
};

TEST(Threads, JoinAndSortAsOneDoes) {
  FlatDatabase files;
  write_stations(files);
  // Parts end among the rows of one station.
  for (const Step& step : {Step{"affiliation", "dbjoin site", 20000}, Step{"affiliation", "dbjoin -o site", 50000},
                           Step{"site", "dbjoin affiliation", 20000}, Step{"site", "dbjoin -o affiliation", 20000},
                           Step{"affiliation", "dbsort lddate", 50000}, Step{"affiliation", "dbsort -u sta", 16000},
                           Step{"affiliation", "dbsort sta", 50000}, Step{"affiliation", "dbsort -u net", 50},
                           Step{"affiliation", "dbsort net sta", 50000}}) {
    const auto expected = rows_of_step(files, step.table, step.step, 1);
    EXPECT_GE(expected[0].size() + expected[1].size(), step.least_records) << step.step;
    for (const unsigned int threads : {2U, 3U}) {
      EXPECT_TRUE(rows_of_step(files, step.table, step.step, threads) == expected) << step.table << " " << step.step;
    }
  }
}

TEST(Threads, FindRecordsByTheirTextAsOneDoes) {
  FlatDatabase files;
  write_stations(files);
  Dbptr db;
  ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db), 0);
  const Dbptr table = table_of(db, "affiliation");
  std::vector<std::uint32_t> expected;
  for (std::uint32_t i = 0; i < 50000; ++i) {
    if (i % 50 == 17) expected.push_back(i);
  }
  for (const unsigned int threads : {1U, 2U, 3U}) {
    const Threads set(threads);
    const auto is_wanted = [](std::string_view text) { return text == "N17"; };
    EXPECT_TRUE(triglub::records_with_text(dblookup(table, nullptr, nullptr, "net", nullptr), is_wanted) == expected);
  }
  dbclose(db);
}

}  // namespace
}  // namespace triglub_test
