// Texts taken apart from their front.
#ifndef TRIGLUB_BASE_WORDS_H
#define TRIGLUB_BASE_WORDS_H

#include <string_view>

namespace triglub {

// Takes the next word off *rest, with the separators around it; empty when there is none. What is left is empty or
// begins with a word. Each byte of `separators` is one.
std::string_view take_word(std::string_view* rest, std::string_view separators);

// Takes the part up to the next separator off *rest, with that separator; all of it when there is none. The part may be
// empty. A separator at the end of the text ends the last part; it begins no further one.
std::string_view take_part(std::string_view* rest, char separator);

}  // namespace triglub

#endif
