// Units that take the prefixes of SI are listed without them. Case is no guide: documents from SEED have M/S for m/s.
#include "checks/unit_names.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/characters.h"

namespace triglub::checks {

namespace {

constexpr std::string_view kPrefixes = "pnumcdhkg";  // pico to giga; mega as milli, for case is no guide
constexpr auto kPrefixed = std::to_array<std::string_view>(
    {"a",    "bar",    "g",        "hz",     "j",      "k",        "m",         "m**2",    "m**3",   "m/m",
     "m/s",  "m/s**2", "m/s**3",   "m/s**4", "m/s/s",  "m/v",      "n",         "ohm",     "pa",     "pa/s",
     "rad",  "rad/s",  "rad/s**2", "s",      "s/m",    "strain",   "t",         "t/s",     "v",      "v/m",
     "v/pa", "v/v",    "w",        "w/m**2", "m/hour", "strain/s", "m/s**2/pa", "kg/m**3", "kg/m**2"});
constexpr auto kPlain = std::to_array<std::string_view>({"%",
                                                         "bit",
                                                         "bits",
                                                         "boolean",
                                                         "byte",
                                                         "bytes",
                                                         "c",
                                                         "cd",
                                                         "count",
                                                         "counts",
                                                         "count/s",
                                                         "counts/s",
                                                         "count/v",
                                                         "counts/v",
                                                         "cycle",
                                                         "cycles",
                                                         "day",
                                                         "db",
                                                         "deg",
                                                         "degc",
                                                         "degree",
                                                         "degree c",
                                                         "degrees",
                                                         "deg c",
                                                         "degf",
                                                         "digital count",
                                                         "digital counts",
                                                         "f",
                                                         "gap",
                                                         "gaps",
                                                         "h",
                                                         "hour",
                                                         "kg",
                                                         "l",
                                                         "lm",
                                                         "lx",
                                                         "m**3/m**3",
                                                         "min",
                                                         "minute",
                                                         "mol",
                                                         "number",
                                                         "percent",
                                                         "ppm",
                                                         "ppb",
                                                         "reboot",
                                                         "reboots",
                                                         "second",
                                                         "seconds",
                                                         "sr",
                                                         "unitless"});

template <class Names>
bool has(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_prefix(char c) { return kPrefixes.find(c) != std::string_view::npos; }

std::string in_small_letters(std::string_view name) {
  std::string small(name);
  std::transform(small.begin(), small.end(), small.begin(), to_lower);
  return small;
}

}  // namespace

bool is_known_unit(std::string_view name) {
  const std::string small = in_small_letters(name);
  if (has(kPlain, small) || has(kPrefixed, small)) return true;
  return small.size() > 1 && is_prefix(small.front()) && has(kPrefixed, std::string_view(small).substr(1));
}

bool is_same_unit(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return to_lower(x) == to_lower(y); });
}

}  // namespace triglub::checks
