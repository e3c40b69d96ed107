// What the parts of a parameter file may look like.
//
// The reader and the builder ask here, and only here, so that whatever is built can be written and read again.
#ifndef TRIGLUB_PARFILE_GRAMMAR_H
#define TRIGLUB_PARFILE_GRAMMAR_H

#include <cstddef>
#include <string_view>

namespace triglub::parfile {

inline constexpr std::size_t kMaxDepth = 100;  // blocks inside one another

inline constexpr std::string_view kTableOpener = "&Arr{";
inline constexpr std::string_view kListOpener = "&Tbl{";
inline constexpr std::string_view kCloser = "}";
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// True for a trimmed line that says nothing: it is empty or a comment.
bool is_skipped(std::string_view line);

// The fault of a text that no line can hold, or null. REQUIRES: the text is trimmed.
const char* text_fault(std::string_view text);

// The fault of a name that no key can have, or null.
const char* name_fault(std::string_view name);

// The fault of a text that is neither a value nor an opener, or null. A text that only just fails to be an opener is
// refused: taken as a value it would put the lines of its block into the table around it.
const char* value_fault(std::string_view value);

// The names of a key such as "a{b}{c}", one after another.
class KeyNames {
 public:
  explicit KeyNames(std::string_view key) : rest_(key) {}

  bool at_end() const { return rest_.empty(); }
  // The next name; empty when the key is not of that form.
  std::string_view next();

 private:
  std::string_view rest_;
  bool inside_ = false;
};

}  // namespace triglub::parfile

#endif
