// Typed values: a keyword and an expression of the parameter file to the text that stands in the document.
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <memory>

#include "bound_value.h"
#include "db_value.h"
#include "dbhelper.h"
#include "platform/elog.h"

std::map<std::string, GroupType> INTERPRETERS = {
    {"deg_lat", deg_lat},
    {"deg_lon", deg_lon},
    {"dip", dip},
    {"deg_az", deg_az},
    {"record_count", record_count},
    {"meters", meters},
    {"float", float_type},
    {"integer", integer},
    {"force_lookup", force_lookup},
    {"lookup", lookup},
    {"string", string_type},
    {"epoch", epoch_type},
    {"julian", julian},
    {"GROUP", GROUP},
    {"CATEGORIZED_GROUP", CATEGORIZED_GROUP},
    {"CATEGORIZED_BY_NUMBER", CATEGORIZED_BY_NUMBER},
    {"STAGE", STAGE},
    {"other_pf:site", other_pf_site},
};

namespace {

// What stands where the database holds no value: readers of the document need a number there.
constexpr const char* null_mark = "<!--null-->0.0";

// std::stod, but with the point of the database's texts, whatever locale the program has chosen.
double number_of(const std::string& text) {
  static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  errno = 0;
  const double value = strtod_l(text.c_str(), &end, classic);
  if (end == text.c_str()) throw std::invalid_argument("stod");
  if (errno == ERANGE) throw std::out_of_range("stod");
  return value;
}

// The number with six decimals, as std::to_string writes it in the classic locale.
std::string six_decimals(double value) {
  char text[400];  // the largest double has 309 digits before the point
  char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6).ptr;
  return {text, end};
}

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

triglub::BoundValue::BoundValue(std::string text, std::string type) : text_(std::move(text)), type_(std::move(type)) {}

// The text of the field that the value names. Throws as db_fieldlookup does.
void triglub::BoundValue::read_field(Dbptr db, std::string* result) {
  if (!field_) field_ = db_setfield(db, text_).field;
  db.field = *field_;
  read_value(db, text_, result);
}

void triglub::BoundValue::write_angle(Dbptr db, std::string* result) {
  read_field(db, result);
  // Neighbouring records mostly agree.
  if (null_ != nullptr && *result == latest_) {
    *result = latest_result_;
    return;
  }
  db.field = *field_;
  if (null_ == nullptr) null_ = &null_value(db);
  std::string angle = *result == *null_ ? null_mark : as_angle(*result, *kind_);
  latest_.swap(*result);
  latest_result_ = angle;
  result->swap(angle);
}

void triglub::BoundValue::write_expression(Dbptr db, int type, TextWriter* write, std::string* result) {
  if (!expression_) expression_.emplace(text_, type);
  write(db, *expression_, result);
}

void triglub::BoundValue::write(Dbptr db, std::string* result) {
  // An unknown keyword enters the table as 0, which is deg_lat: a parameter file with a keyword of tomorrow still
  // gives a number, or a clear exception for what is none.
  if (!kind_) kind_ = INTERPRETERS[type_];
  switch (*kind_) {
    case deg_lat:
    case deg_lon:
    case dip:
    case deg_az:
      return write_angle(db, result);
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
      *result = get_from_other_pf("site", text_);
      return;
  }
  // Only a program that has put a number of its own into the table comes here.
  elog_complain(0, "Unrecognized special_types value %s", type_.c_str());
  result->clear();
}

std::string eval_as_type(Dbptr db, const char* expr, std::string type) {
  std::string text;
  triglub::BoundValue(expr, std::move(type)).write(db, &text);
  return text;
}

std::string as_valid_lat(std::string text) {
  // Wrapped by half a turn, not folded over the pole: archives hold documents with these values, and compare.
  return six_decimals(bring_into_range(number_of(text), -90.0, 90.0, 180.0));
}

std::string as_valid_lon(std::string text) {
  return six_decimals(bring_into_range(number_of(text), -180.0, 180.0, 360.0));
}

std::string as_valid_az(std::string text) {
  const double azimuth = bring_into_range(number_of(text), 0.0, 360.0, 360.0);
  return six_decimals(azimuth == 360.0 ? 0.0 : azimuth);
}

std::string get_from_other_pf(std::string pfname, std::string key) {
  // Read anew each time, so that a long-running program sees a file that has been edited.
  Pf* pf = nullptr;
  if (pfread(pfname.c_str(), &pf) != 0) {
    elog_debug(0, "pfread failed from other pf( %s , %s ) ", pfname.c_str(), key.c_str());
    return "";
  }
  const std::unique_ptr<Pf, decltype(&pffree)> owner(pf, &pffree);
  return pfget_string(pf, key);
}
