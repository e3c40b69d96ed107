// The types of a line in edition 2, by the words that parameter files have for them.
#ifndef TRIGLUB_SRC_TREE_LINE_TYPE_H
#define TRIGLUB_SRC_TREE_LINE_TYPE_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub {

enum class LineType : std::uint8_t {
  literal,  // XML text as it stands in the parameter file, or in site.pf
  string,
  real,
  integer,
  epoch,
  julian,
  latitude,
  longitude,
  azimuth,
  dip,
  meters,
  count,
  group,              // a group, once
  categories,         // a group for each category, by text
  number_categories,  // the same, by number
  stage,
};

// The word of the literals that stand in site.pf.
inline constexpr std::string_view kSiteKeyword = "other_pf:site";

// Nothing for a word that is no type.
std::optional<LineType> line_type(std::string_view keyword);

// The words of all types.
std::vector<std::string> line_type_keywords();

constexpr bool is_category(LineType type) {
  return type == LineType::categories || type == LineType::number_categories;
}
constexpr bool leads_to_group(LineType type) { return type == LineType::group || is_category(type); }
// True where the name of the line is that of an attribute or element; else it does not go into the document.
constexpr bool names_element(LineType type) { return !leads_to_group(type) && type != LineType::stage; }
// True where the value of the line is an expression.
constexpr bool has_expression(LineType type) {
  return type != LineType::literal && type != LineType::group && type != LineType::stage;
}

}  // namespace triglub

#endif
