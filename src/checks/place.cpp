// A quoted text comes from a stranger: it is cut, and what would break the line of a message is replaced.
#include "checks/place.h"

#include <array>
#include <charconv>

namespace triglub::checks {

namespace {

constexpr std::size_t kMaxQuoted = 60;

bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

// Where to cut so that no UTF-8 character is cut in two.
std::size_t cut_before(std::string_view text, std::size_t at) {
  while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xc0U) == 0x80) --at;
  return at;
}

}  // namespace

void Reporter::tell(const DocumentFinding& finding) {
  ++(finding.rank == CheckRank::error ? counts_.errors : counts_.warnings);
  sink_(finding);
}

DocumentFinding Place::finding(Rule rule, int line, const std::string& found) const {
  const DocumentRule& properties = properties_of(rule);
  return {properties.code, properties.rank, path_, line, found + "; " + std::string(properties.advice)};
}

std::string quoted(std::string_view text) {
  const bool is_long = text.size() > kMaxQuoted;
  std::string shown = "'" + std::string(is_long ? text.substr(0, cut_before(text, kMaxQuoted)) : text);
  for (char& c : shown) {
    if (is_control(c)) c = ' ';
  }
  return shown + (is_long ? "...'" : "'");
}

std::string text_of(double value) {
  std::array<char, 32> text{};
  char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string about(double value) {
  std::array<char, 32> text{};
  char* const end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 6).ptr;
  return {text.data(), end};
}

}  // namespace triglub::checks
