// Building objects in memory.
#include <algorithm>
#include <utility>

#include "parfile/grammar.h"
#include "parfile/table.h"
#include "platform/text.h"

namespace {

using namespace triglub::parfile;

bool is_bare(std::string_view text) { return text_fault(text) == nullptr && triglub::trimmed(text) == text; }

// True when a file can hold an entry at the key, `own_blocks` being the blocks that the entry itself opens.
bool is_key(std::string_view key, std::size_t own_blocks) {
  KeyNames names(key);
  std::size_t count = 0;
  do {
    if (name_fault(names.next()) != nullptr) return false;
    ++count;
  } while (!names.at_end());
  return count - 1 + own_blocks <= kMaxDepth;
}

bool is_string(std::string_view value) {
  return is_bare(value) && value_fault(value) == nullptr && value != kTableOpener && value != kListOpener;
}

bool is_line(std::string_view line) { return is_bare(line) && !is_skipped(line) && line != kCloser; }

// Puts a value at a key, making the tables on the way. REQUIRES: is_key.
void put(Pf& pf, std::string_view key, Value value) {
  Table* table = &pf.root;
  KeyNames names(key);
  std::string_view name = names.next();
  for (; !names.at_end(); name = names.next()) {
    Entry* there = table->find(name);
    Table* inner = there == nullptr ? nullptr : as_table(there->value);
    table = inner == nullptr ? &table->set_table(name, 0) : inner;
  }
  table->set(name, std::move(value), 0);
}

}  // namespace

Pf* pfnew() { return new Pf; }

void pffree(Pf* pf) { delete pf; }

int pfput_string(Pf* pf, const char* key, std::string_view value) {
  if (pf == nullptr || key == nullptr || !is_key(key, 0) || !is_string(value)) return -1;
  put(*pf, key, std::string(value));
  return 0;
}

int pfput_tbl(Pf* pf, const char* key, const std::vector<std::string>& lines) {
  if (pf == nullptr || key == nullptr || !is_key(key, 1) || !std::ranges::all_of(lines, is_line)) return -1;
  put(*pf, key, std::make_unique<Lines>(lines));
  return 0;
}

int pfput_arr(Pf* pf, const char* key) {
  if (pf == nullptr || key == nullptr || !is_key(key, 1)) return -1;
  put(*pf, key, std::make_unique<Table>());
  return 0;
}
