#include "engine/source/flat/row_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/characters.h"
#include "base/number.h"
#include "platform/text.h"
#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr std::size_t WORD = sizeof(std::uint64_t);

std::uint64_t word_at(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, WORD);
  return word;
}

bool are_same(const char* a, const char* b, std::size_t count) {
  if (count < WORD) return std::equal(a, a + count, b);
  for (std::size_t at = 0; at + WORD < count; at += WORD) {
    if (word_at(a + at) != word_at(b + at)) return false;
  }
  return word_at(a + count - WORD) == word_at(b + count - WORD);
}

std::string_view without_trailing_blanks(std::string_view text) {
  constexpr std::uint64_t BLANKS = 0x2020202020202020u;
  while (text.size() >= WORD && word_at(text.data() + text.size() - WORD) == BLANKS) text.remove_suffix(WORD);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// Fixed-width cells are padded with blanks only, which is quicker to trim than white space at large.
std::string_view without_blanks(std::string_view text) {
  text = without_trailing_blanks(text);
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return text;
}

const char* expected(const FieldSchema& field) {
  switch (field.type) {
    case FieldType::integer:
      return "an integer";
    case FieldType::date:
      return "a date (yyyyddd)";
    case FieldType::time:
      return "a time (epoch seconds)";
    case FieldType::text:
    case FieldType::real:
      break;
  }
  return "a number";
}

bool is_load_date(const FieldSchema& field) { return field.name == "lddate"; }

// Load dates were once written as "yy-mm-dd hh:mm:ss".
bool has_older_form(std::string_view text) {
  constexpr std::string_view FORM = "99-99-99 99:99:99";
  const auto fits = [](char form, char c) { return form == '9' ? is_digit(c) : c == form; };
  return std::equal(FORM.begin(), FORM.end(), text.begin(), text.end(), fits);
}

// Which parts of a row differ from another: a bit for each of at most 64 pieces of equal length.
class RowComparison {
 public:
  explicit RowComparison(std::size_t row_width) : row_width_(row_width) {
    while (piece_at(row_width_ - 1) >= PIECES) ++shift_;
  }

  // The pieces that hold the bytes from `begin` to before `end` (cut at the end of the row).
  std::uint64_t pieces_of(std::size_t begin, std::size_t end) const {
    const std::size_t last = piece_at(std::min(end, row_width_) - 1);
    return (ALL >> (PIECES - 1 - last)) & (ALL << piece_at(begin));
  }

  std::uint64_t differing(const char* a, const char* b) const {
    std::uint64_t pieces = 0;
    const std::size_t words = row_width_ / WORD;
    for (std::size_t word = 0; word < words; ++word) {
      const bool differs = word_at(a + word * WORD) != word_at(b + word * WORD);
      pieces |= std::uint64_t{differs} << (word >> shift_);
    }
    const std::size_t rest = words * WORD;
    if (rest < row_width_ && !are_same(a + rest, b + rest, row_width_ - rest)) pieces |= pieces_of(rest, row_width_);
    return pieces;
  }

  static constexpr std::uint64_t ALL = ~std::uint64_t{0};

 private:
  static constexpr std::size_t PIECES = 64;

  std::size_t piece_at(std::size_t byte) const { return byte / WORD >> shift_; }

  std::size_t row_width_;
  std::size_t shift_ = 0;  // words of a piece, as a power of two
};

// Cells of one field that were read before, the latest of each kind.
class KnownCells {
 public:
  explicit KnownCells(std::size_t width) : width_(width) {}

  // The number of an earlier row whose cell has the same bytes; nothing when none is known.
  const std::uint32_t* find(const char* cell) {
    latest_ = &cells_[slot_of(cell)];
    return latest_->bytes != nullptr && are_same(latest_->bytes, cell, width_) ? &latest_->row : nullptr;
  }
  // Keeps the cell that was asked for last.
  void keep(const char* cell, std::uint32_t row) { *latest_ = {cell, row}; }

 private:
  struct Cell {
    const char* bytes = nullptr;
    std::uint32_t row = 0;
  };
  static constexpr int SLOT_BITS = 6;

  // Numbers stand at the end of their cells, texts at the beginning.
  std::size_t slot_of(const char* cell) const {
    std::uint64_t hash = width_ < WORD ? short_word(cell) : word_at(cell) ^ (word_at(cell + width_ - WORD) << 1);
    hash *= 0x9E3779B97F4A7C15u;  // 2^64 divided by the golden ratio
    return hash >> (64 - SLOT_BITS);
  }

  std::uint64_t short_word(const char* cell) const {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < width_; ++i) word = word << 8 | static_cast<unsigned char>(cell[i]);
    return word;
  }

  std::size_t width_;
  std::array<Cell, std::size_t{1} << SLOT_BITS> cells_;
  Cell* latest_ = nullptr;
};

