// Only what rules look at is kept, and of one channel at a time. The spans of what is closed stay until their parent
// is.
#include "checks/document_walk.h"

#include <algorithm>

#include "checks/code_checks.h"
#include "checks/decimation_checks.h"
#include "checks/filter_checks.h"
#include "checks/gain_checks.h"
#include "checks/number_checks.h"
#include "checks/orientation_checks.h"
#include "checks/place_checks.h"
#include "checks/rate_checks.h"
#include "checks/sensitivity_checks.h"
#include "checks/stage_checks.h"
#include "checks/unit_checks.h"
#include "checks/vocabulary.h"

namespace triglub::checks {

namespace {

constexpr std::string_view kNameSpace = "http://www.fdsn.org/xml/station/1";
// Half a gigabyte of coefficients: ten times what the longest filters have.
constexpr std::uint64_t kMaxElements = 1'000'000;
// Numbers, names and codes are shorter.
constexpr std::size_t kMaxText = 256;

// A code or date as paths have it.
std::string shown(const std::string& text) {
  const std::string in_quotes = quoted(text);
  return in_quotes.substr(1, in_quotes.size() - 2);
}

std::string with_begin(const std::string& path, const Element& element) {
  const std::string* begin = attribute(element, "startDate");
  return begin == nullptr ? path : path + ' ' + shown(*begin);
}

}  // namespace

bool DocumentWalk::start(std::string_view name_space, Element element) {
  if (skipped_ > 0) {
    ++skipped_;
    return true;
  }
  if (open_.empty()) return open_root(name_space, std::move(element));
  if (!is_looked_at(name_space, element.name) || !has_room(element)) {
    skipped_ = 1;
    return true;
  }
  open(std::move(element));
  return true;
}

bool DocumentWalk::open_root(std::string_view name_space, Element element) {
  if (element.name == "FDSNStationXML" && name_space == kNameSpace) {
    open_.push_back(std::move(element));
    return true;
  }
  Place(reporter_, "")
      .tell(Rule::not_stationxml, element.line,
            "the root element is " + quoted(element.name) + " of the namespace " + quoted(name_space) +
                ", expected 'FDSNStationXML' of " + quoted(kNameSpace));
  return false;
}

// Whatever the root has besides networks would pile up.
bool DocumentWalk::is_looked_at(std::string_view name_space, std::string_view name) const {
  if (name_space != kNameSpace || !is_element_of_interest(name)) return false;
  return open_.size() > 1 || name == "Network";
}

bool DocumentWalk::is_at(std::size_t depth, std::string_view name, const Element& element) const {
  return open_.size() == depth && element.name == name;
}

// False for the elements of a channel or station of too many; the first of those is told.
bool DocumentWalk::has_room(const Element& element) {
  if (is_at(1, "Network", element) || is_at(2, "Station", element) || is_at(3, "Channel", element)) elements_ = 0;
  if (++elements_ <= kMaxElements) return true;
  if (elements_ == kMaxElements + 1) {
    const Place place = station_ ? station_->place : Place(reporter_, "");
    place.tell(Rule::too_large, element.line, "more than " + std::to_string(kMaxElements) + " elements in one part");
  }
  return false;
}

void DocumentWalk::open(Element element) {
  if (is_at(1, "Network", element)) open_network(element);
  if (is_at(2, "Station", element)) open_station(element);
  open_.push_back(std::move(element));
}

void DocumentWalk::open_network(const Element& network) {
  ++reporter_->counts().networks;
  const std::string code = attribute_text(network, "code");
  const Place place(reporter_, with_begin(shown(code), network));
  check_network_code(network, place);
  network_ = Surrounding{code, place, check_dates(network, place), {}};
  networks_.add(code, network_->span, network.line, place);
}

void DocumentWalk::open_station(const Element& station) {
  ++reporter_->counts().stations;
  const std::string code = attribute_text(station, "code");
  const Place place(reporter_, with_begin(shown(network_->code) + '.' + shown(code), station));
  check_station_code(station, place);
  station_ = Surrounding{code, place, check_dates(station, place), {}};
  check_begin(station, place);
  check_within(station_->span, network_->span, "network", station.line, place);
  network_->children.add(code, station_->span, station.line, place);
}

void DocumentWalk::text(std::string_view text) {
  if (skipped_ > 0 || open_.empty()) return;
  std::string& held = open_.back().text;
  held.append(text.substr(0, kMaxText - std::min(kMaxText, held.size())));
}

void DocumentWalk::end() {
  if (skipped_ > 0) {
    --skipped_;
    return;
  }
  Element element = std::move(open_.back());
  open_.pop_back();
  close(std::move(element));
}

void DocumentWalk::close(Element element) {
  if (open_.empty()) return;
  if (is_at(1, "Network", element)) return close_network(element);
  if (is_at(2, "Station", element)) return close_station(element);
  if (is_at(3, "Channel", element) && open_.back().name == "Station") return close_channel(element);
  open_.back().children.push_back(std::move(element));
}

void DocumentWalk::close_network(const Element& network) {
  check_numbers(network, network_->place);
  check_totals(network, "Stations", network_->place);
  network_->children.close();
  network_.reset();
}

void DocumentWalk::close_station(const Element& station) {
  check_numbers(station, station_->place);
  check_station_place(station, station_->place);
  check_totals(station, "Channels", station_->place);
  station_->children.close();
  station_.reset();
}

void DocumentWalk::close_channel(const Element& channel) {
  ++reporter_->counts().channels;
  const std::string location = shown(attribute_text(channel, "locationCode"));
  const std::string code = shown(attribute_text(channel, "code"));
  const std::string station = shown(network_->code) + '.' + shown(station_->code);
  const Place place(reporter_, with_begin(station + '.' + location + '.' + code, channel));
  const Span span = check_dates(channel, place);
  check_channel(channel, place, span);
  station_->children.add(location + '.' + code, span, channel.line, place);
}

void DocumentWalk::check_channel(const Element& element, const Place& place, const Span& span) {
  const Channel channel = read_channel(element);
  check_channel_codes(element, place);
  check_begin(element, place);
  check_within(span, station_->span, "station", element.line, place);
  check_numbers(element, place);
  check_channel_place(channel, open_.back(), place);
  check_orientation(channel, place);
  check_rate(channel, place);
  check_response(channel, place);
  check_stages_missing(channel, place);
  check_stage_order(channel, place);
  check_units(channel, place);
  check_decimations(channel, place);
  check_gains(channel, place);
  check_filters(channel, place);
  check_sensitivity(channel, place);
}

// A document of channels without responses has no stages at all, which is as it should be.
void DocumentWalk::check_stages_missing(const Channel& channel, const Place& place) {
  has_stages_ = has_stages_ || !channel.stages.empty();
  const auto finding = find_missing_stages(channel, place);
  if (finding) held_back_.push_back(*finding);
  if (!has_stages_) return;
  for (const DocumentFinding& held : held_back_) reporter_->tell(held);
  held_back_.clear();
}

// A fault of the document may have left elements open.
void DocumentWalk::finish() { networks_.close(); }

}  // namespace triglub::checks
