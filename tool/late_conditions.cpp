// What a view has is asked of one without records.
#include "tool/late_conditions.h"

#include <utility>
#include <vector>

#include "platform/record_expression.h"
#include "station_views.h"

namespace triglub::tool {

namespace {

bool can_be_asked(Dbptr view, const std::string& field) {
  return RecordExpression::compile(view, field, nullptr) != nullptr;
}

}  // namespace

Dbptr joined_with_stages(Dbptr view) {
  return dbjoin(view, dblookup(view, nullptr, "stage", nullptr, nullptr), nullptr, nullptr, 1, nullptr, nullptr);
}

Conditions take_late_conditions(Dbptr db, Conditions* conditions) {
  Conditions late;
  if (conditions->empty()) return late;
  const Dbptr nothing = view_of_records(dblookup(db, nullptr, "sitechan", nullptr, nullptr), {}, nullptr);
  const Dbptr coded = coded_channels(nothing, Partners::optional, nullptr, false);
  const Dbptr with_network = with_networks(coded, Partners::optional, nullptr);
  const Dbptr with_stations = with_station_tables(with_network, Partners::optional, false);
  const Dbptr whole = joined_with_stages(with_stations);
  for (auto condition = conditions->begin(); condition != conditions->end();) {
    const auto next = std::next(condition);
    const bool is_late = !can_be_asked(coded, condition->first) && can_be_asked(whole, condition->first);
    if (is_late) late.insert(conditions->extract(condition));
    condition = next;
  }
  for (const Dbptr& view : {nothing, coded, with_network, with_stations, whole}) release_view(view);
  return late;
}

Dbptr meeting(Dbptr view, const Conditions& conditions) {
  for (const auto& [field, pattern] : conditions) {
    const std::string condition = std::string(field).append("=~").append(pattern);
    const Dbptr chosen = dbsubset(view, condition.c_str(), nullptr);
    release_view(view);
    view = chosen;
  }
  return view;
}

}  // namespace triglub::tool
