// Rows of affiliation are put in the order of stations and networks, so that the same membership said twice is one row.
#include "epochs/memberships.h"

#include <algorithm>
#include <optional>
#include <string>
#include <tuple>

#include "epochs/held_row.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

constexpr const char* kAffiliation = "affiliation";

// The stations without a row of snetsta; empty where there are none.
std::vector<bool> stations_without_codes(const StationTables& tables, const ChannelOrder& order) {
  std::vector<bool> have_none(order.stations.size(), true);
  for (const std::uint32_t station : order.stations.by_code(tables.snetsta.columns().texts("sta"))) {
    if (station != TextNumbers::kNone) have_none[station] = false;
  }
  return have_none;
}

bool has_table(Dbptr db, const char* name) {
  const std::vector<std::string> names = table_names(db);
  return std::find(names.begin(), names.end(), name) != names.end();
}

struct Membership {
  std::uint32_t station;
  std::uint32_t net;  // code
  std::uint32_t row;  // of affiliation

  friend bool operator<(const Membership& a, const Membership& b) {
    return std::tie(a.station, a.net, a.row) < std::tie(b.station, b.net, b.row);
  }
  bool is_of_same(const Membership& other) const { return station == other.station && net == other.net; }
};

std::vector<Membership> memberships_of(const LoadedTable& affiliation, const ChannelOrder& order,
                                       const std::vector<bool>& wanted) {
  const TextColumn nets = affiliation.columns().texts("net");
  const TextColumn stations = affiliation.columns().texts("sta");
  const std::vector<std::uint32_t> numbers = order.stations.by_code(stations);
  std::vector<Membership> found;
  for (std::uint32_t row = 0; row < affiliation.row_count(); ++row) {
    const std::uint32_t station = numbers[stations.codes()[row]];
    if (station == TextNumbers::kNone || !wanted[station] || nets.is_null(row)) continue;
    found.push_back({station, nets.codes()[row], row});
  }
  std::sort(found.begin(), found.end());
  return found;
}

// Whether a membership is not one of the same station in the same network as the one before it.
bool begins(const std::vector<Membership>& found, std::size_t i) {
  return i == 0 || !found[i].is_of_same(found[i - 1]);
}

// One row of snetsta for each station in each network.
AddedRows rows_of(const LoadedTable& affiliation, const std::vector<Membership>& found) {
  const TextColumn nets = affiliation.columns().texts("net");
  const TextColumn stations = affiliation.columns().texts("sta");
  AddedRows rows;
  rows.made_of = affiliation.handle();
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!begins(found, i)) continue;
    rows.texts["snet"].push_back(nets.text(found[i].row));
    rows.texts["fsta"].push_back(stations.text(found[i].row));
    rows.texts["sta"].push_back(stations.text(found[i].row));
    rows.made_of_rows.push_back(found[i].row);
    ++rows.count;
  }
  return rows;
}

}  // namespace

Memberships::Memberships(Dbptr db, StationTables* tables, const ChannelOrder& order)
    : first_added_(tables->snetsta.row_count()), first_span_({0}) {
  const std::vector<bool> wanted = stations_without_codes(*tables, order);
  if (std::find(wanted.begin(), wanted.end(), true) == wanted.end() || !has_table(db, kAffiliation)) return;
  const LoadedTable affiliation(db, kAffiliation);
  if (!affiliation.columns().has("net") || !affiliation.columns().has("sta")) return;
  const std::vector<Membership> found = memberships_of(affiliation, order, wanted);
  tables->snetsta = LoadedTable("snetsta", with_rows(tables->snetsta, rows_of(affiliation, found)));
  const bool has_times = affiliation.columns().has("time") && affiliation.columns().has("endtime");
  const auto times = has_times ? std::optional<TimeTable>(std::in_place, db, kAffiliation) : std::nullopt;
  std::vector<Span> spans;  // of one station in one network
  for (std::size_t i = 0; i < found.size(); ++i) {
    spans.push_back(times ? times->held(found[i].row).span : Span{});
    are_limited_ = are_limited_ || spans.back() != Span{};
    if (i + 1 == found.size() || begins(found, i + 1)) add(&spans);
  }
}

// What overlaps or touches is one: those that are left are in the order of their ends, too.
void Memberships::add(std::vector<Span>* spans) {
  std::erase_if(*spans, [](const Span& span) { return !span.holds_ever(); });
  std::ranges::sort(*spans, {}, &Span::begin);
  const std::size_t first = spans_.size();
  for (const Span& span : *spans) {
    if (spans_.size() > first && span.begin <= spans_.back().end) {
      spans_.back().end = std::max(spans_.back().end, span.end);
    } else {
      spans_.push_back(span);
    }
  }
  first_span_.push_back(spans_.size());
  spans->clear();
}

bool Memberships::hold(std::uint32_t snetsta, const Span& span) const {
  if (snetsta < first_added_) return true;
  const std::size_t added = snetsta - first_added_;
  const auto end = spans_.begin() + static_cast<std::ptrdiff_t>(first_span_[added + 1]);
  const auto first = std::partition_point(spans_.begin() + static_cast<std::ptrdiff_t>(first_span_[added]), end,
                                          [&](const Span& membership) { return membership.end <= span.begin; });
  return first != end && first->meets(span);
}

}  // namespace triglub
