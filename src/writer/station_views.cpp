// Each step is one of the engine's step lists, so that the engine traces it and keeps what it made of whole tables.
#include "station_views.h"

#include <cstdlib>
#include <string>

#include "dbhelper.h"
#include "writer/step_list.h"

namespace triglub {

namespace {

std::string join_step(Partners partners, const char* table) {
  return std::string(partners == Partners::optional ? "dbjoin -o " : "dbjoin ") + table;
}

// A step for each of the caller's conditions.
void append_subset_steps(rbtree* subset, StepList* steps) {
  Tbl* conditions = arr2expr(subset);
  for (long i = 0; i < maxtbl(conditions); ++i) {
    steps->push_back(std::string("dbsubset ") + static_cast<const char*>(gettbl(conditions, i)));
  }
  freetbl(conditions, std::free);
}

}  // namespace

Dbptr coded_channels(Dbptr sitechan, Partners partners, rbtree* subset, bool traced) {
  StepList steps = new_step_list(traced);
  if (sitechan.table < 0) steps.emplace_back("dbopen sitechan");
  steps.push_back(join_step(partners, "snetsta"));
  steps.push_back(join_step(partners, "schanloc sta chan "));
  append_subset_steps(subset, &steps);
  return process(sitechan, steps);
}

Dbptr with_networks(Dbptr coded, Partners partners, const char* name) {
  Tbl* keys = newtbl(1);
  Tbl* network_keys = newtbl(1);
  pushtbl(keys, "snetsta.snet");
  pushtbl(network_keys, "network.net");
  const Dbptr network = dblookup(coded, nullptr, "network", nullptr, nullptr);
  const int outer = partners == Partners::optional ? 1 : 0;
  const Dbptr joined = dbjoin(coded, network, &keys, &network_keys, outer, nullptr, name);
  freetbl(keys, nullptr);
  freetbl(network_keys, nullptr);
  return joined;
}

Dbptr with_station_tables(Dbptr view, Partners partners, bool traced) {
  StepList steps = new_step_list(traced);
  steps.push_back(join_step(partners, "site"));
  steps.push_back(join_step(partners, "sensor"));
  steps.push_back(join_step(Partners::optional, "instrument"));
  steps.push_back(join_step(partners, "calibration"));
  return process(view, steps);
}

}  // namespace triglub
