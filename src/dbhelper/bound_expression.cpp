// Expressions over one record, as the texts that stand in the document.
#include "dbhelper/bound_expression.h"

#include <charconv>

#include "base/six_digits.h"
#include "dbhelper.h"
#include "fatal_failure.h"
#include "platform/elog.h"
#include "platform/text.h"
#include "platform/timeconv.h"

namespace triglub {

namespace {

// No date at all, and not mistaken for one by a reader.
constexpr const char* kBadDate = "0000-00-00T00:00:00ERR";

void write_integer(std::int64_t value, std::string* result) {
  char text[32];
  char* end = std::to_chars(text, text + sizeof text, value).ptr;
  result->assign(text, static_cast<std::size_t>(end - text));
}

void trim(std::string* text) {
  const std::string_view kept = trimmed(*text);
  const auto before = static_cast<std::size_t>(kept.data() - text->data());
  text->resize(before + kept.size());
  text->erase(0, before);
}

}  // namespace

bool BoundExpression::compile(Dbptr db) {
  return compiled_ != nullptr || dbex_compile(db, text_.c_str(), &compiled_, type_) == 0;
}

bool BoundExpression::evaluate(Dbptr db, void* result) const { return dbex_eval(db, compiled_, 0, result) == 0; }

bool BoundExpression::evaluate(Dbptr db, std::string* result) const { return evaluate_text(db, compiled_, result); }

void number_text(Dbptr db, BoundExpression& expression, std::string* result) {
  union {
    std::int64_t whole = 0;
    double real;
  } value;
  // A number that cannot be had stands as 0 in the document; the complaint says where to look.
  if (!expression.compile(db) || !expression.evaluate(db, &value)) {
    elog_complain(0, "dbex_evalstr failure [%s]", expression.text());
  }
  switch (expression.type()) {
    case dbREAL:
    case dbTIME:
      result->clear();
      return append_six_digits(value.real, result);
    case dbINTEGER:
    case dbYEARDAY:
      return write_integer(value.whole, result);
    default:
      throw FatalFailure(" unknown evaluation");
  }
}

void epoch_text(Dbptr db, BoundExpression& expression, std::string* result) {
  if (any_dbinvalid(db)) throw std::runtime_error("invalid db field");
  if (!expression.compile(db)) {
    // Empty, unlike the bad date below: an expression that is wrong for every record leaves nothing to look for in
    // one of them.
    elog_complain(0, "failure compiling expr %s", expression.text());
    result->clear();
    return;
  }
  double time = 0.0;
  if (!expression.evaluate(db, &time)) {
    elog_complain(0, "failure to evaluate %s", expression.text());
    *result = kBadDate;
  } else if (time < 0.0) {  // the database's null time
    *result = DATETIME_ENDVAL;
  } else {
    // Fixed: the document's schema settles how a time is written, whatever formats the parameter file gives to others.
    format_epoch(time, "%GT%H:%M:%S.%u", result);
  }
}

void yearday_text(Dbptr db, BoundExpression& expression, std::string* result) {
  *result = kBadDate;
  if (!expression.compile(db)) {
    elog_complain(0, "failure with eval_jday_expr %s", expression.text());
    return;
  }
  std::int64_t day = 0;
  if (!expression.evaluate(db, &day)) {
    elog_complain(0, "failure to evaluate %s", expression.text());
    return;
  }
  const double start = epoch(static_cast<int>(day));
  // Every null date lies here, and so does 1970001, which tables carry for "not known".
  *result = start > 0.0 ? format_epoch(start, "%GT%H:%M:%S") : DATETIME_ENDVAL;
}

void string_text(Dbptr db, BoundExpression& expression, std::string* result) {
  if (!expression.compile(db) || !expression.evaluate(db, result)) {
    // The "%s" stays: programs look for this text as it always was.
    throw std::runtime_error(std::string("failure to eval_str_expr %s") + expression.text());
  }
  trim(result);
}

}  // namespace triglub
