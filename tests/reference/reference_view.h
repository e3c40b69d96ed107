// The master view by nested loops over rows of texts.
#ifndef TRIGLUB_TESTS_REFERENCE_REFERENCE_VIEW_H
#define TRIGLUB_TESTS_REFERENCE_REFERENCE_VIEW_H

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "reference/case.h"

namespace triglub_reference {

// The tables of the view in the order in which they are joined.
inline constexpr std::array<const char*, 9> kViewTables = {"sitechan", "snetsta",    "schanloc",    "network", "site",
                                                           "sensor",   "instrument", "calibration", "stage"};

// The row of each table; null where there is none.
using Record = std::array<const Row*, kViewTables.size()>;
using View = std::vector<Record>;

// A field of the view: its table's place and its own name.
struct ViewField {
  std::size_t table;
  std::string name;
  bool is_text;
  bool is_integer;
  std::string null_text;
};

// The field that a bare or qualified name stands for in a view of the first `tables` tables.
std::optional<ViewField> find_field(const std::string& name, std::size_t tables = kViewTables.size());

// The value as text: the null text for a null, else the digits of the file.
std::string text_of(const Record& record, const ViewField& field);

// True when the whole text is matched. Knows letters that stand for themselves, '.', '+' behind a letter and '|'.
bool matches(const std::string& text, const std::string& pattern);

// Nothing when a condition of the subset names a field that its view does not have.
std::optional<View> master_view(const Tables& tables, const std::map<std::string, std::string>& subset);

}  // namespace triglub_reference

#endif
