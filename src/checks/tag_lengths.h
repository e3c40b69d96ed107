// How long the tags of a document are, before a parser sees them.
#ifndef TRIGLUB_SRC_CHECKS_TAG_LENGTHS_H
#define TRIGLUB_SRC_CHECKS_TAG_LENGTHS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace triglub::checks {

// A parser holds each attribute of a tag against all before it: some hundred thousand of them keep it for hours.
inline constexpr std::size_t kMostTagBytes = std::size_t{1} << 16;

// Follows a document piece by piece, as far as it takes to tell tags from comments, character data and instructions.
class TagLengths {
 public:
  // False when a tag, begun in this piece or before, is longer than kMostTagBytes.
  bool are_allowed(std::string_view piece);

 private:
  enum class Where : std::uint8_t { text, opening, tag, value, section };

  void take(char c);
  void open(char c);

  Where where_ = Where::text;
  std::size_t length_ = 0;   // of the tag
  char quote_ = '"';         // of the value
  std::string_view end_;     // of the section
  std::size_t matched_ = 0;  // of that end
};

}  // namespace triglub::checks

#endif
