// Typed values of the classic interface, and the ranges of angles.
#include <cmath>
#include <memory>

#include "dbhelper.h"
#include "dbhelper/bound_value.h"
#include "dbhelper/decimal.h"
#include "platform/elog.h"
#include "state/process_state.h"

namespace {

// The first of value - k x step that is not above `limit`, for a value so far above that stepping would take for ever:
// the remainder is exact, so it is where the steps would end.
double step_down_from_afar(double value, double limit, double step) {
  double rest = std::fmod(value, step);
  while (rest > limit) rest -= step;
  while (rest + step <= limit) rest += step;
  return rest;
}

}  // namespace

std::string eval_as_type(Dbptr db, const char* expr, std::string type) {
  return triglub::or_die([&] {
    std::string text;
    triglub::BoundValue(expr, std::move(type)).write(triglub::process_state(), db, &text);
    return text;
  });
}

double bring_into_range(double value, double low, double high, double step) {
  if (!std::isfinite(value) || !(step > 0.0)) return value;  // no number of steps brings these anywhere
  const double far_off = 1000.0 * step;
  if (value - high > far_off) value = step_down_from_afar(value, high, step);
  if (low - value > far_off) value = -step_down_from_afar(-value, -low, step);
  while (value > high) value -= step;
  while (value < low) value += step;
  return value;
}

std::string as_valid_lat(std::string text) {
  // Wrapped by half a turn, not folded over the pole: archives hold documents with these values, and compare.
  return triglub::six_decimals(bring_into_range(triglub::number_of(text), -90.0, 90.0, 180.0));
}

std::string as_valid_lon(std::string text) {
  return triglub::six_decimals(bring_into_range(triglub::number_of(text), -180.0, 180.0, 360.0));
}

std::string as_valid_az(std::string text) {
  const double azimuth = bring_into_range(triglub::number_of(text), 0.0, 360.0, 360.0);
  return triglub::six_decimals(azimuth == 360.0 ? 0.0 : azimuth);
}

std::string get_from_other_pf(std::string pfname, std::string key) {
  // Read anew each time, so that a long-running program sees a file that has been edited.
  Pf* pf = nullptr;
  if (pfread(pfname.c_str(), &pf) != 0) {
    elog_debug(0, "pfread failed from other pf( %s , %s ) ", pfname.c_str(), key.c_str());
    return "";
  }
  const std::unique_ptr<Pf, decltype(&pffree)> owner(pf, &pffree);
  return pfget_string(pf, key);
}
