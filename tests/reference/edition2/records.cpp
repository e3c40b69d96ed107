#include "reference/edition2/records.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <regex>
#include <set>
#include <stdexcept>
#include <utility>

#include "reference/edition2/core_rows.h"
#include "reference/edition2/epochs.h"
#include "reference/edition2/stages.h"

namespace triglub_reference::edition2 {

namespace {

// A record on its way, with the epoch that it is of.
struct Draft {
  Record rows = {};
  const Epoch* epoch = nullptr;
};
using Drafts = std::vector<Draft>;

bool is_of(const Draft& draft, Table table, const char* name, const std::optional<std::string>& value) {
  return text_in(draft.rows[table], table, name) == value;
}

Field field_of(const std::string& condition) {
  const auto field = find_field(condition);
  if (!field) throw std::runtime_error("no field " + condition);
  return *field;
}

bool is_chosen(const Draft& draft, const Conditions& conditions) {
  return std::all_of(conditions.begin(), conditions.end(), [&](const auto& condition) {
    const Field field = field_of(condition.first);
    const std::string text = text_in(draft.rows[field.table], field).value_or(field.null_text);
    return std::regex_match(text, std::regex(condition.second));
  });
}

bool any_names(const Conditions& conditions, const std::function<bool(Table)>& is_meant) {
  return std::any_of(conditions.begin(), conditions.end(),
                     [&](const auto& condition) { return is_meant(field_of(condition.first).table); });
}

bool is_of_channels(Table table) {
  constexpr Table tables[] = {SITECHAN, SCHANLOC, SENSOR, INSTRUMENT, CALIBRATION, STAGE, EPOCH, CHAIN};
  return std::count(std::begin(tables), std::end(tables), table) > 0;
}

Row times_of(const Span& span) {
  Row row;
  if (span.begin > -kForever) row["time"] = shortest(span.begin / 1000.0);
  if (span.end < kForever) row["endtime"] = shortest(span.end / 1000.0);
  return row;
}

// The smallest span that holds both.
Span hull(const Span& a, const Span& b) { return {std::min(a.begin, b.begin), std::max(a.end, b.end)}; }

class ViewMaker {
 public:
  explicit ViewMaker(const Request& request)
      : request_(request),
        view_{std::make_shared<const Tables>(with_memberships(request.tables)), {}, {}},
        tables_(*view_.tables) {}

  View make() {
    check_dates();
    epochs_ = channel_epochs(tables_);
    for (Epoch& epoch : epochs_) complete(epoch);
    add_channels();
    add_places_without_channels();
    const auto is_not_network = [](Table table) { return table != NETWORK; };
    if (request_.level == Level::network && !any_names(request_.conditions, is_not_network)) add_unused_networks();
    const bool are_places_wanted = !any_names(request_.conditions, is_of_channels);
    for (const Draft& draft : drafts_) {
      const bool is_place = draft.epoch == nullptr && draft.rows[SNETSTA] != nullptr;
      if ((are_places_wanted || !is_place) && is_chosen(draft, request_.conditions)) chosen_.push_back(draft);
    }
    for (Draft& draft : chosen_) add_station_and_network(draft);
    std::sort(chosen_.begin(), chosen_.end(), [&](const Draft& a, const Draft& b) { return is_before(a, b); });
    for (const Draft& draft : chosen_) view_.records.push_back(draft.rows);
    if (are_stages_written()) drop_broken_chains();
    for (std::size_t i = 0; i < view_.records.size(); ++i) number_stage(i);
    return std::move(view_);
  }

 private:
  void check_dates() const {
    const Border no_border = [](long) { return 0.0; };
    for (const Table table : {SITE, SITECHAN}) {
      for (const Row& row : rows_of(tables_, table)) day_span(&row, {}, table, no_border);
    }
  }

  const Row* computed(Row row) {
    view_.computed.push_back(std::move(row));
    return &view_.computed.back();
  }

  const Row* newest_with(Table table, const Key& key) const { return newest(rows_with(tables_, table, key), table); }

  RowList published_stations() const {
    RowList rows;
    for (const Row& row : rows_of(tables_, SNETSTA)) {
      if (is_newest_of(row, tables_, SNETSTA, {"snet", "fsta", "sta"})) rows.push_back(&row);
    }
    return rows;
  }

  Draft draft_of(const Row* snetsta) const {
    Draft draft;
    draft.rows[SNETSTA] = snetsta;
    draft.rows[NETWORK] = newest_with(NETWORK, {{"net", *text_in(snetsta, SNETSTA, "snet")}});
    return draft;
  }

  const Row* instrument_of(const Row* sensor) const {
    const auto inid = number_in(sensor, SENSOR, "inid");
    RowList rows;
    for (const Row& row : rows_of(tables_, INSTRUMENT)) {
      if (inid && number_in(&row, INSTRUMENT, "inid") == inid) rows.push_back(&row);
    }
    return newest(rows, INSTRUMENT);
  }

