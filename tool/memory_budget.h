// How much memory the process may take.
#ifndef TRIGLUB_TOOL_MEMORY_BUDGET_H
#define TRIGLUB_TOOL_MEMORY_BUDGET_H

#include <cstdint>
#include <optional>
#include <string_view>

namespace triglub::tool {

// The bytes that a text means: a number, with K, M, G or T behind it for the powers of 1024. Nothing for another text,
// for 0, and for more than there can be.
std::optional<std::uint64_t> memory_size(std::string_view text);

// That of the machine, or what the control groups of the process allow where that is less. The most there can be where
// the system does not tell.
std::uint64_t memory_there_is();

// From now on this process, and each that it makes, takes no more than so many bytes of memory of its own, what threads
// have included: more is not to be had, as if the machine had no more. A smaller limit that holds stays.
void limit_memory(std::uint64_t bytes);

}  // namespace triglub::tool

#endif
