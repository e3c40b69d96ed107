// The files that the responses of a case are.
#ifndef TRIGLUB_TESTS_REFERENCE_RESPONSE_TEXT_H
#define TRIGLUB_TESTS_REFERENCE_RESPONSE_TEXT_H

#include <string>
#include <vector>

#include "reference/case.h"

namespace triglub_reference {

inline std::string numbers_text(const Numbers& numbers) {
  std::string text;
  for (const std::string& number : numbers) text += number + " ";
  return text + "\n";
}

inline std::string list_text(const std::vector<Numbers>& list) {
  std::string text = std::to_string(list.size()) + "\n";
  for (const Numbers& numbers : list) text += numbers_text(numbers);
  return text;
}

inline std::string response_text(const ResponseFile& file) {
  std::string text;
  for (const Filter& filter : file.filters) {
    text += "theoretical 1 instrument " + filter.type + " somebody\n";
    if (!filter.type.starts_with("fap")) text += numbers_text(filter.head);
    text += list_text(filter.first);
    if (!filter.type.starts_with("fap")) text += list_text(filter.second);
  }
  return file.readable ? text : text + "theoretical 1 instrument paz somebody\n1.0\n3\n0 0\n";
}

}  // namespace triglub_reference

#endif
