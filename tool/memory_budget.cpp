// The limit is that of data, which counts what a process may write to and shares with nobody: not the space of
// addresses, of which some is only set aside.
#include "tool/memory_budget.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <limits>
#include <string>

namespace triglub::tool {

namespace {

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();
constexpr std::string_view kUnits = "KMGT";

std::uint64_t memory_of_machine() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long size = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || size <= 0) return kNoLimit;
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size);
}

// Where there is no number ("max") there is no limit.
std::uint64_t number_in(const std::string& path) {
  std::uint64_t number = kNoLimit;
  std::ifstream(path) >> number;
  return number == 0 ? kNoLimit : number;
}

// The least of a group and of those that it is in. `file` is what the limit stands in.
std::uint64_t least_of_group(const std::string& root, std::string group, const char* file) {
  std::uint64_t least = number_in(root + "/" + file);
  for (; group.size() > 1; group.resize(group.rfind('/'))) {
    least = std::min(least, number_in(root + group + "/" + file));
  }
  return least;
}

// A line is "0::/GROUP" of the one hierarchy, or "4:memory:/GROUP" of that of memory.
std::uint64_t memory_of_groups() {
  std::uint64_t least = kNoLimit;
  std::ifstream groups("/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    const std::size_t begin = line.find(":/");
    if (begin == std::string::npos) continue;
    const std::string group = line.substr(begin + 1);
    if (line.starts_with("0::")) least = std::min(least, least_of_group("/sys/fs/cgroup", group, "memory.max"));
    if (line.find(":memory:") == std::string::npos) continue;
    least = std::min(least, least_of_group("/sys/fs/cgroup/memory", group, "memory.limit_in_bytes"));
  }
  return least;
}

}  // namespace

std::optional<std::uint64_t> memory_size(std::string_view text) {
  std::uint64_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
  if (fault != std::errc{} || number == 0 || unit.size() > 1) return std::nullopt;
  if (unit.empty()) return number;
  const std::size_t power = kUnits.find(unit.front());
  if (power == std::string_view::npos) return std::nullopt;
  const auto bits = static_cast<unsigned int>(10 * (power + 1));
  if (number > (kNoLimit >> bits)) return std::nullopt;
  return number << bits;
}

std::uint64_t memory_there_is() { return std::min(memory_of_machine(), memory_of_groups()); }

// What sanitizers keep of the memory is larger than any.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
void limit_memory(std::uint64_t /*bytes*/) {}
#else
void limit_memory(std::uint64_t bytes) {
  rlimit limit{};
  if (getrlimit(RLIMIT_DATA, &limit) != 0) return;
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, bytes);
  setrlimit(RLIMIT_DATA, &limit);
}
#endif

}  // namespace triglub::tool
