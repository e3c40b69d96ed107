// Works out the byte range of each field from the widths of those before it.
#include "engine/source/flat/row_layout.h"

#include "engine/table/cell.h"

namespace triglub {

RowLayout::RowLayout(const TableSchema& schema) {
  std::size_t begin = 0;
  for (const FieldSchema& field : schema.fields) {
    const std::size_t end = begin + static_cast<std::size_t>(field.width);
    places_.push_back({begin, end, field.storage() == Storage::text || is_load_date(field)});
    begin = end + 1;
  }
}

}  // namespace triglub
