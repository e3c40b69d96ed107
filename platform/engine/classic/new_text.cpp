// In memory of malloc, as callers of the classic interface release it with free.
#include "engine/classic/new_text.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace triglub {

char* new_text(const std::string& text) {
  auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace triglub
