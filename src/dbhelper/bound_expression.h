// Expressions of the parameter file over one view, compiled when a value is first asked for and then kept: a document
// asks for the same values at every record.
#ifndef TRIGLUB_SRC_DBHELPER_BOUND_EXPRESSION_H
#define TRIGLUB_SRC_DBHELPER_BOUND_EXPRESSION_H

#include <string>
#include <utility>

#include "platform/database.h"

namespace triglub {

// REQUIRES: every call comes with a handle of the same view.
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
// those do, with FatalFailure where those end the process.
using TextWriter = void(Dbptr db, BoundExpression& expression, std::string* result);
TextWriter number_text;
TextWriter epoch_text;
TextWriter yearday_text;
TextWriter string_text;

}  // namespace triglub

#endif
