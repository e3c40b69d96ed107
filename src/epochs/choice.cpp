// What cannot meet a condition goes first; the rest is asked record by record.
#include "epochs/choice.h"

#include <span>
#include <utility>
#include <vector>

#include "platform/columns.h"

namespace triglub {

namespace {

void keep(const std::vector<bool>& is_kept, RecordRows* rows) {
  for (std::vector<std::uint32_t>& column : rows->rows) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < column.size(); ++i) {
      if (is_kept[i]) column[kept++] = column[i];
    }
    column.resize(kept);
  }
}

void drop_what_cannot_meet(const Conditions& conditions, RecordRows* rows) {
  const bool are_places_dropped = conditions.ask_for_channels();
  const bool are_networks_dropped = conditions.ask_beyond_networks();
  std::vector<bool> is_kept(rows->size());
  for (std::size_t i = 0; i < is_kept.size(); ++i) {
    const bool is_channel = rows->rows[kSitechan][i] != kAbsent;
    const bool is_place = !is_channel && rows->rows[kSnetsta][i] != kAbsent;
    is_kept[i] = is_channel || (is_place ? !are_places_dropped : !are_networks_dropped);
  }
  keep(is_kept, rows);
}

}  // namespace

RecordRows chosen_records(const StationData& data, const Conditions& conditions, RecordRows rows) {
  drop_what_cannot_meet(conditions, &rows);
  Dbptr view = view_of_records(data, std::move(rows), data.records);
  for (const Condition& condition : conditions.all()) view = subset_and_release(view, condition);
  RecordRows chosen;
  for (std::size_t t = 0; t < chosen.rows.size(); ++t) {
    const std::span<const std::uint32_t> of_table = rows_of(view, t);
    chosen.rows[t].assign(of_table.begin(), of_table.end());
  }
  release_view(view);
  return chosen;
}

}  // namespace triglub
