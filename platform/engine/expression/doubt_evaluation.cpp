// What an instruction does to values is done by the machine with nulls; doubts are worked out of the operands before.
#include "engine/expression/doubt_evaluation.h"

#include <algorithm>
#include <cmath>

#include "base/half_place.h"
#include "engine/expression/over_records.h"

namespace triglub::expression {

namespace {

// A real and its doubt. That of a null does not matter.
struct Doubtful {
  double real;
  double doubt;
};

double smaller(double a, double b) {
  if (a == 0 || b == 0) return a + b;
  return std::min(a, b);
}

double finite_or_none(double doubt) { return std::isfinite(doubt) ? doubt : 0; }

// A factor of exactly 1 is the one that is written where there is none.
double doubt_of_product(const Doubtful& a, const Doubtful& b) {
  if (b.real == 1) return a.doubt;
  if (a.real == 1) return b.doubt;
  return finite_or_none(smaller(std::fabs(b.real) * a.doubt, std::fabs(a.real) * b.doubt));
}

double doubt_of_quotient(const Doubtful& a, const Doubtful& b) {
  if (b.real == 1) return a.doubt;
  return finite_or_none(smaller(a.doubt / std::fabs(b.real), std::fabs(a.real) * b.doubt / (b.real * b.real)));
}

class DoubtEvaluation : private NullableEvaluation {
 public:
  DoubtEvaluation(const Program& program, const Record& record, std::string* scratch, const Surroundings& surroundings)
      : NullableEvaluation(program, record, scratch, surroundings), doubts_(program.stack_size) {}

  bool run(Value* result, double* doubt) {
    if (!run_steps([this](const Instruction& instruction) { return step(instruction); }, result)) return false;
    if (doubt != nullptr) *doubt = result->is_null() ? 0 : doubt_of_top();
    return true;
  }

 private:
  bool step(const Instruction& instruction);
  double doubt_of_two(Op op);
  bool step_to(const Instruction& instruction, double doubt);
  bool read_real(const Instruction& instruction);
  bool call_over_records(const Instruction& instruction);
  void agree(const Instruction& instruction);

  double& doubt_of_top() { return doubts_[size_ - 1]; }
  Doubtful operand(std::size_t below_top) {
    const std::size_t at = size_ - 1 - below_top;
    return {stack_[at].real, doubts_[at]};
  }

  SmallArray<double, 16> doubts_;  // by place in the stack
};

bool DoubtEvaluation::step(const Instruction& instruction) {
  switch (instruction.op) {
    case Op::field_real:
      return read_real(instruction);
    case Op::drop_assumed:
    case Op::negate_real:
      return NullableEvaluation::step(instruction);
    case Op::real_to_text:
      if (!top().is_null()) top().real = fewest_digits(top().real, doubt_of_top());
      return step_to(instruction, 0);
    case Op::add_reals:
    case Op::subtract_reals:
    case Op::multiply_reals:
    case Op::divide_reals:
      return step_to(instruction, doubt_of_two(instruction.op));
    case Op::call:
      return step_to(instruction, instruction.keeps_doubt ? doubt_of_top() : 0);
    case Op::over_records:
      return call_over_records(instruction);
    case Op::agreed:
      agree(instruction);
      return true;
    default:
      return step_to(instruction, 0);
  }
}

double DoubtEvaluation::doubt_of_two(Op op) {
  const Doubtful right = operand(0);
  const Doubtful left = operand(1);
  if (op == Op::multiply_reals) return doubt_of_product(left, right);
  return op == Op::divide_reals ? doubt_of_quotient(left, right) : smaller(left.doubt, right.doubt);
}

// The value that comes to stand on top has the doubt.
bool DoubtEvaluation::step_to(const Instruction& instruction, double doubt) {
  if (!NullableEvaluation::step(instruction)) return false;
  doubt_of_top() = doubt;
  return true;
}

bool DoubtEvaluation::read_real(const Instruction& instruction) {
  if (!NullableEvaluation::step(instruction)) return false;
  doubt_of_top() = top().is_null() ? 0 : record_.doubt(instruction.field);
  return true;
}

bool DoubtEvaluation::call_over_records(const Instruction& instruction) {
  Value value;
  double doubt = 0;
  if (!(*surroundings_.parts)[instruction.part].evaluate(surroundings_, &value, &doubt)) return false;
  push(value);
  doubt_of_top() = doubt;
  return true;
}

// The first of two numbers stays, unless the second may be what it stands for.
void DoubtEvaluation::agree(const Instruction& instruction) {
  const Value second = pop();
  if (instruction.kind != Kind::real || second.is_null()) return;
  if (!(std::fabs(top().real - second.real) <= doubt_of_top())) return;
  top() = second;
  doubt_of_top() = 0;
}

}  // namespace

bool run_program(const Program& program, const Record& record, std::string* scratch, const Surroundings& surroundings,
                 Value* result, double* doubt) {
  if (program.needs_doubts(doubt != nullptr)) {
    return DoubtEvaluation(program, record, scratch, surroundings).run(result, doubt);
  }
  if (doubt != nullptr) *doubt = 0;
  return NullableEvaluation(program, record, scratch, surroundings).run(result);
}

}  // namespace triglub::expression
