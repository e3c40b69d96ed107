#include "engine/session/compile.h"
#include "platform/text.h"

namespace triglub {

namespace {

enum Verdict : char { UNASKED = 0, NO = 1, YES = 2 };

}  // namespace

CodeCondition::CodeCondition(const View& view, Expression& expression)
    : match_(*expression.compiled->field_match()),
      codes_(view, view.fields()[static_cast<std::size_t>(match_.field)]),
      verdicts_(expression.verdicts) {
  verdicts_.resize(codes_.code_count(), UNASKED);
}

bool CodeCondition::decide(std::uint32_t code) {
  char& verdict = verdicts_[code];
  if (verdict == UNASKED) verdict = match_.matcher->matches(trimmed(codes_.text(code))) != match_.negated ? YES : NO;
  return verdict == YES;
}

}  // namespace triglub
