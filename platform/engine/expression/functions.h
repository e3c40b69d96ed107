// The functions of the language, by name.
//
// A parameter list has a letter for each argument:
//   n  a number; integers stay what they are when every n is one
//   r  a number, taken as a real
//   i  an integer
//   t  a text
//   s  anything, taken as its text
//   a  anything, as it is
//   f  a bare field
// A star behind the last letter means one or more of it.
#ifndef TRIGLUB_ENGINE_EXPRESSION_FUNCTIONS_H
#define TRIGLUB_ENGINE_EXPRESSION_FUNCTIONS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/expression.h"
#include "engine/expression/value.h"

namespace triglub::expression {

// The longest text that a function makes, in bytes: calls within calls could double a text two hundred times.
inline constexpr std::size_t kMaxText = std::size_t{1024} * 1024;

// False when there is no result. A text result lies in *scratch (empty at first), in an argument or in static memory.
using Implementation = bool (*)(std::span<const Value> arguments, std::string* scratch, Value* result);

enum class Form : std::uint8_t {
  call,        // runs an implementation
  conversion,  // its argument, as a value of its own kind
  null_test,   // asks the record, or its argument where nulls propagate
  format,      // checked as far as can be when compiled
  // Where nulls propagate:
  identity,       // its argument
  assumption,     // its second argument where the first is null
  agreement,      // its second argument where that is the first within the doubt of it
  call_on_nulls,  // runs an implementation; nulls are empty texts to it
  // Of its argument at all records of an element.
  first,
  last,
  earliest,
  latest,
  count,
};

constexpr bool is_over_records(Form form) { return form >= Form::first; }

// What most rows leave out comes last.
struct Function {  // NOLINT(clang-analyzer-optin.performance.Padding): there are few of them
  std::string_view name;
  std::string_view parameters;
  Kind result;
  Form form;
  Implementation run;           // of calls
  Implementation run_integers;  // when all arguments are integers, with an integer for result; null: no difference
  bool keeps_doubt = false;     // the result is as far from what was measured as the argument

  bool is_open_ended() const { return parameters.ends_with('*'); }
  std::size_t least_arguments() const { return parameters.size() - is_open_ended(); }
  char parameter(std::size_t argument) const {
    return argument < least_arguments() ? parameters[argument] : parameters[least_arguments() - 1];
  }
};

// Null when there is none of that name. Some have a meaning of their own, or are there at all, where nulls propagate.
const Function* find_function(std::string_view name, Nulls nulls);
// The names of all functions.
std::vector<std::string> function_names(Nulls nulls);

// Appends, unless the text would grow beyond kMaxText: then false.
bool append(std::string_view more, std::string* text);

}  // namespace triglub::expression

#endif
