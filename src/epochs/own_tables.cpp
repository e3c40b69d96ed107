// Keys are made of numbers: of texts by TextNumbers of the own table's column, so that only texts that it has count.
#include "epochs/own_tables.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "fatal_failure.h"
#include "platform/columns.h"

namespace triglub {

namespace {

constexpr std::size_t kMostOwnTables = 32 - kRecordTables;  // as many as a mask of tables can tell apart

// Where records have the fields that keys are made of: the first table of which a record has a row.
struct KeyPlace {
  const char* field;
  bool is_text;
  std::array<RecordTable, 3> tables;
};
constexpr std::array<KeyPlace, 9> kKeyPlaces = {{{"sta", true, {kSitechan, kSite, kSnetsta}},
                                                 {"chan", true, {kSitechan, kSitechan, kSitechan}},
                                                 {"net", true, {kNetwork, kNetwork, kNetwork}},
                                                 {"snet", true, {kSnetsta, kSnetsta, kSnetsta}},
                                                 {"fsta", true, {kSnetsta, kSnetsta, kSnetsta}},
                                                 {"fchan", true, {kSchanloc, kSchanloc, kSchanloc}},
                                                 {"loc", true, {kSchanloc, kSchanloc, kSchanloc}},
                                                 {"chanid", false, {kSitechan, kSitechan, kSitechan}},
                                                 {"inid", false, {kSensor, kSensor, kSensor}}}};

using Key = std::vector<std::int64_t>;

const KeyPlace& place_of(const std::string& table, std::string_view field) {
  const auto* place = std::find_if(kKeyPlaces.begin(), kKeyPlaces.end(),
                                   [field](const KeyPlace& candidate) { return candidate.field == field; });
  if (place != kKeyPlaces.end()) return *place;
  throw FatalFailure("the table " + table + " has the key '" + std::string(field) + "', which records do not have");
}

// One field of the key: its value in rows of the own table, and in records.
class KeyColumn {
 public:
  KeyColumn(const StationTables& tables, const TableColumns& own, const KeyPlace& place) : place_(place) {
    if (place.is_text) {
      own_texts_ = own.texts(place_.field);
      numbers_ = std::make_unique<TextNumbers>(std::initializer_list<const TextColumn*>{&own_texts_});
      own_numbers_ = numbers_->by_code(own_texts_);
    } else {
      own_integers_ = own.integers(place_.field);
    }
    for (const RecordTable table : place.tables) add_source(table_of(tables, table).columns());
  }

  std::optional<std::int64_t> of_row(std::uint32_t row) const {
    if (!place_.is_text) return own_integers_[row];
    return known(own_numbers_[own_texts_.codes()[row]]);
  }

  std::optional<std::int64_t> of_record(const RecordRows& rows, std::size_t record) const {
    for (std::size_t i = 0; i < place_.tables.size(); ++i) {
      const std::uint32_t row = rows.rows[place_.tables[i]][record];
      if (row == kAbsent) continue;
      if (!place_.is_text) return sources_[i].integers[row];
      return known(sources_[i].numbers[sources_[i].texts.codes()[row]]);
    }
    return std::nullopt;
  }

 private:
  struct Source {
    TextColumn texts;
    std::vector<std::uint32_t> numbers;  // by code
    std::span<const std::int64_t> integers;
  };

  static std::optional<std::int64_t> known(std::uint32_t number) {
    return number == TextNumbers::kNone ? std::nullopt : std::optional<std::int64_t>(number);
  }

  void add_source(const TableColumns& table) {
    Source& source = sources_.emplace_back();
    if (place_.is_text) {
      source.texts = table.texts(place_.field);
      source.numbers = numbers_->by_code(source.texts);
    } else {
      source.integers = table.integers(place_.field);
    }
  }

  const KeyPlace& place_;
  TextColumn own_texts_;
  std::unique_ptr<TextNumbers> numbers_;
  std::vector<std::uint32_t> own_numbers_;  // by code
  std::span<const std::int64_t> own_integers_;
  std::vector<Source> sources_;
};

// The rows of an own table with their times.
class OwnTable {
 public:
  OwnTable(const StationData& data, const std::string& table) : data_(data), loaded_(data.db, table.c_str()) {
    for (const std::string& field : primary_key(data.db, table)) {
      if (field == "time::endtime") {
        times_.emplace(data.db, table.c_str());
      } else if (field == "ondate::offdate") {
        days_.emplace(data.db, table.c_str());
        days_->check_days();
      } else {
        columns_.emplace_back(data.tables, loaded_.columns(), place_of(table, field));
      }
    }
    for (std::uint32_t row = 0; row < loaded_.row_count(); ++row) file(row);
    for (auto& [key, rows] : rows_) std::sort(rows.begin(), rows.end());
  }

  std::uint32_t row_of(const RecordRows& rows, std::size_t record) const {
    Key key;
    for (const KeyColumn& column : columns_) {
      const auto value = column.of_record(rows, record);
      if (!value) return kAbsent;
      key.push_back(*value);
    }
    const auto found = rows_.find(key);
    return found == rows_.end() ? kAbsent : standing(found->second, instant_of(rows, record));
  }

 private:
  void file(std::uint32_t row) {
    Key key;
    for (const KeyColumn& column : columns_) {
      const auto value = column.of_row(row);
      if (!value) return;
      key.push_back(*value);
    }
    HeldRow held{{}, loaded_.load_date(row), row};
    if (times_) held = times_->held(row);
    if (days_) held = days_->held(row);
    rows_[key].push_back(held);
  }

  static std::uint32_t standing(const HeldRows& rows, Instant instant) {
    const auto found =
        std::find_if(rows.rbegin(), rows.rend(), [instant](const HeldRow& row) { return row.span.holds_at(instant); });
    return found == rows.rend() ? kAbsent : found->row;
  }

  Instant instant_of(const RecordRows& rows, std::size_t record) const {
    const std::uint32_t epoch = rows.rows[kEpoch][record];
    if (epoch != kAbsent) return data_.epochs.epochs[epoch].span.begin;
    const std::uint32_t site = rows.rows[kSite][record];
    return site == kAbsent ? kPast : data_.places.of_site(site).span.begin;
  }

  const StationData& data_;
  LoadedTable loaded_;
  std::optional<TimeTable> times_;
  std::optional<DayTable> days_;
  std::vector<KeyColumn> columns_;
  std::map<Key, HeldRows> rows_;
};

bool are_of_one_row(const RecordRows& rows, std::size_t a, std::size_t b) {
  const auto is_same = [&](RecordTable table) { return rows.rows[table][a] == rows.rows[table][b]; };
  return is_same(kSitechan) && is_same(kSnetsta) && is_same(kSchanloc) && is_same(kNetwork) && is_same(kSite) &&
         is_same(kSensor) && is_same(kEpoch);
}

}  // namespace

std::vector<std::string> own_tables_of(Dbptr db) {
  std::vector<std::string> own = table_names(db);
  std::erase_if(own, [](const std::string& name) {
    return std::find(kRecordTableNames.begin(), kRecordTableNames.end(), name) != kRecordTableNames.end();
  });
  if (own.size() > kMostOwnTables) throw FatalFailure("the schema has more tables than a document can be made of");
  return own;
}

std::vector<std::uint32_t> own_table_rows(const StationData& data, const std::string& table, const RecordRows& rows) {
  const OwnTable own(data, table);
  std::vector<std::uint32_t> found;
  found.reserve(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    found.push_back(i > 0 && are_of_one_row(rows, i - 1, i) ? found.back() : own.row_of(rows, i));
  }
  return found;
}

}  // namespace triglub
