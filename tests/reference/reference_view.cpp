#include "reference/reference_view.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>

#include "support/flat_database.h"

namespace triglub_reference {

namespace {

using triglub_test::flat_schema;
using triglub_test::FlatField;

enum : std::size_t { SITECHAN, SNETSTA, SCHANLOC, NETWORK, SITE, SENSOR, INSTRUMENT, CALIBRATION, STAGE };

double number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

std::optional<ViewField> field_of_table(std::size_t table, const std::string& name) {
  for (const FlatField& field : flat_schema().at(kViewTables[table])) {
    // Of all the numbers of these tables, integers and dates are the ones that are eight bytes wide.
    if (field.name == name)
      return ViewField{table, name, field.is_text, !field.is_text && field.width == 8, field.null_text};
  }
  return std::nullopt;
}

std::string text_at(const Record& record, std::size_t table, const char* name) {
  return text_of(record, *field_of_table(table, name));
}

bool is_null(const Record& record, std::size_t table, const char* name) {
  const ViewField field = *field_of_table(table, name);
  return text_of(record, field) == field.null_text;
}

// Less, equal or greater, as the field's type compares.
int compare(const Record& a, const Record& b, std::size_t table, const char* name) {
  const ViewField field = *field_of_table(table, name);
  const std::string of_a = text_of(a, field);
  const std::string of_b = text_of(b, field);
  if (field.is_text) return of_a.compare(of_b);
  return number(of_a) < number(of_b) ? -1 : number(of_a) > number(of_b) ? 1 : 0;
}

struct Range {
  double begin;
  double end;
};

Range range_at(const Record& record, std::size_t table, const char* begin, const char* end) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return {is_null(record, table, begin) ? -infinity : number(text_at(record, table, begin)),
          is_null(record, table, end) ? infinity : number(text_at(record, table, end))};
}

bool is_leap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

// Days since 1970-01-01 of a yyyyddd from 1970 on.
double day_of_yearday(double yearday) {
  if (std::isinf(yearday)) return yearday;
  const int year = static_cast<int>(yearday) / 1000;
  int days = static_cast<int>(yearday) % 1000 - 1;
  for (int before = 1970; before < year; ++before) days += is_leap(before) ? 366 : 365;
  return days;
}

Range day_range(const Record& record, std::size_t table) { return range_at(record, table, "ondate", "offdate"); }
Range instant_range(const Record& record, std::size_t table) { return range_at(record, table, "time", "endtime"); }

Range days_of_dates(const Range& dates) { return {day_of_yearday(dates.begin), day_of_yearday(dates.end)}; }

// Each instant counts as its day. A range that runs backward stays one, though both its ends may lie in one day.
Range days_of_instants(const Range& instants) {
  if (instants.end < instants.begin) return instants;
  return {std::floor(instants.begin / 86400.0), std::floor(instants.end / 86400.0)};
}

// Half-open ranges; one of length zero is a point, which belongs to the range that begins at it or holds it.
bool overlap(const Range& a, const Range& b) {
  if (a.end < a.begin || b.end < b.begin) return false;
  if (a.begin == b.begin) return true;
  const Range& early = a.begin < b.begin ? a : b;
  const Range& late = a.begin < b.begin ? b : a;
  return late.begin < early.end;
}

// Every pair of a record and a row of the table for which the condition holds; with `outer` a record without a match
// stays, its row of the table absent.
View join(const View& view, const Tables& tables, std::size_t table, bool outer,
          const std::function<bool(const Record&)>& condition) {
  View joined;
  const auto found = tables.rows.find(kViewTables[table]);
  for (const Record& record : view) {
    bool matched = false;
    Record pair = record;
    if (found != tables.rows.end()) {
      for (const Row& row : found->second) {
        pair[table] = &row;
        if (!condition(pair)) continue;
        joined.push_back(pair);
        matched = true;
      }
    }
    pair[table] = nullptr;
    if (outer && !matched) joined.push_back(pair);
  }
  return joined;
}

bool equal(const Record& record, std::size_t a, const char* name_a, std::size_t b, const char* name_b) {
  const ViewField of_a = *field_of_table(a, name_a);
  const std::string text_a = text_of(record, of_a);
  const std::string text_b = text_at(record, b, name_b);
  return of_a.is_text ? text_a == text_b : number(text_a) == number(text_b);
}

bool same_channel(const Record& record, std::size_t table) {
  return equal(record, SITECHAN, "sta", table, "sta") && equal(record, SITECHAN, "chan", table, "chan");
}

bool sensor_fits(const Record& record) {
  if (!same_channel(record, SENSOR)) return false;
  const bool either_null = is_null(record, SITECHAN, "chanid") || is_null(record, SENSOR, "chanid");
  if (!either_null && !equal(record, SITECHAN, "chanid", SENSOR, "chanid")) return false;
  return overlap(days_of_dates(day_range(record, SITECHAN)), days_of_instants(instant_range(record, SENSOR)));
}

int compare_epochs(const Record& a, const Record& b) {
  for (const char* field : {"sta", "chan", "ondate"}) {
    if (const int order = compare(a, b, SITECHAN, field); order != 0) return order;
  }
  return 0;
}

View first_of_each_epoch(const View& view) {
  View kept;
  for (const Record& record : view) {
    const bool known =
        std::any_of(kept.begin(), kept.end(), [&](const Record& other) { return compare_epochs(record, other) == 0; });
    if (!known) kept.push_back(record);
  }
  return kept;
}

}  // namespace

