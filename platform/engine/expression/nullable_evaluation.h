// The machine with nulls: an instruction that takes a null gives a null, unless it is about nulls.
#ifndef TRIGLUB_ENGINE_EXPRESSION_NULLABLE_EVALUATION_H
#define TRIGLUB_ENGINE_EXPRESSION_NULLABLE_EVALUATION_H

#include <cstdint>
#include <string>
#include <vector>

#include "engine/expression/evaluate.h"
#include "engine/expression/nullable_expression.h"

namespace triglub::expression {

class FunctionOverRecords;

// What an evaluation knows beyond its record.
struct Surroundings {
  Records* records;                         // of the element; null where no function asks for them
  std::vector<FunctionOverRecords>* parts;  // likewise
  std::uint64_t* assumed;                   // counts the values that are assumed
};

// One run of a program that was emitted for nulls that propagate, at one record.
class NullableEvaluation : protected Evaluation {
 public:
  NullableEvaluation(const Program& program, const Record& record, std::string* scratch,
                     const Surroundings& surroundings)
      : Evaluation(program, record, scratch), surroundings_(surroundings) {}

  // False when the evaluation fails.
  bool run(Value* result);

 protected:
  bool step(const Instruction& instruction);

  const Surroundings surroundings_;

 private:
  bool step_of_nulls(const Instruction& instruction);
  bool read_field(const Instruction& instruction);
  bool pass_null(const Instruction& instruction);
  bool call_over_records(const Instruction& instruction);
  void put_truth(bool truth) { top() = Value::of(std::int64_t{truth}); }
};

}  // namespace triglub::expression

#endif
