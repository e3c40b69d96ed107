// The descriptor of a flat-file database: lines of a key and a value that say where further tables are and which schema
// they follow.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_DESCRIPTOR_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_DESCRIPTOR_H

#include <string>
#include <string_view>
#include <vector>

namespace triglub {

struct Descriptor {
  std::string schema;               // the last one named; empty when none is
  std::vector<std::string> places;  // the entries of all "dbpath" lists, in order, as they are written
};

// Never fails: other keys, and keys without a value, do not count.
Descriptor parse_descriptor(std::string_view text);

}  // namespace triglub

#endif
