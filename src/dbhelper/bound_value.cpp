// Typed values: a keyword and an expression of the parameter file to the text that stands in the document.
#include "dbhelper/bound_value.h"

#include <stdexcept>
#include <utility>

#include "dbhelper.h"
#include "dbhelper/db_value.h"
#include "dbhelper/decimal.h"
#include "platform/elog.h"

namespace triglub {

namespace {

// What stands where the database holds no value: readers of the document need a number there.
constexpr const char* kNullMark = "<!--null-->0.0";

std::string as_dip(const std::string& vertical_angle) {
  const double value = number_of(vertical_angle) - 90.0;
  const bool turned_over = value == 180.0 || value == -180.0;
  return six_decimals(turned_over ? 0.0 : value);
}

std::string as_angle(const std::string& text, GroupType kind) {
  if (kind == deg_lat) return as_valid_lat(text);
  if (kind == deg_lon) return as_valid_lon(text);
  if (kind == dip) return as_dip(text);
  return as_valid_az(text);
}

}  // namespace

BoundValue::BoundValue(std::string text, std::string type) : text_(std::move(text)), type_(std::move(type)) {}

// The text of the field that the value names. Throws as db_fieldlookup does.
void BoundValue::read_field(Dbptr db, std::string* result) {
  if (!field_) field_ = db_setfield(db, text_).field;
  db.field = *field_;
  read_value(db, text_, result);
}

void BoundValue::write_angle(ConversionState& state, Dbptr db, std::string* result) {
  read_field(db, result);
  // Neighbouring records mostly agree.
  if (null_ != nullptr && *result == latest_) {
    *result = latest_result_;
    return;
  }
  db.field = *field_;
  if (null_ == nullptr) null_ = &null_value(state, db);
  std::string angle = *result == *null_ ? kNullMark : as_angle(*result, *kind_);
  latest_.swap(*result);
  latest_result_ = angle;
  result->swap(angle);
}

void BoundValue::write_expression(Dbptr db, int type, TextWriter* write, std::string* result) {
  if (!expression_) expression_.emplace(text_, type);
  write(db, *expression_, result);
}

void BoundValue::write(ConversionState& state, Dbptr db, std::string* result) {
  // An unknown keyword enters the table as 0, which is deg_lat: a parameter file with a keyword of tomorrow still
  // gives a number, or a clear exception for what is none.
  if (!kind_) kind_ = state.keywords[type_];
  switch (*kind_) {
    case deg_lat:
    case deg_lon:
    case dip:
    case deg_az:
      return write_angle(state, db, result);
    case record_count:
      return result->clear();  // counted where the records of a node are known, not here
    case meters:
      // No null test: -999000 for an unknown elevation is seen, 0 would pass for a station at sea level.
      read_field(db, result);
      *result = six_decimals(number_of(*result) * 1000.0);
      return;
    case float_type:
      return write_expression(db, dbREAL, number_text, result);
    case integer:
      return write_expression(db, dbINTEGER, number_text, result);
    case force_lookup:
      // The keyword has no fallback text to force. Programs know this exception by its text, so it is thrown with it.
      throw std::logic_error("basic_string::_M_construct null not valid");
    case lookup:
    case string_type:
      return write_expression(db, dbSTRING, string_text, result);
    case epoch_type:
      return write_expression(db, dbTIME, epoch_text, result);
    case julian:
      return write_expression(db, dbYEARDAY, yearday_text, result);
    case GROUP:
    case CATEGORIZED_GROUP:
    case CATEGORIZED_BY_NUMBER:
    case STAGE:
      *result = text_;
      return;
    case other_pf_site:
      *result = state.site == nullptr ? get_from_other_pf("site", text_) : pfget_string(state.site, text_);
      return;
  }
  // Only a program that has put a number of its own into the table comes here.
  elog_complain(0, "Unrecognized special_types value %s", type_.c_str());
  result->clear();
}

}  // namespace triglub
