// Views as sets of records: making them of chosen ones, the rows behind them, and letting them go.
#include "engine/classic/handle.h"
#include "engine/operations/select.h"

namespace triglub {

static_assert(kNoRow == NO_BASE_ROW);

Dbptr view_of_records(Dbptr view, const std::vector<std::uint32_t>& records, const char* name) {
  const View* from = view_of(view);
  if (from == nullptr) return kInvalidHandle;
  for (const std::uint32_t record : records) {
    if (record >= from->record_count()) return kInvalidHandle;
  }
  return handle_of_result(view, select_records(*from, records, "records chosen by the program"), name);
}

void release_view(Dbptr view) {
  Session* session = session_of(view);
  if (session != nullptr) session->release_view(view.table);
}

std::vector<std::uint32_t> base_rows(Dbptr view, const char* table) {
  const View* from = view_of(view);
  const int index = from == nullptr ? -1 : from->find_table(table);
  std::vector<std::uint32_t> rows;
  if (index < 0) return rows;
  rows.reserve(from->record_count());
  for (std::uint32_t record = 0; record < from->record_count(); ++record) {
    rows.push_back(from->row(static_cast<std::size_t>(index), record));
  }
  return rows;
}

}  // namespace triglub
