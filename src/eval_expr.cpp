// Expressions over one record, as the texts that stand in the document.
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "dbhelper.h"
#include "platform/elog.h"
#include "platform/text.h"
#include "platform/timeconv.h"

const std::string DATETIME_ENDVAL = "2599-12-31T23:59:59.999";
std::string date_xml_with_ms_format = "Uninitialized. Initialize with date_formats_init.";
std::string date_xml_format = "Uninitialized. Initialize with date_formats_init.";

namespace {

// No date at all, and not mistaken for one by a reader.
constexpr const char* bad_date = "0000-00-00T00:00:00ERR";

// The number as a stream writes it unless told otherwise, whatever locale the program has chosen.
std::string six_digits(double value) {
  char text[32];
  char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
  return {text, end};
}

}  // namespace

void date_formats_init(Pf* pf) {
  date_xml_with_ms_format = pfget_string(pf, std::string("epochtime_xmlstring_format"));
  date_xml_format = pfget_string(pf, std::string("jdate_xmlstring_format"));
}

std::string eval_expr(Dbptr db, const char* expr, int type) {
  union {
    std::int64_t whole = 0;
    double real;
  } value;
  // A number that cannot be had stands as 0 in the document; the complaint says where to look.
  if (dbex_evalstr(db, expr, type, &value) < 0) elog_complain(0, "dbex_evalstr failure [%s]", expr);
  if (type == dbREAL || type == dbTIME) return six_digits(value.real);
  if (type == dbINTEGER || type == dbYEARDAY) return std::to_string(value.whole);
  elog_die(0, " unknown evaluation");
}

std::string eval_epoch_expr(Dbptr db, const char* expr) {
  if (any_dbinvalid(db)) throw std::runtime_error("invalid db field");
  Expression* compiled = nullptr;
  if (dbex_compile(db, expr, &compiled, dbTIME) < 0) {
    // Empty, unlike the bad date below: an expression that is wrong for every record leaves nothing to look for in
    // one of them.
    elog_complain(0, "failure compiling expr %s", expr);
    return "";
  }
  double time = 0.0;
  if (dbex_eval(db, compiled, 0, &time) < 0) {
    elog_complain(0, "failure to evaluate %s", expr);
    return bad_date;
  }
  if (time < 0.0) return DATETIME_ENDVAL;  // the database's null time
  // Fixed: the document's schema settles how a time is written, whatever formats the parameter file gives to others.
  return epoch2str(time, "%GT%H:%M:%S.%u");
}

std::string eval_jday_expr(Dbptr db, const char* expr) {
  Expression* compiled = nullptr;
  if (dbex_compile(db, expr, &compiled, dbYEARDAY) < 0) {
    elog_complain(0, "failure with eval_jday_expr %s", expr);
    return bad_date;
  }
  std::int64_t day = 0;
  if (dbex_eval(db, compiled, 0, &day) < 0) {
    elog_complain(0, "failure to evaluate %s", expr);
    return bad_date;
  }
  const double start = epoch(static_cast<int>(day));
  // Every null date lies here, and so does 1970001, which tables carry for "not known".
  if (!(start > 0.0)) return DATETIME_ENDVAL;
  return epoch2str(start, "%GT%H:%M:%S");
}

std::string eval_str_expr(Dbptr db, const char* expr) {
  char* text = nullptr;
  if (dbex_evalstr(db, expr, dbSTRING, &text) < 0) {
    // The "%s" stays: programs look for this text as it always was.
    throw std::runtime_error(std::string("failure to eval_str_expr %s") + expr);
  }
  std::string result = copystrip(text, text, std::strlen(text));
  std::free(text);
  return result;
}
