// The entries of a table by name.
#include "parfile/table.h"

#include <utility>

namespace triglub::parfile {

Lines::Lines(std::vector<std::string> lines, std::vector<std::size_t> numbers)
    : lines_(std::move(lines)), numbers_(std::move(numbers)), tbl_(newtbl(static_cast<int>(lines_.size()))) {
  for (std::string& line : lines_) pushtbl(tbl_, line.data());
}

Lines::~Lines() { freetbl(tbl_, nullptr); }

Entry* Table::find(std::string_view key) {
  const auto entry = entries_.find(key);
  return entry == entries_.end() ? nullptr : &entry->second;
}

Value& Table::set(std::string_view key, Value value, std::size_t line) {
  const auto [entry, added] = entries_.insert_or_assign(std::string(key), Entry{std::move(value), line});
  if (added) order_.push_back(entry);
  return entry->second.value;
}

Table& Table::set_table(std::string_view key, std::size_t line) {
  return *as_table(set(key, std::make_unique<Table>(), line));
}

Table* as_table(Value& value) {
  auto* table = std::get_if<std::unique_ptr<Table>>(&value);
  return table == nullptr ? nullptr : table->get();
}

}  // namespace triglub::parfile
