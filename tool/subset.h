// The restrictions of a conversion: field names or expressions mapped to regular expressions between slashes.
#ifndef TRIGLUB_TOOL_SUBSET_H
#define TRIGLUB_TOOL_SUBSET_H

#include <map>
#include <string>
#include <string_view>

#include "platform/containers.h"

namespace triglub::tool {

// All of them are to be met; a field may have several.
using Conditions = std::multimap<std::string, std::string>;

// Adds the condition of one FIELD=REGEX. Slashes are put around the regular expression unless they are there; slashes
// inside are quoted. Nothing, "-" and "--" ask for texts that are blank or null. False when there is no '=' or nothing
// before it.
bool add_condition(std::string_view argument, Conditions* conditions);

// A regular expression between slashes that matches exactly this text.
std::string exact_pattern(std::string_view text);

// The conditions as the library takes them. The texts belong to the object.
class Subset {
 public:
  explicit Subset(Conditions conditions);
  ~Subset() { freearr(array_, nullptr); }
  Subset(const Subset&) = delete;
  Subset& operator=(const Subset&) = delete;

  rbtree* array() { return array_; }

 private:
  Conditions conditions_;
  rbtree* array_;
};

}  // namespace triglub::tool

#endif
