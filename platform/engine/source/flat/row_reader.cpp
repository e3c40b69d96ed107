// The plain form, which tell_faults follows: take the end of the line and the blanks behind the row off; check that the
// row is neither blank nor too long; then, for each field, check the separator behind it and read its cell.
//
// RowReader gives the same columns with less work, as the rows of a table are much alike:
//
//   the row above   A full row is compared with the one before it, word by word, and only fields in a piece that
//                   differs are looked at. The others have the value of the row above: nothing is stored for them until
//                   the field changes, and the column is then filled up to that row.
//   known cells     A changed cell is looked up by its bytes in a cache of 64 earlier cells of its field. Where it is
//                   found, that row's value is repeated, and nothing is parsed, hashed or interned.
//
// Both take equal bytes for equal values. That holds because a value depends on nothing but the bytes of its cell, and
// because bytes read before had no fault: the reader stops at the first fault.
#include "engine/source/flat/row_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "base/threads.h"
#include "engine/source/flat/file_parts.h"
#include "engine/table/cell.h"
#include "platform/limits.h"

namespace triglub {

namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);

std::uint64_t word_at(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWord);
  return word;
}

bool are_same(const char* a, const char* b, std::size_t count) {
  if (count < kWord) return std::equal(a, a + count, b);
  for (std::size_t at = 0; at + kWord < count; at += kWord) {
    if (word_at(a + at) != word_at(b + at)) return false;
  }
  return word_at(a + count - kWord) == word_at(b + count - kWord);
}

// Which parts of a row differ from another: a bit for each of at most 64 pieces of equal length.
class RowComparison {
 public:
  explicit RowComparison(std::size_t row_width) : row_width_(row_width) {
    while (piece_at(row_width_ - 1) >= kPieces) ++shift_;
  }

  // The pieces that hold the bytes from `begin` to before `end` (cut at the end of the row).
  std::uint64_t pieces_of(std::size_t begin, std::size_t end) const {
    const std::size_t last = piece_at(std::min(end, row_width_) - 1);
    return (kAll >> (kPieces - 1 - last)) & (kAll << piece_at(begin));
  }

  std::uint64_t differing(const char* a, const char* b) const {
    std::uint64_t pieces = 0;
    const std::size_t words = row_width_ / kWord;
    for (std::size_t word = 0; word < words; ++word) {
      const bool differs = word_at(a + word * kWord) != word_at(b + word * kWord);
      pieces |= std::uint64_t{differs} << (word >> shift_);
    }
    const std::size_t rest = words * kWord;
    if (rest < row_width_ && !are_same(a + rest, b + rest, row_width_ - rest)) pieces |= pieces_of(rest, row_width_);
    return pieces;
  }

  static constexpr std::uint64_t kAll = ~std::uint64_t{0};

 private:
  static constexpr std::size_t kPieces = 64;

  std::size_t piece_at(std::size_t byte) const { return byte / kWord >> shift_; }

  std::size_t row_width_;
  std::size_t shift_ = 0;  // words of a piece, as a power of two
};

// A cache of cells of one field that were read before: of those with one hash, the latest.
class KnownCells {
 public:
  explicit KnownCells(std::size_t width) : width_(width), bytes_(width << kSlotBits) {}

  // The number of an earlier row whose cell has the same bytes; nothing when none is known.
  const std::uint32_t* find(const char* cell) {
    latest_ = slot_of(cell);
    const std::uint32_t& row = rows_[latest_];
    return row != kNoRow && are_same(bytes_of(latest_), cell, width_) ? &row : nullptr;
  }
  // Keeps the cell that was asked for last.
  void keep(const char* cell, std::uint32_t row) {
    rows_[latest_] = row;
    std::memcpy(bytes_of(latest_), cell, width_);
  }

 private:
  static constexpr int kSlotBits = 6;
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;

  static std::array<std::uint32_t, kSlots> no_rows() {
    std::array<std::uint32_t, kSlots> rows{};
    rows.fill(kNoRow);
    return rows;
  }

  char* bytes_of(std::size_t slot) { return bytes_.data() + slot * width_; }

  // Numbers stand at the end of their cells, texts at the beginning.
  std::size_t slot_of(const char* cell) const {
    std::uint64_t hash = width_ < kWord ? short_word(cell) : word_at(cell) ^ (word_at(cell + width_ - kWord) << 1);
    hash *= 0x9E3779B97F4A7C15u;  // 2^64 divided by the golden ratio
    return hash >> (64 - kSlotBits);
  }

