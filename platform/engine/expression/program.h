// The form in which an expression runs: instructions for a machine with a stack of values. Kinds are settled, so no
// instruction asks what a value is.
#ifndef TRIGLUB_ENGINE_EXPRESSION_PROGRAM_H
#define TRIGLUB_ENGINE_EXPRESSION_PROGRAM_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/expression/expression.h"
#include "engine/expression/format.h"
#include "engine/expression/functions.h"
#include "engine/expression/value.h"

namespace triglub::expression {

enum class Op : std::uint8_t {
  // Push.
  constant,
  field_integer,
  field_real,
  field_text,
  field_is_null,
  // Change the top.
  integer_to_real,
  real_to_integer,
  text_to_integer,
  text_to_real,
  integer_to_text,
  real_to_text,
  integer_to_truth,
  real_to_truth,
  negate_integer,
  negate_real,
  logical_not,  // of a truth
  match,
  // Replace two by one.
  add_integers,
  subtract_integers,
  multiply_integers,
  remainder_integers,
  add_reals,
  subtract_reals,
  multiply_reals,
  divide_reals,
  remainder_reals,
  compare_integers,
  compare_reals,
  compare_texts,
  compare_number_to_text,
  compare_text_to_number,
  // Replace the arguments by the result.
  call,
  format,      // known when compiled; its argument is of the kind it takes
  format_any,  // a format that the record gives, and an argument
  // Go on elsewhere. The truth on top is taken, or kept when `and` and `or` need no right side.
  jump,
  jump_if_false,
  jump_and,
  jump_or,
  // Where nulls propagate.
  is_null,        // whether the top is null, in its place
  push_is_null,   // whether the top is null, above it
  drop_assumed,   // the null on top goes, for the value that is assumed
  null_to_empty,  // a null text on top becomes the empty one
  over_records,   // pushes
  agreed,         // two numbers by the upper one where it is the lower one within the doubt of that, else by the lower
};

// Outcomes of a comparison, to be combined: a relation holds when its outcomes include the one at hand.
enum Outcome : std::uint8_t { kLess = 1, kEqual = 2, kGreater = 4, kUnordered = 8 };

struct Instruction {
  Op op{};
  std::uint8_t outcomes = 0;  // of a comparison
  bool is_negated = false;    // of a match
  bool keeps_doubt = false;   // of a call
  Kind kind{};                // of the number in a comparison with a text, the argument of format_any, what is agreed
  int field = kNoField;       // to push; the bare field that a number is, when its text may be needed
  std::uint32_t count = 0;    // arguments of a call
  std::uint32_t scratch = 0;  // where a new text may stand
  std::uint32_t target = 0;   // of a jump
  std::uint32_t part = 0;     // of a function over records: which of the program's parts
  Value value{};              // of a constant
  const Matcher* matcher = nullptr;
  Implementation run = nullptr;
  const Format* formatting = nullptr;
};

struct ProgramOverRecords;

struct Program {
  std::vector<Instruction> code;
  std::size_t stack_size = 0;
  std::size_t scratch_size = 0;  // new texts at most: no instruction runs twice in one evaluation
  Kind result{};
  bool has_doubt = false;   // reads reals that are in doubt
  bool asks_doubt = false;  // what it does depends on doubts
  std::vector<std::unique_ptr<Format>> formats;
  std::vector<ProgramOverRecords> parts;

  // Whether doubts have to be worked out, when that of the result is asked for or not.
  bool needs_doubts(bool of_result) const { return has_doubt && (asks_doubt || (of_result && result == Kind::real)); }
};

// A function over records and the program of its argument.
struct ProgramOverRecords {
  Form function{};
  Program argument;
};

}  // namespace triglub::expression

#endif
