// Records are made of the whole database, as what is chosen does not change what an epoch is, and chosen from then.
#include "epochs/record_view.h"

#include <utility>

#include "epochs/choice.h"
#include "epochs/conditions.h"
#include "epochs/left_out.h"
#include "epochs/station_data.h"

namespace triglub {

Dbptr make_record_view(Dbptr db, const RecordChoice& choice, Findings* findings) {
  const Conditions conditions(choice.conditions, db);
  StationData data(db, conditions, choice.with_empty_networks);
  note_left_out(&data);
  if (!conditions.is_empty()) {
    data.records.rows = chosen_records(data, conditions, std::move(data.records.rows));
  }
  widen(data.epochs, &data.records);
  tell(data, conditions, data.records.rows, findings);
  RecordRows rows = std::move(data.records.rows);
  if (choice.amend) choice.amend(&rows);
  return view_of_records(data, std::move(rows), data.records);
}

}  // namespace triglub
