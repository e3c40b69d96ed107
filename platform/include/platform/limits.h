// Budgets: how much of a thing is taken before it is refused. None is met by the metadata of any network; they keep a
// damaged or hostile input from taking the machine.
//
// They hold for the process. Any thread may set one at any time; what begins afterwards goes by it.
#ifndef TRIGLUB_PLATFORM_LIMITS_H
#define TRIGLUB_PLATFORM_LIMITS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/export.h"

namespace triglub {

enum class Limit : std::uint8_t {
  table_rows,       // rows of a table
  join_rows,        // records that a join makes, or rows that are met for all records together where tables are matched
  response_bytes,   // bytes of a response file
  response_groups,  // groups of a response file
  response_entries,  // poles, zeros, coefficients or rows of one count
  parameter_bytes,   // bytes of a parameter file, a schema being one
  tree_elements,     // elements and attributes that a tree writes for one record
};

struct LimitFacts {
  Limit limit;
  const char* name;     // "join-rows": how users name it
  std::uint64_t usual;  // what it is until it is set
  std::uint64_t most;   // more cannot be allowed
  const char* of;       // what is counted, in the plural: "rows of a join"
};

// All limits, in the order of the enumeration.
TRIGLUB_API std::span<const LimitFacts> all_limits();

// The limit of that name; nothing where there is none.
TRIGLUB_API std::optional<Limit> limit_named(std::string_view name);

// What is allowed now: so many are taken, one more is refused.
TRIGLUB_API std::uint64_t limit(Limit which);

// False, and nothing is changed, for 0 and for more than can be allowed.
TRIGLUB_API bool set_limit(Limit which, std::uint64_t most);

// What a message says of more than is allowed: "more than 1000 groups of a response file (the limit response-groups)".
TRIGLUB_API std::string beyond(Limit which);

}  // namespace triglub

#endif
