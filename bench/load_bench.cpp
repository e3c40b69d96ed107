// Loading tables: flat files that are in the page cache become columns. Rival: counting the lines of the same file,
// mapped anew each time, which is what cannot be done without.
//
// The environment variable TRIGLUB_BENCH_DATABASE names a database to measure (DIR/NAME) instead of made ones.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;

constexpr std::size_t kLongestText = 1024;

const char* given_database() { return std::getenv("TRIGLUB_BENCH_DATABASE"); }

void load_sizes(benchmark::internal::Benchmark* bench) {
  bench->Unit(benchmark::kMillisecond)->UseRealTime();
  if (given_database() == nullptr) bench->Arg(10000)->Arg(100000);
}

std::string prefix_of(const benchmark::State& state) {
  if (given_database() != nullptr) return given_database();
  return MadeDatabase::of({.channel_epochs = state.range(0)}).prefix();
}

std::string path_of(const std::string& prefix, const std::string& table) { return prefix + "." + table; }

std::int64_t bytes_of(const std::string& prefix, const std::vector<std::string>& tables) {
  std::int64_t bytes = 0;
  for (const std::string& table : tables)
    bytes += static_cast<std::int64_t>(std::filesystem::file_size(path_of(prefix, table)));
  return bytes;
}

// Asks for one value of each field, so that no column can be left for later.
void touch_every_field(Dbptr table) {
  long fields = 0;
  dbquery(table, dbFIELD_COUNT, &fields);
  table.record = triglub_bench::records(table) - 1;
  for (table.field = 0; table.field < fields; ++table.field) {
    const char* name = nullptr;
    alignas(double) std::array<char, kLongestText> value{};
    dbquery(table, dbFIELD_NAME, &name);
    if (dbgetv(table, nullptr, name, value.data(), nullptr) != 0) throw std::runtime_error("a field without a value");
    benchmark::DoNotOptimize(value);
  }
}

void load(benchmark::State& state, const std::vector<std::string>& tables) {
  const std::string prefix = prefix_of(state);
  std::int64_t rows = 0;
  for ([[maybe_unused]] const auto& round : state) {
    Dbptr db;
    if (dbopen(prefix.c_str(), "r", &db) != 0) return state.SkipWithError("the database cannot be opened");
    rows = 0;
    for (const std::string& table : tables) {
      const Dbptr loaded = dblookup(db, nullptr, table.c_str(), nullptr, nullptr);
      touch_every_field(loaded);
      rows += triglub_bench::records(loaded);
    }
    state.PauseTiming();
    dbclose(db);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * rows);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytes_of(prefix, tables));
}

BENCHMARK_CAPTURE(load, site, {"site"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, sitechan, {"sitechan"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, sensor, {"sensor"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, instrument, {"instrument"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, network, {"network"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, snetsta, {"snetsta"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, schanloc, {"schanloc"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, calibration, {"calibration"})->Apply(load_sizes);
BENCHMARK_CAPTURE(load, stage, {"stage"})->Apply(load_sizes);

// The tables that a document is made of.
BENCHMARK_CAPTURE(load, all,
                  {"site", "sitechan", "sensor", "instrument", "network", "snetsta", "schanloc", "calibration",
                   "stage"})
    ->Apply(load_sizes);

// The rival of load/stage.
void rival_count_lines(benchmark::State& state) {
  const std::string prefix = prefix_of(state);
  const int file = open(path_of(prefix, "stage").c_str(), O_RDONLY | O_CLOEXEC);
  const auto size = static_cast<std::size_t>(bytes_of(prefix, {"stage"}));
  for ([[maybe_unused]] const auto& round : state) {
    void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (address == MAP_FAILED) return state.SkipWithError("the file cannot be mapped");
    const std::string_view bytes(static_cast<const char*>(address), size);
    benchmark::DoNotOptimize(std::count(bytes.begin(), bytes.end(), '\n'));
    munmap(address, size);
  }
  close(file);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
}
BENCHMARK(rival_count_lines)->Apply(load_sizes);

}  // namespace
