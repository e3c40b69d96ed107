// The load dates of a table that could not be read and count as null, noted in the log once for all.
#ifndef TRIGLUB_ENGINE_SOURCE_UNREAD_DATES_H
#define TRIGLUB_ENGINE_SOURCE_UNREAD_DATES_H

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/schema/schema.h"

namespace triglub {

class UnreadDates {
 public:
  // `table` is the table's name, `before_number` the place of a row before its number, as in RowPlaces.
  UnreadDates(std::string table, std::string before_number)
      : table_(std::move(table)), before_number_(std::move(before_number)) {}

  // Looks at the cell of a row (from 1), in the order of the rows.
  void look_at(const FieldSchema& field, std::uint64_t row, std::string_view cell);
  // Notes the first one, and how many there are. Nothing where there are none.
  void conclude() const;

 private:
  std::string table_;
  std::string before_number_;
  std::uint64_t count_ = 0;
  std::string first_;
};

}  // namespace triglub

#endif
