// Sorts of channel epochs, by their number. Records come in file order (nearly what is asked for) or shuffled. Rival: a
// stable sort of record numbers over rows that are strings and numbers.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

constexpr unsigned int kSeed = 7;

void sort_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

// The records of a table in an order that is the same at each run.
Dbptr shuffled(Dbptr table) {
  std::vector<std::uint32_t> order(static_cast<std::size_t>(records(table)));
  std::iota(order.begin(), order.end(), 0u);
  std::mt19937_64 random(kSeed);
  for (std::size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[random() % i]);
  return triglub::view_of_records(table, order, nullptr);
}

void sort_by(benchmark::State& state, Dbptr view, Tbl* keys, int flags) {
  for ([[maybe_unused]] const auto& round : state) {
    const Dbptr sorted = dbsort(view, keys, flags, nullptr);
    if (records(sorted) == 0) state.SkipWithError("nothing was sorted");
    triglub::release_view(sorted);
  }
  freetbl(keys, nullptr);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(view));
}

void sort_in_order(benchmark::State& state) {
  const Dbptr table = MadeDatabase::of({.channel_epochs = state.range(0)}).table("sitechan");
  sort_by(state, table, triglub_bench::list_of({"sta", "chan", "ondate"}), 0);
}
BENCHMARK(sort_in_order)->Apply(sort_sizes);

void sort_shuffled(benchmark::State& state) {
  const Dbptr view = shuffled(MadeDatabase::of({.channel_epochs = state.range(0)}).table("sitechan"));
  sort_by(state, view, triglub_bench::list_of({"sta", "chan", "ondate"}), 0);
  triglub::release_view(view);
}
BENCHMARK(sort_shuffled)->Apply(sort_sizes);

void sort_unique(benchmark::State& state) {
  const Dbptr view = shuffled(MadeDatabase::of({.channel_epochs = state.range(0)}).table("sitechan"));
  sort_by(state, view, triglub_bench::list_of({"sta"}), dbSORT_UNIQUE);
  triglub::release_view(view);
}
BENCHMARK(sort_unique)->Apply(sort_sizes);

void sort_document_view(benchmark::State& state) {
  const Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  sort_by(state, view, triglub_bench::list_of({"sitechan.sta", "sitechan.chan", "sitechan.ondate", "stage.stageid"}),
          0);
}
BENCHMARK(sort_document_view)->Apply(sort_sizes);

using Row = std::tuple<std::string, std::string, std::int64_t>;

std::vector<Row> rows_of(Dbptr view) {
  std::vector<Row> rows;
  const long count = records(view);
  for (view.record = 0; view.record < count; ++view.record) {
    std::array<char, 8> sta{};
    std::array<char, 16> chan{};
    std::int64_t ondate = 0;
    dbgetv(view, nullptr, "sta", sta.data(), "chan", chan.data(), "ondate", &ondate, nullptr);
    rows.emplace_back(sta.data(), chan.data(), ondate);
  }
  return rows;
}

// The rival of sort_shuffled.
void rival_stable_sort(benchmark::State& state) {
  const Dbptr view = shuffled(MadeDatabase::of({.channel_epochs = state.range(0)}).table("sitechan"));
  const std::vector<Row> rows = rows_of(view);
  for ([[maybe_unused]] const auto& round : state) {
    std::vector<std::uint32_t> order(rows.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return rows[a] < rows[b]; });
    benchmark::DoNotOptimize(order);
  }
  triglub::release_view(view);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * rows.size()));
}
BENCHMARK(rival_stable_sort)->Apply(sort_sizes);

}  // namespace
