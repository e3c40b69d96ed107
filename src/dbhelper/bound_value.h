// Expressions and typed values of the parameter file over one view: names are looked up and expressions compiled when a
// value is first asked for, then kept. A document asks for the same values at every record.
#ifndef TRIGLUB_SRC_DBHELPER_BOUND_VALUE_H
#define TRIGLUB_SRC_DBHELPER_BOUND_VALUE_H

#include <optional>
#include <string>

#include "elements.h"
#include "platform/database.h"

namespace triglub {

// REQUIRES of all here: every call comes with a handle of the same view.
class BoundExpression {
 public:
  BoundExpression(std::string text, int type) : text_(std::move(text)), type_(type) {}

  const char* text() const { return text_.c_str(); }
  int type() const { return type_; }

  // False, after the engine's complaint, when the expression does not compile; tried again at the next call.
  bool compile(Dbptr db);
  // As dbex_eval; the string form is for dbSTRING. REQUIRES: compile() said true.
  bool evaluate(Dbptr db, void* result) const;
  bool evaluate(Dbptr db, std::string* result) const;

 private:
  std::string text_;
  int type_;
  Expression* compiled_ = nullptr;  // the view's
};

// What eval_expr, eval_epoch_expr, eval_jday_expr and eval_str_expr give, in place of what *result held. They fail as
// those do.
using TextWriter = void(Dbptr db, BoundExpression& expression, std::string* result);
TextWriter number_text;
TextWriter epoch_text;
TextWriter yearday_text;
TextWriter string_text;

// What eval_as_type gives for a field name or expression and a type keyword.
class BoundValue {
 public:
  BoundValue(std::string text, std::string type);

  // In place of what *result held. Fails as eval_as_type does.
  void write(Dbptr db, std::string* result);

 private:
  void read_field(Dbptr db, std::string* result);
  void write_angle(Dbptr db, std::string* result);
  void write_expression(Dbptr db, int type, TextWriter* write, std::string* result);

  std::string text_;
  std::string type_;
  // Each known once it was asked for.
  std::optional<GroupType> kind_;
  std::optional<std::int64_t> field_;
  const std::string* null_ = nullptr;
  std::optional<BoundExpression> expression_;
  // The text of the angle written last, and what it became.
  std::string latest_;
  std::string latest_result_;
};

}  // namespace triglub

#endif
