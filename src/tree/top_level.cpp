// Strings and lists are told when they are not known: what is misspelt would be left out in silence.
#include "tree/top_level.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tree/tree_options.h"

namespace triglub {

namespace {

constexpr std::array<std::string_view, 3> kOfEdition1 = {"record_order", "epochtime_xmlstring_format",
                                                         "jdate_xmlstring_format"};

bool is_table(Pf* pf, const std::string& key) {
  return pfget_string(pf, key.c_str()) == nullptr && pfget_tbl(pf, key.c_str()) == nullptr;
}

std::vector<std::string> known_keys() {
  std::vector<std::string> keys = option_keys();
  keys.insert(keys.begin(), {"edition", kRootKey});
  return keys;
}

std::string fault_of(Pf* pf, const std::string& key) {
  if (std::ranges::count(kOfEdition1, key) > 0) {
    return "the key '" + key + "' is of edition 1; edition 2 has no use for it";
  }
  if (key == "edition" || std::ranges::count(option_keys(), key) > 0) return "";
  if (key != kRootKey) return "the key '" + key + "' is not known" + did_you_mean(key, known_keys());
  return pfget_string(pf, kRootKey) == nullptr ? "'root_node' must be a string, the name of the root group" : "";
}

}  // namespace

void check_top_level(Pf* pf, FaultList* faults) {
  const std::vector<std::string> keys = pf_keys(pf, "");
  for (const std::string& key : keys) {
    const std::string fault = is_table(pf, key) && key != kRootKey ? "" : fault_of(pf, key);
    if (!fault.empty()) faults->add(pf_key_line(pf, key.c_str()), fault);
  }
  if (std::ranges::count(keys, kRootKey) == 0) {
    faults->add(0, "the key 'root_node', which names the root group, is missing");
  }
}

std::vector<std::string> table_keys(Pf* pf) {
  std::vector<std::string> keys = pf_keys(pf, "");
  std::erase_if(keys, [pf](const std::string& key) { return !is_table(pf, key); });
  return keys;
}

}  // namespace triglub
