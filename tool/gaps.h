// What a look at the tables brought to light before a conversion: things that will be missing from the document, and
// faults that forbid it.
#ifndef TRIGLUB_TOOL_GAPS_H
#define TRIGLUB_TOOL_GAPS_H

#include <cstdint>
#include <string>

#include "findings.h"

namespace triglub::tool {

class Gaps {
 public:
  // Something that will be missing, by reason ("channel epochs left out: no row of site") and name ("AAK BHZ 1999007").
  void left_out(const std::string& reason, const std::string& name);
  // A fault that forbids the conversion; complained about at once, if it is one of the first.
  void fault(const std::string& text);

  bool any_left_out() const { return !findings_.empty(); }
  bool any_fault() const { return faults_ > 0; }
  // How many faults there are beyond those that were complained about.
  std::uint64_t untold_faults() const { return faults_ > kFaultsTold ? faults_ - kFaultsTold : 0; }
  // Tells what was left out: for each reason the number, and the first few by name.
  void report() const { findings_.report(); }

 private:
  static constexpr std::uint64_t kFaultsTold = 20;

  Findings findings_;
  std::uint64_t faults_ = 0;
};

}  // namespace triglub::tool

#endif
