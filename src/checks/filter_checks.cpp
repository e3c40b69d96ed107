// Filters of which a number cannot be read are passed over: that has been told.
#include "checks/filter_checks.h"

#include "checks/coefficient_checks.h"
#include "checks/root_checks.h"

namespace triglub::checks {

namespace {

void check_list(const Filter& filter, const Place& place) {
  if (filter.points.empty()) {
    return place.tell(Rule::list_order, filter.element->line, "there is no ResponseListElement, expected some");
  }
  for (std::size_t i = 1; i < filter.points.size(); ++i) {
    const ListPoint& point = filter.points[i];
    if (point.frequency > filter.points[i - 1].frequency) continue;
    return place.tell(Rule::list_order, point.line,
                      "Frequency is " + text_of(point.frequency) + ", expected above " +
                          text_of(filter.points[i - 1].frequency) + " of the element before");
  }
}

void check_filter(const Stage& stage, const Place& place) {
  const Filter& filter = *stage.filter;
  if (!filter.is_complete) return;
  switch (filter.kind) {
    case FilterKind::poles_zeros:
      return check_roots(filter, stage.decimation ? stage.decimation->input_rate.value : std::nullopt, place);
    case FilterKind::coefficients:
    case FilterKind::fir:
      return check_coefficients(filter, place);
    case FilterKind::list:
      return check_list(filter, place);
  }
}

}  // namespace

void check_filters(const Channel& channel, const Place& place) {
  for (const Stage& stage : channel.stages) {
    if (stage.filter) check_filter(stage, place.within("stage " + stage.number));
  }
}

}  // namespace triglub::checks
