// A file is read in as many pieces as there are threads, each by itself, and the pieces are put together. When one has
// a fault the whole is gone through again to name its faults. That is done part by part: what turns out to be no table
// need not be held.
#include "engine/source/flat/flat_file.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <vector>

#include "base/threads.h"
#include "engine/source/flat/file_digits.h"
#include "engine/source/flat/file_parts.h"
#include "engine/source/flat/row_layout.h"
#include "engine/source/flat/row_reader.h"
#include "engine/source/flat/steady_file.h"
#include "engine/source/table_faults.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::size_t kLeastPiece = std::size_t{1} << 20;  // bytes for which a thread is worth its start
constexpr std::size_t kSmallPieces = 8;                    // in a thread's share; one of them is left for later

// Where the line ends that byte `near` is in; nothing when that is far away or the file cannot be read.
std::optional<std::size_t> line_end_near(const SteadyFile& file, std::size_t near) {
  std::string bytes(std::min(kMaxLineBytes, file.size() - near), '\0');
  if (!file.read(near, near + bytes.size(), bytes.data())) return std::nullopt;
  const std::size_t newline = bytes.find('\n');
  return newline == std::string::npos ? std::nullopt : std::optional(near + newline + 1);
}

// Where each piece begins, at the beginning of a line, and the end of the last. There is a large piece for each thread,
// then small ones for the threads that are done first.
std::vector<std::size_t> borders_of_pieces(const SteadyFile& file) {
  const std::size_t threads = std::clamp<std::size_t>(file.size() / kLeastPiece, 1, thread_count());
  std::vector<std::size_t> borders = {0};
  const auto add = [&](std::size_t near) {
    const auto begin = line_end_near(file, near);
    if (begin && *begin > borders.back()) borders.push_back(*begin);
  };
  if (threads > 1) {
    const std::size_t small = file.size() / threads / kSmallPieces;
    for (std::size_t i = 1; i <= threads; ++i) add(small * (kSmallPieces - 1) * i);
    for (std::size_t i = 1; i < threads; ++i) add(small * (kSmallPieces - 1) * threads + small * i);
  }
  if (borders.back() < file.size()) borders.push_back(file.size());
  return borders;
}

// Complains of the first fault of a file as a whole. False when there is none.
bool complain_of_file(const std::string& path, const std::string& fault) {
  if (!fault.empty()) elog_complain(0, "%s: %s", path.c_str(), fault.c_str());
  return !fault.empty();
}

void complain_of_rows(const TableSchema& schema, const RowLayout& layout, const std::string& path,
                      const SteadyFile& file) {
  TableFaults faults(schema.name, path);
  std::uint64_t last_line = 0;
  const auto tell = [&](std::uint64_t line, const std::string& field, const std::string& fault) {
    faults.tell(path + ":" + std::to_string(line), field, fault);
  };
  for_each_part(file, {0, file.size()},
                [&](std::string_view lines) { return tell_faults(schema, layout, lines, &last_line, tell); });
  faults.conclude();
}

// What was read does not tell which rows they are; only where there are any is the file gone through again.
void note_unread_dates(const TableSchema& schema, const RowLayout& layout, const std::string& path,
                       const SteadyFile& file) {
  UnreadDates dates(schema.name, path + ":");
  std::uint64_t last_line = 0;
  for_each_part(file, {0, file.size()}, [&](std::string_view lines) {
    find_unread_dates(schema, layout, lines, &last_line, &dates);
    return true;
  });
  dates.conclude();
}

// Nothing when they are more than a table can have.
std::optional<Rows> put_together(std::vector<std::optional<Rows>> pieces) {
  Rows all = *std::move(pieces.front());
  for (std::size_t p = 1; p < pieces.size(); ++p) {
    if (!all.append(*std::move(pieces[p]))) return std::nullopt;
    pieces[p].reset();
  }
  return all;
}

// Nothing when there is a fault.
std::optional<Rows> read_pieces(const TableSchema& schema, const RowLayout& layout, const SteadyFile& file) {
  const std::vector<std::size_t> borders = borders_of_pieces(file);
  if (borders.size() < 2) return Rows(schema);
  std::vector<std::optional<Rows>> pieces(borders.size() - 1);
  std::atomic<bool> is_good = true;
  run_side_by_side(pieces.size(), [&](std::size_t i) {
    const std::size_t room = (i == 0 ? borders.back() : borders[i + 1]) - borders[i];  // the first takes in the others
    Rows rows(schema);  // the thread's own: two threads should not write to one cache line
    rows.reserve(room / (layout.width() + 1) + 1);
    RowReader reader(layout, &rows);
    const auto read = [&](std::string_view lines) { return is_good && reader.read(lines); };
    if (!for_each_part(file, {borders[i], borders[i + 1]}, read)) is_good = false;
    if (!is_good) return;
    rows.fill();
    pieces[i] = std::move(rows);
  });
  return is_good ? put_together(std::move(pieces)) : std::nullopt;
}

}  // namespace

std::unique_ptr<const Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                            const std::string& directory, const RowConditions& conditions) {
  std::string fault;
  const std::unique_ptr<const SteadyFile> file = SteadyFile::open(path, &fault);
  if (file == nullptr) {
    elog_complain(0, "%s: cannot be read: %s", path.c_str(), fault.c_str());
    return nullptr;
  }
  const RowLayout layout(schema);
  auto rows = read_pieces(schema, layout, *file);
  if (complain_of_file(path, file->fault())) return nullptr;
  if (!rows) {
    complain_of_rows(schema, layout, path, *file);
    complain_of_file(path, file->fault());  // the faults may be gone meanwhile
    return nullptr;
  }
  if (rows->table.has_unread_dates()) note_unread_dates(schema, layout, path, *file);
  auto digits = std::make_unique<FileDigits>(std::move(rows->cells), schema);
  return std::move(rows->table).build(directory, path + ":", std::move(digits), conditions);
}

}  // namespace triglub
