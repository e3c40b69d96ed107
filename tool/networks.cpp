// Each network is written over its own records: those that one view of everything has of it where that is the same,
// else those of a view of its own.
#include "tool/networks.h"

#include <algorithm>
#include <functional>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "dbhelper.h"
#include "platform/elog.h"
#include "station_views.h"
#include "tool/late_conditions.h"
#include "tool/messages.h"
#include "tool/workers.h"

namespace triglub::tool {

namespace {

using ViewMaker = std::function<Dbptr()>;

SmartIndex all_records(Dbptr view) { return {static_cast<unsigned long>(db_nrecs(view)), true}; }

ElementGroup root_group(Pf* pf) { return {pf, pfget_string(pf, std::string("root_node"))}; }

// The first group line of the root; null when it has none.
const ElementDescription* first_group_line(const ElementGroup& root) {
  for (std::size_t i = 0; i < root.element_count(); ++i) {
    if (root[i].leads_to_group()) return &root[i];
  }
  return nullptr;
}

// The line that tells networks apart: the root's first group line, if it is categorized; else null.
const ElementDescription* network_line(const ElementGroup& root) {
  const ElementDescription* line = first_group_line(root);
  return line != nullptr && line->is_categorized_group() ? line : nullptr;
}

// The view in which networks are told apart, small as it is: channels with their station and channel codes.
Dbptr code_view(const Request& request) {
  Subset subset(request.conditions);
  return coded_channels(request.db, Partners::required, subset.array(), false);
}

bool has_field(Dbptr view, const std::string& field) {
  return dblookup(view, nullptr, nullptr, field.c_str(), nullptr).field >= 0;
}

// The networks in the order in which they are written; nothing where they cannot be told apart beforehand.
std::optional<std::vector<std::string>> networks_of(const Request& request, const ElementGroup& root) {
  const ElementDescription* line = network_line(root);
  if (line == nullptr) return std::nullopt;
  const Dbptr view = code_view(request);
  if (!has_field(view, line->value())) {
    release_view(view);
    return std::nullopt;
  }
  auto codes = request.conversion->categories(view, *line, all_records(view));
  release_view(view);
  return codes;
}

// True when no station stands in two networks.
bool are_apart(Dbptr db) {
  const Dbptr snetsta = dblookup(db, nullptr, "snetsta", nullptr, nullptr);
  std::vector<TextRun> stations;
  std::vector<TextRun> networks;
  text_runs(db_setfield(snetsta, "sta"), 0, static_cast<std::uint64_t>(db_nrecs(snetsta)), &stations);
  text_runs(db_setfield(snetsta, "snet"), 0, static_cast<std::uint64_t>(db_nrecs(snetsta)), &networks);
  const bool are_sorted = std::is_sorted(stations.begin(), stations.end(),
                                         [](const TextRun& a, const TextRun& b) { return a.text < b.text; });
  std::unordered_map<std::string_view, std::string_view> network_of;
  auto network = networks.begin();
  for (const TextRun& station : stations) {
    while (network->end <= station.begin) ++network;
    if (network->end < station.end) return false;
    if (are_sorted) continue;  // the station has no other run
    if (network_of.try_emplace(station.text, network->text).first->second != network->text) return false;
  }
  return true;
}

// The records of each network in the view of everything, in the order in which networks are written; nothing where
// these need not be the records that a conversion of the network by itself has. They are where equal channel epochs, of
// which a view keeps one, are of one network.
using RunsOfNetworks = std::map<std::string, std::vector<TextRun>>;
std::optional<RunsOfNetworks> runs_of_networks(Dbptr everything, const ElementGroup& root) {
  constexpr const char* kNetworkField = "snetsta.snet";
  const ElementDescription* line = network_line(root);
  if (line == nullptr || line->is_numeric_group() || line->value() != kNetworkField) return std::nullopt;
  if (!are_apart(everything)) return std::nullopt;
  std::vector<TextRun> runs;
  text_runs(db_setfield(everything, kNetworkField), 0, static_cast<std::uint64_t>(db_nrecs(everything)), &runs);
  RunsOfNetworks networks;
  for (const TextRun& run : runs) networks[std::string(run.text)].push_back(run);
  return networks;
}

Dbptr view_of_runs(Dbptr view, const std::vector<TextRun>& runs) {
  std::vector<std::uint32_t> records;
  for (const TextRun& run : runs) {
    for (std::uint32_t record = run.begin; record < run.end; ++record) records.push_back(record);
  }
  return view_of_records(view, records, nullptr);
}

// The records in the order that the parameter file asks for, if it asks for one.
Dbptr in_record_order(Dbptr view, Pf* pf) {
  Tbl* order = pfget_tbl(pf, "record_order");
  if (maxtbl(order) == 0) return view;
  const Dbptr sorted = dbsort(view, order, 0, nullptr);
  if (any_dbinvalid(sorted)) elog_die(0, "%s: record_order cannot be used", pf_path(pf));
  release_view(view);
  return sorted;
}

void write_group_lines(std::ostream& out, const Request& request, Dbptr view, const ElementGroup& root) {
  const SmartIndex all = all_records(view);
  for (std::size_t i = 0; i < root.element_count(); ++i) {
    if (root[i].leads_to_group()) request.conversion->write_group_line(out, view, root, root[i], all);
  }
}

// `all`: the network's records.
void write_network(std::ostream& out, const Request& request, const ElementGroup& root, Dbptr all) {
  request.conversion->forget_units();
  const Dbptr view = in_record_order(all, request.pf);
  write_group_lines(out, request, view, root);
  release_view(view);
}

// A category whose records do not lie together takes those between as well, or loses some to an earlier one.
void warn_of_interleaving(Dbptr view, const ElementDescription& line) {
  if (!has_field(view, line.value())) return;
  std::unordered_set<std::string> done;
  std::string current;
  view = db_setfield(view, line.value());
  char text[MAX_VALUE_BYTES + 1] = "";
  const long records = db_nrecs(view);
  for (view.record = 0; view.record < records; ++view.record) {
    dbget(view, text);
    if (current == text && view.record > 0) continue;
    current = text;
    if (done.insert(current).second) continue;
    elog_complain(0, "records with the %s '%s' do not lie together: elements of '%s' may hold each other's records",
                  line.value().c_str(), text, line.name().c_str());
    return;
  }
}

void write_everything(std::ostream& out, const Request& request, const ElementGroup& root, Dbptr everything) {
  const Dbptr view = in_record_order(everything, request.pf);
  const ElementDescription* line = network_line(root);
  if (line != nullptr) warn_of_interleaving(view, *line);
  request.conversion->forget_units();
  request.conversion->write_node(out, view, root, all_records(view));
  release_view(view);
}

// The views of the networks, each made when it is written.
std::optional<std::vector<ViewMaker>> network_views(const Request& request, const ElementGroup& root,
                                                    Dbptr everything) {
  std::vector<ViewMaker> views;
  if (auto networks = runs_of_networks(everything, root)) {
    for (auto& [code, runs] : *networks) {
      views.emplace_back([everything, runs = std::move(runs)] { return view_of_runs(everything, runs); });
    }
    return views;
  }
  const auto codes = networks_of(request, root);
  if (!codes) return std::nullopt;
  for (const std::string& code : *codes) {
    Request one = request;
    one.conditions.erase(network_line(root)->value());  // which the code meets
    one.conditions.emplace(network_line(root)->value(), exact_pattern(code));
    views.emplace_back([one] { return master_view(one); });
  }
  return views;
}

}  // namespace

Dbptr master_view(const Request& request) {
  Subset subset(request.conditions);
  const Dbptr view = request.conversion->prepare(request.db, request.pf, subset.array(), request.flags);
  return meeting(view, request.late_conditions);
}

void write_document(Output& output, const Request& request, Dbptr everything, unsigned int jobs) {
  const ElementGroup root = root_group(request.pf);
  const auto networks = network_views(request, root, everything);
  if (!networks) {
    write_everything(output.stream(), request, root, everything);
    return;
  }
  bool written = false;
  // The root's own values are those that one conversion of everything would write.
  request.conversion->write_node(
      output.stream(), everything, root, all_records(everything), [&](const ElementDescription&) {
        if (written) return;
        written = true;
        write_in_order(output, networks->size(), jobs, [&](std::ostream& out, std::size_t i) {
          try {
            write_network(out, request, root, (*networks)[i]());
          } catch (...) {
            die_of_exception(request.source);
          }
        });
      });
  release_view(everything);
}

}  // namespace triglub::tool
