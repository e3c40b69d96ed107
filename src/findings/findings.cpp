// What is found a million times is one line with a number in it.
#include "findings.h"

#include <algorithm>

#include "platform/elog.h"

namespace triglub {

namespace {

std::string line_of(const Finding& finding) {
  std::string line = finding.what + ": " + std::to_string(finding.count);
  if (finding.places.empty()) return line;
  std::string places;
  for (const std::string& place : finding.places) places += (places.empty() ? "" : ", ") + place;
  if (finding.count > finding.places.size()) places += ", ...";
  return line + " (" + places + ")";
}

}  // namespace

void Findings::add(Rank rank, const std::string& what, const std::string& place) {
  Places& places = findings_[{rank, what}];
  ++places.count;
  if (places.first.size() < kPlacesKept && !place.empty()) places.first.push_back(place);
}

void Findings::add(const Findings& other) {
  if (&other == this) return add(Findings(other));
  for (const auto& [kind, more] : other.findings_) {
    Places& places = findings_[kind];
    places.count += more.count;
    const std::size_t room = kPlacesKept - places.first.size();
    places.first.insert(places.first.end(), more.first.begin(),
                        more.first.begin() + static_cast<std::ptrdiff_t>(std::min(room, more.first.size())));
  }
}

bool Findings::has(Rank rank) const {
  return std::any_of(findings_.begin(), findings_.end(),
                     [rank](const auto& entry) { return entry.first.first == rank; });
}

std::vector<Finding> Findings::all() const {
  std::vector<Finding> all;
  for (const Rank rank : {Rank::warning, Rank::note}) {
    for (const auto& [kind, places] : findings_) {
      if (kind.first == rank) all.push_back({rank, kind.second, places.count, places.first});
    }
  }
  return all;
}

void Findings::report() const {
  for (const Finding& finding : all()) {
    if (finding.rank == Rank::warning) {
      elog_complain(0, "%s", line_of(finding).c_str());
    } else {
      elog_notify(0, "note: %s", line_of(finding).c_str());
    }
  }
}

}  // namespace triglub
