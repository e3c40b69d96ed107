// Rows of texts and their fields: the tables of the files, and the four of computed fields.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_ROWS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_ROWS_H

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reference/case.h"

namespace triglub_reference::edition2 {

// In the order in which a bare name is looked for.
enum Table : std::size_t {
  SITECHAN,
  SNETSTA,
  SCHANLOC,
  NETWORK,
  SITE,
  SENSOR,
  INSTRUMENT,
  CALIBRATION,
  STAGE,
  EPOCH,
  STATION_EPOCH,
  NETWORK_EPOCH,
  CHAIN,
  TABLES
};

inline constexpr std::array<const char*, TABLES> kTableNames = {
    "sitechan",    "snetsta", "schanloc", "network",       "site",          "sensor", "instrument",
    "calibration", "stage",   "epoch",    "station_epoch", "network_epoch", "chain"};

// The row of each table; null where there is none.
using Record = std::array<const Row*, TABLES>;
using RecordList = std::vector<const Record*>;
using RowList = std::vector<const Row*>;

enum class Kind { integer, real, text };

struct Field {
  Table table;
  std::string name;
  Kind kind;
  std::string null_text;
};

// What a bare or qualified name stands for.
std::optional<Field> find_field(const std::string& name);

std::string trimmed(const std::string& text);

// The number that a whole text is.
std::optional<double> number_in(const std::string& text);

// The value as its file has it, less the blanks around it; nothing for a null or an absent row.
std::optional<std::string> text_in(const Row* row, const Field& field);
std::optional<std::string> text_in(const Row* row, Table table, const char* name);
std::optional<double> number_in(const Row* row, Table table, const char* name);

const std::vector<Row>& rows_of(const Tables& tables, Table table);

// The rows whose key fields have these values.
using Key = std::vector<std::pair<const char*, std::string>>;
RowList rows_with(const Tables& tables, Table table, const Key& key);

// True when the first was loaded later, or stands behind the other in the table.
bool is_newer(const Row* row, const Row* other, Table table);

// Of all the rows the one that stands for ever; null when there are none.
const Row* newest(const RowList& rows, Table table);

// True when no row of the key is newer.
bool is_newest_of(const Row& row, const Tables& tables, Table table, const std::vector<const char*>& key);

}  // namespace triglub_reference::edition2

#endif
