// Built with a counting sort of the runs by code: one pass to count, one to place.
#include "engine/view/field_runs.h"

#include <algorithm>

#include "engine/view/view.h"

namespace triglub {

RecordCodes::RecordCodes(const View& view, const ViewField& field)
    : view_(view), table_(field.table), codes_(view.table_of(field).text_codes(field.field)) {}

std::uint32_t RecordCodes::operator[](std::uint32_t record) const { return codes_[view_.row(table_, record)]; }

std::string_view RecordCodes::text(std::uint32_t code) const { return (*codes_.dictionary)[code]; }

std::optional<std::uint32_t> RecordCodes::find(std::string_view text) const { return codes_.dictionary->find(text); }

std::uint32_t RecordCodes::code_count() const { return codes_.dictionary->size(); }

FieldRuns::FieldRuns(const View& view, const ViewField& field) {
  const RecordCodes codes(view, field);
  const std::uint32_t records = view.record_count();
  const auto begins_run = [&](std::uint32_t r) { return r == 0 || codes[r] != codes[r - 1]; };

  first_.assign(codes.code_count() + 1, 0);
  for (std::uint32_t r = 0; r < records; ++r) {
    if (begins_run(r)) ++first_[codes[r] + 1];
  }
  for (std::size_t code = 1; code < first_.size(); ++code) first_[code] += first_[code - 1];

  runs_.resize(first_.back());
  std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
  for (std::uint32_t r = 0; r < records;) {
    std::uint32_t end = r + 1;
    while (end < records && codes[end] == codes[r]) ++end;
    runs_[next[codes[r]]++] = {r, end};
    r = end;
  }
}

std::int64_t FieldRuns::at_or_after(std::uint32_t code, std::int64_t record) const {
  const auto begin = runs_.begin() + first_[code];
  const auto end = runs_.begin() + first_[code + 1];
  const auto run = std::partition_point(begin, end, [&](const Run& r) { return r.end <= record; });
  return run == end ? kNone : std::max<std::int64_t>(record, run->begin);
}

std::int64_t FieldRuns::at_or_before(std::uint32_t code, std::int64_t record) const {
  const auto begin = runs_.begin() + first_[code];
  const auto end = runs_.begin() + first_[code + 1];
  const auto run = std::partition_point(begin, end, [&](const Run& r) { return r.begin <= record; });
  return run == begin ? kNone : std::min<std::int64_t>(record, std::int64_t{(run - 1)->end} - 1);
}

std::vector<std::uint32_t> FieldRuns::records(std::uint32_t code) const {
  std::vector<std::uint32_t> records;
  for (std::uint32_t run = first_[code]; run < first_[code + 1]; ++run) {
    for (std::uint32_t record = runs_[run].begin; record < runs_[run].end; ++record) records.push_back(record);
  }
  return records;
}

}  // namespace triglub
