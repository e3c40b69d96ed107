// One pass over the mapped file: each line is checked against the row's layout and its cells go into the columns. Most
// cells have been seen before, in the row above or a few rows up: what has the same bytes has the same value.
// Nothing is guessed: a row that does not fit makes the table refuse to load, after the faults have been named.
#include "database/flat_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "database/number.h"
#include "platform/elog.h"
#include "platform/text.h"
#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr std::uint64_t MAX_COMPLAINTS = 20;

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
  const auto fits = [](char form, char c) { return form == '9' ? '0' <= c && c <= '9' : c == form; };
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

}  // namespace

class FlatFileLoader {
 public:
  FlatFileLoader(Table* table, std::string path)
      : table_(*table),
        schema_(table->schema()),
        path_(std::move(path)),
        comparison_(static_cast<std::size_t>(schema_.row_width)) {
    for (const FieldSchema& field : schema_.fields) {
      const auto begin = static_cast<std::size_t>(field.offset);
      const auto width = static_cast<std::size_t>(field.width);
      pieces_.push_back(comparison_.pieces_of(begin, begin + width + 1));  // with the separator
      known_.emplace_back(width);
      storages_.push_back(field.storage());
    }
  }

  bool load() {
    std::string fault;
    table_.file_ = MappedFile::open(path_, &fault);
    if (table_.file_ == nullptr) {
      elog_complain(0, "%s: cannot be read: %s", path_.c_str(), fault.c_str());
      return false;
    }
    table_.path_ = path_;
    read_lines(table_.file_->bytes());
    if (faults_ > MAX_COMPLAINTS) {
      elog_complain(0, "%s: %llu faults in all, the first %llu are named", path_.c_str(),
                    static_cast<unsigned long long>(faults_), static_cast<unsigned long long>(MAX_COMPLAINTS));
    }
    if (faults_ > 0) elog_complain(0, "%s: table %s is not loaded", path_.c_str(), schema_.name.c_str());
    return faults_ == 0;
  }

 private:
  void read_lines(std::string_view bytes) {
    reserve(bytes.size() / (static_cast<std::size_t>(schema_.row_width) + 1) + 1);
    bool even = true;  // all lines so far have one length
    for (std::size_t begin = 0; begin < bytes.size();) {
      const void* end_address = std::memchr(bytes.data() + begin, '\n', bytes.size() - begin);
      const std::size_t end = end_address == nullptr
                                  ? bytes.size()
                                  : static_cast<std::size_t>(static_cast<const char*>(end_address) - bytes.data());
      if (line_ == MAX_ROWS) {
        complain("", "more rows than a table can have");
        return;
      }
      if (line_ == 0) table_.stride_ = end + 1;
      if (even && begin != line_ * table_.stride_) {
        even = false;
        for (std::uint64_t row = 0; row < line_; ++row) table_.offsets_.push_back(row * table_.stride_);
      }
      if (!even) table_.offsets_.push_back(begin);
      ++line_;
      std::string_view line = bytes.substr(begin, end - begin);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      read_row(line);
      begin = end + 1;
    }
    table_.row_count_ = static_cast<std::uint32_t>(line_);
    for (std::size_t i = 0; faults_ == 0 && line_ > 0 && i < storages_.size(); ++i) fill(i, line_);
  }

  void reserve(std::size_t rows) {
    for (std::size_t i = 0; i < schema_.fields.size(); ++i) {
      Column& column = table_.columns_[i];
      switch (schema_.fields[i].storage()) {
        case Storage::text:
          column.codes.reserve(rows);
          break;
        case Storage::integer:
          column.integers.reserve(rows);
          break;
        case Storage::real:
          column.reals.reserve(rows);
          break;
      }
    }
  }

  void read_row(std::string_view line) {
    const auto row_width = static_cast<std::size_t>(schema_.row_width);
    if (line.size() > row_width) line = line.substr(0, std::max(row_width, without_trailing_blanks(line).size()));
    if (line.size() > row_width) {
      complain("", "the row has " + std::to_string(line.size()) + " bytes, expected " + std::to_string(row_width));
      return;
    }
    if (without_trailing_blanks(line).empty()) {
      complain("", "the line is blank, expected a row of " + std::to_string(row_width) + " bytes");
      return;
    }
    const bool is_full = line.size() == row_width;
    const std::uint64_t faults = faults_;
    const std::uint64_t changed =
        is_full && above_ != nullptr ? comparison_.differing(above_, line.data()) : RowComparison::ALL;
    above_ = nullptr;
    for (std::size_t i = 0; i < schema_.fields.size(); ++i) {
      if ((changed & pieces_[i]) == 0) continue;
      fill(i, line_ - 1);
      if (!read_cell(line, i)) return;
    }
    if (is_full && faults_ == faults) above_ = line.data();
  }

