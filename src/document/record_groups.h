// The split of an element's records by category: exact, whatever the values are and however the records lie.
#ifndef TRIGLUB_SRC_DOCUMENT_RECORD_GROUPS_H
#define TRIGLUB_SRC_DOCUMENT_RECORD_GROUPS_H

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/line_value.h"
#include "document/record_set.h"
#include "element_tree.h"
#include "platform/record_expression.h"

namespace triglub {

// What a split makes; its memory serves split after split.
struct RecordGroups {
  // A run of records with one value; the members that are set depend on the kind of the expression.
  struct Run {
    bool is_null = true;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text;
    std::optional<double> number;  // that a text is
    std::uint32_t begin = 0;       // in the list of records
    std::uint32_t count = 0;
  };
  std::vector<Run> runs;
  std::deque<std::string> texts;       // of computed values
  std::vector<std::uint32_t> numbers;  // of records of categories that do not lie together
  std::vector<RecordList> lists;       // the categories in the order in which they are written
};

// Splits by the expression of a line of categories, or counts what there is to split. One thread at a time.
class RecordSplit {
 public:
  // All must outlive it. REQUIRES: the line is one of categories or a count, and its expression compiles.
  RecordSplit(const ValueContext& context, const TreeLine& line);

  // The categories of the records. Those with a null are the first. Where the line is optional they are none, and those
  // with an empty text neither.
  void split(const RecordList& records, TableMask constant, RecordGroups* groups);
  // How many distinct values there are that are not null.
  std::size_t count(const RecordList& records, TableMask constant, RecordGroups* groups);
  TableMask tables() const { return tables_; }

 private:
  using Run = RecordGroups::Run;

  void find_runs(const RecordList& records, TableMask constant, RecordGroups* groups);
  void read(std::uint32_t record, const RecordList& records, Run* run, RecordGroups* groups);
  bool are_equal(const Run& a, const Run& b) const;
  bool is_empty(const Run& run) const;
  int order(const Run& a, const Run& b) const;
  int order_of_values(const Run& a, const Run& b) const;
  int order_of_numbered_texts(const Run& a, const Run& b) const;

  const ValueContext& context_;
  const TreeLine& line_;
  std::unique_ptr<RecordExpression> expression_;
  TableMask tables_;
  bool is_numeric_;
};

}  // namespace triglub

#endif
