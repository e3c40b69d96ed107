// Row numbers are looked up table by table, side by side when there are many.
#include "engine/operations/select.h"

#include "base/threads.h"

namespace triglub {

namespace {

bool are_all(const std::vector<std::uint32_t>& records, const View& view) {
  if (records.size() != view.record_count()) return false;
  for (std::uint32_t i = 0; i < view.record_count(); ++i) {
    if (records[i] != i) return false;
  }
  return true;
}

RowNumbers rows_of_records(const View& view, std::size_t table, const std::vector<std::uint32_t>& records) {
  std::vector<std::uint32_t> rows;
  rows.reserve(records.size());
  for (const std::uint32_t record : records) rows.push_back(view.row(table, record));
  return std::make_shared<const std::vector<std::uint32_t>>(std::move(rows));
}

}  // namespace

std::vector<ViewTable> tables_of_records(const View& view, const std::vector<std::uint32_t>& records) {
  if (are_all(records, view)) return view.tables();
  std::vector<ViewTable> tables = view.tables();
  const auto choose_rows = [&](std::size_t t) { tables[t].rows = rows_of_records(view, t, records); };
  if (are_worth_threads(records.size())) {
    run_side_by_side(tables.size(), choose_rows);
  } else {
    for (std::size_t t = 0; t < tables.size(); ++t) choose_rows(t);
  }
  return tables;
}

std::unique_ptr<const View> select_records(const View& view, const std::vector<std::uint32_t>& records,
                                           const std::string& operation) {
  return std::make_unique<View>(tables_of_records(view, records), static_cast<std::uint32_t>(records.size()),
                                view.operations() + "\n" + operation);
}

}  // namespace triglub
