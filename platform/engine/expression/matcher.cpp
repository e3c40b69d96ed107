// Patterns that name one text are compared, the others are left to RE2, whose answers are kept for a while.
#include "engine/expression/matcher.h"

#include <re2/re2.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>

#include "base/characters.h"
#include "platform/text.h"

namespace triglub::expression {

namespace {

// Most patterns name one value. They cost a comparison, and no automaton has to be built for them.
class LiteralMatcher final : public Matcher {
 public:
  explicit LiteralMatcher(std::string literal) : literal_(std::move(literal)) {}

  bool matches(std::string_view text) const override { return trimmed(text) == literal_; }
  const std::string* literal() const override { return &literal_; }

 private:
  std::string literal_;
};

constexpr std::size_t kLongestKept = 64;

// The answer to a question that was asked before. Matchers are told apart by number, as another may get the memory of
// one that is gone. Nothing has to be destroyed: a thread that cannot register what it is to destroy at its end would
// end the process.
struct Answer {
  std::uint64_t matcher = 0;
  std::array<char, kLongestKept> bytes{};
  std::uint8_t size = 0;
  bool is_match = false;

  std::string_view text() const { return {bytes.data(), size}; }
  // REQUIRES: the text is no longer than what is kept.
  void keep(std::uint64_t number, std::string_view text, bool answer) {
    matcher = number;
    std::copy(text.begin(), text.end(), bytes.begin());
    size = static_cast<std::uint8_t>(text.size());
    is_match = answer;
  }
};
static_assert(std::is_trivially_destructible_v<Answer>);

// Records ask for a few codes and units again and again; an automaton takes much longer than to find them here. Threads
// may share a matcher, so each has answers of its own.
Answer& answer_for(std::uint64_t matcher, std::string_view text) {
  constexpr std::size_t kAnswers = 64;
  thread_local std::array<Answer, kAnswers> answers;
  const std::size_t first = text.empty() ? 0 : static_cast<unsigned char>(text.front());
  return answers[(matcher * 31 + text.size() * 7 + first) % kAnswers];
}

class PatternMatcher final : public Matcher {
 public:
  explicit PatternMatcher(const std::string& pattern) : regex_(pattern, RE2::Quiet), number_(next_number()) {}

  bool matches(std::string_view text) const override {
    const std::string_view core = trimmed(text);
    Answer& answer = answer_for(number_, core);
    if (answer.matcher == number_ && answer.text() == core) return answer.is_match;
    const bool is_match = RE2::FullMatch(re2::StringPiece(core.data(), core.size()), regex_);
    if (core.size() <= kLongestKept) answer.keep(number_, core, is_match);
    return is_match;
  }
  const std::string* literal() const override { return nullptr; }

  const RE2& regex() const { return regex_; }

 private:
  static std::uint64_t next_number() {
    static std::atomic<std::uint64_t> latest{0};
    return ++latest;
  }

  RE2 regex_;
  std::uint64_t number_;
};

// A backslash before an ASCII character that is no letter or digit stands for that character in RE2; before others it
// means something else, or nothing. (RE2 also takes \_, which is left to it.)
bool is_escaped_literal(char c) { return is_ascii(c) && !is_word_character(c); }

// The one text that the pattern matches, when it is plain to see.
std::optional<std::string> literal_of(std::string_view pattern) {
  constexpr std::string_view kMeta = ".+*?()|[]{}^$";
  std::string literal;
  literal.reserve(pattern.size());
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (kMeta.find(pattern[at]) != std::string_view::npos) return std::nullopt;
    if (pattern[at] == '\\') {
      ++at;
      if (at == pattern.size() || !is_escaped_literal(pattern[at])) return std::nullopt;
    }
    literal += pattern[at];
  }
  // RE2 refuses a pattern that is no UTF-8, and says so.
  if (!is_utf8(literal)) return std::nullopt;
  return literal;
}

// The pattern as RE2 reads it. A slash needs no backslash there, and loses the one it needed between slashes.
std::string without_escaped_slashes(std::string_view pattern) {
  std::string plain;
  plain.reserve(pattern.size());
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const bool is_escape = pattern[at] == '\\' && at + 1 < pattern.size();
    if (is_escape && pattern[at + 1] != '/') plain += pattern[at];
    if (is_escape) ++at;
    plain += pattern[at];
  }
  return plain;
}

PatternFault fault_of(const RE2& regex, std::string_view pattern) {
  const std::size_t found = pattern.find(regex.error_arg());
  return {regex.error(), found == std::string_view::npos ? 0 : found};
}

}  // namespace

std::unique_ptr<Matcher> make_matcher(std::string_view pattern, PatternFault* fault) {
  if (std::optional<std::string> literal = literal_of(pattern)) {
    return std::make_unique<LiteralMatcher>(*std::move(literal));
  }
  auto matcher = std::make_unique<PatternMatcher>(without_escaped_slashes(pattern));
  if (matcher->regex().ok()) return matcher;
  *fault = fault_of(matcher->regex(), pattern);
  return nullptr;
}

}  // namespace triglub::expression
