// When the rows of a key hold, and which of them stands at an instant.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_HELD_ROWS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_HELD_ROWS_H

#include <functional>
#include <vector>

#include "reference/edition2/instants.h"
#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

// A row and when it holds, which is not never.
struct Held {
  const Row* row;
  Span span;
};
using HeldRows = std::vector<Held>;

// At which instant of a day, counted from 1970, one row gives way to the next.
using Border = std::function<Instant(long day)>;

// The first begin of the sensors on the day, or the day's own.
Border border_of_sensors(const RowList& sensors);
// The earliest of the borders of the station's channels.
Border border_of_station(const Tables& tables, const std::string& sta);

// A row with ondate and offdate among the rows of its key; the end can lie before the begin. std::runtime_error where
// one of the two is no date.
Span day_span(const Row* row, const RowList& rows, Table table, const Border& border);

HeldRows held_by_days(const RowList& rows, Table table, const Border& border);
HeldRows held_by_instants(const RowList& rows, Table table);

// Null when none holds.
const Held* standing(const HeldRows& rows, Table table, Instant t);

}  // namespace triglub_reference::edition2

#endif