// Without `tell` the reader keeps what it reads and stops at the first fault; with it, it keeps nothing and goes on.
class RowReader {
 public:
  RowReader(const TableSchema& schema, std::string_view file, Rows* rows, const FaultTeller* tell)
      : schema_(schema),
        file_(file),
        rows_(*rows),
        tell_(tell),
        comparison_(static_cast<std::size_t>(schema.row_width)) {
    rows_.columns.resize(schema.fields.size());
    for (std::size_t i = 0; i < schema.fields.size(); ++i) add_field(schema.fields[i], &rows_.columns[i]);
  }

  void make_room(std::size_t bytes) {
    const std::size_t rows = bytes / (static_cast<std::size_t>(schema_.row_width) + 1) + 1;
    for (std::size_t i = 0; i < storages_.size(); ++i) {
      with_values(i, [rows](auto& values) { values.reserve(rows); });
    }
  }

  // False when it stopped.
  bool read(std::size_t begin, std::size_t end) {
    rows_.begin = begin;
    while (begin < end && go_on_) {
      const void* newline = std::memchr(file_.data() + begin, '\n', end - begin);
      const std::size_t line_end =
          newline == nullptr ? end : static_cast<std::size_t>(static_cast<const char*>(newline) - file_.data());
      if (rows_.count == MAX_ROWS) {
        fault("", "more rows than a table can have");
        return false;
      }
      note_line(begin, line_end + 1 - begin);
      read_line(file_.substr(begin, line_end - begin));
      begin = line_end + 1;
    }
    for (std::size_t i = 0; go_on_ && tell_ == nullptr && rows_.count > 0 && i < storages_.size(); ++i) {
      fill(i, rows_.count);
    }
    return go_on_;
  }

 private:
  void add_field(const FieldSchema& field, Column* column) {
    const auto begin = static_cast<std::size_t>(field.offset);
    const auto width = static_cast<std::size_t>(field.width);
    pieces_.push_back(comparison_.pieces_of(begin, begin + width + 1));  // with the separator
    known_.emplace_back(width);
    storages_.push_back(field.storage());
    if (field.storage() == Storage::text) column->dictionary.intern(field.null_text);
  }

  // Calls `work` with the values of a column, whatever they are.
  template <typename Work>
  void with_values(std::size_t i, Work work) {
    Column& column = rows_.columns[i];
    switch (storages_[i]) {
      case Storage::text:
        return work(column.codes);
      case Storage::integer:
        return work(column.integers);
      case Storage::real:
        return work(column.reals);
    }
  }

  void note_line(std::size_t begin, std::size_t length) {
    if (rows_.count == 0) rows_.stride = length;
    if (rows_.offsets.empty() && begin != rows_.begin + rows_.count * rows_.stride) {
      for (std::uint64_t row = 0; row < rows_.count; ++row) rows_.offsets.push_back(rows_.begin + row * rows_.stride);
    }
    if (!rows_.offsets.empty()) rows_.offsets.push_back(begin);
    ++rows_.count;
  }

  void read_line(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const auto row_width = static_cast<std::size_t>(schema_.row_width);
    if (line.size() > row_width) line = line.substr(0, std::max(row_width, without_trailing_blanks(line).size()));
    if (line.size() > row_width) {
      fault("", "the row has " + std::to_string(line.size()) + " bytes, expected " + std::to_string(row_width));
    } else if (without_trailing_blanks(line).empty()) {
      fault("", "the line is blank, expected a row of " + std::to_string(row_width) + " bytes");
    } else {
      read_cells(line);
    }
  }

  void read_cells(std::string_view line) {
    const bool is_full = line.size() == static_cast<std::size_t>(schema_.row_width);
    const std::uint64_t changed =
        is_full && above_ != nullptr ? comparison_.differing(above_, line.data()) : RowComparison::ALL;
    for (std::size_t i = 0; i < storages_.size(); ++i) {
      // A cell like the one above is left out here, and filled in when the next other one comes.
      if ((changed & pieces_[i]) != 0 && !read_cell(line, i)) break;
    }
    above_ = is_full && tell_ == nullptr ? line.data() : nullptr;
  }

  // Brings the column up to `count` rows: those that it lacks have the value of the last one that it has.
  void fill(std::size_t i, std::uint64_t count) {
    with_values(i, [count](auto& values) {
      if (values.size() < count) values.resize(count, values.back());
    });
  }

