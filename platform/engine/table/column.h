// The values of one field of a table, by row.
#ifndef TRIGLUB_ENGINE_TABLE_COLUMN_H
#define TRIGLUB_ENGINE_TABLE_COLUMN_H

#include <cstdint>
#include <vector>

#include "engine/table/dictionary.h"
#include "engine/table/row_number.h"

namespace triglub {

// The code of the null text in the dictionary of every column.
inline constexpr std::uint32_t kNullCode = 0;
// No code: the dictionary does not have the text.
inline constexpr std::uint32_t kNoCode = 0xFFFFFFFFu;

// One of the vectors is filled, as the field's storage says. A null is held as the field's null value.
struct Column {
  Dictionary dictionary;
  std::vector<std::uint32_t> codes;
  std::vector<std::int64_t> integers;
  std::vector<double> reals;
};

// Texts by row, each distinct one kept once.
struct CodedTexts {
  Dictionary dictionary;
  std::vector<std::uint32_t> codes;
};

// The texts of a column as dbget gives them, for any storage. Valid as long as the table.
struct TextCodes {
  const Dictionary* dictionary;
  const std::vector<std::uint32_t>* codes;  // by row

  // An absent row reads as null.
  std::uint32_t operator[](std::uint32_t row) const { return row == kNoRow ? kNullCode : (*codes)[row]; }
};

}  // namespace triglub

#endif
