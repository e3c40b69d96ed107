// Faults are found in the order in which groups lead to each other, and told in the order of the file.
#include "tree/fault_list.h"

#include "base/words.h"
#include "platform/text.h"

namespace triglub {

namespace {

constexpr std::string_view kMargin = "\n    ";

std::string indented(std::string_view text) {
  std::string indented(take_part(&text, '\n'));
  while (!text.empty()) indented.append(kMargin).append(take_part(&text, '\n'));
  return indented;
}

}  // namespace

std::string place_text(std::string_view path, long line) {
  std::string place(path.empty() ? "parameter file" : path);
  if (line != 0) place.append(":").append(std::to_string(line));
  return place;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string>& candidates) {
  const auto near = nearest(word, candidates);
  return near ? "; did you mean '" + *near + "'?" : "";
}

void FaultList::add(long line, std::string_view what) { faults_.emplace(line, indented(what)); }

std::vector<std::string> FaultList::texts() const {
  std::vector<std::string> texts;
  for (const auto& [line, what] : faults_) texts.push_back(place_text(path_, line).append(": ").append(what));
  return texts;
}

}  // namespace triglub
