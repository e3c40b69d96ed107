// The machine that runs programs.
#ifndef TRIGLUB_ENGINE_EXPRESSION_EVALUATE_H
#define TRIGLUB_ENGINE_EXPRESSION_EVALUATE_H

#include <string>
#include <utility>

#include "engine/expression/program.h"
#include "engine/expression/small_array.h"

namespace triglub::expression {

// One run of a program at one record. What it answers lives as long as it does.
class Evaluation {
 public:
  // `scratch`: program.scratch_size texts; their memory is reused by later evaluations.
  Evaluation(const Program& program, const Record& record, std::string* scratch)
      : program_(program), record_(record), scratch_(scratch), stack_(program.stack_size) {}

  // False when the evaluation fails.
  bool run(Value* result);

 protected:
  // Goes through the program, by its jumps, and does step(instruction) with the others.
  template <typename Step>
  bool run_steps(Step step, Value* result);

  bool step(const Instruction& instruction);

  void push(Value value) { stack_[size_++] = value; }
  Value& top() { return stack_[size_ - 1]; }
  Value pop() { return stack_[--size_]; }

  const Program& program_;
  const Record& record_;
  std::string* scratch_;
  SmallArray<Value, 16> stack_;
  std::size_t size_ = 0;

 private:
  bool convert(const Instruction& instruction);
  bool compute(const Instruction& instruction);
  bool compute_integers(const Instruction& instruction);
  bool compute_reals(const Instruction& instruction);
  bool compare(const Instruction& instruction);
  bool call(const Instruction& instruction);
  bool format(const Instruction& instruction);
  bool format_any(const Instruction& instruction);
  bool put_scratch(const Instruction& instruction);
};

template <typename Step>
bool Evaluation::run_steps(Step step, Value* result) {
  const Instruction* const code = program_.code.data();
  const std::size_t count = program_.code.size();
  for (std::size_t at = 0; at < count; ++at) {
    const Instruction& instruction = code[at];
    switch (instruction.op) {
      case Op::jump:
        at = instruction.target - 1;
        break;
      case Op::jump_if_false:
        if (pop().integer == 0) at = instruction.target - 1;
        break;
      case Op::jump_and:
      case Op::jump_or:
        if ((top().integer != 0) == (instruction.op == Op::jump_or)) {
          at = instruction.target - 1;
        } else {
          pop();
        }
        break;
      default:
        if (!step(instruction)) return false;
    }
  }
  *result = top();
  return true;
}

}  // namespace triglub::expression

#endif
