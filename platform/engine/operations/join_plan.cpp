// A natural join compares every field of the table's keys that the view has too. A field of a primary or alternate key
// always restricts. A field of a foreign key is null-tolerant: a null on either side does not restrict, as the row then
// does not say what it belongs to.
#include "engine/operations/join_plan.h"

#include <algorithm>

#include "platform/elog.h"

namespace triglub {

namespace {

bool is_date_range(const FieldSchema& begin) { return begin.type == FieldType::date; }

const ViewField& field_at(const View& view, int index) { return view.fields()[static_cast<std::size_t>(index)]; }

RangePair range_pair(const View& view, const ViewField& view_begin, const ViewField& view_end, const TableSchema& table,
                     int table_begin, int table_end) {
  const bool same_kind =
      is_date_range(view.schema_of(view_begin)) == is_date_range(table.fields[static_cast<std::size_t>(table_begin)]);
  return {view_begin, view_end, static_cast<std::size_t>(table_begin), static_cast<std::size_t>(table_end),
          same_kind ? RangeUnit::as_stored : RangeUnit::days};
}

bool comparable(const FieldSchema& a, const FieldSchema& b) {
  return (a.storage() == Storage::text) == (b.storage() == Storage::text);
}

// --- what a natural join compares ----------------------------------------------------------------------------------

template <typename Visit>
void for_each_key(const TableSchema& table, Visit visit) {
  for (const KeyField& key : table.primary) visit(key, false);
  for (const KeyField& key : table.alternate) visit(key, false);
  for (const KeyField& key : table.foreign) visit(key, true);
}

struct ViewRange {
  ViewField begin, end;
  KeyField key;
  bool days;
};

// The view's ranges of validity, in join order.
std::vector<ViewRange> ranges_of(const View& view) {
  std::vector<ViewRange> ranges;
  for (std::size_t t = 0; t < view.tables().size(); ++t) {
    const TableSchema& table = view.tables()[t].table->schema();
    for_each_key(table, [&](const KeyField& key, bool) {
      if (!key.is_range()) return;
      const auto begin = static_cast<std::size_t>(table.find(key.name));
      const auto end = static_cast<std::size_t>(table.find(key.end));
      ranges.push_back({{t, begin}, {t, end}, key, is_date_range(table.fields[begin])});
    });
  }
  return ranges;
}

// The view's first range of the same name, or else its first range of the other kind.
const ViewRange* range_for(const std::vector<ViewRange>& ranges, const KeyField& key, bool days) {
  for (const ViewRange& range : ranges) {
    if (range.key == key) return &range;
  }
  for (const ViewRange& range : ranges) {
    if (range.days != days) return &range;
  }
  return nullptr;
}

void plan_natural_range(const View& view, const TableSchema& table, const KeyField& key, JoinPlan* plan) {
  const int begin = table.find(key.name);
  const std::vector<ViewRange> ranges = ranges_of(view);
  const ViewRange* range = range_for(ranges, key, is_date_range(table.fields[static_cast<std::size_t>(begin)]));
  if (range == nullptr) return;
  plan->ranges.push_back(range_pair(view, range->begin, range->end, table, begin, table.find(key.end)));
  plan->keys.push_back(key.name + "::" + key.end);
}

bool is_planned(const JoinPlan& plan, std::size_t table_field) {
  return std::any_of(plan.equal.begin(), plan.equal.end(),
                     [table_field](const EqualPair& pair) { return pair.table_field == table_field; });
}

void plan_natural_field(const View& view, const TableSchema& table, const KeyField& key, bool foreign, JoinPlan* plan) {
  const int view_index = view.find_field(key.name);
  const auto table_field = static_cast<std::size_t>(table.find(key.name));
  // Primary and alternate keys come first, so a field that is theirs too restricts as theirs.
  if (view_index < 0 || is_planned(*plan, table_field)) return;
  plan->equal.push_back({field_at(view, view_index), table_field, foreign});
  plan->keys.push_back(key.name);
}

bool plan_natural(const View& view, const TableSchema& table, JoinPlan* plan) {
  for_each_key(table, [&](const KeyField& key, bool foreign) {
    if (key.is_range()) {
      plan_natural_range(view, table, key, plan);
    } else {
      plan_natural_field(view, table, key, foreign, plan);
    }
  });
  if (plan->keys.empty()) {
    elog_complain(0, "dbjoin: the view and the table %s share no key", table.name.c_str());
    return false;
  }
  return true;
}

// --- what a join with named keys compares --------------------------------------------------------------------------

bool unknown_key(const std::string& key, const std::string& where) {
  elog_complain(0, "dbjoin: %s has no key field '%s'", where.c_str(), key.c_str());
  return false;
}

bool no_range(const KeyField& key, const std::string& where) {
  elog_complain(0, "dbjoin: '%s::%s' of %s is no range: it needs two dates or two times", key.name.c_str(),
                key.end.c_str(), where.c_str());
  return false;
}

// The part of a qualified name that a table knows: "network.net" of the table network is "net".
std::string bare_name(const std::string& name, const TableSchema& table) {
  const std::string prefix = table.name + ".";
  return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

bool plan_named_range(const View& view, const TableSchema& table, const KeyField& a, const KeyField& b,
                      JoinPlan* plan) {
  const int view_begin = view.find_field(a.name);
  const int view_end = view.find_field(a.end);
  if (view_begin < 0 || view_end < 0) return unknown_key(a.name + "::" + a.end, "the view");
  const int table_begin = table.find(bare_name(b.name, table));
  const int table_end = table.find(bare_name(b.end, table));
  if (table_begin < 0 || table_end < 0) return unknown_key(b.name + "::" + b.end, "the table " + table.name);
  if (!can_be_range(view.schema_of(field_at(view, view_begin)), view.schema_of(field_at(view, view_end)))) {
    return no_range(a, "the view");
  }
  if (!can_be_range(table.fields[static_cast<std::size_t>(table_begin)],
                    table.fields[static_cast<std::size_t>(table_end)])) {
    return no_range(b, "the table " + table.name);
  }
  plan->ranges.push_back(
      range_pair(view, field_at(view, view_begin), field_at(view, view_end), table, table_begin, table_end));
  return true;
}

bool plan_named_field(const View& view, const TableSchema& table, const std::string& a, const std::string& b,
                      JoinPlan* plan) {
  const int view_index = view.find_field(a);
  if (view_index < 0) return unknown_key(a, "the view");
  const int table_index = table.find(bare_name(b, table));
  if (table_index < 0) return unknown_key(b, "the table " + table.name);
  plan->equal.push_back({field_at(view, view_index), static_cast<std::size_t>(table_index), false});
  return true;
}

bool plan_named(const View& view, const TableSchema& table, const JoinKeys& keys, JoinPlan* plan) {
  if (keys.of_view.size() != keys.of_table.size()) {
    elog_complain(0, "dbjoin: %zu keys of the view against %zu of the table %s", keys.of_view.size(),
                  keys.of_table.size(), table.name.c_str());
    return false;
  }
  for (std::size_t i = 0; i < keys.of_view.size(); ++i) {
    const std::string& a = keys.of_view[i];
    const std::string& b = keys.of_table[i];
    const KeyField range_a = parse_key_field(a);
    const KeyField range_b = parse_key_field(b);
    const bool planned = range_a.is_range() && range_b.is_range()
                             ? plan_named_range(view, table, range_a, range_b, plan)
                             : plan_named_field(view, table, a, b, plan);
    if (!planned) return false;
    plan->keys.push_back(a);
    if (a != b) plan->keys.back().append(":").append(b);
  }
  return true;
}

bool check_types(const View& view, const TableSchema& table, const JoinPlan& plan) {
  return std::all_of(plan.equal.begin(), plan.equal.end(), [&](const EqualPair& pair) {
    const FieldSchema& a = view.schema_of(pair.view_field);
    const FieldSchema& b = table.fields[pair.table_field];
    if (comparable(a, b)) return true;
    elog_complain(0, "dbjoin: cannot compare %s with %s.%s: one is a text, the other a number", a.name.c_str(),
                  table.name.c_str(), b.name.c_str());
    return false;
  });
}

}  // namespace

std::optional<JoinPlan> plan_natural_join(const View& view, const TableSchema& table) {
  JoinPlan plan;
  if (!plan_natural(view, table, &plan) || !check_types(view, table, plan)) return std::nullopt;
  return plan;
}

std::optional<JoinPlan> plan_named_join(const View& view, const TableSchema& table, const JoinKeys& keys) {
  JoinPlan plan;
  if (!plan_named(view, table, keys, &plan) || !check_types(view, table, plan)) return std::nullopt;
  return plan;
}

}  // namespace triglub
