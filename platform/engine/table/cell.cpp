// Reads the numbers of cells, and works out what was expected only once one has a fault.
#include "engine/table/cell.h"

#include <cstring>

#include "base/number.h"
#include "time/date_text.h"

namespace triglub {

namespace {

const char* expected(const FieldSchema& field) {
  switch (field.type) {
    case FieldType::integer:
      return "an integer";
    case FieldType::date:
      return "a date (yyyyddd)";
    case FieldType::time:
      return "a time (epoch seconds, or a date such as 2014-03-03 11:07:06)";
    case FieldType::text:
    case FieldType::real:
      break;
  }
  return "a number";
}

bool has_value(const FieldSchema& field, std::string_view cell) {
  std::int64_t integer = 0;
  double real = 0.0;
  switch (field.storage()) {
    case Storage::text:
      return true;
    case Storage::integer:
      return parse_cell(field, cell, &integer);
    case Storage::real:
      return parse_cell(field, cell, &real);
  }
  return false;
}

}  // namespace

// Cells of fixed width are padded with blanks only, and blanks are dropped fastest eight at a time.
std::string_view without_trailing_blanks(std::string_view text) {
  constexpr std::string_view kBlanks = "        ";
  while (text.size() >= kBlanks.size() &&
         std::memcmp(text.data() + text.size() - kBlanks.size(), kBlanks.data(), kBlanks.size()) == 0) {
    text.remove_suffix(kBlanks.size());
  }
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string_view without_blanks(std::string_view text) {
  text = without_trailing_blanks(text);
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return text;
}

bool is_load_date(const FieldSchema& field) { return field.name == "lddate"; }

bool parse_cell(const FieldSchema& field, std::string_view cell, std::int64_t* value) {
  const std::string_view text = without_blanks(cell);
  *value = field.null_integer;
  return text.empty() || parse_integer(text, value);
}

bool parse_cell(const FieldSchema& field, std::string_view cell, double* value) {
  const std::string_view text = without_blanks(cell);
  *value = field.null_real;
  if (text.empty() || parse_real(text, value)) return true;
  return field.type == FieldType::time && read_date_text(text, value);
}

bool is_unread_load_date(const FieldSchema& field, std::string_view cell) {
  double value = 0.0;
  return is_load_date(field) && field.storage() == Storage::real && cell.find('\0') == std::string_view::npos &&
         !parse_cell(field, cell, &value);
}

std::string misread(const FieldSchema& field, std::string_view cell) {
  return "expected " + std::string(expected(field)) + ", found '" + std::string(without_blanks(cell)) + "'";
}

std::string cell_fault(const FieldSchema& field, std::string_view cell, std::size_t first_byte) {
  const std::size_t zero = cell.find('\0');
  if (zero != std::string_view::npos) return "a zero byte (byte " + std::to_string(first_byte + zero) + ")";
  if (has_value(field, cell) || is_unread_load_date(field, cell)) return "";
  return misread(field, cell);
}

}  // namespace triglub
