// The faults of a parameter file, gathered so that one look tells all of them.
#ifndef TRIGLUB_SRC_TREE_FAULT_LIST_H
#define TRIGLUB_SRC_TREE_FAULT_LIST_H

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace triglub {

// "stationxml.pf:12"; without the line where it is 0. A file without a path, one made in memory, is "parameter file".
std::string place_text(std::string_view path, long line);

// "; did you mean 'name'?", or nothing where no candidate is near.
std::string did_you_mean(std::string_view word, const std::vector<std::string>& candidates);

class FaultList {
 public:
  // `path` is that of the parameter file.
  explicit FaultList(std::string path) : path_(std::move(path)) {}

  // `what` may have several lines; those after the first are indented. A fault that was told before is not told again.
  void add(long line, std::string_view what);
  bool is_empty() const { return faults_.empty(); }
  // True when there are so many that a guess at what was meant, which takes a look at all names, is of no use.
  bool is_long() const { return faults_.size() >= 100; }
  // "path:line: what", in the order of lines.
  std::vector<std::string> texts() const;

 private:
  std::string path_;
  std::set<std::pair<long, std::string>> faults_;
};

}  // namespace triglub

#endif
