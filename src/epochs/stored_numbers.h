// A column of real numbers with what is known of how exact they are.
#ifndef TRIGLUB_SRC_EPOCHS_STORED_NUMBERS_H
#define TRIGLUB_SRC_EPOCHS_STORED_NUMBERS_H

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/columns.h"

namespace triglub {

class StoredNumbers {
 public:
  // A field that the table does not have is null in all rows: a schema of one's own may lack what others have.
  StoredNumbers(const TableColumns& table, std::string_view field) : is_there_(table.has(field)) {
    if (!is_there_) return;
    values_ = table.reals(field);
    null_ = table.null_real(field);
    half_places_ = table.half_places(field);
  }

  // Nothing for a null, and for NO_BASE_ROW.
  std::optional<double> at(std::uint32_t row) const {
    return row == NO_BASE_ROW || !is_there_ || values_[row] == null_ ? std::nullopt : std::optional(values_[row]);
  }
  // The number that a null is held as, too. REQUIRES: a row, of a table with the field.
  double stored(std::uint32_t row) const { return values_[row]; }
  // How far what was meant may be from the number of a row, of a table with the field; 0 for a null.
  double doubt(std::uint32_t row) const { return half_places_.half_place(row); }

 private:
  bool is_there_;
  std::span<const double> values_;
  double null_ = 0;
  HalfPlaces half_places_;
};

// Of two doubts; 0 is none.
inline double least_doubt(double a, double b) { return a == 0 || b == 0 ? std::max(a, b) : std::min(a, b); }

}  // namespace triglub

#endif
