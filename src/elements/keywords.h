// The type keywords of the element tree: one table of name, code and shape.
//
// A new keyword is a row here, a value of GroupType (elements.h), and, when it has a value of a new kind, a branch in
// BoundValue::write. Rows and enumeration are compared when this is compiled.
#ifndef TRIGLUB_SRC_ELEMENTS_KEYWORDS_H
#define TRIGLUB_SRC_ELEMENTS_KEYWORDS_H

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "elements.h"

namespace triglub {

// What becomes of a line.
enum class LineShape : std::uint8_t {
  value,              // a leaf with the value of an expression or field
  text,               // a leaf with the text that stands in the file
  count,              // a leaf with the number of categories
  group,              // a nested group
  categories,         // a group for each category, in byte order
  number_categories,  // a group for each category, in numeric order
  stage,              // the response stages
};

// The code of keywords that the typed evaluator does not know.
inline constexpr int kNoCode = -1;

struct Keyword {
  std::string_view name;
  int code;  // a GroupType, or kNoCode
  LineShape shape;
};

// By code; those without one at the end.
inline constexpr std::array<Keyword, 20> kKeywords = {{
    {"deg_lat", deg_lat, LineShape::value},
    {"deg_lon", deg_lon, LineShape::value},
    {"dip", dip, LineShape::value},
    {"deg_az", deg_az, LineShape::value},
    {"record_count", record_count, LineShape::value},
    {"meters", meters, LineShape::value},
    {"float", float_type, LineShape::value},
    {"integer", integer, LineShape::value},
    {"force_lookup", force_lookup, LineShape::value},
    {"lookup", lookup, LineShape::value},
    {"string", string_type, LineShape::value},
    {"epoch", epoch_type, LineShape::value},
    {"julian", julian, LineShape::value},
    {"GROUP", GROUP, LineShape::group},
    {"CATEGORIZED_GROUP", CATEGORIZED_GROUP, LineShape::categories},
    {"CATEGORIZED_BY_NUMBER", CATEGORIZED_BY_NUMBER, LineShape::number_categories},
    {"STAGE", STAGE, LineShape::stage},
    {"other_pf:site", other_pf_site, LineShape::value},
    {"text", kNoCode, LineShape::text},
    {"count", kNoCode, LineShape::count},
}};

// True when every row with a code stands at the place of its code and every code has its row.
consteval bool are_keywords_in_order() {
  std::size_t coded = 0;
  while (coded < kKeywords.size() && kKeywords[coded].code == static_cast<int>(coded)) ++coded;
  for (std::size_t i = coded; i < kKeywords.size(); ++i) {
    if (kKeywords[i].code != kNoCode) return false;
  }
  return coded == static_cast<std::size_t>(other_pf_site) + 1;
}
static_assert(are_keywords_in_order(), "the rows of kKeywords must follow GroupType");

// Null for what is no keyword.
const Keyword* find_keyword(std::string_view name);

// Throws the std::logic_error of a plain group that is to be evaluated.
[[noreturn]] void refuse_to_evaluate_group();

// The codes by name: what INTERPRETERS is at first.
std::map<std::string, GroupType> keyword_codes();

}  // namespace triglub

#endif
