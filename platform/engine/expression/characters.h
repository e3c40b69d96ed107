// Texts as characters: a character is a byte that does not continue another, so a UTF-8 sequence counts once.
#ifndef TRIGLUB_ENGINE_EXPRESSION_CHARACTERS_H
#define TRIGLUB_ENGINE_EXPRESSION_CHARACTERS_H

#include <cstddef>
#include <string_view>

namespace triglub::expression {

std::size_t count_characters(std::string_view text);

// The bytes of the first n characters, or all there are.
std::size_t bytes_of_characters(std::string_view text, std::size_t n);

}  // namespace triglub::expression

#endif
