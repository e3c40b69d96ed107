// The master view: one record for each response stage of each channel epoch, in the order the document is written.
//
// User subsets act on the narrow view of sitechan, snetsta and schanloc, before the wide joins. The network's code has
// another name in snetsta than in network, so that join names its keys. An instrument and stages may be missing; a
// channel epoch without site, sensor or calibration is left out. The unique sort comes before the stages, so that it
// takes away doubled channel epochs and not stages; the last sort brings the stages into their order.
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include "db2stationxml.h"
#include "dbhelper.h"
#include "platform/elog.h"

namespace {

void push_all(Tbl* list, std::initializer_list<const char*> texts) {
  for (const char* text : texts) pushtbl(list, text);
}

// A step for each of the caller's conditions.
std::vector<std::string> subset_steps(rbtree* subset) {
  std::vector<std::string> steps;
  Tbl* conditions = arr2expr(subset);
  for (long i = 0; i < maxtbl(conditions); ++i) {
    steps.push_back(std::string("dbsubset ") + static_cast<const char*>(gettbl(conditions, i)));
  }
  freetbl(conditions, std::free);
  return steps;
}

// Restricts the view to the networks that are known by name.
Dbptr join_networks(Dbptr view) {
  Tbl* keys = newtbl(1);
  Tbl* network_keys = newtbl(1);
  pushtbl(keys, "snetsta.snet");
  pushtbl(network_keys, "network.net");
  const Dbptr network = dblookup(view, nullptr, "network", nullptr, nullptr);
  const Dbptr joined = dbjoin(view, network, &keys, &network_keys, 0, nullptr, "with_net");
  freetbl(keys, nullptr);
  freetbl(network_keys, nullptr);
  return joined;
}

}  // namespace

Dbptr create_master_view(Dbptr db, rbtree* subset) {
  show_func("create_master_view");
  Tbl* steps = newtbl(5);
  if (info_level()) pushtbl(steps, "verbose");
  push_all(steps, {"dbopen sitechan", "dbjoin snetsta", "dbjoin schanloc sta chan "});
  const std::vector<std::string> subsets = subset_steps(subset);  // the list only points to the texts
  for (const std::string& step : subsets) pushtbl(steps, step.c_str());
  const Dbptr coded = dbprocess(db, steps, nullptr);
  const Dbptr with_net = join_networks(coded);
  clrtbl(steps, nullptr);
  if (info_level()) pushtbl(steps, "verbose");
  push_all(steps, {"dbjoin site", "dbjoin sensor", "dbjoin -o instrument", "dbjoin calibration",
                   "dbsort -u sitechan.sta sitechan.chan sitechan.ondate", "dbjoin -o stage",
                   "dbsort sitechan.sta sitechan.chan sitechan.ondate stage.stageid"});
  const Dbptr view = dbprocess(with_net, steps, nullptr);
  if (info_level()) elog_debug(0, "after process");
  freetbl(steps, nullptr);
  // The views on the way have served.
  triglub::release_view(coded);
  triglub::release_view(with_net);
  return view;
}
