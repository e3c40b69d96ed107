// The faults of a table that is being loaded, told through the log.
#ifndef TRIGLUB_ENGINE_SOURCE_TABLE_FAULTS_H
#define TRIGLUB_ENGINE_SOURCE_TABLE_FAULTS_H

#include <cstdint>
#include <string>

namespace triglub {

// The first 20 are reported one by one, the others counted: a file is mended from the first fault on.
class TableFaults {
 public:
  // `table` is the table's name, `place` where it is.
  TableFaults(std::string table, std::string place) : table_(std::move(table)), place_(std::move(place)) {}

  bool any() const { return count_ > 0; }
  // `row` is the row's place; `field` the bare name of the field, empty for a fault of the whole row.
  void tell(const std::string& row, const std::string& field, const std::string& fault);
  // Tells how many there were, if more than were told, and that the table is not loaded.
  void conclude() const;

 private:
  std::string table_;
  std::string place_;
  std::uint64_t count_ = 0;
};

}  // namespace triglub

#endif
