// User subsets act on the narrow view of sitechan, snetsta and schanloc, before the wide joins. The network's code has
// another name in snetsta than in network, so that join names its keys. An instrument and stages may be missing; a
// channel epoch without site, sensor or calibration is left out. The unique sort comes before the stages, so that it
// takes away doubled channel epochs and not stages; the last sort brings the stages into their order.
#include "writer/master_view.h"

#include <initializer_list>

#include "platform/elog.h"
#include "station_views.h"
#include "writer/step_list.h"

namespace triglub {

namespace {

// The view that an earlier call left under the name goes: a program that converts all day would gather them.
void release_named_view(Dbptr db, const char* name) {
  const Dbptr known = dblookup(db, nullptr, name, nullptr, nullptr);
  if (known.table >= 0) release_view(known);
}

// What the steps make of a view, which goes.
Dbptr process_and_release(Dbptr view, bool traced, std::initializer_list<const char*> texts) {
  StepList steps = new_step_list(traced);
  steps.insert(steps.end(), texts.begin(), texts.end());
  const Dbptr result = process(view, steps);
  release_view(view);
  return result;
}

}  // namespace

Dbptr make_master_view(const ConversionState& state, Dbptr db, rbtree* subset) {
  constexpr const char* kWithNet = "with_net";
  trace_call(state, "create_master_view");
  const bool traced = state.is_verbose();
  const Dbptr whole = {db.database, dbALL, dbALL, dbALL};
  const Dbptr coded = coded_channels(whole, Partners::required, subset, traced);
  release_named_view(db, kWithNet);
  const Dbptr with_net = with_networks(coded, Partners::required, kWithNet);
  const Dbptr doubled = with_station_tables(with_net, Partners::required, traced);
  const Dbptr epochs = process_and_release(doubled, traced, {"dbsort -u sitechan.sta sitechan.chan sitechan.ondate"});
  const Dbptr view = process_and_release(
      epochs, traced, {"dbjoin -o stage", "dbsort sitechan.sta sitechan.chan sitechan.ondate stage.stageid"});
  if (traced) elog_debug(0, "after process");
  release_view(coded);  // unlike the view with networks it has no name by which a program could look it up
  return view;
}

}  // namespace triglub
