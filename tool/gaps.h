// What a look at the tables brought to light before a conversion: things that will be missing from the document, and
// faults that forbid it.
#ifndef TRIGLUB_TOOL_GAPS_H
#define TRIGLUB_TOOL_GAPS_H

#include <string>

#include "findings.h"

namespace triglub::tool {

class Gaps {
 public:
  // Something that will be missing, by reason ("channel epochs left out: no row of site") and name ("AAK BHZ 1999007").
  void left_out(const std::string& reason, const std::string& name);
  // A fault that forbids the conversion; complained about at once.
  void fault(const std::string& text);

  bool any_left_out() const { return !findings_.empty(); }
  bool any_fault() const { return any_fault_; }
  // Tells what was left out: for each reason the number, and the first few by name.
  void report() const { findings_.report(); }

 private:
  Findings findings_;
  bool any_fault_ = false;
};

}  // namespace triglub::tool

#endif
