// Compiling an expression for a view, and conditions decided by a field's distinct texts.
#ifndef TRIGLUB_ENGINE_SESSION_COMPILE_H
#define TRIGLUB_ENGINE_SESSION_COMPILE_H

#include <memory>
#include <optional>

#include "engine/session/database.h"

namespace triglub {

// Null after a complaint.
std::unique_ptr<Expression> compile_expression(const View& view, const char* text, int type);

// The condition FIELD =~ /pattern/ (or !~) over a view: the pattern is tried once for each distinct text of the field,
// then every record is decided by its text's code.
class CodeCondition {
 public:
  // `expression` must have a field_match(); its verdicts are kept there.
  CodeCondition(const View& view, Expression& expression);

  bool is_true(std::uint32_t record) { return decide(codes_[record]); }
  // True for texts that satisfy the condition.
  bool decide(std::uint32_t code);
  std::uint32_t code_count() const { return codes_.code_count(); }
  // When the condition is FIELD =~ /text/ without anything special in it: that text's code, if the field has it.
  bool has_one_text() const { return match_.matcher->literal() != nullptr && !match_.negated; }
  std::optional<std::uint32_t> only_code() const { return codes_.find(*match_.matcher->literal()); }
  std::size_t field() const { return static_cast<std::size_t>(match_.field); }

 private:
  expression::Compiled::FieldMatch match_;
  RecordCodes codes_;
  std::vector<char>& verdicts_;
};

}  // namespace triglub

#endif
