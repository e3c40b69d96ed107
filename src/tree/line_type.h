// The words that parameter files have for the types of lines in edition 2.
#ifndef TRIGLUB_SRC_TREE_LINE_TYPE_H
#define TRIGLUB_SRC_TREE_LINE_TYPE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "element_tree.h"

namespace triglub {

// The word of the literals that stand in site.pf.
inline constexpr std::string_view kSiteKeyword = "other_pf:site";

// Nothing for a word that is no type.
std::optional<LineType> line_type(std::string_view keyword);

// The words of all types.
std::vector<std::string> line_type_keywords();

}  // namespace triglub

#endif
