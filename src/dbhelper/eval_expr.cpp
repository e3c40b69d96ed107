// Expressions and date formats of the classic interface.
#include "dbhelper.h"
#include "dbhelper/bound_expression.h"
#include "state/process_state.h"

const std::string DATETIME_ENDVAL = "2599-12-31T23:59:59.999";

namespace {

std::string text_of(Dbptr db, const char* expr, int type, triglub::TextWriter* write) {
  return triglub::or_die([&] {
    triglub::BoundExpression expression(expr, type);
    std::string text;
    write(db, expression, &text);
    return text;
  });
}

}  // namespace

void date_formats_init(Pf* pf) { triglub::process_state().read_date_formats(pf); }

std::string eval_expr(Dbptr db, const char* expr, int type) { return text_of(db, expr, type, triglub::number_text); }

std::string eval_epoch_expr(Dbptr db, const char* expr) { return text_of(db, expr, dbTIME, triglub::epoch_text); }

std::string eval_jday_expr(Dbptr db, const char* expr) { return text_of(db, expr, dbYEARDAY, triglub::yearday_text); }

std::string eval_str_expr(Dbptr db, const char* expr) { return text_of(db, expr, dbSTRING, triglub::string_text); }
