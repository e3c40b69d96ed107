// What several threads join, sort and find is what one does.
#include <gtest/gtest.h>

#include "set_threads.h"
#include "support/scoped_limit.h"
#include "tables.h"

namespace triglub_test {
namespace {

std::string station(int i) {
  char sta[8];
  std::snprintf(sta, sizeof sta, "S%05d", i);
  return sta;
}

// Stations by networks, three rows of one after the other, and some of the stations.
void add_stations(Tables* tables) {
  for (int i = 0; i < 50000; ++i) {
    tables->add("affiliation", {{"net", "N" + std::to_string(i % 50)},
                                {"sta", station(i / 3)},
                                {"lddate", std::to_string(1000000000 + i % 7)}});
  }
  for (int i = 1; i < 30000; i += 2) tables->add("site", {{"sta", station(i)}, {"ondate", "2000001"}, {"lat", "1.0"}});
}

// The rows of both tables that `step` makes of the first, in a database that nothing was asked of before.
std::vector<std::vector<std::uint32_t>> rows_of_step(Tables* tables, const char* table, const char* step,
                                                     unsigned int threads) {
  const SetThreads set(threads);
  tables->close();
  const Dbptr result = process(tables->table(table), {step});
  return {triglub::base_rows(result, "affiliation"), triglub::base_rows(result, "site")};
}

struct Step {
  const char* table;
  const char* step;
  std::size_t least_records;
};

TEST(ThreadsOfOperations, JoinAndSortAsOneDoes) {
  Tables tables;
  add_stations(&tables);
  // Parts end among the rows of one station.
  for (const Step& step : {Step{"affiliation", "dbjoin site", 20000}, Step{"affiliation", "dbjoin -o site", 50000},
                           Step{"site", "dbjoin affiliation", 20000}, Step{"site", "dbjoin -o affiliation", 20000},
                           Step{"affiliation", "dbsort lddate", 50000}, Step{"affiliation", "dbsort -u sta", 16000},
                           Step{"affiliation", "dbsort sta", 50000}, Step{"affiliation", "dbsort -u net", 50},
                           Step{"affiliation", "dbsort net sta", 50000}}) {
    const auto expected = rows_of_step(&tables, step.table, step.step, 1);
    EXPECT_GE(expected[0].size() + expected[1].size(), step.least_records) << step.step;
    for (const unsigned int threads : {2U, 3U}) {
      EXPECT_TRUE(rows_of_step(&tables, step.table, step.step, threads) == expected) << step.table << " " << step.step;
    }
  }
}

// Whether a join is too large does not depend on who finds how much of it.
TEST(ThreadsOfOperations, RefuseAJoinThatIsTooLargeAsOneDoes) {
  Tables tables;
  add_stations(&tables);
  const std::size_t records = rows_of_step(&tables, "affiliation", "dbjoin -o site", 1)[0].size();
  for (const unsigned int threads : {1U, 2U, 3U}) {
    const auto records_within = [&](std::size_t most) {
      const triglub::ScopedLimit limit(triglub::Limit::join_rows, most);
      const SetThreads set(threads);
      tables.close();
      const Dbptr result = process(tables.table("affiliation"), {"dbjoin -o site"});
      return is_view(result) ? record_count(result) : -1;
    };
    EXPECT_EQ(records_within(records + 1), static_cast<long>(records));
    EXPECT_EQ(records_within(records), static_cast<long>(records));
    const CollectedLog log;
    EXPECT_EQ(records_within(records - 1), -1);
    EXPECT_EQ(log.lines_with("warning: dbjoin: affiliation with site on sta").size(), 1U);
  }
}

TEST(ThreadsOfOperations, FindRecordsByTheirTextAsOneDoes) {
  Tables tables;
  add_stations(&tables);
  const Dbptr table = tables.table("affiliation");
  std::vector<std::uint32_t> expected;
  for (std::uint32_t i = 0; i < 50000; ++i) {
    if (i % 50 == 17) expected.push_back(i);
  }
  for (const unsigned int threads : {1U, 2U, 3U}) {
    const SetThreads set(threads);
    const auto is_wanted = [](std::string_view text) { return text == "N17"; };
    EXPECT_TRUE(triglub::records_with_text(dblookup(table, nullptr, nullptr, "net", nullptr), is_wanted) == expected);
  }
}

}  // namespace
}  // namespace triglub_test
