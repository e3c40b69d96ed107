// Views of chosen records of a view.
#ifndef TRIGLUB_ENGINE_OPERATIONS_SELECT_H
#define TRIGLUB_ENGINE_OPERATIONS_SELECT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/view/view.h"

namespace triglub {

// The tables of a view at chosen records. When these are all its records in their order (a view sorted already,
// a join with one match for each record), the result shares its row numbers.
// REQUIRES: the records are the view's.
std::vector<ViewTable> tables_of_records(const View& view, const std::vector<std::uint32_t>& records);

// The chosen records in the order given; `operation` is the line that tells how they were chosen.
// REQUIRES: the records are the view's.
std::unique_ptr<const View> select_records(const View& view, const std::vector<std::uint32_t>& records,
                                           const std::string& operation);

}  // namespace triglub

#endif