  void complete(Epoch& epoch) {
    const Row* instrument = instrument_of(epoch.rows.sensor);
    if (epoch.rows.calibration == nullptr) {
      auto row = nominal_calibration(epoch.rows.sitechan, epoch.rows.sensor, instrument, epoch.span,
                                     request_.tree.calib_units);
      if (row) epoch.rows.calibration = computed(std::move(*row));
    }
    if (!epoch.rows.stages.empty()) return;
    for (const Row& stage : instrument_stages(instrument, epoch.rows.calibration, tables_.files)) {
      epoch.rows.stages.push_back(computed(stage));
    }
  }

  void add_channels() {
    for (const Epoch& epoch : epochs_) {
      const Row* times = computed(times_of(epoch.span));
      for (const Row* snetsta : published_stations()) {
        if (text_in(snetsta, SNETSTA, "sta") == epoch.sta) add_epoch(draft_of(snetsta), epoch, times);
      }
    }
  }

  void add_epoch(Draft draft, const Epoch& epoch, const Row* times) {
    draft.epoch = &epoch;
    draft.rows[SITECHAN] = epoch.rows.sitechan;
    draft.rows[SCHANLOC] = newest_with(SCHANLOC, {{"sta", epoch.sta}, {"chan", epoch.chan}});
    draft.rows[SITE] = epoch.rows.site;
    draft.rows[SENSOR] = epoch.rows.sensor;
    draft.rows[INSTRUMENT] = instrument_of(epoch.rows.sensor);
    draft.rows[CALIBRATION] = epoch.rows.calibration;
    draft.rows[EPOCH] = times;
    if (epoch.rows.stages.empty()) drafts_.push_back(draft);
    long number = 0;
    for (const Row* stage : epoch.rows.stages) {
      draft.rows[STAGE] = stage;
      draft.rows[CHAIN] = computed({{"number", std::to_string(++number)}});
      drafts_.push_back(draft);
    }
  }

  // Whether the group with all below has a line for stages.
  bool has_stage_line(const Group& group) const {
    return std::any_of(group.elements.begin(), group.elements.end(), [&](const Line& line) {
      const auto below = request_.tree.groups.find(line.name);
      const bool is_group = line.type == "GROUP" || line.type.starts_with("CATEGORIZED");
      return line.flag != "x" && (line.type == "STAGE" || (is_group && has_stage_line(below->second)));
    });
  }

  bool are_stages_written() const {
    const auto root = request_.tree.groups.find(request_.tree.root);
    return request_.level == Level::response && root != request_.tree.groups.end() && has_stage_line(root->second);
  }

  static bool are_of_one_chain(const Record& a, const Record& b) {
    return a[EPOCH] == b[EPOCH] && a[SNETSTA] == b[SNETSTA] && a[STAGE] != nullptr && b[STAGE] != nullptr;
  }

  // Of a chain that is broken a record without a stage is left.
  void drop_broken_chains() {
    const std::vector<Record> all = std::exchange(view_.records, {});
    for (std::size_t i = 0; i < all.size(); ++i) {
      Chain chain;
      for (const Record& record : all) {
        if (are_of_one_chain(all[i], record)) chain.push_back(record);
      }
      const bool is_broken = !can_be_written(chain, request_.tables.files);
      if (is_broken && all[i] != chain.front()) continue;
      view_.records.push_back(all[i]);
      if (is_broken) view_.records.back()[STAGE] = view_.records.back()[CHAIN] = nullptr;
    }
  }

  // The stages that are chosen are counted anew.
  void number_stage(std::size_t i) {
    if (view_.records[i][STAGE] == nullptr) return;
    long number = 1;
    for (std::size_t before = 0; before < i; ++before) {
      if (are_of_one_chain(view_.records[before], view_.records[i])) ++number;
    }
    view_.records[i][CHAIN] = computed({{"number", std::to_string(number)}});
  }

  bool is_place_of_a_channel(const Row* site) const {
    return std::any_of(epochs_.begin(), epochs_.end(), [&](const Epoch& epoch) { return epoch.rows.site == site; });
  }

  void add_places_without_channels() {
    for (const Row* snetsta : published_stations()) {
      const std::string sta = *text_in(snetsta, SNETSTA, "sta");
      const RowList sites = rows_with(tables_, SITE, {{"sta", sta}});
      const HeldRows held = held_by_days(sites, SITE, border_of_station(tables_, sta));
      for (const Row* site : sites) {
        if (!stands_ever(site, held) || is_place_of_a_channel(site)) continue;
        Draft draft = draft_of(snetsta);
        draft.rows[SITE] = site;
        drafts_.push_back(draft);
      }
    }
  }

  // Which row stands changes only where one begins or ends.
  static bool stands_ever(const Row* site, const HeldRows& held) {
    for (const Held& cut : held) {
      for (const Instant t : {cut.span.begin, cut.span.end}) {
        const Held* stands = standing(held, SITE, t);
        if (stands != nullptr && stands->row == site) return true;
      }
    }
    return false;
  }

