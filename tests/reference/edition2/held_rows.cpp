#include "reference/edition2/held_rows.h"

#include <algorithm>
#include <stdexcept>

namespace triglub_reference::edition2 {

namespace {

std::optional<long> day_in(const Row* row, Table table, const char* name) {
  const auto yearday = number_in(row, table, name);
  if (!yearday) return std::nullopt;
  const auto day = day_of_yearday(static_cast<long>(*yearday));
  if (!day) throw std::runtime_error(std::string("no date in ") + kTableNames[table] + "." + name);
  return day;
}

Instant start_of(long day) { return static_cast<double>(day) * kDay; }

// True when the second takes over from the first on a day that both name.
bool meet(const Row* first, const Row* second, Table table) {
  const auto left = day_in(first, table, "offdate");
  const auto taken = day_in(second, table, "ondate");
  return left && left == taken && day_in(first, table, "ondate") < taken;
}

bool stands_before(const Held& held, const Held& other, Table table) {
  if (held.span.begin != other.span.begin) return held.span.begin > other.span.begin;
  return is_newer(held.row, other.row, table);
}

}  // namespace

Border border_of_sensors(const RowList& sensors) {
  return [sensors](long day) {
    Instant border = kForever;
    for (const Row* sensor : sensors) {
      const Instant begin = begin_of(number_in(sensor, SENSOR, "time"));
      if (Span{start_of(day), start_of(day + 1)}.holds(begin)) border = std::min(border, begin);
    }
    return border == kForever ? start_of(day) : border;
  };
}

Border border_of_station(const Tables& tables, const std::string& sta) {
  struct Channel {
    std::optional<long> on;
    std::optional<long> off;
    Border border;
  };
  std::vector<Channel> channels;
  for (const Row* row : rows_with(tables, SITECHAN, {{"sta", sta}})) {
    const auto chan = text_in(row, SITECHAN, "chan");
    if (!chan) continue;
    channels.push_back({day_in(row, SITECHAN, "ondate"), day_in(row, SITECHAN, "offdate"),
                        border_of_sensors(rows_with(tables, SENSOR, {{"sta", sta}, {"chan", *chan}}))});
  }
  return [channels](long day) {
    Instant border = kForever;
    for (const Channel& channel : channels) {
      const bool is_there = (!channel.on || *channel.on <= day) && (!channel.off || *channel.off >= day);
      if (is_there) border = std::min(border, channel.border(day));
    }
    return border == kForever ? start_of(day) : border;
  };
}

Span day_span(const Row* row, const RowList& rows, Table table, const Border& border) {
  Span span;
  const auto on = day_in(row, table, "ondate");
  const auto off = day_in(row, table, "offdate");
  if (on) span.begin = start_of(*on);
  if (off) span.end = start_of(*off + 1);
  for (const Row* other : rows) {
    if (meet(row, other, table)) span.end = border(*off);
    if (meet(other, row, table)) span.begin = border(*on);
  }
  span.end = opened(span.end);
  return span;
}

HeldRows held_by_days(const RowList& rows, Table table, const Border& border) {
  HeldRows held;
  for (const Row* row : rows) {
    const Span span = day_span(row, rows, table, border);
    if (!span.is_empty()) held.push_back({row, span});
  }
  return held;
}

HeldRows held_by_instants(const RowList& rows, Table table) {
  HeldRows held;
  for (const Row* row : rows) {
    const Span span = {begin_of(number_in(row, table, "time")), end_of(number_in(row, table, "endtime"))};
    if (!span.is_empty()) held.push_back({row, span});
  }
  return held;
}

const Held* standing(const HeldRows& rows, Table table, Instant t) {
  const Held* best = nullptr;
  for (const Held& held : rows) {
    if (held.span.holds(t) && (best == nullptr || stands_before(held, *best, table))) best = &held;
  }
  return best;
}

}  // namespace triglub_reference::edition2
