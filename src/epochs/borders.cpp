// A row that begins on a day meets those that end on it and began before.
#include "epochs/borders.h"

#include <algorithm>

namespace triglub {

namespace {

bool is_among(const std::vector<Instant>& days, Instant day) {
  return std::binary_search(days.begin(), days.end(), day);
}

// Whether a row ends on a later day than it begins, as a row does that another can follow on its last day.
bool can_be_followed(const DayTable& table, std::uint32_t row) {
  const std::int64_t last = table.last_day(row);
  return last != table.null_day() && (table.first_day(row) == table.null_day() || table.first_day(row) < last);
}

}  // namespace

Instant SensorBorders::border(Instant day) const {
  const auto first = std::lower_bound(begins_.begin(), begins_.end(), day);
  return first != begins_.end() && *first < day + kDay ? *first : day;
}

std::vector<Instant> meeting_days(const DayTable& table, const HeldRows& rows) {
  if (rows.size() < 2) return {};
  std::vector<Instant> begins;
  for (const HeldRow& row : rows) {
    if (table.first_day(row.row) != table.null_day()) begins.push_back(*start_of_day(table.first_day(row.row)));
  }
  std::sort(begins.begin(), begins.end());
  std::vector<Instant> days;
  for (const HeldRow& row : rows) {
    if (!can_be_followed(table, row.row)) continue;
    const Instant last = *start_of_day(table.last_day(row.row));
    if (is_among(begins, last)) days.push_back(last);
  }
  std::sort(days.begin(), days.end());
  days.erase(std::unique(days.begin(), days.end()), days.end());
  return days;
}

bool meet_at_borders(const DayTable& table, const DayBorders& borders, HeldRows* rows) {
  const std::vector<Instant> days = meeting_days(table, *rows);
  if (days.empty()) return false;
  for (HeldRow& row : *rows) {
    const Span whole = row.span;
    if (is_among(days, whole.begin)) row.span.begin = borders.border(whole.begin);
    if (!can_be_followed(table, row.row)) continue;
    const Instant last = *start_of_day(table.last_day(row.row));
    if (is_among(days, last)) row.span.end = borders.border(last);
  }
  return true;
}

}  // namespace triglub
