// Texts that are handed over to callers.
#ifndef TRIGLUB_ENGINE_CLASSIC_NEW_TEXT_H
#define TRIGLUB_ENGINE_CLASSIC_NEW_TEXT_H

#include <string>

namespace triglub {

// A copy that the caller releases with free(). Throws std::bad_alloc.
char* new_text(const std::string& text);

}  // namespace triglub

#endif
