// Typed values of the classic interface, and angles in their ranges.
#include <memory>

#include "dbhelper.h"
#include "dbhelper/bound_value.h"
#include "dbhelper/decimal.h"
#include "platform/elog.h"
#include "state/process_state.h"

std::string eval_as_type(Dbptr db, const char* expr, std::string type) {
  return triglub::or_die([&] {
    std::string text;
    triglub::BoundValue(expr, std::move(type)).write(triglub::process_state(), db, &text);
    return text;
  });
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
