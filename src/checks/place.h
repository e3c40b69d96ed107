// A place of the document, at which findings are made.
#ifndef TRIGLUB_CHECKS_PLACE_H
#define TRIGLUB_CHECKS_PLACE_H

#include <string>

#include "checks/rules.h"

namespace triglub::checks {

// Counts findings and hands them on.
class Reporter {
 public:
  // The sink has to outlive the reporter.
  explicit Reporter(const FindingSink& sink) : sink_(sink) {}

  void tell(const DocumentFinding& finding);
  DocumentCounts& counts() { return counts_; }

 private:
  const FindingSink& sink_;
  DocumentCounts counts_;
};

class Place {
 public:
  // The reporter has to outlive the place. `path` as in DocumentFinding.
  Place(Reporter* reporter, std::string path) : reporter_(reporter), path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  // A place within it: its path with a word behind.
  Place within(const std::string& word) const { return {reporter_, path_ + ' ' + word}; }

  // The finding that tell() would make.
  DocumentFinding finding(Rule rule, int line, const std::string& found) const;
  // `found` says what was found and what was expected; the rule's advice is put behind it.
  void tell(Rule rule, int line, const std::string& found) const { reporter_->tell(finding(rule, line, found)); }
  void tell(const DocumentFinding& finding) const { reporter_->tell(finding); }

 private:
  Reporter* reporter_;
  std::string path_;
};

// A text of the document as messages quote it: short, and on one line.
std::string quoted(std::string_view text);
// A number as messages have it: the shortest text that reads back to it.
std::string text_of(double value);
// One that was worked out here: its first six digits.
std::string about(double value);

}  // namespace triglub::checks

#endif
