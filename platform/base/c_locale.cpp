// Made once, at the first use.
#include "base/c_locale.h"

#include <cstdlib>

namespace triglub {

locale_t c_locale() {
  static const locale_t made = newlocale(LC_ALL_MASK, "C", nullptr);
  return made;
}

double c_strtod(const char* text, char** end) { return strtod_l(text, end, c_locale()); }

}  // namespace triglub
