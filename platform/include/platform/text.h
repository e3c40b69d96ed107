// Small operations on null-terminated texts.
#ifndef TRIGLUB_PLATFORM_TEXT_H
#define TRIGLUB_PLATFORM_TEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export.h"

// Removes white space (blank, \t \n \v \f \r) at both ends, in place, moving the rest to the front; returns `text`.
// A null text gives null. A text without white space at its ends is only read.
TRIGLUB_API char* strtrim(char* text);

// Copies at most n bytes of `from` (up to its end), trims white space at both ends and ends the copy with a zero
// byte. `to` needs room for n + 1 bytes and may be the same as `from`; what is bare already is then only read.
// Returns `to`.
TRIGLUB_API char* copystrip(char* to, const char* from, std::size_t n);

namespace triglub {

// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
TRIGLUB_API bool is_utf8(std::string_view bytes);

// The bytes, read as Latin-1 (ISO 8859-1), as UTF-8.
TRIGLUB_API std::string latin1_to_utf8(std::string_view bytes);

// The longest prefix of at most n bytes that does not cut a UTF-8 character.
TRIGLUB_API std::string_view utf8_prefix(std::string_view text, std::size_t n);

// The view without white space at both ends.
TRIGLUB_API std::string_view trimmed(std::string_view text);

// For "did you mean" in messages. The candidate with the fewest slips from `word`, of those with the fewest wrong
// letters, of those the first; nothing when none is near. A slip is a letter too many, a letter missing, a wrong
// letter, or two neighbours in the wrong order; large and small ASCII letters are the same. One slip is allowed, one
// more for each three bytes from the sixth on, and fewer than the word has bytes.
TRIGLUB_API std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace triglub

#endif
