// The functions of the language on numbers, and the table of all functions.
#include "engine/expression/functions.h"

#include <algorithm>
#include <cmath>

#include "engine/expression/text_functions.h"
#include "engine/expression/time_functions.h"

namespace triglub::expression {

namespace {

using Arguments = std::span<const Value>;

// A result that is not finite counts as a failure: the argument lies outside the function's domain, or the result
// beyond the range of reals.
bool finite(double number, Value* result) {
  *result = Value::of(number);
  return std::isfinite(number);
}

template <double (*FUNCTION)(double)>
bool of_one(Arguments arguments, std::string* /*scratch*/, Value* result) {
  return finite(FUNCTION(arguments[0].real), result);
}

template <double (*FUNCTION)(double, double)>
bool of_two(Arguments arguments, std::string* /*scratch*/, Value* result) {
  return finite(FUNCTION(arguments[0].real, arguments[1].real), result);
}

bool abs_integer(Arguments arguments, std::string* /*scratch*/, Value* result) {
  std::int64_t number = arguments[0].integer;
  const bool overflows = number < 0 && __builtin_sub_overflow(std::int64_t{0}, number, &number);
  *result = Value::of(number);
  return !overflows;
}

bool by_integer(const Value& a, const Value& b) { return a.integer < b.integer; }
bool by_real(const Value& a, const Value& b) { return a.real < b.real; }

template <bool (*BELOW)(const Value&, const Value&)>
bool least(Arguments arguments, std::string* /*scratch*/, Value* result) {
  *result = *std::min_element(arguments.begin(), arguments.end(), BELOW);
  return true;
}

template <bool (*BELOW)(const Value&, const Value&)>
bool greatest(Arguments arguments, std::string* /*scratch*/, Value* result) {
  *result = *std::max_element(arguments.begin(), arguments.end(), BELOW);
  return true;
}

// std::round takes halves away from zero.
constexpr Function kFunctions[] = {
    {"abs", "n", Kind::real, Form::call, of_one<std::fabs>, abs_integer, true},
    {"atan2", "rr", Kind::real, Form::call, of_two<std::atan2>, nullptr},
    {"ceil", "r", Kind::real, Form::call, of_one<std::ceil>, nullptr},
    {"concat", "s*", Kind::text, Form::call, concat, nullptr},
    {"cos", "r", Kind::real, Form::call, of_one<std::cos>, nullptr},
    {"epoch", "i", Kind::real, Form::call, epoch_of_yearday, nullptr},
    {"exp", "r", Kind::real, Form::call, of_one<std::exp>, nullptr},
    {"floor", "r", Kind::real, Form::call, of_one<std::floor>, nullptr},
    {"format", "ta", Kind::text, Form::format, nullptr, nullptr},
    {"int", "a", Kind::integer, Form::conversion, nullptr, nullptr},
    {"is_null", "f", Kind::integer, Form::null_test, nullptr, nullptr},
    {"length", "t", Kind::integer, Form::call, length, nullptr},
    {"log10", "r", Kind::real, Form::call, of_one<std::log10>, nullptr},
    {"lower", "t", Kind::text, Form::call, lower, nullptr},
    {"max", "nn*", Kind::real, Form::call, greatest<by_real>, greatest<by_integer>},
    {"min", "nn*", Kind::real, Form::call, least<by_real>, least<by_integer>},
    {"now", "", Kind::real, Form::call, current_time, nullptr},
    {"pow", "rr", Kind::real, Form::call, of_two<std::pow>, nullptr},
    {"real", "a", Kind::real, Form::conversion, nullptr, nullptr},
    {"replace", "ttt", Kind::text, Form::call, replace, nullptr},
    {"round", "r", Kind::real, Form::call, of_one<std::round>, nullptr},
    {"sin", "r", Kind::real, Form::call, of_one<std::sin>, nullptr},
    {"sqrt", "r", Kind::real, Form::call, of_one<std::sqrt>, nullptr},
    {"str", "a", Kind::text, Form::conversion, nullptr, nullptr},
    {"strtime", "rt", Kind::text, Form::call, strtime, nullptr},
    {"substr", "tii", Kind::text, Form::call, substr, nullptr},
    {"trim", "t", Kind::text, Form::call, trim, nullptr},
    {"upper", "t", Kind::text, Form::call, upper, nullptr},
    {"xml", "t", Kind::text, Form::call, xml, nullptr},
    {"yearday", "r", Kind::integer, Form::call, yearday_of_epoch, nullptr},
};

// Where nulls propagate these come before the others.
constexpr Function kNullableFunctions[] = {
    {"agreed", "nn", Kind::real, Form::agreement, nullptr, nullptr},
    {"assume", "aa", Kind::text, Form::assumption, nullptr, nullptr},
    {"concat", "s*", Kind::text, Form::call_on_nulls, concat, nullptr},
    {"count", "a", Kind::integer, Form::count, nullptr, nullptr},
    {"earliest", "a", Kind::text, Form::earliest, nullptr, nullptr},
    {"first", "a", Kind::text, Form::first, nullptr, nullptr},
    {"is_null", "a", Kind::integer, Form::null_test, nullptr, nullptr},
    {"last", "a", Kind::text, Form::last, nullptr, nullptr},
    {"latest", "a", Kind::text, Form::latest, nullptr, nullptr},
    {"xml", "t", Kind::text, Form::identity, nullptr, nullptr},
};

const Function* find(std::span<const Function> functions, std::string_view name) {
  const auto found =
      std::find_if(functions.begin(), functions.end(), [&](const Function& function) { return function.name == name; });
  return found == functions.end() ? nullptr : &*found;
}

void append_names(std::span<const Function> functions, std::vector<std::string>* names) {
  for (const Function& function : functions) names->emplace_back(function.name);
}

}  // namespace

const Function* find_function(std::string_view name, Nulls nulls) {
  const Function* nullable = nulls == Nulls::propagate ? find(kNullableFunctions, name) : nullptr;
  return nullable == nullptr ? find(kFunctions, name) : nullable;
}

std::vector<std::string> function_names(Nulls nulls) {
  std::vector<std::string> names;
  append_names(kFunctions, &names);
  if (nulls == Nulls::propagate) append_names(kNullableFunctions, &names);
  return names;
}

}  // namespace triglub::expression
