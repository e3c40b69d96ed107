// A file is read in as many pieces as there are threads, each by itself, and the pieces are put together. When one has
// a fault the whole is gone through again to name its faults.
#include "engine/source/flat/flat_file.h"

#include <algorithm>
#include <numeric>

#include "base/threads.h"
#include "engine/source/flat/row_reader.h"
#include "engine/source/table_faults.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::size_t LEAST_PIECE = std::size_t{1} << 20;  // bytes for which a thread is worth its start
constexpr std::size_t SMALL_PIECES = 8;                    // of a thread's share, one for later

// Where each piece begins, at the beginning of a line, and the end. Each thread has a large piece, and small ones are
// left for those that are done first.
std::vector<std::size_t> borders_of_pieces(std::string_view file) {
  const std::size_t threads = std::clamp<std::size_t>(file.size() / LEAST_PIECE, 1, thread_count());
  std::vector<std::size_t> borders = {0};
  const auto add = [&](std::size_t near) {
    const std::size_t newline = file.find('\n', near);
    const std::size_t begin = newline == std::string_view::npos ? file.size() : newline + 1;
    if (begin > borders.back()) borders.push_back(begin);
  };
  if (threads > 1) {
    const std::size_t small = file.size() / threads / SMALL_PIECES;
    for (std::size_t i = 1; i <= threads; ++i) add(small * (SMALL_PIECES - 1) * i);
    for (std::size_t i = 1; i < threads; ++i) add(small * (SMALL_PIECES - 1) * threads + small * i);
  }
  if (borders.back() < file.size()) borders.push_back(file.size());
  return borders;
}

void complain_of_faults(const TableSchema& schema, const std::string& path, std::string_view file) {
  TableFaults faults(schema.name, path);
  tell_faults(schema, file, [&](std::uint64_t line, const std::string& field, const std::string& fault) {
    faults.tell(path + ":" + std::to_string(line), field, fault);
  });
  faults.conclude();
}

// The codes of one dictionary's texts in another, which is given those that it lacks.
std::vector<std::uint32_t> merge(const Dictionary& from, Dictionary* to) {
  std::vector<std::uint32_t> codes;
  codes.reserve(from.size());
  for (std::uint32_t code = 0; code < from.size(); ++code) codes.push_back(to->intern(from[code]));
  return codes;
}

template <typename T>
void append(const std::vector<T>& from, std::vector<T>* to) {
  to->insert(to->end(), from.begin(), from.end());
}

void append_column(const Column& from, Column* to) {
  append(from.integers, &to->integers);
  append(from.reals, &to->reals);
  const std::vector<std::uint32_t> codes = merge(from.dictionary, &to->dictionary);
  to->codes.reserve(to->codes.size() + from.codes.size());
  for (const std::uint32_t code : from.codes) to->codes.push_back(codes[code]);
}

// Where the lines begin, one by one.
std::vector<std::uint64_t> line_begins(const Rows& rows) {
  if (!rows.offsets.empty()) return rows.offsets;
  std::vector<std::uint64_t> begins;
  begins.reserve(rows.count);
  for (std::uint64_t i = 0; i < rows.count; ++i) begins.push_back(rows.begin + i * rows.stride);
  return begins;
}

// Brings the places of the lines together; they stay implied as long as all lines are of one length.
void append_lines(const Rows& from, Rows* to) {
  const bool is_even = to->offsets.empty() && from.offsets.empty() && to->stride == from.stride &&
                       from.begin == to->begin + to->count * to->stride;
  if (is_even) return;
  to->offsets = line_begins(*to);
  append(line_begins(from), &to->offsets);
}

}  // namespace

class FlatFileLoader {
 public:
  static bool load(const std::string& path, Table* table) {
    std::string fault;
    table->file_ = MappedFile::open(path, &fault);
    if (table->file_ == nullptr) {
      elog_complain(0, "%s: cannot be read: %s", path.c_str(), fault.c_str());
      return false;
    }
    table->path_ = path;
    const std::string_view file = table->file_->bytes();
    auto rows = read_pieces(table->schema(), file);
    if (!rows) {
      complain_of_faults(table->schema(), path, file);
      return false;
    }
    table->columns_ = std::move(rows->columns);
    table->row_count_ = static_cast<std::uint32_t>(rows->count);
    table->stride_ = rows->stride;
    table->offsets_ = std::move(rows->offsets);
    return true;
  }

 private:
  // Nothing when there is a fault.
  static std::optional<Rows> read_pieces(const TableSchema& schema, std::string_view file) {
    const std::vector<std::size_t> borders = borders_of_pieces(file);
    if (borders.size() < 2) {
      Rows none;
      read_rows(schema, file, 0, 0, 0, &none);
      return none;
    }
    std::vector<Rows> pieces(borders.size() - 1);
    std::vector<char> is_good(pieces.size(), 0);
    run_side_by_side(pieces.size(), [&](std::size_t i) {
      const std::size_t room =
          (i == 0 ? borders.back() : borders[i + 1]) - borders[i];  // the first takes in the others
      Rows rows;  // the thread's own: what two threads write should not lie side by side
      is_good[i] = read_rows(schema, file, borders[i], borders[i + 1], room, &rows) ? 1 : 0;
      pieces[i] = std::move(rows);
    });
    if (std::count(is_good.begin(), is_good.end(), 0) > 0) return std::nullopt;
    return put_together(std::move(pieces));
  }

  static std::optional<Rows> put_together(std::vector<Rows> pieces) {
    Rows all = std::move(pieces.front());
    for (std::size_t p = 1; p < pieces.size(); ++p) {
      Rows& piece = pieces[p];
      if (all.count + piece.count > MAX_ROWS) return std::nullopt;
      append_lines(piece, &all);
      run_side_by_side(all.columns.size(), [&](std::size_t i) { append_column(piece.columns[i], &all.columns[i]); });
      all.count += piece.count;
      piece = {};
    }
    return all;
  }
};

std::unique_ptr<Table> load_flat_file(const TableSchema& schema, const std::string& path,
                                      const std::string& directory) {
  auto table = std::make_unique<Table>(schema, directory);
  if (!FlatFileLoader::load(path, table.get())) return nullptr;
  return table;
}

}  // namespace triglub
