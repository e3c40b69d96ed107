// Rows of flat files, by a schema of any widths and types: the quick reader, in any pieces and parts of them, by
// several threads, gives what a reading of every cell gives; and it refuses a file exactly where there are faults to
// tell of.
#include <array>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "base/threads.h"
#include "engine/source/flat/row_reader.h"
#include "engine/table/cell.h"
#include "platform/threads.h"
#include "support/bytes.h"
#include "support/expect.h"

namespace {

using triglub::Column;
using triglub::FieldSchema;
using triglub::FieldType;
using triglub::RowLayout;
using triglub::Rows;
using triglub::TableBuilder;
using triglub::TableSchema;
using triglub_fuzz::Bytes;
using triglub_fuzz::expect;

FieldSchema field_of(Bytes* bytes, std::size_t number) {
  constexpr std::array kTypes = {FieldType::text, FieldType::integer, FieldType::real, FieldType::time,
                                 FieldType::date};
  constexpr std::size_t kWidest = 24;
  FieldSchema field;
  field.name = bytes->one_in(5) ? "lddate" : "f" + std::to_string(number);
  field.type = bytes->one_of(kTypes);
  field.width = static_cast<int>(1 + bytes->below(kWidest));
  field.null_text = field.type == FieldType::text ? "-" : "-1";
  field.null_integer = -1;
  field.null_real = -1;
  return field;
}

TableSchema schema_of(Bytes* bytes) {
  constexpr std::size_t kMostFields = 8;
  TableSchema schema;
  schema.name = "table";
  const std::size_t count = 1 + bytes->below(kMostFields);
  for (std::size_t i = 0; i < count; ++i) schema.fields.push_back(field_of(bytes, i));
  return schema;
}

// Lines that are much alike, as those of real files are, and now and then any bytes.
class Lines {
 public:
  Lines(const TableSchema& schema, Bytes* bytes) : schema_(schema), bytes_(*bytes) {
    for (const FieldSchema& field : schema.fields) cells_.push_back(padded("1", field, true));
  }

  std::string text() {
    std::string text;
    while (!bytes_.at_end()) text.append(line()).append("\n");
    if (is_last_open_ && !text.empty()) text.pop_back();
    return text;
  }

 private:
  std::string line() {
    const std::uint8_t choice = bytes_.byte();
    if (choice % 16 == 15) return std::string(bytes_.take_until('\n'));
    for (int changes = choice % 4; changes > 0; --changes) change_cell();
    std::string line = joined();
    if ((choice & 0x10) != 0) line.resize(line.size() - std::min(line.size(), bytes_.below(40)));
    if ((choice & 0x20) != 0) line += std::string(bytes_.below(4), ' ');
    if ((choice & 0x40) != 0) line += '\r';
    is_last_open_ = (choice & 0x80) != 0;
    return line;
  }

  void change_cell() {
    const std::size_t i = bytes_.below(cells_.size());
    const FieldSchema& field = schema_.fields[i];
    const std::size_t length = bytes_.below(static_cast<std::size_t>(field.width) + 1);
    const bool is_left = bytes_.one_in(2);
    cells_[i] = padded(bytes_.take(length), field, is_left);
  }

  static std::string padded(std::string_view value, const FieldSchema& field, bool is_left) {
    const std::string blanks(static_cast<std::size_t>(field.width) - value.size(), ' ');
    return is_left ? std::string(value) + blanks : blanks + std::string(value);
  }

  std::string joined() const {
    std::string line;
    for (const std::string& cell : cells_) line += (line.empty() ? "" : " ") + cell;
    return line;
  }

  const TableSchema& schema_;
  Bytes& bytes_;
  std::vector<std::string> cells_;
  bool is_last_open_ = false;
};

// Every cell of every row.
struct PlainRows {
  explicit PlainRows(const TableSchema& schema) : table(schema) {}

  TableBuilder table;
  std::vector<std::vector<std::string>> cells;  // by row, then by field
};

class PlainReader {
 public:
  PlainReader(const TableSchema& schema, std::string_view file) : layout_(schema), file_(file), rows_(schema) {}

  // Nothing at the first fault.
  std::optional<PlainRows> read() {
    for (std::size_t begin = 0; begin < file_.size();) {
      const std::size_t end = std::min(file_.find('\n', begin), file_.size());
      rows_.table.begin_row();
      rows_.cells.emplace_back();
      if (!read_row(file_.substr(begin, end - begin))) return std::nullopt;
      begin = end + 1;
    }
    return std::move(rows_);
  }

 private:
  bool read_row(std::string_view row) {
    if (row.ends_with('\r')) row.remove_suffix(1);
    while (row.size() > layout_.width() && row.ends_with(' ')) row.remove_suffix(1);
    if (row.size() > layout_.width() || row.find_first_not_of(' ') == std::string_view::npos) return false;
    for (std::size_t i = 0; i < layout_.field_count(); ++i) {
      if (!read_cell(row, i)) return false;
    }
    return true;
  }

  bool read_cell(std::string_view row, std::size_t i) {
    const RowLayout::Place& place = layout_[i];
    if (place.end < row.size() && row[place.end] != ' ') return false;
    if (place.end > row.size() && !place.may_be_cut) return false;
    const std::size_t begin = std::min(place.begin, row.size());
    const std::string_view cell = row.substr(begin, place.end - place.begin);
    rows_.cells.back().emplace_back(cell);
    return rows_.table.column(i).add(cell);
  }

