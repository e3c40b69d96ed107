// Matching a pattern costs far more than looking up a code, and a column has far fewer texts than rows.
#include "engine/operations/code_condition.h"

#include "platform/text.h"

namespace triglub {

namespace {

enum Answer : char { kUnasked = 0, kNo = 1, kYes = 2 };

}  // namespace

CodeCondition::CodeCondition(const View& view, Expression& expression)
    : match_(*expression.compiled->field_match()),
      codes_(view, view.fields()[static_cast<std::size_t>(match_.field)]),
      memo_(expression.memo) {
  memo_.resize(codes_.code_count(), kUnasked);
}

bool CodeCondition::decide(std::uint32_t code) {
  char& answer = memo_[code];
  if (answer == kUnasked) answer = match_.matcher->matches(trimmed(codes_.text(code))) != match_.negated ? kYes : kNo;
  return answer == kYes;
}

}  // namespace triglub
