// The descriptor of a flat-file database: lines of a key and a value that say where further tables are and which schema
// they follow.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_DESCRIPTOR_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_DESCRIPTOR_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub {

struct Descriptor {
  std::string schema;               // the last one named; empty when none is
  std::vector<std::string> places;  // the entries of all "dbpath" lists, in order, as they are written
};

inline constexpr std::size_t kMaxDescriptorBytes = std::size_t{1} << 20;
// Each place is looked at for each table.
inline constexpr std::size_t kMaxDescriptorPlaces = 100;

// Nothing when there are more places than can be. Other keys, and keys without a value, do not count.
std::optional<Descriptor> parse_descriptor(std::string_view text);

}  // namespace triglub

#endif
