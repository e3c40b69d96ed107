// Words the note when the first one is met, so that no cell need be kept.
#include "engine/source/unread_dates.h"

#include "engine/table/cell.h"
#include "platform/elog.h"

namespace triglub {

void UnreadDates::look_at(const FieldSchema& field, std::uint64_t row, std::string_view cell) {
  if (!is_unread_load_date(field, cell) || ++count_ > 1) return;
  first_ = before_number_ + std::to_string(row) + ": field " + table_ + "." + field.name + ": " + misread(field, cell);
}

void UnreadDates::conclude() const {
  if (count_ == 0) return;
  elog_notify(0, "%s: taken as null (rows with such a date: %llu)", first_.c_str(),
              static_cast<unsigned long long>(count_));
}

}  // namespace triglub
