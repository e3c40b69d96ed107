// A file is read in as many pieces as there are threads, each by itself, and the pieces are put together. When one has
// a fault the whole is gone through again to name its faults.
#include "engine/source/flat/flat_file.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "base/threads.h"
#include "engine/source/flat/file_digits.h"
#include "engine/source/flat/mapped_file.h"
#include "engine/source/flat/row_layout.h"
#include "engine/source/flat/row_reader.h"
#include "engine/source/table_faults.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::size_t kLeastPiece = std::size_t{1} << 20;  // bytes for which a thread is worth its start
constexpr std::size_t kSmallPieces = 8;                    // in a thread's share; one of them is left for later

// Where each piece begins, at the beginning of a line, and the end of the last. There is a large piece for each thread,
// then small ones for the threads that are done first.
std::vector<std::size_t> borders_of_pieces(std::string_view file) {
  const std::size_t threads = std::clamp<std::size_t>(file.size() / kLeastPiece, 1, thread_count());
  std::vector<std::size_t> borders = {0};
  const auto add = [&](std::size_t near) {
    const std::size_t newline = file.find('\n', near);
    const std::size_t begin = newline == std::string_view::npos ? file.size() : newline + 1;
    if (begin > borders.back()) borders.push_back(begin);
  };
  if (threads > 1) {
    const std::size_t small = file.size() / threads / kSmallPieces;
    for (std::size_t i = 1; i <= threads; ++i) add(small * (kSmallPieces - 1) * i);
    for (std::size_t i = 1; i < threads; ++i) add(small * (kSmallPieces - 1) * threads + small * i);
  }
  if (borders.back() < file.size()) borders.push_back(file.size());
  return borders;
}

void complain_of_faults(const TableSchema& schema, const RowLayout& layout, const std::string& path,
                        std::string_view file) {
  TableFaults faults(schema.name, path);
  tell_faults(schema, layout, file, [&](std::uint64_t line, const std::string& field, const std::string& fault) {
    faults.tell(path + ":" + std::to_string(line), field, fault);
  });
  faults.conclude();
}

// What was read does not tell which rows they are; only where there are any is the file gone through again.
void note_unread_dates(const TableSchema& schema, const RowLayout& layout, const std::string& path,
                       std::string_view file) {
  UnreadDates dates(schema.name, path + ":");
  find_unread_dates(schema, layout, file, &dates);
  dates.conclude();
}

// Nothing when they are more than a table can have.
std::optional<Rows> put_together(std::vector<std::optional<Rows>> pieces) {
  Rows all = *std::move(pieces.front());
  for (std::size_t p = 1; p < pieces.size(); ++p) {
    if (!all.table.append(std::move(pieces[p]->table))) return std::nullopt;
    all.lines.append(pieces[p]->lines);
    pieces[p].reset();
  }
  return all;
}

// Nothing when there is a fault.
std::optional<Rows> read_pieces(const TableSchema& schema, const RowLayout& layout, std::string_view file) {
  const std::vector<std::size_t> borders = borders_of_pieces(file);
  if (borders.size() < 2) return Rows(schema);
  std::vector<std::optional<Rows>> pieces(borders.size() - 1);
  run_side_by_side(pieces.size(), [&](std::size_t i) {
    const std::size_t room = (i == 0 ? borders.back() : borders[i + 1]) - borders[i];  // the first takes in the others
    Rows rows(schema, borders[i]);  // the thread's own: two threads should not write to one cache line
    if (read_rows(layout, file, borders[i], borders[i + 1], room, &rows)) pieces[i] = std::move(rows);
  });
  const bool are_good = std::all_of(pieces.begin(), pieces.end(), [](const auto& piece) { return piece.has_value(); });
  return are_good ? put_together(std::move(pieces)) : std::nullopt;
}

}  // namespace

std::unique_ptr<const Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                            const std::string& directory, const RowConditions& conditions) {
  std::string fault;
  const std::shared_ptr<const MappedFile> file = MappedFile::open(path, &fault);
  if (file == nullptr) {
    elog_complain(0, "%s: cannot be read: %s", path.c_str(), fault.c_str());
    return nullptr;
  }
  RowLayout layout(schema);
  auto rows = read_pieces(schema, layout, file->bytes());
  if (!rows) {
    complain_of_faults(schema, layout, path, file->bytes());
    return nullptr;
  }
  if (rows->table.has_unread_dates()) note_unread_dates(schema, layout, path, file->bytes());
  auto digits = std::make_unique<FileDigits>(file, std::move(rows->lines), std::move(layout), schema);
  return std::move(rows->table).build(directory, path + ":", std::move(digits), conditions);
}

}  // namespace triglub
