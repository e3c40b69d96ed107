// A value during an evaluation. Its kind was settled when the expression was bound and is not kept with it.
#ifndef TRIGLUB_ENGINE_EXPRESSION_VALUE_H
#define TRIGLUB_ENGINE_EXPRESSION_VALUE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace triglub::expression {

struct Value {
  union {
    std::int64_t integer;
    double real;
    const char* data;
  };
  std::size_t size;  // of a text

  std::string_view text() const { return {data, size}; }

  static Value of(std::int64_t integer) { return {.integer = integer, .size = 0}; }
  static Value of(double real) { return {.real = real, .size = 0}; }
  static Value of(std::string_view text) { return {.data = text.data(), .size = text.size()}; }
};

}  // namespace triglub::expression

#endif
