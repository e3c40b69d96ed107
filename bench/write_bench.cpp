// The document of one network, by detail level: from the view to the text, which is counted and dropped.
#include <benchmark/benchmark.h>

#include "counting_stream.h"
#include "db2stationxml.h"
#include "dbhelper.h"
#include "made_database.h"
#include "resp_helper.h"

namespace {

using triglub_bench::CountingStream;
using triglub_bench::MadeDatabase;
using triglub_bench::records;

void write_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

// Items are the records of the view: the stages of all channel epochs.
void write(benchmark::State& state, unsigned int level) {
  const MadeDatabase& made = MadeDatabase::of({.channel_epochs = state.range(0), .networks = 1});
  rbtree* everything = newarr(nullptr);
  const Dbptr prepared = prepare_conversion(made.db(), triglub_bench::parameters(), everything, level);
  const Dbptr view = dbsort(prepared, pfget_tbl(triglub_bench::parameters(), "record_order"), 0, nullptr);
  freearr(everything, nullptr);
  triglub::release_view(prepared);
  const ElementGroup root(triglub_bench::parameters(), pfget_string(triglub_bench::parameters(), "root_node"));
  const SmartIndex all(static_cast<unsigned long>(records(view)), true);
  CountingStream out;
  for ([[maybe_unused]] const auto& round : state) {
    XmlResponse::forget_units();
    xml_create_node(out, view, root, all);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(view));
  state.SetBytesProcessed(out.bytes());
  triglub::release_view(view);
}
BENCHMARK_CAPTURE(write, networks, 0x08)->Apply(write_sizes);
BENCHMARK_CAPTURE(write, stations, 0x10)->Apply(write_sizes);
BENCHMARK_CAPTURE(write, channels, 0x20)->Apply(write_sizes);
BENCHMARK_CAPTURE(write, responses, 0x40)->Apply(write_sizes);

}  // namespace
