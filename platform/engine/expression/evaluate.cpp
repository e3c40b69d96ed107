// Runs one instruction after the other on a stack of values; a run ends early where there is no value.
#include "engine/expression/evaluate.h"

#include <cmath>
#include <utility>

#include "engine/expression/numbers.h"

namespace triglub::expression {

namespace {

template <typename T>
Outcome outcome(const T& a, const T& b) {
  if (a < b) return kLess;
  if (a == b) return kEqual;
  return a > b ? kGreater : kUnordered;
}

Outcome mirrored(Outcome outcome) {
  if (outcome == kLess) return kGreater;
  return outcome == kGreater ? kLess : outcome;
}

Value truth(Outcome outcome, const Instruction& comparison) {
  return Value::of(std::int64_t{(outcome & comparison.outcomes) != 0});
}

// The remainder with the sign of the left side. -1 is set apart, as the division behind it could overflow.
bool remainder_of(std::int64_t a, std::int64_t b, std::int64_t* result) {
  if (b == 0) return false;
  *result = b == -1 ? 0 : a % b;
  return true;
}

std::string_view number_text(const Instruction& instruction, const Record& record, Value number, NumberBuffer* buffer) {
  if (instruction.field != kNoField) return record.text(instruction.field);
  return instruction.kind == Kind::integer ? text_of(number.integer, buffer) : text_of(number.real, buffer);
}

// A number and a text compare as numbers where the text is one, else as texts.
Outcome compare_to_text(const Instruction& instruction, const Record& record, Value number, std::string_view text) {
  const std::optional<Number> read = read_number(text);
  if (!read) {
    NumberBuffer buffer;
    return outcome(number_text(instruction, record, number, &buffer), text);
  }
  if (instruction.kind == Kind::real) return outcome(number.real, read->real);
  if (read->is_whole) return outcome(number.integer, read->integer);
  return outcome(static_cast<double>(number.integer), read->real);
}

}  // namespace

bool Evaluation::run(Value* result) {
  return run_steps([this](const Instruction& instruction) { return step(instruction); }, result);
}

bool Evaluation::step(const Instruction& instruction) {
  switch (instruction.op) {
    case Op::constant:
      push(instruction.value);
      return true;
    case Op::field_integer:
      push(Value::of(record_.integer(instruction.field)));
      return true;
    case Op::field_real:
      push(Value::of(record_.real(instruction.field)));
      return true;
    case Op::field_text:
      push(Value::of(record_.text(instruction.field)));
      return true;
    case Op::field_is_null:
      push(Value::of(std::int64_t{record_.is_null(instruction.field)}));
      return true;
    case Op::logical_not:
      top().integer = top().integer == 0 ? 1 : 0;
      return true;
    case Op::match:
      top() = Value::of(std::int64_t{instruction.matcher->matches(top().text()) != instruction.is_negated});
      return true;
    case Op::call:
      return call(instruction);
    case Op::format:
      return format(instruction);
    case Op::format_any:
      return format_any(instruction);
    case Op::compare_integers:
    case Op::compare_reals:
    case Op::compare_texts:
    case Op::compare_number_to_text:
    case Op::compare_text_to_number:
      return compare(instruction);
    default:
      return instruction.op <= Op::real_to_truth ? convert(instruction) : compute(instruction);
  }
}

bool Evaluation::convert(const Instruction& instruction) {
  Value& value = top();
  NumberBuffer buffer;
  switch (instruction.op) {
    case Op::integer_to_real:
      value = Value::of(static_cast<double>(value.integer));
      return true;
    case Op::real_to_integer:
      return to_integer(value.real, &value.integer);
    case Op::text_to_integer:
      return to_integer(value.text(), &value.integer);
    case Op::text_to_real:
      return to_real(value.text(), &value.real);
    case Op::integer_to_text:
      scratch_[instruction.scratch] = text_of(value.integer, &buffer);
      return put_scratch(instruction);
    case Op::real_to_text:
      scratch_[instruction.scratch] = text_of(value.real, &buffer);
      return put_scratch(instruction);
    case Op::integer_to_truth:
      value.integer = value.integer != 0 ? 1 : 0;
      return true;
    default:  // real_to_truth
      value.integer = value.real != 0 ? 1 : 0;
      return true;
  }
}

bool Evaluation::compute(const Instruction& instruction) {
  switch (instruction.op) {
    case Op::negate_integer:
      return !__builtin_sub_overflow(std::int64_t{0}, top().integer, &top().integer);
    case Op::negate_real:
      top().real = -top().real;
      return true;
    default:
      return instruction.op <= Op::remainder_integers ? compute_integers(instruction) : compute_reals(instruction);
  }
}

bool Evaluation::compute_integers(const Instruction& instruction) {
  const std::int64_t right = pop().integer;
  std::int64_t& left = top().integer;
  switch (instruction.op) {
    case Op::add_integers:
      return !__builtin_add_overflow(left, right, &left);
    case Op::subtract_integers:
      return !__builtin_sub_overflow(left, right, &left);
    case Op::multiply_integers:
      return !__builtin_mul_overflow(left, right, &left);
    default:
      return remainder_of(left, right, &left);
  }
}

// A result that is not finite counts as a failure: a division by zero, or a number beyond the range of reals.
bool Evaluation::compute_reals(const Instruction& instruction) {
  const double right = pop().real;
  double& left = top().real;
  switch (instruction.op) {
    case Op::add_reals:
      left += right;
      break;
    case Op::subtract_reals:
      left -= right;
      break;
    case Op::multiply_reals:
      left *= right;
      break;
    case Op::divide_reals:
      if (right == 0) return false;
      left /= right;
      break;
    default:
      left = std::fmod(left, right);
      break;
  }
  return std::isfinite(left);
}

bool Evaluation::compare(const Instruction& instruction) {
  const Value right = pop();
  const Value left = top();
  switch (instruction.op) {
    case Op::compare_integers:
      top() = truth(outcome(left.integer, right.integer), instruction);
      return true;
    case Op::compare_reals:
      top() = truth(outcome(left.real, right.real), instruction);
      return true;
    case Op::compare_texts:
      top() = truth(outcome(left.text(), right.text()), instruction);
      return true;
    case Op::compare_number_to_text:
      top() = truth(compare_to_text(instruction, record_, left, right.text()), instruction);
      return true;
    default:  // compare_text_to_number
      top() = truth(mirrored(compare_to_text(instruction, record_, right, left.text())), instruction);
      return true;
  }
}

bool Evaluation::call(const Instruction& instruction) {
  size_ -= instruction.count;
  const std::span<const Value> arguments(stack_.data() + size_, instruction.count);
  Value result{};
  std::string* scratch = &scratch_[instruction.scratch];
  scratch->clear();
  if (!instruction.run(arguments, scratch, &result)) return false;
  push(result);
  return true;
}

// The text is in the scratch that no operand uses, and takes the operand's place.
bool Evaluation::put_scratch(const Instruction& instruction) {
  top() = Value::of(std::string_view(scratch_[instruction.scratch]));
  return true;
}

bool Evaluation::format(const Instruction& instruction) {
  const Value value = top();
  std::string* out = &scratch_[instruction.scratch];
  switch (instruction.formatting->kind()) {
    case Kind::integer:
      instruction.formatting->write(value.integer, out);
      break;
    case Kind::real:
      if (!std::isfinite(value.real)) return false;
      instruction.formatting->write(value.real, out);
      break;
    case Kind::text:
      instruction.formatting->write(value.text(), out);
      break;
  }
  return put_scratch(instruction);
}

bool Evaluation::format_any(const Instruction& instruction) {
  const Value value = pop();
  FormatFault fault;
  const std::optional<Format> format = Format::read(top().text(), &fault);
  if (!format) return false;
  std::string* out = &scratch_[instruction.scratch];
  NumberBuffer buffer;
  const bool is_text = instruction.kind == Kind::text;
  if (format->kind() == Kind::text) {
    format->write(is_text ? value.text() : number_text(instruction, record_, value, &buffer), out);
    return put_scratch(instruction);
  }
  if (is_text) return false;
  const bool is_integer = instruction.kind == Kind::integer;
  if (format->kind() == Kind::real) {
    const double number = is_integer ? static_cast<double>(value.integer) : value.real;
    if (!std::isfinite(number)) return false;
    format->write(number, out);
    return put_scratch(instruction);
  }
  std::int64_t number = value.integer;
  if (!is_integer && !to_integer(value.real, &number)) return false;
  format->write(number, out);
  return put_scratch(instruction);
}

}  // namespace triglub::expression