std::optional<ViewField> find_field(const std::string& name, std::size_t tables) {
  const std::size_t point = name.find('.');
  for (std::size_t table = 0; table < tables; ++table) {
    if (point != std::string::npos && name.substr(0, point) != kViewTables[table]) continue;
    const std::string bare = point == std::string::npos ? name : name.substr(point + 1);
    if (auto field = field_of_table(table, bare)) return field;
  }
  return std::nullopt;
}

std::string text_of(const Record& record, const ViewField& field) {
  const Row* row = record[field.table];
  if (row == nullptr) return field.null_text;
  const auto found = row->find(field.name);
  if (found == row->end() || found->second.empty()) return field.null_text;
  if (!field.is_text && number(found->second) == number(field.null_text)) return field.null_text;
  return found->second;
}

bool matches(const std::string& text, const std::string& pattern) {
  if (const std::size_t bar = pattern.find('|'); bar != std::string::npos) {
    return matches(text, pattern.substr(0, bar)) || matches(text, pattern.substr(bar + 1));
  }
  if (pattern.empty()) return text.empty();
  if (text.empty() || (pattern[0] != '.' && pattern[0] != text[0])) return false;
  const bool repeats = pattern.size() > 1 && pattern[1] == '+';
  if (repeats && matches(text.substr(1), pattern)) return true;
  return matches(text.substr(1), pattern.substr(repeats ? 2 : 1));
}

std::optional<View> master_view(const Tables& tables, const std::map<std::string, std::string>& subset) {
  View view = join({Record{}}, tables, SITECHAN, false, [](const Record&) { return true; });
  view = join(view, tables, SNETSTA, false, [](const Record& r) { return equal(r, SITECHAN, "sta", SNETSTA, "sta"); });
  view = join(view, tables, SCHANLOC, false, [](const Record& r) { return same_channel(r, SCHANLOC); });
  for (const auto& [name, pattern] : subset) {
    const auto field = find_field(name, SCHANLOC + 1);
    if (!field) return std::nullopt;
    const std::string bare = pattern.substr(1, pattern.size() - 2);  // without the slashes
    std::erase_if(view, [&](const Record& record) { return !matches(text_of(record, *field), bare); });
  }
  view = join(view, tables, NETWORK, false, [](const Record& r) { return equal(r, SNETSTA, "snet", NETWORK, "net"); });
  view = join(view, tables, SITE, false, [](const Record& r) {
    return equal(r, SITECHAN, "sta", SITE, "sta") && overlap(day_range(r, SITECHAN), day_range(r, SITE));
  });
  view = join(view, tables, SENSOR, false, sensor_fits);
  view = join(view, tables, INSTRUMENT, true,
              [](const Record& r) { return equal(r, SENSOR, "inid", INSTRUMENT, "inid"); });
  view = join(view, tables, CALIBRATION, false, [](const Record& r) {
    return same_channel(r, CALIBRATION) && overlap(instant_range(r, SENSOR), instant_range(r, CALIBRATION));
  });
  view = first_of_each_epoch(view);
  view = join(view, tables, STAGE, true, [](const Record& r) {
    return same_channel(r, STAGE) && overlap(instant_range(r, SENSOR), instant_range(r, STAGE));
  });
  std::stable_sort(view.begin(), view.end(), [](const Record& a, const Record& b) {
    const int order = compare_epochs(a, b);
    return order != 0 ? order < 0 : compare(a, b, STAGE, "stageid") < 0;
  });
  return view;
}

}  // namespace triglub_reference
