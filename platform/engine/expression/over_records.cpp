// Goes through the records with the argument's program, no further than the result needs.
#include "engine/expression/over_records.h"

#include <cstring>

#include "engine/expression/doubt_evaluation.h"

namespace triglub::expression {

namespace {

bool is_below(const Value& a, const Value& b, Kind kind) {
  if (kind == Kind::integer) return a.integer < b.integer;
  return kind == Kind::real ? a.real < b.real : a.text() < b.text();
}

// Bytes that are the same for equal values and differ for others. They lie in *value.
std::string_view bytes_of(Value* value, Kind kind) {
  if (kind == Kind::text) return value->text();
  if (kind == Kind::real && value->real == 0) value->real = 0;  // zero is one value, whatever its sign
  return {reinterpret_cast<const char*>(&value->integer), sizeof value->integer};
}

}  // namespace

bool FunctionOverRecords::evaluate(const Surroundings& surroundings, Value* result, double* doubt) {
  switch (program_.function) {
    case Form::first:
      return argument_at(0, surroundings, result, doubt);
    case Form::last:
      return argument_at(surroundings.records->count() - 1, surroundings, result, doubt);
    case Form::count:
      if (doubt != nullptr) *doubt = 0;
      return count(surroundings, result);
    default:
      return extreme(surroundings, result, doubt);
  }
}

bool FunctionOverRecords::argument_at(std::uint32_t i, const Surroundings& surroundings, Value* value, double* doubt) {
  const Program& argument = program_.argument;
  std::string* texts = scratch_.texts(argument.scratch_size);
  const Surroundings inside{nullptr, nullptr, surroundings.assumed};
  return run_program(argument, surroundings.records->record(i), texts, inside, value, doubt);
}

// A null comes after every value: it is skipped for the earliest, and is the latest.
bool FunctionOverRecords::extreme(const Surroundings& surroundings, Value* result, double* doubt) {
  Value best = Value::null();
  double doubt_of_value = 0;
  double* const asked = doubt == nullptr ? nullptr : &doubt_of_value;
  for (std::uint32_t i = 0; i < surroundings.records->count(); ++i) {
    Value value;
    if (!argument_at(i, surroundings, &value, asked)) return false;
    if (value.is_null()) {
      if (program_.function == Form::earliest) continue;
      best = value;
      break;
    }
    if (!best.is_null() && !is_better(value, best)) continue;
    best = kept(value);
    if (doubt != nullptr) *doubt = doubt_of_value;
  }
  *result = best;
  return true;
}

bool FunctionOverRecords::is_better(const Value& value, const Value& best) const {
  const Kind kind = program_.argument.result;
  return program_.function == Form::earliest ? is_below(value, best, kind) : is_below(best, value, kind);
}

// A text may stand where the next record's will.
Value FunctionOverRecords::kept(const Value& value) {
  if (program_.argument.result != Kind::text) return value;
  kept_.assign(value.text());
  return Value::of(std::string_view(kept_));
}

bool FunctionOverRecords::count(const Surroundings& surroundings, Value* result) {
  distinct_.clear();
  for (std::uint32_t i = 0; i < surroundings.records->count(); ++i) {
    Value value;
    if (!argument_at(i, surroundings, &value, nullptr)) return false;
    if (value.is_null()) continue;
    const std::string_view bytes = bytes_of(&value, program_.argument.result);
    if (distinct_.find(bytes) == distinct_.end()) distinct_.emplace(bytes);
  }
  *result = Value::of(static_cast<std::int64_t>(distinct_.size()));
  return true;
}

}  // namespace triglub::expression
