// Both directions keep to a decimal point, whatever locale the program has chosen.
#include "dbhelper/decimal.h"

#include <cerrno>
#include <charconv>
#include <stdexcept>

#include "base/c_locale.h"

namespace triglub {

double number_of(const std::string& text) {
  char* end = nullptr;
  errno = 0;
  const double value = c_strtod(text.c_str(), &end);
  if (end == text.c_str()) throw std::invalid_argument("stod");
  if (errno == ERANGE) throw std::out_of_range("stod");
  return value;
}

std::string six_decimals(double value) {
  char text[400];  // the largest double has 309 digits before the point
  char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6).ptr;
  return {text, end};
}

}  // namespace triglub
