// A row counts for the schema by which alone it can be read, and where it can be read by both or neither, for that
// whose full row is as long. Programs leave off texts and the load date at the end of a row, so shorter rows can be
// read too; but a load date that is cut must be a date by KB Core, or rows of CSS3.0 that are too long would pass for
// its rows.
#include "engine/source/flat/dialect.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/words.h"
#include "engine/source/flat/row_layout.h"
#include "engine/source/flat/row_reader.h"
#include "engine/source/flat/steady_file.h"
#include "engine/table/cell.h"
#include "platform/elog.h"
#include "time/date_text.h"

namespace triglub {

namespace {

constexpr std::uint64_t kRowsLookedAt = 100;
constexpr std::size_t kBytesLookedAt = std::size_t{1} << 16;  // in which there are as many of any shipped schema

// The rows of a table as one schema has them.
class RowForm {
 public:
  explicit RowForm(const TableSchema& schema) : schema_(schema), layout_(schema) {}

  std::size_t width() const { return layout_.width(); }

  bool reads(std::string_view row) const {
    bool is_good = true;
    std::uint64_t line = 0;
    tell_faults(schema_, layout_, row, &line,
                [&](std::uint64_t, const std::string&, const std::string&) { is_good = false; });
    return is_good;
  }

  // Whether a load date that the row ends in is a date. True where it ends before or behind it.
  bool ends_in_a_date(std::string_view row) const {
    const RowLayout::Place& last = layout_[layout_.field_count() - 1];
    if (row.size() <= last.begin || row.size() >= last.end) return true;
    const std::string_view date = without_blanks(row.substr(last.begin, last.end - last.begin));
    double seconds = 0;
    return date.empty() || read_date_text(date, &seconds);
  }

  const TableSchema& schema_;
  RowLayout layout_;
};

// Why a table fits one schema and not the other.
struct Evidence {
  bool is_kb_core = false;
  std::string place;
  std::size_t bytes = 0;
  std::size_t standard_width = 0;
  std::size_t kb_core_width = 0;
};

class TableJudge {
 public:
  TableJudge(const TableSchema& standard, const TableSchema& kb_core) : standard_(standard), kb_core_(kb_core) {}

  // Nothing where the rows fit both or neither.
  std::optional<Evidence> judge(const std::string& path, std::string_view file) {
    std::optional<Evidence> short_row;
    for (std::uint64_t number = 1; number <= kRowsLookedAt && !file.empty(); ++number) {
      const std::string_view row = without_line_end(take_part(&file, '\n'));
      const auto is_kb_core = verdict(row);
      if (!is_kb_core) continue;
      const Evidence found{*is_kb_core, path + ":" + std::to_string(number), row.size(), standard_.width(),
                           kb_core_.width()};
      if (is_full(row)) return found;
      if (!short_row) short_row = found;
    }
    return short_row;
  }

 private:
  static std::string_view without_line_end(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
  }

  bool is_full(std::string_view row) const { return row.size() == standard_.width() || row.size() == kb_core_.width(); }

  // Whether the row speaks for KB Core; nothing where it says nothing.
  std::optional<bool> verdict(std::string_view row) const {
    if (standard_.width() == kb_core_.width() || without_trailing_blanks(row).empty()) return std::nullopt;
    const bool is_kb_core = kb_core_.reads(row) && kb_core_.ends_in_a_date(row);
    if (standard_.reads(row) != is_kb_core) return is_kb_core;
    if (is_full(row)) return row.size() == kb_core_.width();
    return is_kb_core && !standard_.ends_in_a_date(row) ? std::optional(true) : std::nullopt;
  }

  RowForm standard_;
  RowForm kb_core_;
};

const TableSchema* find_table(const Schema& schema, const std::string& name) {
  const int index = schema.find(name);
  return index < 0 ? nullptr : &schema.tables()[static_cast<std::size_t>(index)];
}

// Whole lines from the beginning of a file; none where it cannot be read, which is told when the table is loaded.
std::string first_lines(const std::string& path) {
  std::string fault;
  const auto file = SteadyFile::open(path, &fault);
  if (file == nullptr) return "";
  std::string bytes(std::min(kBytesLookedAt, file->size()), '\0');
  if (!file->read(0, bytes.size(), bytes.data())) return "";
  if (bytes.size() < file->size()) bytes.resize(bytes.rfind('\n') + 1);  // npos + 1 is 0
  return bytes;
}

std::optional<Evidence> judge_table(const Schema& standard, const Schema& kb_core, const TableFile& file) {
  const TableSchema* const by_standard = find_table(standard, file.table);
  const TableSchema* const by_kb_core = find_table(kb_core, file.table);
  if (by_standard == nullptr || by_kb_core == nullptr) return std::nullopt;
  return TableJudge(*by_standard, *by_kb_core).judge(file.path, first_lines(file.path));
}

std::string described(const Evidence& one) {
  const std::size_t expected = one.is_kb_core ? one.kb_core_width : one.standard_width;
  const std::size_t other = one.is_kb_core ? one.standard_width : one.kb_core_width;
  return one.place + " has " + std::to_string(one.bytes) + " bytes as in " + (one.is_kb_core ? "kbcore" : "css3.0") +
         " (full rows: " + std::to_string(expected) + ", in " + (one.is_kb_core ? "css3.0: " : "kbcore: ") +
         std::to_string(other) + ")";
}

}  // namespace

std::shared_ptr<const Schema> schema_by_rows(const std::vector<TableFile>& files) {
  auto standard = Schema::standard();
  auto kb_core = Schema::kb_core();
  if (standard == nullptr || kb_core == nullptr) return nullptr;
  std::optional<Evidence> for_standard;
  std::optional<Evidence> for_kb_core;
  for (const TableFile& file : files) {
    const auto evidence = judge_table(*standard, *kb_core, file);
    if (!evidence) continue;
    std::optional<Evidence>& kept = evidence->is_kb_core ? for_kb_core : for_standard;
    if (!kept) kept = evidence;
  }
  if (!for_kb_core) return standard;
  if (!for_standard) return kb_core;
  elog_complain(0, "tables of two schemas in one database, expected one: %s, and %s", described(*for_standard).c_str(),
                described(*for_kb_core).c_str());
  return nullptr;
}

}  // namespace triglub
