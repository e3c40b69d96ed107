// What a join compares: pairs of fields that are to be equal, pairs of ranges that are to overlap.
#ifndef TRIGLUB_ENGINE_OPERATIONS_JOIN_PLAN_H
#define TRIGLUB_ENGINE_OPERATIONS_JOIN_PLAN_H

#include <optional>
#include <string>
#include <vector>

#include "engine/operations/range.h"
#include "engine/view/view.h"

namespace triglub {

// One field of the view and one of the table that are to be equal.
struct EqualPair {
  ViewField view_field;
  std::size_t table_field;
  bool is_null_tolerant;  // a null on either side is equal to anything
};

// A range of the view and one of the table that are to overlap.
struct RangePair {
  ViewField view_begin, view_end;
  std::size_t table_begin, table_end;
  RangeUnit unit;
};

struct JoinPlan {
  std::vector<EqualPair> equal;
  std::vector<RangePair> ranges;
  std::vector<std::string> keys;  // as they are reported
};

// Field i of the view against field i of the table; "begin::end" is a range of validity.
struct JoinKeys {
  std::vector<std::string> of_view;
  std::vector<std::string> of_table;
};

// The natural join on the keys that the view and the table share. Nothing, after a complaint, when they share none.
std::optional<JoinPlan> plan_natural_join(const View& view, const TableSchema& table);
// The join on these keys. Nothing after a complaint.
std::optional<JoinPlan> plan_named_join(const View& view, const TableSchema& table, const JoinKeys& keys);

}  // namespace triglub

#endif
