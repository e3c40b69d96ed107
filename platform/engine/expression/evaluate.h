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

 private:
  bool step(const Instruction& instruction);
  bool convert(const Instruction& instruction);
  bool compute(const Instruction& instruction);
  bool compute_integers(const Instruction& instruction);
  bool compute_reals(const Instruction& instruction);
  bool compare(const Instruction& instruction);
  bool call(const Instruction& instruction);
  bool format(const Instruction& instruction);
  bool format_any(const Instruction& instruction);

  void push(Value value) { stack_[size_++] = value; }
  Value& top() { return stack_[size_ - 1]; }
  Value pop() { return stack_[--size_]; }
  bool put_scratch(const Instruction& instruction);

  const Program& program_;
  const Record& record_;
  std::string* scratch_;
  SmallArray<Value, 16> stack_;
  std::size_t size_ = 0;
};

}  // namespace triglub::expression

#endif
