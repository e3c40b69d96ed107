// A number is cut out of the mapped file when it is asked for; a column of them is interned text by text.
#include "engine/source/flat/file_digits.h"

#include <algorithm>

#include "engine/table/table.h"
#include "platform/text.h"

namespace triglub {

std::string_view FileDigits::text(const Table& /*table*/, std::size_t field, std::uint32_t row) const {
  const std::string_view bytes = file_->bytes();
  const RowLayout::Place& place = layout_[field];
  const std::size_t begin = std::min(lines_[row] + place.begin, bytes.size());
  const std::string_view cell = bytes.substr(begin, place.end - place.begin);
  // A short line ends within the field; what stands behind its end is another line's.
  const auto ends_line = [](char c) { return c == '\n' || c == '\r'; };
  const auto* end = std::find_if(cell.begin(), cell.end(), ends_line);
  return trimmed(cell.substr(0, static_cast<std::size_t>(end - cell.begin())));
}

CodedTexts FileDigits::texts(const Table& table, std::size_t field) const {
  CodedTexts texts;
  texts.dictionary.intern(table.schema().fields[field].null_text);
  texts.codes.reserve(table.row_count());
  for (std::uint32_t row = 0; row < table.row_count(); ++row) {
    texts.codes.push_back(texts.dictionary.intern(table.text(field, row)));
  }
  return texts;
}

std::unique_ptr<const NumberTexts> FileDigits::of_rows(const std::vector<std::uint32_t>& rows) const {
  return std::make_unique<FileDigits>(file_, lines_.of_lines(rows), layout_);
}

}  // namespace triglub
