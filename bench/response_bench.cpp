// Response stages: the text of each stage row, by kind of stage, and the reading of the response files.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "made_database.h"
#include "resp_helper.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

void response_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

// One cache for all databases of the program: made ones of one number of stages name the same files.
void use_responses_of(const MadeDatabase& made) {
  static const auto cache = [&] {
    auto read = std::make_unique<ResponseCache>(made.table("stage"), "stage");
    XmlResponse::set_cache(*read);
    return read;
  }();
  benchmark::DoNotOptimize(cache.get());
}

// Items are stages.
void stages(benchmark::State& state, const char* kind) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0)});
  use_responses_of(made);
  Dbptr view = dbsubset(made.table("stage"), kind, nullptr);
  const long count = records(view);
  std::size_t bytes = 0;
  XmlResponse::forget_units();
  for ([[maybe_unused]] const auto& round : state) {
    for (view.record = 0; view.record < count; ++view.record) {
      XmlResponse writer(view, "stage");
      bytes += writer.stage2xml(-1).size();
      bytes += writer.stagegain_as_xml().size();
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
  triglub::release_view(view);
}
BENCHMARK_CAPTURE(stages, seismometers, "gtype == \"paz\"")->Apply(response_sizes);
BENCHMARK_CAPTURE(stages, digitizers, "gtype == \"digitizer\"")->Apply(response_sizes);
BENCHMARK_CAPTURE(stages, filters, "gtype == \"fir\"")->Apply(response_sizes);

// From the stage table to the parsed files: distinct names are found among all rows, and each file is read once.
void read_responses(benchmark::State& state) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0)});
  const Dbptr stage = made.table("stage");
  for ([[maybe_unused]] const auto& round : state) {
    const ResponseCache cache(stage, "stage");
    if (!cache.exists("resp", "paz.0")) state.SkipWithError("a file is missing");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(stage));
}
BENCHMARK(read_responses)->Apply(response_sizes);

}  // namespace