  // Brings the column up to the rows before `row`: the rows that it lacks have the value of the last one that it has.
  void fill(std::size_t i, std::uint64_t row) {
    Column& column = table_.columns_[i];
    switch (storages_[i]) {
      case Storage::text:
        repeat_last(row, &column.codes);
        break;
      case Storage::integer:
        repeat_last(row, &column.integers);
        break;
      case Storage::real:
        repeat_last(row, &column.reals);
        break;
    }
  }

  template <typename T>
  static void repeat_last(std::uint64_t size, std::vector<T>* values) {
    if (values->size() < size) values->resize(size, values->back());
  }

  // Gives the present row the value of an earlier one.
  void repeat(std::size_t i, std::uint32_t row) {
    Column& column = table_.columns_[i];
    switch (storages_[i]) {
      case Storage::text:
        column.codes.push_back(column.codes[row]);
        break;
      case Storage::integer:
        column.integers.push_back(column.integers[row]);
        break;
      case Storage::real:
        column.reals.push_back(column.reals[row]);
        break;
    }
  }

  // False when the rest of the row makes no sense any more.
  bool read_cell(std::string_view line, std::size_t i) {
    const FieldSchema& field = schema_.fields[i];
    const auto begin = static_cast<std::size_t>(field.offset);
    const auto end = begin + static_cast<std::size_t>(field.width);
    if (end < line.size() && line[end] != ' ') {
      complain(field.name, "a separator column (byte " + std::to_string(end + 1) + ") is not blank");
      return false;
    }
    if (line.size() < end && field.storage() != Storage::text && !is_load_date(field)) {
      // Programs leave off trailing blanks, and with them texts and the load date. They do not leave off numbers, whose
      // null text is no blank: a line that ends here was cut, and what is left of the number may look whole.
      complain(field.name, "the row has " + std::to_string(line.size()) +
                               " bytes and ends before the field, expected " + std::to_string(schema_.row_width));
      return false;
    }
    const bool is_whole = end <= line.size();
    Column& column = table_.columns_[i];
    if (is_whole) {
      const std::uint32_t* known = known_[i].find(line.data() + begin);
      if (known != nullptr) {
        repeat(i, *known);
        return true;
      }
    }
    const std::string_view cell = begin < line.size() ? line.substr(begin, end - begin) : std::string_view();
    const std::uint64_t faults = faults_;
    switch (field.storage()) {
      case Storage::text:
        read_text(without_blanks(cell), &column);
        break;
      case Storage::integer:
        read_integer(without_blanks(cell), field, &column);
        break;
      case Storage::real:
        read_real(without_blanks(cell), field, &column);
        break;
    }
    if (is_whole && faults_ == faults) known_[i].keep(cell.data(), static_cast<std::uint32_t>(line_ - 1));
    return true;
  }

  static void read_text(std::string_view text, Column* column) {
    text = trimmed(text);  // of tabs and the like
    if (text.empty()) {
      column->codes.push_back(0);
      return;
    }
    const bool utf8 = is_utf8(text);
    column->codes.push_back(column->dictionary.intern(utf8 ? text : std::string_view(latin1_to_utf8(text))));
  }

  void read_integer(std::string_view text, const FieldSchema& field, Column* column) {
    std::int64_t value = field.null_integer;
    if (!text.empty() && !parse_integer(text, &value)) complain_of(field, text);
    column->integers.push_back(value);
  }

  void read_real(std::string_view text, const FieldSchema& field, Column* column) {
    double value = field.null_real;
    if (!text.empty() && !parse_real(text, &value)) {
      const bool is_older_form = is_load_date(field) && has_older_form(text);
      if (!is_older_form || is_epoch_string(std::string(text).c_str(), &value) == 0) complain_of(field, text);
    }
    column->reals.push_back(value);
  }

  void complain_of(const FieldSchema& field, std::string_view text) {
    complain(field.name, "expected " + std::string(expected(field)) + ", found '" + std::string(text) + "'");
  }

  void complain(const std::string& field, const std::string& fault) {
    ++faults_;
    if (faults_ > MAX_COMPLAINTS) return;
    const std::string where = field.empty() ? "" : " field " + schema_.name + "." + field + ":";
    elog_complain(0, "%s:%llu:%s %s", path_.c_str(), static_cast<unsigned long long>(line_), where.c_str(),
                  fault.c_str());
  }

  Table& table_;
  const TableSchema& schema_;
  std::string path_;
  RowComparison comparison_;
  const char* above_ = nullptr;        // the row before the present one, if it was full and without fault
  std::vector<std::uint64_t> pieces_;  // of each field
  std::vector<Storage> storages_;      // of each field
  std::vector<KnownCells> known_;      // of each field
  std::uint64_t line_ = 0;             // lines begun so far, which is the number of the present one
  std::uint64_t faults_ = 0;
};

std::unique_ptr<Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                      const std::string& directory) {
  auto table = std::make_unique<Table>(schema, directory);
  if (!FlatFileLoader(table.get(), path).load()) return nullptr;
  return table;
}

}  // namespace triglub
