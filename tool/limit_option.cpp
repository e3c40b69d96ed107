// A budget is a plain number: nothing else is guessed at.
#include "tool/limit_option.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/limits.h"
#include "platform/text.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kColumn = 30;  // at which the help has what an option is, too

std::vector<std::string> limit_names() {
  std::vector<std::string> names;
  for (const LimitFacts& facts : all_limits()) names.emplace_back(facts.name);
  return names;
}

std::string fault_of_name(std::string_view name) {
  std::string names;
  for (const std::string& known : limit_names()) names += (names.empty() ? "" : ", ") + known;
  const auto meant = nearest(name, limit_names());
  return "there is no limit '" + std::string(name) + "'" + (meant ? " (did you mean " + *meant + "?)" : "") +
         ", expected one of " + names;
}

std::optional<std::uint64_t> whole_number(std::string_view text) {
  std::uint64_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

const LimitFacts& facts_of(Limit which) { return all_limits()[static_cast<std::size_t>(which)]; }

}  // namespace

std::string take_limit(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return "expected NAME=N, found " + std::string(text);
  const std::string_view name = text.substr(0, equals);
  const std::string_view number = text.substr(equals + 1);
  const auto which = limit_named(name);
  if (!which) return fault_of_name(name);
  const auto count = whole_number(number);
  if (count && set_limit(*which, *count)) return "";
  return "expected " + std::string(name) + "=N with N from 1 to " + std::to_string(facts_of(*which).most) + ", found " +
         std::string(number);
}

std::string list_of_limits() {
  std::string text = "Limits (--limit NAME=N; in brackets what each is usually):\n";
  for (const LimitFacts& facts : all_limits()) {
    std::string entry = "  " + std::string(facts.name) + " [" + std::to_string(facts.usual) + "]";
    entry.resize(std::max(entry.size(), kColumn), ' ');
    text.append(entry).append(facts.of).append("\n");
  }
  text.pop_back();  // whoever prints it ends its line
  return text;
}

}  // namespace triglub::tool
