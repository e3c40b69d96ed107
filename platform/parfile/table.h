// A parameter-file object: a tree of tables whose leaves are strings and lists of lines.
#ifndef TRIGLUB_PARFILE_TABLE_H
#define TRIGLUB_PARFILE_TABLE_H

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/containers.h"
#include "platform/parfile.h"

namespace triglub::parfile {

// The lines of a list, with the `Tbl` that shows them to callers. The lines never move.
class Lines {
 public:
  // `numbers` says on which lines of a file they stand; empty for a list made in memory.
  explicit Lines(std::vector<std::string> lines, std::vector<std::size_t> numbers = {});
  ~Lines();
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }
  Tbl* tbl() const { return tbl_; }
  const std::vector<std::size_t>& numbers() const { return numbers_; }

 private:
  std::vector<std::string> lines_;
  std::vector<std::size_t> numbers_;
  Tbl* tbl_;
};

class Table;
using Value = std::variant<std::string, std::unique_ptr<Lines>, std::unique_ptr<Table>>;

// Keys with their values. A value stays where it is in memory until its key is set again.
class Table {
 public:
  using Entries = std::map<std::string, Value, std::less<>>;

  // The value of a key; null when the key is absent.
  Value* find(std::string_view key);
  // Sets a key; a key that was there keeps its place in the order. Returns the value in its place.
  Value& set(std::string_view key, Value value);
  // Sets a key to a new, empty table and returns that.
  Table& set_table(std::string_view key);

  const Entries& entries() const { return entries_; }
  // The entries in the order in which their keys were first set.
  const std::vector<Entries::const_iterator>& in_order() const { return order_; }

 private:
  Entries entries_;
  std::vector<Entries::const_iterator> order_;
};

// The table that a value is; null when it is something else.
Table* as_table(Value& value);

}  // namespace triglub::parfile

struct Pf {
  std::string path;
  triglub::parfile::Table root;
};

#endif
