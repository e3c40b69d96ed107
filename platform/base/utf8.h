// The characters of UTF-8 texts.
#ifndef TRIGLUB_BASE_UTF8_H
#define TRIGLUB_BASE_UTF8_H

#include <cstddef>
#include <string_view>

namespace triglub {

// True for a continuation byte, which begins no character.
constexpr bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The number of bytes of the well-formed character at the start of `text`; 0 when there is none.
std::size_t character_length(std::string_view text);

// True for a well-formed character that terminals may take as a control function: C0, delete and C1.
bool is_control(std::string_view character);

}  // namespace triglub

#endif
