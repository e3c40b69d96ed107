// A text is known again by its place in memory, and compared, as another may have come to stand there.
#include "tool/repeated_texts.h"

namespace triglub::tool {

const std::string* RepeatedTexts::copy_of(std::string_view text) {
  if (text.size() < kLeast) return nullptr;
  const auto found = copies_.find(text.data());
  if (found != copies_.end()) return found->second == text ? &found->second : nullptr;
  if (text.size() > kRoom - bytes_) return nullptr;
  bytes_ += text.size();
  return &copies_.emplace(text.data(), text).first->second;
}

}  // namespace triglub::tool
