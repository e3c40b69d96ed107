// A number is cut out of the mapped file when it is asked for; a column of them is interned text by text. The made
// texts of dates live in those of the column, which the table keeps.
#include "engine/source/flat/file_digits.h"

#include <algorithm>
#include <optional>

#include "base/number.h"
#include "engine/table/table.h"
#include "platform/text.h"
#include "time/date_text.h"

namespace triglub {

std::string_view FileDigits::cell(std::size_t field, std::uint32_t row) const {
  const std::string_view bytes = file_->bytes();
  const RowLayout::Place& place = layout_[field];
  const std::size_t begin = std::min(lines_[row] + place.begin, bytes.size());
  const std::string_view cell = bytes.substr(begin, place.end - place.begin);
  // A short line ends within the field; what stands behind its end is another line's.
  const auto ends_line = [](char c) { return c == '\n' || c == '\r'; };
  const auto* end = std::find_if(cell.begin(), cell.end(), ends_line);
  return trimmed(cell.substr(0, static_cast<std::size_t>(end - cell.begin())));
}

bool FileDigits::is_date_text(std::size_t field, std::string_view cell) const {
  double number = 0.0;
  return may_be_date_text(cell) && schema_.fields[field].type == FieldType::time && !parse_real(cell, &number);
}

std::string_view FileDigits::text(const Table& table, std::size_t field, std::uint32_t row) const {
  const std::string_view digits = cell(field, row);
  if (!is_date_text(field, digits)) return digits;
  const TextCodes codes = table.text_codes(field);
  return (*codes.dictionary)[codes[row]];
}

CodedTexts FileDigits::texts(const Table& table, std::size_t field) const {
  CodedTexts texts;
  texts.dictionary.intern(schema_.fields[field].null_text);
  texts.codes.reserve(table.row_count());
  std::optional<CodedTexts> made;
  for (std::uint32_t row = 0; row < table.row_count(); ++row) {
    if (table.is_null(field, row)) {
      texts.codes.push_back(kNullCode);
      continue;
    }
    std::string_view text = cell(field, row);
    if (is_date_text(field, text)) {
      if (!made) made = texts_by_format(schema_)->texts(table, field);
      text = made->dictionary[made->codes[row]];
    }
    texts.codes.push_back(texts.dictionary.intern(text));
  }
  return texts;
}

std::unique_ptr<const NumberTexts> FileDigits::of_rows(const std::vector<std::uint32_t>& rows) const {
  return std::make_unique<FileDigits>(file_, lines_.of_lines(rows), layout_, schema_);
}

}  // namespace triglub
