// Text to parameter-file object: one pass over the lines, with the open blocks on a stack of their own.
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/characters.h"
#include "base/words.h"
#include "parfile/grammar.h"
#include "parfile/table.h"
#include "platform/elog.h"
#include "platform/text.h"

namespace triglub::parfile {

namespace {

struct Fault {
  std::size_t line = 0;
  std::string text;
};

// A block whose end has not been met. A list collects its lines here; a table is in its place from the start.
struct Block {
  std::string_view key;
  std::size_t line = 0;
  Table* table = nullptr;  // null for a list
  std::vector<std::string> lines;
  std::vector<std::size_t> numbers;  // of the lines, in the file
};

class Reader {
 public:
  explicit Reader(Table& root) : root_(root) {}

  std::optional<Fault> read(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    while (!text.empty()) {
      ++line_;
      if (const char* fault = take(trimmed(take_part(&text, '\n')))) return Fault{line_, fault};
    }
    if (open_.empty()) return std::nullopt;
    return Fault{open_.back().line, "the block '" + std::string(shown(open_.back().key)) + "' is never closed"};
  }

 private:
  // Each of these gives the fault of what it was given, or null.

  const char* take(std::string_view line) {
    if (const char* fault = text_fault(line)) return fault;
    if (is_skipped(line)) return nullptr;
    if (line == kCloser) return close();
    if (!open_.empty() && open_.back().table == nullptr) {
      open_.back().lines.emplace_back(line);
      open_.back().numbers.push_back(line_);
      return nullptr;
    }
    return take_entry(line);
  }

  const char* take_entry(std::string_view line) {
    std::string_view value = line;
    const std::string_view key = take_word(&value, kWhiteSpace);
    if (const char* fault = name_fault(key)) return fault;
    if (const char* fault = value_fault(value)) return fault;
    if (value == kTableOpener || value == kListOpener) return open(key, value == kTableOpener);
    table().set(key, std::string(value), line_);
    return nullptr;
  }

  const char* open(std::string_view key, bool is_table) {
    if (open_.size() == kMaxDepth) return "too many blocks inside one another";
    Table* inner = is_table ? &table().set_table(key, line_) : nullptr;
    open_.push_back({key, line_, inner, {}, {}});
    return nullptr;
  }

  const char* close() {
    if (open_.empty()) return "'}' where no block is open";
    Block block = std::move(open_.back());
    open_.pop_back();
    if (block.table != nullptr) return nullptr;
    table().set(block.key, std::make_unique<Lines>(std::move(block.lines), std::move(block.numbers)), block.line);
    return nullptr;
  }

  Table& table() { return open_.empty() ? root_ : *open_.back().table; }

  // Enough of a key to find it by: a message is not the place for a key of a megabyte.
  static std::string_view shown(std::string_view key) { return utf8_prefix(key, 60); }

  Table& root_;
  std::vector<Block> open_;
  std::size_t line_ = 0;
};

}  // namespace

}  // namespace triglub::parfile

int pfparse(std::string_view text, const char* name, Pf** pf) {
  *pf = nullptr;
  auto read = std::make_unique<Pf>();
  const auto fault = triglub::parfile::Reader(read->root).read(text);
  if (fault) {
    elog_complain(0, "%s:%zu: %s", name, fault->line, fault->text.c_str());
    return -3;
  }
  *pf = read.release();
  return 0;
}
