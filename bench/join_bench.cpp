// Joins, by the number of channel epochs, each over tables that were just loaded: what a table keeps for further joins
// is made anew, as it is by a command that makes each join once. Rival: the same rows found with a hash table of texts,
// as one would write it in a few lines over rows that are strings.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "db2stationxml.h"
#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

// A fixed number of rounds: most of a round is the loading, which is not measured.
void join_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(10);
}

// Calls `make_view` in each round with a database whose tables are loaded and nothing else; items are joined records.
template <typename MakeView>
void run_on_loaded_tables(benchmark::State& state, const std::vector<const char*>& tables, MakeView make_view) {
  const std::string& prefix = MadeDatabase::of({.channel_epochs = state.range(0)}).prefix();
  long rows = 0;
  for ([[maybe_unused]] const auto& round : state) {
    state.PauseTiming();
    Dbptr db;
    if (dbopen(prefix.c_str(), "r", &db) != 0) return state.SkipWithError("the database cannot be opened");
    for (const char* table : tables) records(dblookup(db, nullptr, table, nullptr, nullptr));
    state.ResumeTiming();
    rows = records(make_view(db));
    state.PauseTiming();
    dbclose(db);
    state.ResumeTiming();
  }
  if (rows == 0) state.SkipWithError("nothing was joined");
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * rows);
}

// The natural join with `other`.
void join(benchmark::State& state, const char* table, const char* other, bool outer) {
  run_on_loaded_tables(state, {table, other}, [&](Dbptr db) {
    return dbjoin(dblookup(db, nullptr, table, nullptr, nullptr), dblookup(db, nullptr, other, nullptr, nullptr),
                  nullptr, nullptr, outer ? 1 : 0, nullptr, nullptr);
  });
}
BENCHMARK_CAPTURE(join, text_key, "sitechan", "snetsta", false)->Apply(join_sizes);
BENCHMARK_CAPTURE(join, number_key, "sensor", "instrument", false)->Apply(join_sizes);
BENCHMARK_CAPTURE(join, ranges, "sitechan", "site", false)->Apply(join_sizes);
BENCHMARK_CAPTURE(join, texts_and_ranges, "sensor", "calibration", false)->Apply(join_sizes);
BENCHMARK_CAPTURE(join, one_to_many_outer, "sensor", "stage", true)->Apply(join_sizes);

// All joins and sorts of a document.
void join_everything(benchmark::State& state) {
  rbtree* everything = newarr(nullptr);
  run_on_loaded_tables(
      state, {"sitechan", "snetsta", "schanloc", "network", "site", "sensor", "instrument", "calibration", "stage"},
      [&](Dbptr db) { return create_master_view(db, everything); });
  freearr(everything, nullptr);
}
BENCHMARK(join_everything)->Apply(join_sizes);

std::vector<std::string> stations_of(Dbptr table) {
  std::vector<std::string> stations;
  const long rows = records(table);
  table = dblookup(table, nullptr, nullptr, "sta", nullptr);
  for (table.record = 0; table.record < rows; ++table.record) {
    std::array<char, 1024> text{};
    dbget(table, text.data());
    stations.emplace_back(text.data());
  }
  return stations;
}

// The rival of text_key: sitechan with snetsta.
void rival_hash_of_strings(benchmark::State& state) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0)});
  const std::vector<std::string> channels = stations_of(made.table("sitechan"));
  const std::vector<std::string> codes = stations_of(made.table("snetsta"));
  std::size_t rows = 0;
  for ([[maybe_unused]] const auto& round : state) {
    std::unordered_multimap<std::string, std::uint32_t> index;
    for (std::uint32_t row = 0; row < codes.size(); ++row) index.emplace(codes[row], row);
    std::vector<std::pair<std::uint32_t, std::uint32_t>> joined;
    for (std::uint32_t row = 0; row < channels.size(); ++row) {
      const auto [first, last] = index.equal_range(channels[row]);
      for (auto match = first; match != last; ++match) joined.emplace_back(row, match->second);
    }
    rows = joined.size();
    benchmark::DoNotOptimize(joined);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * rows));
}
BENCHMARK(rival_hash_of_strings)->Apply(join_sizes);

}  // namespace
