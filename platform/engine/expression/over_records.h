// Functions over the records of an element: first, last, earliest, latest, count.
#ifndef TRIGLUB_ENGINE_EXPRESSION_OVER_RECORDS_H
#define TRIGLUB_ENGINE_EXPRESSION_OVER_RECORDS_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "engine/expression/nullable_evaluation.h"

namespace triglub::expression {

// One call in an expression. One thread at a time.
class FunctionOverRecords {
 public:
  // REQUIRES: the program outlives it.
  explicit FunctionOverRecords(const ProgramOverRecords& program) : program_(program) {}

  // The value, and the doubt of it unless `doubt` is null; a text is valid until the next evaluation. False when the
  // argument fails at a record that counts.
  bool evaluate(const Surroundings& surroundings, Value* result, double* doubt);

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  bool argument_at(std::uint32_t i, const Surroundings& surroundings, Value* value, double* doubt);
  bool extreme(const Surroundings& surroundings, Value* result, double* doubt);
  bool count(const Surroundings& surroundings, Value* result);
  bool is_better(const Value& value, const Value& best) const;
  Value kept(const Value& value);

  const ProgramOverRecords& program_;
  Scratch scratch_;
  std::string kept_;                                                     // the best text so far
  std::unordered_set<std::string, TextHash, std::equal_to<>> distinct_;  // bytes that values have in common when equal
};

}  // namespace triglub::expression

#endif
