// The reader of rows looks at as little as it can; what it reads must be what every cell by itself says.
#include "engine/source/flat/row_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "built_table.h"
#include "engine/table/cell.h"
#include "support/flat_database.h"
#include "support/random_seed.h"

namespace triglub_test {
namespace {

using triglub::RowLayout;
using triglub::RowReader;
using triglub::Rows;
using triglub::TableBuilder;

// Lines that are much alike, as those of real files are, and now and then are not.
class Generator {
 public:
  Generator(const std::string& table, bool is_even, std::uint64_t seed)
      : fields_(flat_schema().at(table)), random_(seed) {
    is_even_ = is_even;
    for (const FlatField& field : fields_) values_.push_back(field.null_text);
  }

  std::string line() {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      if (below(3) == 0) values_[i] = value(fields_[i]);
    }
    if (values_.front().empty()) values_.front() = "1";  // a line that is blank is none
    std::string line;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      if (i > 0) line += ' ';
      line += padded(fields_[i], values_[i]);
    }
    if (is_even_) return line;
    if (below(8) == 0) line.resize(line.size() - 17 - below(2));  // without its load date
    return line + std::string(below(3) == 0 ? below(4) : 0, ' ') + (below(5) == 0 ? "\r" : "");
  }

 private:
  std::size_t below(std::size_t n) { return static_cast<std::size_t>(random_() % n); }

  std::string value(const FlatField& field) {
    static const std::vector<std::string> kNumbers = {"1", "-1", "007", "+5", "0", "-0", "", "99"};
    static const std::vector<std::string> kTexts = {"A", "AB", "B", "", "-", "\xFC", "\t", "A\t"};
    const std::string& chosen = field.is_text ? kTexts[below(kTexts.size())] : kNumbers[below(kNumbers.size())];
    return chosen.substr(0, field.width);
  }

  // A value may stand anywhere in its field.
  std::string padded(const FlatField& field, const std::string& value) {
    const std::size_t left = below(4) == 0 ? below(field.width - value.size() + 1) : 0;
    std::string cell = std::string(left, ' ') + value;
    cell.resize(field.width, ' ');
    return cell;
  }

  FlatTable fields_;
  bool is_even_;
  std::mt19937_64 random_;
  std::vector<std::string> values_;
};

// Every cell by itself.
TableBuilder read_plainly(const triglub::TableSchema& schema, const std::vector<std::string>& lines) {
  TableBuilder rows(schema);
  const RowLayout layout(schema);
  for (std::string line : lines) {
    if (line.ends_with('\r')) line.pop_back();
    line.resize(layout.width(), ' ');
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < layout.field_count(); ++i) {
      cells.push_back(line.substr(layout[i].begin, layout[i].end - layout[i].begin));
    }
    add_cells(&rows, cells);
  }
  return rows;
}

// A line's cell at its full width.
std::string cell_in(std::string line, const RowLayout::Place& place) {
  if (line.ends_with('\r')) line.pop_back();
  line.resize(std::max(line.size(), place.end), ' ');
  return line.substr(place.begin, place.end - place.begin);
}

// Gives a reader so many lines at a time, in memory that is gone when the next come.
bool read_in_parts(const RowLayout& layout, const std::string& bytes, std::size_t lines_at_once, Rows* rows) {
  RowReader reader(layout, rows);
  for (std::size_t begin = 0; begin < bytes.size();) {
    std::size_t end = begin;
    for (std::size_t i = 0; i < lines_at_once && end < bytes.size(); ++i) {
      const std::size_t newline = bytes.find('\n', end);
      end = newline == std::string::npos ? bytes.size() : newline + 1;
    }
    const auto part = std::make_unique<std::string>(bytes, begin, end - begin);
    if (!reader.read(*part)) return false;
    part->assign(part->size(), '#');
    begin = end;
  }
  rows->fill();
  return true;
}

TEST(RowReader, ReadsWhatEveryCellByItselfSays) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    const auto table =
        std::next(flat_schema().begin(), static_cast<std::ptrdiff_t>(seed % flat_schema().size()))->first;
    SCOPED_TRACE(table + ", seed " + std::to_string(seed));
    Generator generator(table, seed % 3 == 0, seed);
    std::vector<std::string> lines;
    std::string bytes;
    for (int i = 0; i < 400; ++i) {
      lines.push_back(generator.line());
      bytes += lines.back() + "\n";
    }
    const triglub::TableSchema& schema = builtin_table(table);
    const RowLayout layout(schema);
    Rows rows(schema);
    ASSERT_TRUE(read_in_parts(layout, bytes, 1 + seed % 7, &rows));
    TableBuilder plain = read_plainly(schema, lines);
    ASSERT_EQ(rows.table.row_count(), lines.size());
    for (std::size_t i = 0; i < layout.field_count(); ++i) {
      const triglub::Column fast = rows.table.column(i).take();
      const triglub::Column slow = plain.column(i).take();
      ASSERT_EQ(fast.codes, slow.codes) << schema.fields[i].name;
      ASSERT_EQ(fast.integers, slow.integers) << schema.fields[i].name;
      ASSERT_EQ(fast.reals, slow.reals) << schema.fields[i].name;
      ASSERT_EQ(fast.dictionary.size(), slow.dictionary.size());
      for (std::uint32_t code = 0; code < fast.dictionary.size(); ++code) {
        ASSERT_EQ(fast.dictionary[code], slow.dictionary[code]);
      }
    }
    for (std::size_t i = 0; i < layout.field_count(); ++i) {
      if (schema.fields[i].storage() == triglub::Storage::text) continue;
      for (std::uint32_t row = 0; row < lines.size(); ++row) {
        ASSERT_EQ(rows.cells[i][row], cell_in(lines[row], layout[i])) << schema.fields[i].name << " of row " << row;
      }
    }
  }
}

// It refuses a file exactly when there are faults to tell of.
TEST(RowReader, RefusesWhatHasFaults) {
  std::mt19937_64 random(random_seed());
  int refused = 0;
  const triglub::TableSchema& schema = builtin_table("affiliation");
  const RowLayout layout(schema);
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    Generator generator("affiliation", seed % 2 == 0, seed);
    std::string bytes;
    for (int i = 0; i < 6; ++i) bytes += generator.line() + "\n";
    for (auto changes = random() % 3; changes > 0; --changes) {
      constexpr std::string_view kLetters("\n\r \0-1x\xFC", 8);
      bytes[random() % bytes.size()] = kLetters[random() % kLetters.size()];
    }
    Rows rows(schema);
    const bool is_read = read_in_parts(layout, bytes, 1 + seed % 3, &rows);
    int faults = 0;
    std::uint64_t line = 0;
    triglub::tell_faults(schema, layout, bytes, &line,
                         [&](std::uint64_t, const std::string&, const std::string&) { ++faults; });
    ASSERT_EQ(is_read, faults == 0) << bytes;
    refused += is_read ? 0 : 1;
  }
  EXPECT_GT(refused, 200);
  EXPECT_LT(refused, 1800);
}

}  // namespace
}  // namespace triglub_test
