// What a look at the tables brought to light before a conversion: things that will be missing from the document, and
// faults that forbid it.
#ifndef TRIGLUB_TOOL_FINDINGS_H
#define TRIGLUB_TOOL_FINDINGS_H

#include <map>
#include <string>
#include <vector>

namespace triglub::tool {

class Findings {
 public:
  // Something that will be missing, by reason ("channel epochs left out: no row of site") and name ("AAK BHZ 1999007").
  void left_out(const std::string& reason, const std::string& name);
  // A fault that forbids the conversion; complained about at once.
  void fault(const std::string& text);

  bool any_left_out() const { return !reasons_.empty(); }
  bool any_fault() const { return any_fault_; }
  // Tells what was left out: for each reason the number, and the first few by name.
  void report() const;

 private:
  struct Names {
    long count = 0;
    std::vector<std::string> first;
  };
  std::map<std::string, Names> reasons_;
  bool any_fault_ = false;
};

}  // namespace triglub::tool

#endif
