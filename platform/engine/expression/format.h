// The format of format(fmt, x): text around one conversion in the manner of printf.
//
//     "%.4f"  "gain %g dB"  "%-5s|"  "100 %% of %d"
//
// Conversions d i f e g x s; flags, width and precision as in printf, the numbers at most 100. Nothing of a format
// reaches printf unread.
#ifndef TRIGLUB_ENGINE_EXPRESSION_FORMAT_H
#define TRIGLUB_ENGINE_EXPRESSION_FORMAT_H

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/expression/expression.h"

namespace triglub::expression {

struct FormatFault {
  std::string expected;
  std::size_t offset = 0;  // byte offset in the format
};

class Format {
 public:
  // Nothing, and the fault, when the text is no format.
  static std::optional<Format> read(std::string_view text, FormatFault* fault);

  // What the conversion takes.
  Kind kind() const { return kind_; }

  // The whole text in place of what *out held; `text` must not be part of it. The argument must be of the kind that the
  // conversion takes; a real must be finite.
  void write(std::int64_t number, std::string* out) const;
  void write(double number, std::string* out) const;
  void write(std::string_view text, std::string* out) const;

 private:
  class Reader;

  std::string before_;  // the conversion
  std::string after_;
  Kind kind_ = Kind::text;
  std::string conversion_;  // of a number, as printf takes it
  // Of a real without flags and width, which needs no printf; nothing for any other.
  std::optional<std::chars_format> plain_real_;
  // Of a text; counted in characters.
  bool is_left_ = false;
  std::size_t width_ = 0;
  std::optional<std::size_t> precision_;
};

}  // namespace triglub::expression

#endif
