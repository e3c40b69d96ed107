// Where the runs of equal values are in order already, as they are in the records' own order, each is a category.
#include "document/record_groups.h"

#include <algorithm>
#include <compare>

#include "platform/text.h"

namespace triglub {

namespace {

template <typename T>
int compare(const T& a, const T& b) {
  if (a < b) return -1;
  return b < a ? 1 : 0;
}

int compare_as_texts(std::int64_t a, std::int64_t b) {
  if (a == b) return 0;
  std::string left;
  std::string right;
  append_decimal(a, &left);
  append_decimal(b, &right);
  return left < right ? -1 : 1;
}

RecordList part_of(const RecordList& records, std::uint32_t begin, std::uint32_t count) {
  if (records.numbers == nullptr) return {nullptr, records.first + begin, count};
  return {records.numbers + begin, 0, count};
}

}  // namespace

RecordSplit::RecordSplit(const ValueContext& context, const TreeLine& line)
    : context_(context),
      line_(line),
      expression_(RecordExpression::compile(context.records.view(), line.value, nullptr)),
      tables_(mask_of(expression_->tables())),
      is_numeric_(line.type == LineType::number_categories) {}

void RecordSplit::read(std::uint32_t record, const RecordList& records, Run* run, RecordGroups* groups) {
  RecordValue value;
  if (!expression_->evaluate(record, records, &value)) {
    context_.findings.add(Rank::warning,
                          context_.tree.place(line_) + ": " + line_.name + ": cannot be worked out, taken as null",
                          context_.records.place(record, tables_));
  }
  run->is_null = value.is_null;
  if (value.is_null) return;
  run->integer = value.integer;
  run->real = value.real;
  if (expression_->kind() != ValueKind::text) return;
  run->text = trimmed(value.text);
  // The text of a field stays where it is, one that was worked out does not.
  if (!expression_->is_field()) run->text = groups->texts.emplace_back(run->text);
  if (is_numeric_) run->number = number_in(run->text);
}

bool RecordSplit::are_equal(const Run& a, const Run& b) const {
  if (a.is_null || b.is_null) return a.is_null == b.is_null;
  switch (expression_->kind()) {
    case ValueKind::integer:
      return a.integer == b.integer;
    case ValueKind::real:
      return a.real == b.real;
    case ValueKind::text:
      return a.text == b.text;
  }
  return false;
}

// By the number that a text is; those that are none come last.
int RecordSplit::order_of_numbered_texts(const Run& a, const Run& b) const {
  if (a.number.has_value() != b.number.has_value()) return a.number ? -1 : 1;
  const int by_number = a.number ? compare(*a.number, *b.number) : 0;
  return by_number != 0 ? by_number : compare(a.text, b.text);
}

int RecordSplit::order_of_values(const Run& a, const Run& b) const {
  switch (expression_->kind()) {
    case ValueKind::integer:
      return is_numeric_ ? compare(a.integer, b.integer) : compare_as_texts(a.integer, b.integer);
    case ValueKind::real:
      return compare(a.real, b.real);
    case ValueKind::text:
      return is_numeric_ ? order_of_numbered_texts(a, b) : compare(a.text, b.text);
  }
  return 0;
}

bool RecordSplit::is_empty(const Run& run) const {
  return run.is_null || (expression_->kind() == ValueKind::text && run.text.empty());
}

int RecordSplit::order(const Run& a, const Run& b) const {
  if (a.is_null || b.is_null) return static_cast<int>(b.is_null) - static_cast<int>(a.is_null);
  return order_of_values(a, b);
}

void RecordSplit::find_runs(const RecordList& records, TableMask constant, RecordGroups* groups) {
  groups->runs.clear();
  groups->texts.clear();
  const TableMask changing = tables_ & ~constant;
  Run run;
  read(records[0], records, &run, groups);
  for (std::uint32_t i = 1; i < records.count && changing != 0; ++i) {
    if (context_.records.are_same(changing, records[i - 1], records[i])) continue;
    Run next;
    read(records[i], records, &next, groups);
    if (are_equal(run, next)) continue;
    run.count = i - run.begin;
    groups->runs.push_back(run);
    run = next;
    run.begin = i;
  }
  run.count = records.count - run.begin;
  groups->runs.push_back(run);
}

void RecordSplit::split(const RecordList& records, TableMask constant, RecordGroups* groups) {
  find_runs(records, constant, groups);
  std::vector<Run>& runs = groups->runs;
  if (line_.is_optional) std::erase_if(runs, [this](const Run& run) { return is_empty(run); });
  const auto is_before = [this](const Run& a, const Run& b) { return order(a, b) < 0; };
  const auto are_out_of_order = [this](const Run& a, const Run& b) { return order(a, b) >= 0; };
  groups->lists.clear();
  groups->numbers.clear();
  if (std::adjacent_find(runs.begin(), runs.end(), are_out_of_order) == runs.end()) {
    for (const Run& run : runs) groups->lists.push_back(part_of(records, run.begin, run.count));
    return;
  }
  std::stable_sort(runs.begin(), runs.end(), is_before);
  groups->numbers.reserve(records.count);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (i == 0 || order(runs[i - 1], runs[i]) != 0) {
      groups->lists.push_back({groups->numbers.data() + groups->numbers.size(), 0, 0});
    }
    for (std::uint32_t k = 0; k < runs[i].count; ++k) groups->numbers.push_back(records[runs[i].begin + k]);
    groups->lists.back().count += runs[i].count;
  }
}

std::size_t RecordSplit::count(const RecordList& records, TableMask constant, RecordGroups* groups) {
  find_runs(records, constant, groups);
  std::vector<Run>& runs = groups->runs;
  std::erase_if(runs, [](const Run& run) { return run.is_null; });
  const auto is_before = [this](const Run& a, const Run& b) { return order(a, b) < 0; };
  if (!std::is_sorted(runs.begin(), runs.end(), is_before)) std::sort(runs.begin(), runs.end(), is_before);
  const auto is_same = [this](const Run& a, const Run& b) { return order(a, b) == 0; };
  return static_cast<std::size_t>(std::unique(runs.begin(), runs.end(), is_same) - runs.begin());
}

}  // namespace triglub
