// Lines of a document, put together piece by piece: for the blocks that are written once a stage and coefficient, where
// a string stream would cost more than the text.
#ifndef TRIGLUB_SRC_RESP_HELPER_TEXT_BLOCK_H
#define TRIGLUB_SRC_RESP_HELPER_TEXT_BLOCK_H

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "base/six_digits.h"

namespace triglub {

inline void append_piece(std::string& text, double number) { append_six_digits(number, &text); }

template <std::integral Integer>
void append_piece(std::string& text, Integer number) {
  text += std::to_string(number);
}

inline void append_piece(std::string& text, std::string_view piece) { text += piece; }

// Lines that share an indentation.
class TextBlock {
 public:
  explicit TextBlock(std::string_view indentation) : indentation_(indentation) {}

  // Adds a line of the pieces, one behind the other: texts, integers and doubles.
  template <typename... Pieces>
  void line(const Pieces&... pieces) {
    text_ += indentation_;
    (append_piece(text_, pieces), ...);
    text_ += '\n';
  }

  // REQUIRES: the block is not used again.
  std::string take() { return std::move(text_); }

 private:
  std::string_view indentation_;
  std::string text_;
};

}  // namespace triglub

#endif
