// An edition that is not known is no reason to guess: a document by other rules would look right and be wrong.
#include <algorithm>
#include <string>
#include <string_view>

#include "element_tree.h"
#include "fatal_failure.h"
#include "tree/fault_list.h"

namespace triglub {

namespace {

constexpr const char* kKey = "edition";

[[noreturn]] void refuse(Pf* pf, const std::string& what) {
  throw FatalFailure(place_text(pf_path(pf), pf_key_line(pf, kKey)) + ": " + what);
}

}  // namespace

int edition_of(Pf* pf) {
  const char* value = pfget_string(pf, kKey);
  if (value == nullptr) {
    if (std::ranges::count(pf_keys(pf, ""), kKey) == 0) return 1;
    refuse(pf, "'edition' must be a string, 1 or 2");
  }
  if (std::string_view(value) == "1") return 1;
  if (std::string_view(value) == "2") return 2;
  refuse(pf, "the edition '" + std::string(value) + "' is not known; there are 1 and 2");
}

}  // namespace triglub
