// Parses cells into the vector of the field's storage; texts are interned, null first, so that null has kNullCode.
#include "engine/table/column_builder.h"

#include "engine/table/cell.h"
#include "platform/text.h"

namespace triglub {

namespace {

template <typename T>
void append_all(const std::vector<T>& from, std::vector<T>* to) {
  to->insert(to->end(), from.begin(), from.end());
}

// The codes of one dictionary's texts in another, which is given those that it lacks.
std::vector<std::uint32_t> merge(const Dictionary& from, Dictionary* to) {
  std::vector<std::uint32_t> codes;
  codes.reserve(from.size());
  for (std::uint32_t code = 0; code < from.size(); ++code) codes.push_back(to->intern(from[code]));
  return codes;
}

void append_values(const Column& from, Column* to) {
  append_all(from.integers, &to->integers);
  append_all(from.reals, &to->reals);
  const std::vector<std::uint32_t> codes = merge(from.dictionary, &to->dictionary);
  to->codes.reserve(to->codes.size() + from.codes.size());
  for (const std::uint32_t code : from.codes) to->codes.push_back(codes[code]);
}

template <typename T>
std::vector<T> chosen(const std::vector<T>& values, const std::vector<std::uint32_t>& rows) {
  std::vector<T> kept;
  if (values.empty()) return kept;  // the values of this storage are not the column's
  kept.reserve(rows.size());
  for (const std::uint32_t row : rows) kept.push_back(values[row]);
  return kept;
}

}  // namespace

ColumnBuilder::ColumnBuilder(const FieldSchema& field) : field_(&field), storage_(field.storage()) {
  if (storage_ == Storage::text) column_.dictionary.intern(field.null_text);
}

bool ColumnBuilder::add(std::string_view cell) {
  if (storage_ == Storage::text) return add_text(cell);
  if (storage_ == Storage::integer) {
    std::int64_t value = 0;
    if (!parse_cell(*field_, cell, &value)) return false;
    column_.integers.push_back(value);
    return true;
  }
  return add_real(cell);
}

bool ColumnBuilder::add_real(std::string_view cell) {
  double value = 0.0;
  if (!parse_cell(*field_, cell, &value)) {
    if (!is_unread_load_date(*field_, cell)) return false;
    has_unread_ = true;
    value = field_->null_real;
  }
  column_.reals.push_back(value);
  return true;
}

bool ColumnBuilder::add_text(std::string_view cell) {
  const std::string_view text = trimmed(without_blanks(cell));
  // The classic interface ends texts at a zero byte: two texts that differ behind one would be taken for the same.
  if (text.find('\0') != std::string_view::npos) return false;
  if (text.empty()) {
    column_.codes.push_back(kNullCode);
    return true;
  }
  const bool utf8 = is_utf8(text);
  column_.codes.push_back(column_.dictionary.intern(utf8 ? text : std::string_view(latin1_to_utf8(text))));
  return true;
}

void ColumnBuilder::append(const ColumnBuilder& other) {
  has_unread_ = has_unread_ || other.has_unread_;
  append_values(other.column_, &column_);
}

Column joined(const Column& first, const Column& second) {
  Column all;
  for (const Column* column : {&first, &second}) append_values(*column, &all);
  return all;
}

Column column_of_rows(const FieldSchema& field, const Column& column, const std::vector<std::uint32_t>& rows) {
  Column kept;
  kept.integers = chosen(column.integers, rows);
  kept.reals = chosen(column.reals, rows);
  kept.codes = chosen(column.codes, rows);
  if (field.storage() != Storage::text) return kept;
  std::vector<std::uint32_t> codes(column.dictionary.size(), kNoCode);
  codes[kNullCode] = kept.dictionary.intern(field.null_text);
  for (std::uint32_t& code : kept.codes) {
    if (codes[code] == kNoCode) codes[code] = kept.dictionary.intern(column.dictionary[code]);
    code = codes[code];
  }
  return kept;
}

}  // namespace triglub
