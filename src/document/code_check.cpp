// One row a kind of code.
#include "document/code_check.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/characters.h"

namespace triglub {

namespace {

struct CodeRule {
  std::string_view tag;
  std::string_view attribute;
  std::size_t least;
  std::size_t most;
  bool may_have_dashes;
};

constexpr std::array<CodeRule, 4> kRules = {{{"Network", "code", 1, 8, false},
                                             {"Station", "code", 1, 8, true},
                                             {"Channel", "code", 3, 3, false},
                                             {"Channel", "locationCode", 0, 8, true}}};

const CodeRule* rule_for(std::string_view tag, std::string_view attribute) {
  const auto* rule = std::find_if(kRules.begin(), kRules.end(), [&](const CodeRule& candidate) {
    return candidate.tag == tag && candidate.attribute == attribute;
  });
  return rule == kRules.end() ? nullptr : rule;
}

}  // namespace

bool is_fdsn_code(std::string_view tag, std::string_view attribute) { return rule_for(tag, attribute) != nullptr; }

bool is_allowed_code(std::string_view tag, std::string_view attribute, std::string_view code) {
  const CodeRule& rule = *rule_for(tag, attribute);
  if (code.size() < rule.least || code.size() > rule.most) return false;
  return std::all_of(code.begin(), code.end(), [&rule](char c) {
    return is_digit(c) || ('A' <= c && c <= 'Z') || (c == '-' && rule.may_have_dashes);
  });
}

}  // namespace triglub