  std::uint64_t short_word(const char* cell) const {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < width_; ++i) word = word << 8 | static_cast<unsigned char>(cell[i]);
    return word;
  }

  std::size_t width_;
  std::vector<char> bytes_;  // by slot
  std::array<std::uint32_t, kSlots> rows_ = no_rows();
  std::size_t latest_ = 0;
};

// Calls work(line) for each line, without its newline, until it returns false; false then.
template <typename Work>
bool for_each_line(std::string_view lines, Work work) {
  while (!lines.empty()) {
    const std::size_t newline = lines.find('\n');
    if (!work(lines.substr(0, newline))) return false;
    lines.remove_prefix(newline == std::string_view::npos ? lines.size() : newline + 1);
  }
  return true;
}

// The row in a line: without a carriage return, and without blanks that follow a full row.
std::string_view row_of(std::string_view line, std::size_t row_width) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  if (line.size() <= row_width) return line;
  return line.substr(0, std::max(row_width, without_trailing_blanks(line).size()));
}

std::string_view cell_of(std::string_view row, const RowLayout::Place& place) {
  return place.begin < row.size() ? row.substr(place.begin, place.end - place.begin) : std::string_view();
}

bool has_separator(std::string_view row, const RowLayout::Place& place) {
  return place.end >= row.size() || row[place.end] == ' ';
}

bool reaches(std::string_view row, const RowLayout::Place& place) {
  return place.end <= row.size() || place.may_be_cut;
}

bool is_fit(std::string_view row, std::size_t row_width) {
  return row.size() <= row_width && !without_trailing_blanks(row).empty();
}

// The faults of one file.
class FaultFinder {
 public:
  FaultFinder(const TableSchema& schema, const RowLayout& layout, std::uint64_t& line, const FaultTeller& tell)
      : schema_(schema), layout_(layout), tell_(tell), line_(line) {}

  // False when there is no use in further lines.
  bool look_at(std::string_view line) {
    if (++line_ > limit(Limit::table_rows)) {
      tell("", beyond(Limit::table_rows));
      return false;
    }
    if (line.size() > kMaxLineBytes) {
      tell("", "the line has more than " + std::to_string(kMaxLineBytes) + " bytes, expected a row of " +
                   std::to_string(layout_.width()));
      return true;
    }
    const std::string_view row = row_of(line, layout_.width());
    if (is_fit(row, layout_.width())) {
      look_at_cells(row);
    } else {
      tell("", misfit(row));
    }
    return true;
  }

 private:
  void tell(const std::string& field, const std::string& fault) { tell_(line_, field, fault); }

  std::string misfit(std::string_view row) const {
    const std::string width = std::to_string(layout_.width());
    if (row.size() <= layout_.width()) return "the line is blank, expected a row of " + width + " bytes";
    return "the row has " + std::to_string(row.size()) + " bytes, expected " + width;
  }

  void look_at_cells(std::string_view row) {
    for (std::size_t i = 0; i < layout_.field_count(); ++i) {
      const std::string shift = shift_before(row, layout_[i]);
      if (!shift.empty()) return tell(schema_.fields[i].name, shift);
      const std::string fault = cell_fault(schema_.fields[i], cell_of(row, layout_[i]), layout_[i].begin + 1);
      if (!fault.empty()) tell(schema_.fields[i].name, fault);
    }
  }

  // Why the rest of the row makes no sense any more; empty when it does.
  std::string shift_before(std::string_view row, const RowLayout::Place& place) const {
    if (!has_separator(row, place)) {
      return "a separator column (byte " + std::to_string(place.end + 1) + ") is not blank";
    }
    if (reaches(row, place)) return "";
    return "the row has " + std::to_string(row.size()) + " bytes and ends before the field, expected " +
           std::to_string(layout_.width());
  }

  const TableSchema& schema_;
  const RowLayout& layout_;
  const FaultTeller& tell_;
  std::uint64_t& line_;
};

}  // namespace

Rows::Rows(const TableSchema& schema) : table(schema) {
  for (const FieldSchema& field : schema.fields) cells.emplace_back(static_cast<std::size_t>(field.width));
}

void Rows::reserve(std::uint64_t rows) {
  table.reserve(rows);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (table.schema().fields[i].storage() != Storage::text) cells[i].reserve(rows);
  }
}

void Rows::fill() {
  table.fill();
  if (table.row_count() == 0) return;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (table.schema().fields[i].storage() != Storage::text) cells[i].fill(table.row_count());
  }
}

