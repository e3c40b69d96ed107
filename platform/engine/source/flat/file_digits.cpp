// A number's text is its cell without the blanks; a column of them is interned cell by cell. The made texts of dates
// live in those of the column, which the table keeps.
#include "engine/source/flat/file_digits.h"

#include <algorithm>
#include <optional>

#include "base/number.h"
#include "engine/table/table.h"
#include "platform/text.h"
#include "time/date_text.h"

namespace triglub {

std::string_view FileDigits::cell(std::size_t field, std::uint32_t row) const { return trimmed(cells_[field][row]); }

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
  std::vector<std::uint32_t> codes(cells_[field].number_count(), kNoCode);  // by the number of the cell
  std::optional<CodedTexts> made;
  for (std::uint32_t row = 0; row < table.row_count(); ++row) {
    if (table.is_null(field, row)) {
      texts.codes.push_back(kNullCode);
      continue;
    }
    std::uint32_t& code = codes[cells_[field].number(row)];
    if (code == kNoCode) {
      std::string_view text = cell(field, row);
      if (is_date_text(field, text)) {
        if (!made) made = texts_by_format(schema_)->texts(table, field);
        text = made->dictionary[made->codes[row]];
      }
      code = texts.dictionary.intern(text);
    }
    texts.codes.push_back(code);
  }
  return texts;
}

std::unique_ptr<const NumberTexts> FileDigits::of_rows(const std::vector<std::uint32_t>& rows) const {
  std::vector<KeptCells> chosen;
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    const bool is_number = schema_.fields[i].storage() != Storage::text;
    chosen.push_back(is_number ? cells_[i].of_rows(rows) : cells_[i].of_rows({}));
  }
  return std::make_unique<FileDigits>(std::move(chosen), schema_);
}

}  // namespace triglub
