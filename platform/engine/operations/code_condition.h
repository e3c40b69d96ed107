// Conditions that are decided by the distinct texts of a field.
#ifndef TRIGLUB_ENGINE_OPERATIONS_CODE_CONDITION_H
#define TRIGLUB_ENGINE_OPERATIONS_CODE_CONDITION_H

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/operations/expression.h"
#include "engine/view/field_runs.h"
#include "engine/view/view.h"

namespace triglub {

// The condition FIELD =~ /pattern/ (or !~) over a view: the pattern is tried once for each distinct text of the field,
// then every record is decided by its text's code.
class CodeCondition {
 public:
  // `expression` must have a field_match(); answers are kept in its memo. Both must outlive the condition.
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
  std::vector<char>& memo_;
};

}  // namespace triglub

#endif
