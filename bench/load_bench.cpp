// Loading tables: flat files that are in the page cache become columns.
//
//     load_bench [BENCHMARK OPTIONS] [PREFIX]
//
// measures the database PREFIX, or made ones. Rival: counting the lines of the same file, mapped anew each time, which
// is what cannot be done without.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;

constexpr std::size_t LONGEST_TEXT = 1024;

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
    alignas(double) std::array<char, LONGEST_TEXT> value{};
    dbquery(table, dbFIELD_NAME, &name);
    if (dbgetv(table, nullptr, name, value.data(), nullptr) != 0) throw std::runtime_error("a field without a value");
    benchmark::DoNotOptimize(value);
  }
}

void load(benchmark::State& state, const std::string& prefix, const std::vector<std::string>& tables) {
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

void count_lines(benchmark::State& state, const std::string& prefix, const std::string& table) {
  const int file = open(path_of(prefix, table).c_str(), O_RDONLY | O_CLOEXEC);
  const auto size = static_cast<std::size_t>(bytes_of(prefix, {table}));
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

// The tables that a document is made of.
const std::vector<std::string> TABLES = {"site",    "sitechan", "sensor",      "instrument", "network",
                                         "snetsta", "schanloc", "calibration", "stage"};

void add_benchmarks(const std::string& prefix, const std::string& size) {
  const auto named = [&](const std::string& name) { return name + (size.empty() ? "" : "/" + size); };
  for (const std::string& table : TABLES) {
    benchmark::RegisterBenchmark(named("Load/" + table).c_str(), load, prefix, std::vector{table})
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark(named("Load/all").c_str(), load, prefix, TABLES)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark(named("CountLines/stage").c_str(), count_lines, prefix, "stage")
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc > 1) {
    add_benchmarks(argv[1], "");
  } else {
    for (const long epochs : {10000L, 100000L})
      add_benchmarks(MadeDatabase::of({.channel_epochs = epochs}).prefix(), std::to_string(epochs));
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
