#include "engine/table/table.h"

#include <algorithm>

#include "platform/text.h"

namespace triglub {

Table::Table(const TableSchema& schema, std::string directory)
    : schema_(schema), directory_(std::move(directory)), columns_(schema.fields.size()) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (schema.fields[i].storage() == Storage::text) columns_[i].dictionary.intern(schema.fields[i].null_text);
  }
}

std::string_view Table::raw(std::size_t field, std::uint32_t row) const {
  const FieldSchema& description = schema_.fields[field];
  const std::string_view bytes = file_->bytes();
  const std::uint64_t line = offsets_.empty() ? row * stride_ : offsets_[row];
  const std::size_t begin = line + static_cast<std::size_t>(description.offset);
  return bytes.substr(std::min(begin, bytes.size()), static_cast<std::size_t>(description.width));
}

std::string_view Table::text(std::size_t field, std::uint32_t row) const {
  if (is_null(field, row)) return schema_.fields[field].null_text;
  const Column& column = columns_[field];
  if (schema_.fields[field].storage() == Storage::text) return column.dictionary[column.codes[row]];
  // A short line ends within the field; what stands behind its end is another line's.
  const std::string_view cell = raw(field, row);
  const auto ends_line = [](char c) { return c == '\n' || c == '\r'; };
  const auto* end = std::find_if(cell.begin(), cell.end(), ends_line);
  return trimmed(cell.substr(0, static_cast<std::size_t>(end - cell.begin())));
}

TextCodes Table::text_codes(std::size_t field) const {
  if (schema_.fields[field].storage() == Storage::text) return {&columns_[field].dictionary, &columns_[field].codes};
  const auto [entry, added] = number_texts_.try_emplace(field);
  NumberTexts& texts = entry->second;
  if (added) {
    texts.dictionary.intern(schema_.fields[field].null_text);
    texts.codes.reserve(row_count_);
    for (std::uint32_t row = 0; row < row_count_; ++row)
      texts.codes.push_back(texts.dictionary.intern(text(field, row)));
  }
  return {&texts.dictionary, &texts.codes};
}

const JoinIndex& Table::join_index(const std::vector<JoinColumn>& columns) const {
  const auto [entry, added] = join_indexes_.try_emplace(columns);
  if (added) entry->second.build(*this, columns);
  return entry->second;
}

const std::vector<std::uint32_t>& Table::translation(const Dictionary& from, std::size_t field) const {
  const auto [entry, added] = translations_.try_emplace({&from, field});
  std::vector<std::uint32_t>& codes = entry->second;
  if (!added) return codes;
  const Dictionary& to = columns_[field].dictionary;
  codes.reserve(from.size());
  std::uint32_t next = 0;  // tables in one order have their texts in one order
  for (std::uint32_t code = 0; code < from.size(); ++code) {
    const bool is_next = next < to.size() && to[next] == from[code];
    codes.push_back(is_next ? next : to.find(from[code]).value_or(NO_CODE));
    if (codes.back() != NO_CODE) next = codes.back() + 1;
  }
  return codes;
}

}  // namespace triglub
