// The base tables behind the master view of edition 1.
#ifndef TRIGLUB_TOOL_VIEW_TABLES_H
#define TRIGLUB_TOOL_VIEW_TABLES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "tool/gaps.h"

namespace triglub::tool {

// A field of one of the tables.
struct ViewField {
  std::string table;
  std::string name;
  int type = dbINVALID;  // dbINTEGER, dbREAL, dbTIME, dbYEARDAY or dbSTRING
  Dbptr base;            // the base table

  // "site.staname"
  std::string full_name() const { return table + "." + name; }
};

// All fields of all tables.
std::vector<ViewField> fields_of_view(Dbptr everything);

// The field that a tree means by "FIELD" or "TABLE.FIELD": without the table that of the first table that has it. Null
// where there is none.
const ViewField* field_named(const std::vector<ViewField>& fields, const std::string& name);

// Those of the rows of the field's table that are behind a record, in the order in which they would be written.
std::vector<std::uint32_t> selected_rows(Dbptr everything, const ViewField& field,
                                         const std::vector<std::uint32_t>& rows);

// What is wrong with a value: "PLACE: field TABLE.FIELD: WHAT".
std::string fault_of_value(Dbptr row, const ViewField& field, const std::string& what);

// The values of those of the rows of the field's table that are behind a record are faults: what(value) says why.
void refuse_values(Dbptr everything, const ViewField& field, const std::vector<std::uint32_t>& rows,
                   const std::function<std::string(const std::string& value)>& what, Gaps* gaps);

}  // namespace triglub::tool

#endif
