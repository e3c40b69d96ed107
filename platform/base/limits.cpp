// The usual limits are well beyond what the largest archives need, and what they allow takes less than 2 GB: of a
// join, some 60 bytes a record where a view has ten tables.
#include "platform/limits.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>

namespace triglub {

namespace {

constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20;
constexpr std::uint64_t kMostRows = std::uint64_t{1} << 31;  // row numbers have 32 bits, one of them to spare
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 40;
constexpr std::uint64_t kMostCounted = std::numeric_limits<std::int32_t>::max();

constexpr std::array kFacts = {
    LimitFacts{Limit::table_rows, "table-rows", kMostRows, kMostRows, "rows of a table"},
    LimitFacts{Limit::join_rows, "join-rows", 30'000'000, kMostRows, "rows of a join"},
    LimitFacts{Limit::response_bytes, "response-bytes", 64 * kMebibyte, kMostBytes, "bytes of a response file"},
    LimitFacts{Limit::response_groups, "response-groups", 1000, kMostCounted, "groups of a response file"},
    LimitFacts{Limit::response_entries, "response-entries", 100'000, kMostCounted, "numbers of one kind in a filter"},
    LimitFacts{Limit::parameter_bytes, "parameter-bytes", 4 * kMebibyte, kMostBytes, "bytes of a parameter file"},
    LimitFacts{Limit::tree_elements, "tree-elements", 1'000'000, kMostCounted, "elements for one record"},
};

std::atomic<std::uint64_t>& allowed(Limit which) {
  // 0: not set. Made without code that runs before main.
  static constinit std::array<std::atomic<std::uint64_t>, kFacts.size()> values{};
  return values[static_cast<std::size_t>(which)];
}

const LimitFacts& facts_of(Limit which) { return kFacts[static_cast<std::size_t>(which)]; }

}  // namespace

std::span<const LimitFacts> all_limits() { return kFacts; }

std::optional<Limit> limit_named(std::string_view name) {
  const auto* const found =
      std::find_if(kFacts.begin(), kFacts.end(), [name](const LimitFacts& facts) { return facts.name == name; });
  if (found == kFacts.end()) return std::nullopt;
  return found->limit;
}

std::uint64_t limit(Limit which) {
  const std::uint64_t set = allowed(which);
  return set == 0 ? facts_of(which).usual : set;
}

bool set_limit(Limit which, std::uint64_t most) {
  if (most == 0 || most > facts_of(which).most) return false;
  allowed(which) = most;
  return true;
}

std::string beyond(Limit which) {
  const LimitFacts& facts = facts_of(which);
  return "more than " + std::to_string(limit(which)) + " " + facts.of + " (the limit " + facts.name + ")";
}

}  // namespace triglub
