// Long texts that come again and again from the same place in memory, as the filters of responses do.
#ifndef TRIGLUB_TOOL_REPEATED_TEXTS_H
#define TRIGLUB_TOOL_REPEATED_TEXTS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace triglub::tool {

// Holds a copy of each. Where they come from may change afterwards.
class RepeatedTexts {
 public:
  static constexpr std::size_t kLeast = 2048;                  // bytes for which a look is worth it
  static constexpr std::size_t kRoom = std::size_t{16} << 20;  // bytes held at most

  // The copy of the text, which is made when it comes from its place for the first time; valid as long as this. Null
  // when it is shorter than kLeast, when there is no room, or when another text came from the same place before.
  const std::string* copy_of(std::string_view text);

 private:
  std::unordered_map<const char*, std::string> copies_;  // by place
  std::size_t bytes_ = 0;
};

}  // namespace triglub::tool

#endif
