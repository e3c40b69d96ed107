// Changes to texts that are well-formed, so that what is nearly right is met as well.
#ifndef TRIGLUB_FUZZ_SUPPORT_EDITS_H
#define TRIGLUB_FUZZ_SUPPORT_EDITS_H

#include <string>

#include "support/bytes.h"

namespace triglub_fuzz {

// Writes over, puts in or takes out some bytes at any place, as the next bytes say.
inline void edit(Bytes* bytes, std::string* text) {
  constexpr std::size_t kLongest = 24;
  const std::size_t kind = bytes->below(4);
  const std::size_t high = bytes->byte();
  const std::size_t at = (high << 8 | bytes->byte()) % (text->size() + 1);
  const std::size_t length = bytes->below(kLongest);
  if (kind == 0) {
    text->erase(at, length);
  } else if (kind == 1) {
    text->insert(at, bytes->take(length));
  } else {
    const std::string_view taken = bytes->take(length);
    text->replace(at, taken.size(), taken);
  }
}

}  // namespace triglub_fuzz

#endif
