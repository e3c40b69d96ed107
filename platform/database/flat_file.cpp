// One pass over the mapped file: each line is checked against the row's layout and its cells go into the columns.
// Nothing is guessed: a row that does not fit makes the table refuse to load, after the faults have been named.
#include "database/flat_file.h"

#include <algorithm>
#include <cstring>

#include "database/number.h"
#include "platform/elog.h"
#include "platform/text.h"
#include "platform/timeconv.h"

namespace triglub {

namespace {

constexpr std::uint64_t MAX_COMPLAINTS = 20;

std::string_view without_trailing_blanks(std::string_view text) {
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

}  // namespace

class FlatFileLoader {
 public:
  FlatFileLoader(Table* table, std::string path) : table_(*table), schema_(table->schema()), path_(std::move(path)) {}

  bool load() {
    std::string fault;
    table_.file_ = MappedFile::open(path_, &fault);
    if (table_.file_ == nullptr) {
      elog_complain(0, "%s: cannot be read: %s", path_.c_str(), fault.c_str());
      return false;
    }
    table_.path_ = path_;
    read_lines(table_.file_->bytes());
    if (faults_ > 0) {
      elog_complain(0, "%s: table %s is not loaded: %llu fault%s", path_.c_str(), schema_.name.c_str(),
                    static_cast<unsigned long long>(faults_), faults_ == 1 ? "" : "s");
    }
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
    for (std::size_t i = 0; i < schema_.fields.size(); ++i) {
      if (!read_cell(line, i)) return;
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
    const std::string_view cell = begin < line.size() ? line.substr(begin, end - begin) : std::string_view();
    Column& column = table_.columns_[i];
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
    return true;
  }

  static void read_text(std::string_view text, Column* column) {
    text = trimmed(text);  // of tabs and the like
    if (text.empty()) {
      column->codes.push_back(0);
      return;
    }
    // Neighbouring rows mostly agree.
    if (!column->codes.empty() && column->dictionary[column->codes.back()] == text) {
      column->codes.push_back(column->codes.back());
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
  std::uint64_t line_ = 0;  // lines begun so far, which is the number of the present one
  std::uint64_t faults_ = 0;
};

std::unique_ptr<Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                      const std::string& directory) {
  auto table = std::make_unique<Table>(schema, directory);
  if (!FlatFileLoader(table.get(), path).load()) return nullptr;
  return table;
}

}  // namespace triglub
