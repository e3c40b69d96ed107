// Sets of records. Rival: a flag a record in a vector<bool>, all of it walked.
//
// The set is that of one station of a view: 27 records in its middle. A document takes such a set out of what remains
// once for each station, so what one of these costs decides whether the whole is linear.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "smartindex.h"

namespace {

using Flags = std::vector<bool>;

constexpr unsigned long kStation = 27;

void index_sizes(benchmark::internal::Benchmark* bench) { bench->Arg(10000)->Arg(100000); }

unsigned long size_of(benchmark::State& state) { return static_cast<unsigned long>(state.range(0)); }

SmartIndex station_of(unsigned long size) { return SmartIndex::of_range(size, size / 2, size / 2 + kStation); }

Flags station_flags_of(unsigned long size) {
  Flags flags(size, false);
  for (unsigned long i = size / 2; i < size / 2 + kStation; ++i) flags[i] = true;
  return flags;
}

// --- copy ------------------------------------------------------------------------------------------------------------

void copy(benchmark::State& state) {
  const SmartIndex all(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    SmartIndex copied = all;
    benchmark::DoNotOptimize(copied);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(copy)->Apply(index_sizes);

void rival_copy(benchmark::State& state) {
  const Flags all(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    Flags copied = all;
    benchmark::DoNotOptimize(copied);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(rival_copy)->Apply(index_sizes);

// --- limit to, and remove --------------------------------------------------------------------------------------------

void limit_and_remove(benchmark::State& state) {
  const SmartIndex station = station_of(size_of(state));
  SmartIndex remaining(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    SmartIndex current = station;
    current.limit_to(remaining);
    remaining.remove(current);
    benchmark::DoNotOptimize(current);
    benchmark::DoNotOptimize(remaining);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(limit_and_remove)->Apply(index_sizes);

void rival_limit_and_remove(benchmark::State& state) {
  const Flags station = station_flags_of(size_of(state));
  Flags remaining(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    Flags current = station;
    for (std::size_t i = 0; i < current.size(); ++i) current[i] = current[i] && remaining[i];
    for (std::size_t i = 0; i < current.size(); ++i) remaining[i] = remaining[i] && !current[i];
    benchmark::DoNotOptimize(current);
    benchmark::DoNotOptimize(remaining);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(rival_limit_and_remove)->Apply(index_sizes);

// --- all stations in turn --------------------------------------------------------------------------------------------

// What a document does: items are records, and the cost of one must not grow with their number.
void take_every_station(benchmark::State& state) {
  const unsigned long size = size_of(state);
  for ([[maybe_unused]] const auto& round : state) {
    SmartIndex remaining(size, true);
    for (unsigned long first = 0; first < size; first += kStation) {
      SmartIndex current = SmartIndex::of_range(size, first, first + kStation);
      current.limit_to(remaining);
      remaining.remove(current);
    }
    if (remaining.count() != 0) state.SkipWithError("something was left");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * size));
}
BENCHMARK(take_every_station)->Apply(index_sizes)->Unit(benchmark::kMicrosecond);

// --- walk ------------------------------------------------------------------------------------------------------------

void walk(benchmark::State& state) {
  const SmartIndex all(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    unsigned long sum = 0;
    for (unsigned long i = all.first(); i < all.last(); i = all.next(i)) sum += i;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * all.size()));
}
BENCHMARK(walk)->Apply(index_sizes)->Unit(benchmark::kMicrosecond);

void rival_walk(benchmark::State& state) {
  const Flags all(size_of(state), true);
  for ([[maybe_unused]] const auto& round : state) {
    unsigned long sum = 0;
    for (unsigned long i = 0; i < all.size(); ++i) sum += all[i] ? i : 0;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * all.size()));
}
BENCHMARK(rival_walk)->Apply(index_sizes)->Unit(benchmark::kMicrosecond);

// --- a set that is scattered -----------------------------------------------------------------------------------------

Flags every_third(unsigned long size) {
  Flags flags(size, false);
  for (unsigned long i = 0; i < size; i += 3) flags[i] = true;
  return flags;
}

void remove_scattered(benchmark::State& state) {
  const SmartIndex scattered(every_third(size_of(state)));
  for ([[maybe_unused]] const auto& round : state) {
    SmartIndex remaining(size_of(state), true);
    remaining.remove(scattered);
    benchmark::DoNotOptimize(remaining);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * size_of(state)));
}
BENCHMARK(remove_scattered)->Apply(index_sizes)->Unit(benchmark::kMicrosecond);

void rival_remove_scattered(benchmark::State& state) {
  const Flags scattered = every_third(size_of(state));
  for ([[maybe_unused]] const auto& round : state) {
    Flags remaining(size_of(state), true);
    for (std::size_t i = 0; i < remaining.size(); ++i) remaining[i] = remaining[i] && !scattered[i];
    benchmark::DoNotOptimize(remaining);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * size_of(state)));
}
BENCHMARK(rival_remove_scattered)->Apply(index_sizes)->Unit(benchmark::kMicrosecond);

}  // namespace
