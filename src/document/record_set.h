// The records of a view as the document writer walks over them.
#ifndef TRIGLUB_SRC_DOCUMENT_RECORD_SET_H
#define TRIGLUB_SRC_DOCUMENT_RECORD_SET_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/record_expression.h"

namespace triglub {

// Tables of a view, a bit each, by position.
using TableMask = std::uint32_t;

constexpr TableMask mask_of(std::size_t table) { return TableMask{1} << table; }
TableMask mask_of(const std::vector<std::size_t>& tables);

// The rows behind the records of one view. Does not change: threads may share it.
class RecordSet {
 public:
  // `sources`: how many of the view's tables, the first, a source has. REQUIRES: the view has at most 32.
  RecordSet(Dbptr view, std::size_t sources);

  Dbptr view() const { return view_; }
  std::uint32_t size() const { return size_; }
  // Which of the tables have one row for all the records of a list.
  TableMask constant_tables(TableMask tables, const RecordList& records) const;
  // Whether two records have the same rows of the tables.
  bool are_same(TableMask tables, std::uint32_t a, std::uint32_t b) const;
  // Where the row of one of the tables behind a record is, for messages; of the first table of all where none has one.
  std::string place(std::uint32_t record, TableMask tables) const;

 private:
  bool is_constant(std::size_t table, const RecordList& records) const;

  Dbptr view_;
  std::uint32_t size_;
  std::size_t sources_;
  std::vector<std::span<const std::uint32_t>> rows_;  // by table
};

}  // namespace triglub

#endif
