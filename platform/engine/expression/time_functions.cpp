// What is no date gives the null of the other kind of time, so that nulls stay nulls.
#include "engine/expression/time_functions.h"

#include <limits>

#include "engine/expression/now.h"
#include "platform/timeconv.h"

namespace triglub::expression {

namespace {

using Arguments = std::span<const Value>;

}  // namespace

// A number that is no date gives the null time, as a null date field is to become a null time.
bool epoch_of_yearday(Arguments arguments, std::string* /*scratch*/, Value* result) {
  const std::int64_t date = arguments[0].integer;
  const bool fits = date >= 0 && date <= std::numeric_limits<int>::max();
  *result = Value::of(fits ? epoch(static_cast<int>(date)) : NULL_EPOCH);
  return true;
}

bool yearday_of_epoch(Arguments arguments, std::string* /*scratch*/, Value* result) {
  *result = Value::of(yearday(arguments[0].real));
  return true;
}

bool strtime(Arguments arguments, std::string* scratch, Value* result) {
  const std::string_view format = arguments[1].text();
  format_epoch(arguments[0].real, format.substr(0, format.find('\0')), scratch);
  *result = Value::of(std::string_view(*scratch));
  return true;
}

bool current_time(Arguments /*arguments*/, std::string* /*scratch*/, Value* result) {
  *result = Value::of(now());
  return true;
}

}  // namespace triglub::expression
