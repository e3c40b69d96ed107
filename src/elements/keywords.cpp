// The table is short and asked when a plan is made, not at each record: it is searched from its begin.
#include "elements/keywords.h"

#include <algorithm>

namespace triglub {

const Keyword* find_keyword(std::string_view name) {
  const auto* found =
      std::find_if(kKeywords.begin(), kKeywords.end(), [name](const Keyword& keyword) { return keyword.name == name; });
  return found == kKeywords.end() ? nullptr : found;
}

std::map<std::string, GroupType> keyword_codes() {
  std::map<std::string, GroupType> codes;
  for (const Keyword& keyword : kKeywords) {
    if (keyword.code != kNoCode) codes.emplace(keyword.name, static_cast<GroupType>(keyword.code));
  }
  return codes;
}

bool is_type_keyword(std::string_view name) { return find_keyword(name) != nullptr; }

}  // namespace triglub
