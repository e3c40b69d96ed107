// Conditions are those of the engine's language, where a null is a text like any other: a code that is not there can be
// asked for.
#include "epochs/choice.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "dbhelper.h"
#include "epochs/record_view.h"
#include "fatal_failure.h"
#include "platform/columns.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

constexpr std::array<RecordTable, 7> kOfChannels = {kSitechan,    kSchanloc, kSensor, kInstrument,
                                                    kCalibration, kStage,    kEpoch};

// The tables that the conditions look at, by RecordTable. Throws for one that does not compile.
std::vector<bool> tables_of(rbtree* conditions, Dbptr view) {
  std::vector<bool> used(kRecordTables, false);
  Tbl* keys = keysarr(conditions);
  std::string fault;
  for (long i = 0; i < maxtbl(keys) && fault.empty(); ++i) {
    const auto* key = static_cast<const char*>(gettbl(keys, i));
    const auto expression = RecordExpression::compile(view, key, &fault);
    if (expression == nullptr) continue;
    for (const std::size_t table : expression->all_tables()) used[table] = true;
  }
  freetbl(keys, nullptr);
  if (!fault.empty()) throw FatalFailure("a condition cannot be used: " + fault);
  return used;
}

bool asks_for_channels(const std::vector<bool>& used) {
  return std::any_of(kOfChannels.begin(), kOfChannels.end(), [&](RecordTable table) { return used[table]; });
}

bool asks_beyond_network(const std::vector<bool>& used) {
  for (std::size_t table = 0; table < used.size(); ++table) {
    if (used[table] && table != kNetwork) return true;
  }
  return false;
}

void keep(const std::vector<bool>& is_kept, RecordRows* rows) {
  for (std::vector<std::uint32_t>& column : rows->rows) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < column.size(); ++i) {
      if (is_kept[i]) column[kept++] = column[i];
    }
    column.resize(kept);
  }
}

void drop_what_cannot_meet(const std::vector<bool>& used, RecordRows* rows) {
  const bool are_places_dropped = asks_for_channels(used);
  const bool are_networks_dropped = asks_beyond_network(used);
  std::vector<bool> is_kept(rows->size());
  for (std::size_t i = 0; i < is_kept.size(); ++i) {
    const bool is_channel = rows->rows[kSitechan][i] != kAbsent;
    const bool is_place = !is_channel && rows->rows[kSnetsta][i] != kAbsent;
    is_kept[i] = is_channel || (is_place ? !are_places_dropped : !are_networks_dropped);
  }
  keep(is_kept, rows);
}

// The view, which goes, at the records that meet a condition.
Dbptr subset(Dbptr view, const std::string& condition) {
  const Dbptr chosen = dbsubset(view, condition.c_str(), nullptr);
  release_view(view);
  if (chosen.table < 0) throw FatalFailure("a condition cannot be used: " + condition);
  return chosen;
}

std::vector<std::string> texts_of(rbtree* conditions) {
  std::vector<std::string> texts;
  Tbl* list = arr2expr(conditions);
  for (long i = 0; i < maxtbl(list); ++i) texts.emplace_back(static_cast<const char*>(gettbl(list, i)));
  freetbl(list, std::free);
  return texts;
}

}  // namespace

RecordRows chosen_records(const StationData& data, rbtree* conditions, RecordRows rows) {
  const Dbptr names = make_empty_record_view(data.db);
  const std::vector<bool> used = tables_of(conditions, names);
  release_view(names);
  drop_what_cannot_meet(used, &rows);
  Dbptr view = view_of_records(data, std::move(rows), data.records);
  for (const std::string& condition : texts_of(conditions)) view = subset(view, condition);
  RecordRows chosen;
  for (std::size_t t = 0; t < chosen.rows.size(); ++t) {
    const std::span<const std::uint32_t> of_table = rows_of(view, t);
    chosen.rows[t].assign(of_table.begin(), of_table.end());
  }
  release_view(view);
  return chosen;
}

}  // namespace triglub