  // False when the rest of the row makes no sense any more.
  bool read_cell(std::string_view line, std::size_t i) {
    const FieldSchema& field = schema_.fields[i];
    const auto begin = static_cast<std::size_t>(field.offset);
    const auto end = begin + static_cast<std::size_t>(field.width);
    if (end < line.size() && line[end] != ' ') {
      fault(field.name, "a separator column (byte " + std::to_string(end + 1) + ") is not blank");
      return false;
    }
    if (end <= line.size()) return read_whole_cell(line.data() + begin, i);
    if (field.storage() != Storage::text && !is_load_date(field)) {
      // Programs leave off trailing blanks, and with them texts and the load date. They do not leave off numbers, whose
      // null text is no blank: a line that ends here was cut, and what is left of the number may look whole.
      fault(field.name, "the row has " + std::to_string(line.size()) + " bytes and ends before the field, expected " +
                            std::to_string(schema_.row_width));
      return false;
    }
    const std::string_view cell = begin < line.size() ? line.substr(begin) : std::string_view();
    read_value(without_blanks(cell), i);
    return go_on_;
  }

  bool read_whole_cell(const char* bytes, std::size_t i) {
    const std::string_view cell(bytes, static_cast<std::size_t>(schema_.fields[i].width));
    if (tell_ != nullptr) {
      read_value(without_blanks(cell), i);
      return true;
    }
    const std::uint32_t* known = known_[i].find(bytes);
    if (known != nullptr) {
      fill(i, rows_.count - 1);
      with_values(i, [row = *known](auto& values) { values.push_back(values[row]); });
      return true;
    }
    read_value(without_blanks(cell), i);
    known_[i].keep(bytes, static_cast<std::uint32_t>(rows_.count - 1));
    return go_on_;
  }

  void read_value(std::string_view text, std::size_t i) {
    if (tell_ == nullptr) fill(i, rows_.count - 1);
    Column& column = rows_.columns[i];
    const FieldSchema& field = schema_.fields[i];
    switch (storages_[i]) {
      case Storage::text:
        return read_text(text, &column);
      case Storage::integer:
        return read_integer(text, field, &column);
      case Storage::real:
        return read_real(text, field, &column);
    }
  }

  void read_text(std::string_view text, Column* column) {
    if (tell_ != nullptr) return;  // any text will do
    text = trimmed(text);          // of tabs and the like
    if (text.empty()) {
      column->codes.push_back(0);
      return;
    }
    const bool utf8 = is_utf8(text);
    column->codes.push_back(column->dictionary.intern(utf8 ? text : std::string_view(latin1_to_utf8(text))));
  }

  void read_integer(std::string_view text, const FieldSchema& field, Column* column) {
    std::int64_t value = field.null_integer;
    if (!text.empty() && !parse_integer(text, &value)) fault_of(field, text);
    if (tell_ == nullptr) column->integers.push_back(value);
  }

  void read_real(std::string_view text, const FieldSchema& field, Column* column) {
    double value = field.null_real;
    if (!text.empty() && !parse_real(text, &value)) {
      const bool is_older_form = is_load_date(field) && has_older_form(text);
      if (!is_older_form || is_epoch_string(std::string(text).c_str(), &value) == 0) fault_of(field, text);
    }
    if (tell_ == nullptr) column->reals.push_back(value);
  }

  void fault_of(const FieldSchema& field, std::string_view text) {
    fault(field.name, "expected " + std::string(expected(field)) + ", found '" + std::string(text) + "'");
  }

  void fault(const std::string& field, const std::string& text) {
    if (tell_ != nullptr) {
      (*tell_)(rows_.count, field, text);
    } else {
      go_on_ = false;
    }
  }

  const TableSchema& schema_;
  std::string_view file_;
  Rows& rows_;
  const FaultTeller* tell_;
  bool go_on_ = true;
  RowComparison comparison_;
  const char* above_ = nullptr;  // the row before the present one, if it was full
  // Of each field:
  std::vector<std::uint64_t> pieces_;
  std::vector<Storage> storages_;
  std::vector<KnownCells> known_;
};

}  // namespace

bool read_rows(const TableSchema& schema, std::string_view file, std::size_t begin, std::size_t end, std::size_t room,
               Rows* rows) {
  RowReader reader(schema, file, rows, nullptr);
  reader.make_room(room);
  return reader.read(begin, end);
}

void tell_faults(const TableSchema& schema, std::string_view file, const FaultTeller& tell) {
  Rows rows;
  RowReader(schema, file, &rows, &tell).read(0, file.size());
}

}  // namespace triglub
