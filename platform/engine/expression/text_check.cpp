// Refuses texts before the first token is read.
#include "engine/expression/text_check.h"

#include <string>

#include "base/utf8.h"
#include "engine/expression/fault.h"
#include "platform/text.h"

namespace triglub::expression {

namespace {

// The place of the first byte that is no part of a UTF-8 character.
std::size_t first_malformed(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = character_length(text.substr(at));
    if (length == 0) break;
    at += length;
  }
  return at;
}

}  // namespace

void check_text(std::string_view text) {
  if (text.size() > kMaxLength) {
    throw CompileError{kMaxLength, "expected at most " + std::to_string(kMaxLength) + " bytes"};
  }
  if (!is_utf8(text)) throw CompileError{first_malformed(text), "expected UTF-8"};
}

}  // namespace triglub::expression
