// The records that a document of the second edition is made of.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_RECORDS_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_RECORDS_H

#include <deque>
#include <memory>
#include <vector>

#include "reference/edition2/case.h"
#include "reference/edition2/rows.h"

namespace triglub_reference::edition2 {

struct View {
  std::shared_ptr<const Tables> tables;  // with the codes that they lack
  std::vector<Record> records;
  std::deque<Row> computed;  // the rows of epoch, station_epoch, network_epoch and chain
};

// The records of the request's tables that its conditions choose, in their order. std::runtime_error when the tables
// have a fault. Conditions on station_epoch and network_epoch are not known here.
View view_of(const Request& request);

// The shortest text that reads back to the same number; no negative zero.
std::string shortest(double number);

}  // namespace triglub_reference::edition2

#endif
