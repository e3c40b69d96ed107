// Numbers of rows, which count from 0.
#ifndef TRIGLUB_ENGINE_TABLE_ROW_NUMBER_H
#define TRIGLUB_ENGINE_TABLE_ROW_NUMBER_H

#include <cstdint>

namespace triglub {

// Rows that a table can have, and records that a view can.
inline constexpr std::uint32_t kMaxRows = 1u << 31;
// The number of a row that is absent: an outer join found none. It comes after that of every row.
inline constexpr std::uint32_t kNoRow = 0xFFFFFFFFu;

}  // namespace triglub

#endif