bool Rows::append(Rows&& rows) {
  if (!table.append(std::move(rows.table))) return false;
  run_side_by_side(cells.size(), [&](std::size_t i) { cells[i].append(std::move(rows.cells[i])); });
  return true;
}

// Reads one row after another.
class RowReader::Reading {
 public:
  Reading(const RowLayout& layout, Rows* rows)
      : layout_(layout), table_(rows->table), comparison_(layout.width()), above_bytes_(layout.width()) {
    for (std::size_t i = 0; i < layout.field_count(); ++i) {
      pieces_.push_back(comparison_.pieces_of(layout[i].begin, layout[i].end + 1));  // with the separator
      known_.emplace_back(layout[i].end - layout[i].begin);
      const bool is_number = table_.schema().fields[i].storage() != Storage::text;
      kept_.push_back(is_number ? &rows->cells[i] : nullptr);
    }
  }

  bool read(std::string_view lines) {
    const bool is_good = for_each_line(lines, [this](std::string_view line) {
      if (line.size() > kMaxLineBytes || !table_.begin_row()) return false;
      const std::string_view row = row_of(line, layout_.width());
      return is_fit(row, layout_.width()) && read_row(row);
    });
    keep_above();
    return is_good;
  }

 private:
  bool read_row(std::string_view row) {
    const bool is_full = row.size() == layout_.width();
    const std::uint64_t changed =
        is_full && above_ != nullptr ? comparison_.differing(above_, row.data()) : RowComparison::kAll;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      if ((changed & pieces_[i]) != 0 && !read_cell(row, i)) return false;
    }
    above_ = is_full ? row.data() : nullptr;
    return true;
  }

  bool read_cell(std::string_view row, std::size_t i) {
    const RowLayout::Place& place = layout_[i];
    if (!has_separator(row, place) || !reaches(row, place)) return false;
    const std::uint64_t before = table_.row_count() - 1;
    table_.column(i).fill(before);
    if (kept_[i] != nullptr) kept_[i]->fill(before);
    if (place.end > row.size()) return add(i, cell_of(row, place));
    return read_whole_cell(row.substr(place.begin, place.end - place.begin), i);
  }

  bool read_whole_cell(std::string_view cell, std::size_t i) {
    const std::uint32_t* row = known_[i].find(cell.data());
    if (row != nullptr) {
      table_.column(i).repeat(*row);
      if (kept_[i] != nullptr) kept_[i]->repeat(*row);
      return true;
    }
    known_[i].keep(cell.data(), static_cast<std::uint32_t>(table_.row_count() - 1));
    return add(i, cell);
  }

  bool add(std::size_t i, std::string_view cell) {
    if (kept_[i] != nullptr) kept_[i]->add(cell);
    return table_.column(i).add(cell);
  }

  // The bytes of the row above may be gone when the next one comes.
  void keep_above() {
    if (above_ == nullptr || above_ == above_bytes_.data()) return;
    std::memcpy(above_bytes_.data(), above_, above_bytes_.size());
    above_ = above_bytes_.data();
  }

  const RowLayout& layout_;
  TableBuilder& table_;
  RowComparison comparison_;
  const char* above_ = nullptr;  // the row before the present one, if it was full
  std::vector<char> above_bytes_;
  // Of each field:
  std::vector<std::uint64_t> pieces_;
  std::vector<KnownCells> known_;
  std::vector<KeptCells*> kept_;  // null for texts
};

RowReader::RowReader(const RowLayout& layout, Rows* rows) : reading_(std::make_unique<Reading>(layout, rows)) {}

RowReader::~RowReader() = default;

bool RowReader::read(std::string_view lines) { return reading_->read(lines); }

bool tell_faults(const TableSchema& schema, const RowLayout& layout, std::string_view lines, std::uint64_t* line,
                 const FaultTeller& tell) {
  FaultFinder finder(schema, layout, *line, tell);
  return for_each_line(lines, [&](std::string_view text) { return finder.look_at(text); });
}

void find_unread_dates(const TableSchema& schema, const RowLayout& layout, std::string_view lines, std::uint64_t* line,
                       UnreadDates* dates) {
  for_each_line(lines, [&](std::string_view text) {
    const std::string_view row = row_of(text, layout.width());
    ++*line;
    for (std::size_t i = 0; i < layout.field_count(); ++i) {
      dates->look_at(schema.fields[i], *line, cell_of(row, layout[i]));
    }
    return true;
  });
}

}  // namespace triglub