  void add_unused_networks() {
    const std::size_t published = drafts_.size();
    for (const Row& row : rows_of(tables_, NETWORK)) {
      if (!is_newest_of(row, tables_, NETWORK, {"net"})) continue;
      const auto net = text_in(&row, NETWORK, "net");
      const bool is_used = std::any_of(drafts_.begin(), drafts_.begin() + static_cast<std::ptrdiff_t>(published),
                                       [&](const Draft& draft) { return is_of(draft, SNETSTA, "snet", net); });
      if (is_used) continue;
      Draft draft;
      draft.rows[NETWORK] = &row;
      drafts_.push_back(draft);
    }
  }

  void add_station_and_network(Draft& draft) {
    if (draft.rows[SNETSTA] == nullptr) {
      draft.rows[NETWORK_EPOCH] = computed({{"stations", "0"}});
      return;
    }
    draft.rows[STATION_EPOCH] = computed(station_epoch(draft));
    draft.rows[NETWORK_EPOCH] = computed(network_epoch(*text_in(draft.rows[SNETSTA], SNETSTA, "snet")));
  }

  Row station_epoch(const Draft& of) const {
    const std::string sta = *text_in(of.rows[SNETSTA], SNETSTA, "sta");
    const RowList sites = rows_with(tables_, SITE, {{"sta", sta}});
    Span span = day_span(of.rows[SITE], sites, SITE, border_of_station(tables_, sta));
    for (const Draft& draft : chosen_) {
      const bool is_here = draft.rows[SNETSTA] == of.rows[SNETSTA] && draft.rows[SITE] == of.rows[SITE];
      if (is_here && draft.epoch != nullptr) span = hull(span, draft.epoch->span);
    }
    std::set<std::string> channels;
    for (const Epoch& epoch : epochs_) {
      if (epoch.rows.site == of.rows[SITE]) channels.insert(epoch.chan);
    }
    Row row = times_of(span);
    row["channels"] = std::to_string(channels.size());
    return row;
  }

  // Of all places of a network's stations, also of those without records.
  std::optional<Span> places_span(const std::string& snet) const {
    std::optional<Span> span;
    for (const Row* snetsta : published_stations()) {
      if (text_in(snetsta, SNETSTA, "snet") != snet) continue;
      const std::string sta = *text_in(snetsta, SNETSTA, "sta");
      const RowList sites = rows_with(tables_, SITE, {{"sta", sta}});
      for (const Held& held : held_by_days(sites, SITE, border_of_station(tables_, sta))) {
        span = span ? hull(*span, held.span) : held.span;
      }
    }
    return span;
  }

  Row network_epoch(const std::string& snet) const {
    std::optional<Span> span = places_span(snet);
    for (const Draft& draft : chosen_) {
      if (draft.epoch == nullptr || !is_of(draft, SNETSTA, "snet", snet)) continue;
      span = span ? hull(*span, draft.epoch->span) : draft.epoch->span;
    }
    std::set<std::optional<std::string>> stations;
    for (const Draft& draft : drafts_) {
      if (is_of(draft, SNETSTA, "snet", snet)) stations.insert(text_in(draft.rows[SNETSTA], SNETSTA, "fsta"));
    }
    Row row = span ? times_of(*span) : Row();
    row["stations"] = std::to_string(stations.size());
    return row;
  }

  // Texts by bytes, numbers by value; a null is before all others.
  template <typename Value>
  static int compare(const std::optional<Value>& a, const std::optional<Value>& b) {
    return a < b ? -1 : b < a ? 1 : 0;
  }

  static std::optional<std::string> station_of(const Draft& draft) {
    if (draft.rows[SITECHAN] != nullptr) return text_in(draft.rows[SITECHAN], SITECHAN, "sta");
    return text_in(draft.rows[SITE], SITE, "sta");
  }

  static int compare_texts(const Draft& a, const Draft& b, Table table, const char* name) {
    return compare(text_in(a.rows[table], table, name), text_in(b.rows[table], table, name));
  }
  static int compare_numbers(const Draft& a, const Draft& b, Table table, const char* name) {
    return compare(number_in(a.rows[table], table, name), number_in(b.rows[table], table, name));
  }

  static bool is_before(const Draft& a, const Draft& b) {
    const bool a_is_network = a.rows[SNETSTA] == nullptr;
    const bool b_is_network = b.rows[SNETSTA] == nullptr;
    if (a_is_network != b_is_network) return b_is_network;
    for (const int order :
         {a_is_network ? compare_texts(a, b, NETWORK, "net") : 0, compare_texts(a, b, SNETSTA, "snet"),
          compare_texts(a, b, SNETSTA, "fsta"), compare(station_of(a), station_of(b)),
          compare_numbers(a, b, SITE, "ondate"), compare_texts(a, b, SITECHAN, "chan"),
          compare_numbers(a, b, EPOCH, "time"), compare_numbers(a, b, STAGE, "stageid")}) {
      if (order != 0) return order < 0;
    }
    return a.rows < b.rows;  // by the place of the rows in their tables
  }

  const Request& request_;
  View view_;
  const Tables& tables_;
  std::vector<Epoch> epochs_;
  Drafts drafts_;
  Drafts chosen_;
};

}  // namespace

View view_of(const Request& request) { return ViewMaker(request).make(); }

std::string shortest(double number) {
  if (number == 0) return "0";
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

}  // namespace triglub_reference::edition2
