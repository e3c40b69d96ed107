// What a line, a key and a value may look like; the faults are told in the words of a complaint.
#include "parfile/grammar.h"

#include <initializer_list>

#include "base/characters.h"
#include "platform/text.h"

namespace triglub::parfile {

namespace {

// True for "&Arr" and "&Tbl" in any case, alone or with a blank or a brace behind.
bool resembles_opener(std::string_view value) {
  constexpr std::size_t kLength = 4;
  if (value.size() < kLength || value[0] != '&') return false;
  if (value.size() > kLength && (!is_white_space(value[kLength]) && value[kLength] != '{')) {
    return false;
  }
  for (const std::string_view opener : {kTableOpener, kListOpener}) {
    std::size_t same = 0;
    while (same < kLength && to_lower(value[same]) == to_lower(opener[same])) ++same;
    if (same == kLength) return true;
  }
  return false;
}

}  // namespace

bool is_skipped(std::string_view line) { return line.empty() || line.front() == '#'; }

const char* text_fault(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return "a zero byte";
  if (text.find('\r') != std::string_view::npos) return "a carriage return inside the line";
  if (text.find('\n') != std::string_view::npos) return "a line end inside the line";
  if (!is_utf8(text)) return "a text that is not UTF-8";
  return nullptr;
}

const char* name_fault(std::string_view name) {
  if (name.empty()) return "a key without a name";
  if (name.front() == '#') return "a key that begins like a comment";
  if (name.starts_with(kByteOrderMark)) return "a byte order mark inside the text";
  if (name.starts_with(kTableOpener) || name.starts_with(kListOpener)) return "a block without a key";
  if (name.starts_with(kCloser)) return "'}' with something behind it";
  if (name.find_first_of("{}") != std::string_view::npos) return "a key that holds a brace";
  if (name.find_first_of(kWhiteSpace) != std::string_view::npos) return "a key that holds a blank";
  return text_fault(name);
}

const char* value_fault(std::string_view value) {
  if (value == kTableOpener || value == kListOpener || !resembles_opener(value)) return nullptr;
  return "a block is opened by '&Arr{' or '&Tbl{' with nothing behind it";
}

std::string_view KeyNames::next() {
  std::string_view name;
  if (!inside_) {
    name = rest_.substr(0, rest_.find('{'));
    rest_.remove_prefix(name.size());
    inside_ = true;
    return name;
  }
  const std::size_t end = rest_.find('}');
  if (!rest_.starts_with('{') || end == std::string_view::npos) return {};
  name = rest_.substr(1, end - 1);
  rest_.remove_prefix(end + 1);
  return name;
}

}  // namespace triglub::parfile
