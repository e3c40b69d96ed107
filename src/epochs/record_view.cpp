// Records are made of the whole database, as what is chosen does not change what an epoch is, and chosen from then.
#include "epochs/record_view.h"

#include <utility>

#include "epochs/choice.h"
#include "epochs/conditions.h"
#include "epochs/left_out.h"
#include "epochs/own_tables.h"
#include "epochs/station_data.h"

namespace triglub {

namespace {

// The own tables of a mask.
std::vector<std::string> own_tables_in(std::uint32_t tables, Dbptr db) {
  std::vector<std::string> wanted;
  if (tables >> kRecordTables == 0) return wanted;
  const std::vector<std::string> own = own_tables_of(db);
  for (std::size_t i = 0; i < own.size(); ++i) {
    if ((tables >> (kRecordTables + i) & 1U) != 0) wanted.push_back(own[i]);
  }
  return wanted;
}

}  // namespace

RecordView make_record_view(Dbptr db, const RecordChoice& choice, Findings* findings) {
  const Conditions conditions(choice.conditions, db);
  StationData data(db, conditions, choice, own_tables_in(choice.tables | conditions.tables(), db));
  note_left_out(&data);
  if (!conditions.is_empty()) {
    data.records.rows = chosen_records(data, conditions, std::move(data.records.rows));
  }
  widen(data.epochs, &data.records);
  tell(data, conditions, data.records.rows, findings);
  RecordRows rows = std::move(data.records.rows);
  const ResponseTables tables = {data.tables.sitechan.handle(),     data.tables.stage.handle(),
                                 data.tables.calibration.handle(),  data.tables.instrument.handle(),
                                 std::move(data.instrument_stages), choice.reach};
  if (choice.amend) choice.amend(tables, &rows);
  number_stages(&rows);
  return {view_of_records(data, std::move(rows), data.records), tables};
}

void release(const RecordView& view) {
  for (const Dbptr& one : {view.view, view.tables.stage, view.tables.calibration}) release_view(one);
}

}  // namespace triglub
