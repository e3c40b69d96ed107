// A second implementation of the whole conversion, as plain as it can be: whole sets of record numbers, scans from end
// to end, no engine. It is slow and right by inspection; the library is held against it.
//
// Values are evaluated in these forms only: a bare field, a text in quotes, FIELD OPERATOR NUMBER (* / + - < >) and
// FIELD =~ /letters/.
#ifndef TRIGLUB_TESTS_REFERENCE_REFERENCE_WRITER_H
#define TRIGLUB_TESTS_REFERENCE_REFERENCE_WRITER_H

#include <map>
#include <optional>
#include <string>

#include "reference/case.h"

namespace triglub_reference {

// What the library keeps for the life of a process, and so what one conversion can leave to the next.
struct ProcessState {
  std::optional<std::map<std::string, ResponseFile>> responses;  // of the first conversion at the response level
  std::string latest_unit = "unknown";
  bool samplerate_is_zero = false;
  unsigned int depth = 0;  // stays raised after an exception
};

// The end of an outcome that only says that the process has to end; the words are the library's.
inline constexpr const char* kAnyFatal = "fatal: *";

Outcome reference_conversion(const Request& request, ProcessState& state);

}  // namespace triglub_reference

#endif