  RowLayout layout_;
  std::string_view file_;
  PlainRows rows_;
};

// Where lines begin, near equal parts of the file, and its end.
std::vector<std::size_t> borders_of(std::string_view file, std::size_t pieces) {
  std::vector<std::size_t> borders = {0};
  for (std::size_t i = 1; i < pieces; ++i) {
    const std::size_t newline = file.find('\n', file.size() * i / pieces);
    if (newline != std::string_view::npos && newline + 1 > borders.back()) borders.push_back(newline + 1);
  }
  if (borders.back() < file.size()) borders.push_back(file.size());
  return borders;
}

// A piece in parts of some lines each, which are gone when they have been read.
std::optional<Rows> read_in_parts(const TableSchema& schema, const RowLayout& layout, std::string_view piece) {
  constexpr std::size_t kParts = 5;
  Rows rows(schema);
  triglub::RowReader reader(layout, &rows);
  const std::vector<std::size_t> borders = borders_of(piece, kParts);
  for (std::size_t i = 0; i + 1 < borders.size(); ++i) {
    const std::string part(piece.substr(borders[i], borders[i + 1] - borders[i]));
    if (!reader.read(part)) return std::nullopt;
  }
  rows.fill();
  return rows;
}

std::optional<Rows> read_in_pieces(const TableSchema& schema, std::string_view file, std::size_t count) {
  const RowLayout layout(schema);
  const std::vector<std::size_t> borders = borders_of(file, count);
  std::vector<std::optional<Rows>> pieces(borders.size() - 1);
  triglub::run_side_by_side(pieces.size(), [&](std::size_t i) {
    pieces[i] = read_in_parts(schema, layout, file.substr(borders[i], borders[i + 1] - borders[i]));
  });
  std::optional<Rows> all;
  for (std::optional<Rows>& piece : pieces) {
    if (!piece) return std::nullopt;
    if (all) {
      expect(all->append(*std::move(piece)), "the rows of pieces fit a table");
    } else {
      all = std::move(piece);
    }
  }
  return all ? std::move(all) : Rows(schema);
}

template <typename Value>
bool are_same_bits(const std::vector<Value>& a, const std::vector<Value>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Value)) == 0);
}

void compare(const Column& plain, const Column& quick) {
  expect(plain.codes == quick.codes && plain.integers == quick.integers, "the values of a plain reading");
  expect(are_same_bits(plain.reals, quick.reals), "the reals of a plain reading");
  expect(plain.dictionary.size() == quick.dictionary.size(), "the texts of a plain reading");
  for (std::uint32_t code = 0; code < plain.dictionary.size(); ++code) {
    triglub_fuzz::expect_same(plain.dictionary[code], quick.dictionary[code], "a text of a plain reading");
  }
}

void compare_cells(const TableSchema& schema, const PlainRows& plain, const Rows& quick) {
  for (std::size_t i = 0; i < schema.fields.size(); ++i) {
    if (schema.fields[i].storage() == triglub::Storage::text) continue;
    for (std::uint32_t row = 0; row < plain.cells.size(); ++row) {
      triglub_fuzz::expect_same(triglub::without_blanks(plain.cells[row][i]),
                                triglub::without_blanks(quick.cells[i][row]), "a cell as it stands in the file");
    }
  }
}

void compare(const TableSchema& schema, PlainRows plain, Rows quick) {
  expect(plain.table.row_count() == quick.table.row_count(), "the rows of a plain reading");
  expect(plain.table.has_unread_dates() == quick.table.has_unread_dates(), "the unread dates of a plain reading");
  compare_cells(schema, plain, quick);
  for (std::size_t i = 0; i < plain.table.column_count(); ++i) {
    compare(plain.table.column(i).take(), quick.table.column(i).take());
  }
}

std::size_t count_faults(const TableSchema& schema, std::string_view file) {
  std::size_t faults = 0;
  std::uint64_t last_line = 0;
  triglub::tell_faults(schema, RowLayout(schema), file, &last_line,
                       [&](std::uint64_t line, const std::string& /*field*/, const std::string& fault) {
                         expect(line > 0 && !fault.empty(), "a fault has line and text", fault);
                         ++faults;
                       });
  return faults;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostPieces = 4;
  constexpr unsigned int kThreadsInOneOf = 64;
  Bytes bytes(data, size);
  const std::size_t pieces = 1 + bytes.below(kMostPieces);
  const unsigned int threads = bytes.one_in(kThreadsInOneOf) ? 2 : 1;
  const TableSchema schema = schema_of(&bytes);
  const std::string file = Lines(schema, &bytes).text();

  triglub::set_threads(threads);
  std::optional<PlainRows> plain = PlainReader(schema, file).read();
  std::optional<Rows> quick = read_in_pieces(schema, file, pieces);
  expect(plain.has_value() == quick.has_value(), "the same files are read", file);
  expect(plain.has_value() == (count_faults(schema, file) == 0), "a file that is refused has faults", file);
  if (!plain) return 0;
  triglub::UnreadDates dates("table", "row ");
  std::uint64_t last_line = 0;
  triglub::find_unread_dates(schema, RowLayout(schema), file, &last_line, &dates);
  compare(schema, *std::move(plain), *std::move(quick));
  return 0;
}
