// The split of records by category, as a document's writer does it for each of its nodes, over a view in document
// order. Rival: one walk over the texts of the field that notes where they change, which is right only because the
// records of a category lie together.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "db2stationxml.h"
#include "made_database.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

void category_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

Dbptr view_of_one_network(benchmark::State& state) {
  return MadeDatabase::of({.channel_epochs = state.range(0), .networks = 1}).document_view();
}

SmartIndex all_of(Dbptr view) { return {static_cast<unsigned long>(records(view)), true}; }

void categories(benchmark::State& state, const char* text) {
  const Dbptr view = view_of_one_network(state);
  const ElementDescription line(text);
  const SmartIndex all = all_of(view);
  for ([[maybe_unused]] const auto& round : state) {
    if (get_categories(view, line, all).empty()) state.SkipWithError("no categories");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(view));
}
BENCHMARK_CAPTURE(categories, stations, "station_code - CATEGORIZED_GROUP snetsta.fsta")->Apply(category_sizes);
BENCHMARK_CAPTURE(categories, channels, "channel_code - CATEGORIZED_GROUP sitechan.chan")->Apply(category_sizes);
BENCHMARK_CAPTURE(categories, dates, "station_group - CATEGORIZED_GROUP site.ondate")->Apply(category_sizes);
BENCHMARK_CAPTURE(categories, numbers, "stage_group - CATEGORIZED_BY_NUMBER stage.stageid")->Apply(category_sizes);

// Gives each category its records; the number of records given.
unsigned long split(Dbptr view, const ElementDescription& line, const SmartIndex& index) {
  SmartIndex remaining = index;
  unsigned long given = 0;
  for (const std::string& category : get_categories(view, line, index)) {
    SmartIndex current = pseudo_subset(view, line.value() + " =~ /" + category + "/", remaining);
    current.limit_to(remaining);
    remaining.remove(current);
    given += current.count();
  }
  return given;
}

void split_into_stations(benchmark::State& state) {
  const Dbptr view = view_of_one_network(state);
  const ElementDescription line("station_code - CATEGORIZED_GROUP snetsta.fsta");
  const SmartIndex all = all_of(view);
  for ([[maybe_unused]] const auto& round : state) {
    if (split(view, line, all) != all.count()) state.SkipWithError("records are missing");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * records(view));
}
BENCHMARK(split_into_stations)->Apply(category_sizes);

// What most of the splits are like: few records of many.
void split_channels_into_stages(benchmark::State& state) {
  const Dbptr view = view_of_one_network(state);
  const ElementDescription line("stage_group - CATEGORIZED_BY_NUMBER stage.stageid");
  const unsigned long stages = triglub_bench::DatabaseShape{}.stages;
  const auto all = static_cast<unsigned long>(records(view));
  for ([[maybe_unused]] const auto& round : state) {
    for (unsigned long first = 0; first < all; first += stages) {
      if (split(view, line, SmartIndex::of_range(all, first, first + stages)) != stages)
        state.SkipWithError("records are missing");
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * all));
}
BENCHMARK(split_channels_into_stages)->Apply(category_sizes);

// The rival of split_into_stations.
void rival_one_walk(benchmark::State& state) {
  const Dbptr view = view_of_one_network(state);
  Dbptr field = dblookup(view, nullptr, nullptr, "snetsta.fsta", nullptr);
  const long count = records(view);
  for ([[maybe_unused]] const auto& round : state) {
    std::vector<std::pair<std::string, long>> stations;  // with their first records
    char text[1024] = "";
    for (field.record = 0; field.record < count; ++field.record) {
      dbget(field, text);
      if (stations.empty() || stations.back().first != text) stations.emplace_back(text, field.record);
    }
    benchmark::DoNotOptimize(stations);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}
BENCHMARK(rival_one_walk)->Apply(category_sizes);

}  // namespace
