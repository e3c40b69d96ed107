// Conditions over records: the subset of all that match, and the nearest that matches. Items are the records that the
// condition is asked of.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

void find_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
}

void subset(benchmark::State& state, const char* condition) {
  const Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  long rows = 0;
  for ([[maybe_unused]] const auto& round : state) {
    const Dbptr taken = dbsubset(view, condition, nullptr);
    rows = records(taken);
    triglub::release_view(taken);
  }
  if (rows == 0) state.SkipWithError("nothing matches");
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(view));
}
BENCHMARK_CAPTURE(subset, text_equal, "sitechan.sta == \"AAAAC\"")->Apply(find_sizes);
BENCHMARK_CAPTURE(subset, text_pattern, "sitechan.chan =~ /BH[EN].*/")->Apply(find_sizes);
BENCHMARK_CAPTURE(subset, one_network, "snetsta.snet =~ /N1000/")->Apply(find_sizes);
BENCHMARK_CAPTURE(subset, number, "site.elev > 2.5")->Apply(find_sizes);
BENCHMARK_CAPTURE(subset, computed, "site.elev - sitechan.edepth > 1.5 && calibration.samprate < 100")
    ->Apply(find_sizes);

// Rival of text_equal: the texts beside each other, compared one by one.
void rival_compare_strings(benchmark::State& state) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0)});
  Dbptr field = dblookup(made.document_view(), nullptr, nullptr, "sitechan.sta", nullptr);
  std::vector<std::string> texts(static_cast<std::size_t>(records(made.document_view())));
  for (std::string& text : texts) {
    text.resize(1024);
    field.record = &text - texts.data();
    dbget(field, text.data());
    text.resize(std::strlen(text.c_str()));
    text.shrink_to_fit();
  }
  for ([[maybe_unused]] const auto& round : state) {
    std::vector<std::uint32_t> taken;
    for (std::uint32_t row = 0; row < texts.size(); ++row) {
      if (texts[row] == "AAAAC") taken.push_back(row);
    }
    benchmark::DoNotOptimize(taken);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * texts.size()));
}
BENCHMARK(rival_compare_strings)->Apply(find_sizes);

// From the first record to the only match, which is the last record.
void find_last(benchmark::State& state) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0)});
  Dbptr table = made.table("sitechan");
  const std::string condition = "chanid == " + std::to_string(records(table));
  Expression* hook = nullptr;
  table.record = -1;
  for ([[maybe_unused]] const auto& round : state) {
    if (dbfind(table, condition.c_str(), 0, &hook) + 1 != records(table)) state.SkipWithError("not found");
  }
  dbfind_release(&hook);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(table));
}
BENCHMARK(find_last)->Apply(find_sizes);

// As a document's walk does it: each network in turn, where it is.
void find_neighbour(benchmark::State& state) {
  Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  const long middle = records(view) / 2;
  Expression* hook = nullptr;
  for ([[maybe_unused]] const auto& round : state) {
    view.record = middle;
    benchmark::DoNotOptimize(dbfind(view, "snetsta.snet =~ /N.*/", 0, &hook));
  }
  dbfind_release(&hook);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(find_neighbour)->Apply(find_sizes);

}  // namespace
