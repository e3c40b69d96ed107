// The texts of a document's lines, by type keyword, over all records of a view: the shipped parameter file's own lines.
// Rival: the field read with dbgetv and written with snprintf.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "dbhelper.h"
#include "made_database.h"
#include "platform/record_expression.h"

namespace {

using triglub_bench::MadeDatabase;
using triglub_bench::records;

void evaluation_sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

void evaluate(benchmark::State& state, const char* type, const char* expression) {
  Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  const long count = records(view);
  std::size_t bytes = 0;
  for ([[maybe_unused]] const auto& round : state) {
    for (view.record = 0; view.record < count; ++view.record) bytes += eval_as_type(view, expression, type).size();
  }
  if (bytes == 0) state.SkipWithError("every text is empty");
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}
BENCHMARK_CAPTURE(evaluate, field_as_text, "string", "snetsta.fsta")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_float, "float", "calibration.samprate")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_integer, "integer", "stage.stageid")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_latitude, "deg_lat", "site.lat")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_dip, "dip", "sitechan.vang")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_epoch, "epoch", "sensor.time")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, field_as_day, "julian", "sitechan.ondate")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, choice_of_numbers, "float",
                  "is_null(calibration.samprate) ? (is_null(instrument.samprate) ? 0.0 : instrument.samprate) : "
                  "calibration.samprate")
    ->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, formatted_number, "string",
                  "is_null(site.elev) ? \"<!--null-->0.0\" : format(\"%.1f\", site.elev * 1000)")
    ->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, formatted_time, "string",
                  "strtime(is_null(sensor.time) ? epoch(sitechan.ondate) : sensor.time, \"%GT%H:%M:%S.%u\")")
    ->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate, safe_text, "string", "is_null(site.staname) ? xml(snetsta.fsta) : xml(site.staname)")
    ->Apply(evaluation_sizes);

// Expressions in which nulls propagate, at each record of elements of a hundred.
void evaluate_with_nulls(benchmark::State& state, const char* text) {
  const Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  const auto count = static_cast<std::uint32_t>(records(view));
  const auto expression = triglub::RecordExpression::compile(view, text, nullptr);
  if (expression == nullptr) return state.SkipWithError("the expression does not compile");
  std::uint32_t values = 0;
  for ([[maybe_unused]] const auto& round : state) {
    for (std::uint32_t record = 0; record < count; ++record) {
      triglub::RecordValue value;
      const std::uint32_t first = record / 100 * 100;
      expression->evaluate(record, {.first = first, .count = std::min<std::uint32_t>(100, count - first)}, &value);
      values += value.is_null ? 0 : 1;
    }
  }
  if (values == 0) state.SkipWithError("every value is null");
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}
BENCHMARK_CAPTURE(evaluate_with_nulls, field_of_text, "snetsta.fsta")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, field_of_number, "site.lat")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, choice_of_numbers, "assume(calibration.samprate, instrument.samprate)")
    ->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, formatted_number, "format(\"%.1f\", site.elev * 1000)")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, safe_text, "assume(site.staname, snetsta.fsta)")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, earliest_of_a_hundred, "earliest(sensor.time)")->Apply(evaluation_sizes);
BENCHMARK_CAPTURE(evaluate_with_nulls, count_of_a_hundred, "count(sitechan.chan)")->Apply(evaluation_sizes);

// The rival of formatted_number.
void rival_snprintf(benchmark::State& state) {
  Dbptr view = MadeDatabase::of({.channel_epochs = state.range(0)}).document_view();
  const long count = records(view);
  std::size_t bytes = 0;
  for ([[maybe_unused]] const auto& round : state) {
    for (view.record = 0; view.record < count; ++view.record) {
      double elev = 0.0;
      std::array<char, 32> text{};
      dbgetv(view, nullptr, "site.elev", &elev, nullptr);
      std::snprintf(text.data(), text.size(), "%.1f", elev * 1000);
      bytes += std::string(text.data()).size();
    }
  }
  benchmark::DoNotOptimize(bytes);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}
BENCHMARK(rival_snprintf)->Apply(evaluation_sizes);

}  // namespace
