// Expressions over the records of a view as documents of edition 2 have them: null fields are null, and functions over
// records see all the records of an element.
//
//     std::string fault;
//     auto expression = triglub::RecordExpression::compile(view, "concat(sta, ' ', count(chan))", &fault);
//     if (expression == nullptr) elog_complain(0, "%s", fault.c_str());
//     triglub::RecordValue value;
//     if (expression->evaluate_text(7, {.first = 5, .count = 9}, &value) && !value.is_null) use(value.text);
//
// doc/expressions.md describes the language; where it differs here stands under "In edition 2".
//
// An expression belongs to one thread at a time. Several threads may compile and evaluate expressions of their own for
// one view at the same time, as long as no other makes or releases views of its session or closes it. An expression may
// be used as long as its view is there.
#ifndef TRIGLUB_PLATFORM_RECORD_EXPRESSION_H
#define TRIGLUB_PLATFORM_RECORD_EXPRESSION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/export.h"

namespace triglub {

// Of every value of an expression that is not null.
enum class ValueKind : std::uint8_t { integer, real, text };

// A value: null, or the member of the expression's kind. The others are not set.
struct RecordValue {
  bool is_null = true;
  std::int64_t integer = 0;
  double real = 0;
  double doubt = 0;       // of a real: how far it may be from what was measured, for rounded_within(); 0: it is exact
  std::string_view text;  // valid until the next evaluation of the same expression
};

// Numbers of records of a view, from 0, in any order.
struct RecordList {
  const std::uint32_t* numbers = nullptr;  // null: the records first, first + 1, ...; belongs to the caller
  std::uint32_t first = 0;
  std::uint32_t count = 0;

  std::uint32_t operator[](std::uint32_t i) const { return numbers == nullptr ? first + i : numbers[i]; }
};

class TRIGLUB_API RecordExpression {
 public:
  // The expression over the fields of the handle's view. Null, and in *fault (unless that is null) what is wrong, when
  // it does not compile: a sentence; then, on lines of their own, the expression and a caret under the place. For a
  // name that is unknown it says which one was likely meant. Nothing goes to the log.
  static std::unique_ptr<RecordExpression> compile(Dbptr view, std::string_view text, std::string* fault);
  ~RecordExpression();
  RecordExpression(const RecordExpression&) = delete;
  RecordExpression& operator=(const RecordExpression&) = delete;

  ValueKind kind() const;
  // True for a field and nothing else: evaluate_text() then gives a number as the file has it.
  bool is_field() const;
  // True when there are functions over records.
  bool uses_records() const;
  // The tables of the view, by position in the order of its joins, ascending, on whose rows the value depends as long
  // as the records of the element stay the same: those with a field outside functions over records.
  const std::vector<std::size_t>& tables() const;
  // The same with the fields inside functions over records.
  const std::vector<std::size_t>& all_tables() const;

  // The value at a record. `records` are those of the element, which functions over records look at. False, with a null
  // for value, when the evaluation fails: a division by zero, an argument outside a function's domain, a number that is
  // too large, a text that holds no number. Fields of rows that are absent are null.
  // REQUIRES: the records are the view's; records.count > 0 when uses_records().
  bool evaluate(std::uint32_t record, const RecordList& records, RecordValue* value);
  // The same with value->text set whatever the kind: a number as its shortest text within its doubt, that of a bare
  // field as dbget gives it.
  bool evaluate_text(std::uint32_t record, const RecordList& records, RecordValue* value);

  // How many times assume() took its second argument so far.
  std::uint64_t assumed() const;

 private:
  friend class RecordExpressionCompiler;
  class State;
  explicit RecordExpression(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

// The number that a text is, as expressions convert it: decimal, with a sign, a point, an exponent and blanks at its
// ends or without. Nothing for any other text, and for a number too large for a double.
TRIGLUB_API std::optional<double> number_in(std::string_view text);

// Appends the shortest text that reads back to the same double ("0.1", "1e+05"; "0" for both zeros), and the decimal
// text of an integer.
TRIGLUB_API void append_shortest(double number, std::string* text);
TRIGLUB_API void append_decimal(std::int64_t number, std::string* text);

// A number that was worked out of measured ones, with the digits that it has: of those no further than `doubt` from it
// the one of the fewest significant digits, rounded as printf rounds (1642.9999999999998 within 0.05: 1643); 0 when 0
// is no further. Without doubt (0) the number itself. HalfPlaces in platform/columns.h has the doubt of a stored real.
TRIGLUB_API double rounded_within(double number, double doubt);
// Appends the shortest text of that.
TRIGLUB_API void append_rounded(double number, double doubt, std::string* text);

}  // namespace triglub

#endif
