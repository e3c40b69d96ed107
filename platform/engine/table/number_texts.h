// Where the texts of a table's numbers come from: a source that holds numbers as texts gives those, for any other they
// are made.
#ifndef TRIGLUB_ENGINE_TABLE_NUMBER_TEXTS_H
#define TRIGLUB_ENGINE_TABLE_NUMBER_TEXTS_H

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/schema/schema.h"
#include "engine/table/column.h"

namespace triglub {

class Table;

// All members are safe for concurrent use.
class NumberTexts {
 public:
  NumberTexts() = default;
  virtual ~NumberTexts() = default;
  NumberTexts(const NumberTexts&) = delete;
  NumberTexts& operator=(const NumberTexts&) = delete;

  // The text of a number that is not null, without blanks around it. Valid as long as the table.
  // REQUIRES: the table is the one that has these texts.
  virtual std::string_view text(const Table& table, std::size_t field, std::uint32_t row) const = 0;
  // The texts of a whole column of numbers; nulls have kNullCode.
  virtual CodedTexts texts(const Table& table, std::size_t field) const = 0;
  // The same for a table of chosen rows, ascending.
  virtual std::unique_ptr<const NumberTexts> of_rows(const std::vector<std::uint32_t>& rows) const = 0;
};

// Numbers as the schema's formats write them, trimmed; where a format does not fit its field, as below.
std::unique_ptr<const NumberTexts> texts_by_format(const TableSchema& schema);

// The shortest texts that read back to the same numbers.
std::unique_ptr<const NumberTexts> shortest_texts();

}  // namespace triglub

#endif
