// Only what is selected counts.
#include "tool/view_tables.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "dbhelper.h"
#include "platform/sources.h"

namespace triglub::tool {

namespace {

constexpr std::array kTables = {"sitechan", "snetsta",    "schanloc",    "network", "site",
                                "sensor",   "instrument", "calibration", "stage"};

void add_fields(Dbptr base, const char* table, std::vector<ViewField>* fields) {
  const long count = db_nfields(base);
  for (base.field = 0; base.field < count; ++base.field) {
    std::string name;
    dbquery(base, dbFIELD_NAME, name);
    fields->push_back({table, name, db_getfieldtype(base), dblookup(base, nullptr, table, nullptr, nullptr)});
  }
}

}  // namespace

std::vector<ViewField> fields_of_view(Dbptr everything) {
  std::vector<ViewField> fields;
  for (const char* table : kTables) {
    const Dbptr base = dblookup(everything, nullptr, table, nullptr, nullptr);
    if (base.table != dbINVALID) add_fields(base, table, &fields);
  }
  return fields;
}

const ViewField* field_named(const std::vector<ViewField>& fields, const std::string& name) {
  const auto found = std::ranges::find_if(
      fields, [&](const ViewField& field) { return field.name == name || field.full_name() == name; });
  return found == fields.end() ? nullptr : &*found;
}

std::vector<std::uint32_t> selected_rows(Dbptr everything, const ViewField& field,
                                         const std::vector<std::uint32_t>& rows) {
  std::vector<std::uint32_t> selected;
  if (rows.empty()) return selected;
  std::unordered_set<std::uint32_t> left(rows.begin(), rows.end());
  for (const std::uint32_t row : base_rows(everything, field.table.c_str())) {
    if (left.erase(row) > 0) selected.push_back(row);
  }
  return selected;
}

std::string fault_of_value(Dbptr row, const ViewField& field, const std::string& what) {
  return row_place(row) + ": field " + field.full_name() + ": " + what;
}

void refuse_values(Dbptr everything, const ViewField& field, const std::vector<std::uint32_t>& rows,
                   const std::function<std::string(const std::string& value)>& what, Gaps* gaps) {
  Dbptr row = field.base;
  for (const std::uint32_t number : selected_rows(everything, field, rows)) {
    row.record = number;
    gaps->fault(fault_of_value(row, field, what(db_fieldlookup(row, field.name))));
  }
}

}  // namespace triglub::tool
