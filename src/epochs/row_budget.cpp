// What was refused says where: the row names the station or channel whose rows are too many.
#include "epochs/row_budget.h"

#include "fatal_failure.h"

namespace triglub {

void RowBudget::refuse(const std::string& place) {
  throw FatalFailure(place + ": with the rows that belong to it there are " + beyond(Limit::join_rows));
}

}  // namespace triglub
