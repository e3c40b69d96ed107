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

struct Entry {
  Value value;
  std::size_t line = 0;  // of the file, on which it begins; 0 for one made in memory
};

// Keys with their values. A value stays where it is in memory until its key is set again.
class Table {
 public:
  using Entries = std::map<std::string, Entry, std::less<>>;

  // The entry of a key; null when the key is absent.
  Entry* find(std::string_view key);
  // Sets a key; a key that was there keeps its place in the order. Returns the value in its place.
  Value& set(std::string_view key, Value value, std::size_t line);
  // Sets a key to a new, empty table and returns that.
  Table& set_table(std::string_view key, std::size_t line);

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
