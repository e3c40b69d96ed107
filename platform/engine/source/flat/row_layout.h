// Where the fields of a table stand in a line of its flat file.
#ifndef TRIGLUB_ENGINE_SOURCE_FLAT_ROW_LAYOUT_H
#define TRIGLUB_ENGINE_SOURCE_FLAT_ROW_LAYOUT_H

#include <cstddef>
#include <vector>

#include "engine/schema/schema.h"

namespace triglub {

// Fields in the schema's order and widths, with one separator column between two.
class RowLayout {
 public:
  struct Place {
    std::size_t begin;  // of the first byte in the line
    std::size_t end;    // behind the last
    // Whether a line may end within the field or before it. Programs leave off trailing blanks, and with them texts and
    // the load date. They do not leave off numbers, whose null text is no blank: a line that ends there was cut, and
    // what is left of the number may look whole.
    bool may_be_cut;
  };

  explicit RowLayout(const TableSchema& schema);

  const Place& operator[](std::size_t field) const { return places_[field]; }
  std::size_t field_count() const { return places_.size(); }
  // Bytes of a full line without its end.
  std::size_t width() const { return places_.back().end; }

 private:
  std::vector<Place> places_;
};

}  // namespace triglub

#endif
