// What an instruction does to values is done by the machine without nulls, which never meets one.
#include "engine/expression/nullable_evaluation.h"

#include <algorithm>

#include "engine/expression/over_records.h"

namespace triglub::expression {

namespace {

// How many values the instruction takes from the stack.
std::size_t operand_count(const Instruction& instruction) {
  if (instruction.op == Op::call) return instruction.count;
  if (instruction.op == Op::format_any) return 2;
  if (instruction.op <= Op::field_is_null) return 0;
  return instruction.op <= Op::match || instruction.op == Op::format ? 1 : 2;
}

}  // namespace

bool NullableEvaluation::run(Value* result) {
  return run_steps([this](const Instruction& instruction) { return step(instruction); }, result);
}

bool NullableEvaluation::step(const Instruction& instruction) {
  switch (instruction.op) {
    case Op::field_integer:
    case Op::field_real:
    case Op::field_text:
      return read_field(instruction);
    case Op::integer_to_truth:
    case Op::real_to_truth:
      if (top().is_null()) top() = Value::of(std::int64_t{0});
      return Evaluation::step(instruction);
    default:
      if (instruction.op >= Op::is_null) return step_of_nulls(instruction);
      return pass_null(instruction) || Evaluation::step(instruction);
  }
}

bool NullableEvaluation::step_of_nulls(const Instruction& instruction) {
  switch (instruction.op) {
    case Op::is_null:
      put_truth(top().is_null());
      return true;
    case Op::push_is_null:
      push(top());
      put_truth(top().is_null());
      return true;
    case Op::drop_assumed:
      pop();
      ++*surroundings_.assumed;
      return true;
    case Op::null_to_empty:
      if (top().is_null()) top() = Value::of(std::string_view());
      return true;
    case Op::agreed:  // without doubt, what agrees is the same
      pop();
      return true;
    default:
      return call_over_records(instruction);
  }
}

bool NullableEvaluation::read_field(const Instruction& instruction) {
  if (!record_.is_null(instruction.field)) return Evaluation::step(instruction);
  push(Value::null());
  return true;
}

// Puts a null in the place of operands of which one is null.
bool NullableEvaluation::pass_null(const Instruction& instruction) {
  const std::size_t count = operand_count(instruction);
  const Value* const end = stack_.data() + size_;
  if (std::none_of(end - count, end, [](const Value& operand) { return operand.is_null(); })) return false;
  size_ -= count;
  push(Value::null());
  return true;
}

bool NullableEvaluation::call_over_records(const Instruction& instruction) {
  Value value;
  if (!(*surroundings_.parts)[instruction.part].evaluate(surroundings_, &value, nullptr)) return false;
  push(value);
  return true;
}

}  // namespace triglub::expression
