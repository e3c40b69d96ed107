// Holds the columns, and makes ranks, indexes and mappings when they are first asked for.
#include "engine/table/table.h"

#include "engine/table/column_builder.h"

namespace triglub {

namespace {

// The code in one dictionary of each of another's texts.
std::vector<std::uint32_t> map_codes(const Dictionary& from, const Dictionary& to) {
  std::vector<std::uint32_t> codes;
  codes.reserve(from.size());
  std::uint32_t next = 0;  // tables in one order have their texts in one order
  for (std::uint32_t code = 0; code < from.size(); ++code) {
    const bool is_next = next < to.size() && to[next] == from[code];
    codes.push_back(is_next ? next : to.find(from[code]).value_or(kNoCode));
    if (codes.back() != kNoCode) next = codes.back() + 1;
  }
  return codes;
}

}  // namespace

RowPlaces RowPlaces::of_rows(const std::vector<std::uint32_t>& rows) const {
  RowPlaces places;
  places.before_number = before_number;
  places.numbers = rows;
  for (std::uint32_t& number : places.numbers) number = numbers.empty() ? number : numbers[number];
  return places;
}

Table::Table(const TableSchema& schema, std::string directory, TableContents contents)
    : schema_(schema),
      directory_(std::move(directory)),
      columns_(std::move(contents.columns)),
      row_count_(contents.row_count),
      number_texts_(std::move(contents.number_texts)),
      places_(std::move(contents.places)),
      made_(std::make_unique<MadeOfField[]>(schema.fields.size())) {}

std::unique_ptr<const Table> Table::of_rows(const std::vector<std::uint32_t>& rows) const {
  TableContents contents;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    contents.columns.push_back(column_of_rows(schema_.fields[i], columns_[i], rows));
  }
  contents.row_count = static_cast<std::uint32_t>(rows.size());
  contents.number_texts = number_texts_->of_rows(rows);
  contents.places = places_.of_rows(rows);
  return std::make_unique<Table>(schema_, directory_, std::move(contents));
}

std::string Table::place_of(std::uint32_t row) const {
  if (places_.made_of != nullptr && row >= places_.first_made) {
    return places_.made_of->place_of(places_.made_of_rows[row - places_.first_made]);
  }
  const std::uint64_t number = places_.numbers.empty() ? row : places_.numbers[row];
  return places_.before_number + std::to_string(number + 1);
}

std::string_view Table::text(std::size_t field, std::uint32_t row) const {
  if (is_null(field, row)) return schema_.fields[field].null_text;
  const Column& column = columns_[field];
  if (schema_.fields[field].storage() == Storage::text) return column.dictionary[column.codes[row]];
  return number_texts_->text(*this, field, row);
}

TextCodes Table::text_codes(std::size_t field) const {
  if (schema_.fields[field].storage() == Storage::text) return {&columns_[field].dictionary, &columns_[field].codes};
  const CodedTexts& texts = made_[field].number_texts.get([&] { return number_texts_->texts(*this, field); });
  return {&texts.dictionary, &texts.codes};
}

const std::vector<std::uint32_t>& Table::text_ranks(std::size_t field) const {
  return made_[field].text_ranks.get([&] { return columns_[field].dictionary.ranks(); });
}

const JoinIndex& Table::join_index(const std::vector<JoinColumn>& columns) const {
  return join_indexes_.get(columns, [&] { return JoinIndex(*this, columns); });
}

const std::vector<std::uint32_t>& Table::dictionary_mapping(const Dictionary& from, std::size_t field) const {
  return dictionary_mappings_.get({&from, field}, [&] { return map_codes(from, columns_[field].dictionary); });
}

}  // namespace triglub
