// A value during an evaluation. Its kind was settled when the expression was bound and is not kept with it. Where nulls
// are values it is never null.
#ifndef TRIGLUB_ENGINE_EXPRESSION_VALUE_H
#define TRIGLUB_ENGINE_EXPRESSION_VALUE_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace triglub::expression {

struct Value {
  union {
    std::int64_t integer;
    double real;
    const char* data;
  };
  std::size_t size;  // of a text; kNullSize of a null of any kind

  static constexpr std::size_t kNullSize = std::numeric_limits<std::size_t>::max();

  bool is_null() const { return size == kNullSize; }
  std::string_view text() const { return {data, size}; }

  static Value of(std::int64_t integer) { return {.integer = integer, .size = 0}; }
  static Value of(double real) { return {.real = real, .size = 0}; }
  static Value of(std::string_view text) { return {.data = text.data(), .size = text.size()}; }
  static Value null() { return {.integer = 0, .size = kNullSize}; }
};

}  // namespace triglub::expression

#endif
