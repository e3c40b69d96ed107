// Documents: each has its findings, by rules that there are; and the same ones each time.
#include "document_checks.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "support/expect.h"

namespace {

using triglub::DocumentFinding;
using triglub_fuzz::expect;

bool is_rule(std::string_view code) {
  const auto& rules = triglub::document_rules();
  return std::any_of(rules.begin(), rules.end(), [code](const auto& rule) { return rule.code == code; });
}

std::string as_text(const DocumentFinding& finding) {
  return std::to_string(finding.line) + " " + finding.path + " " + std::string(finding.code) + " " + finding.text +
         "\n";
}

void look_at(const DocumentFinding& finding) {
  expect(is_rule(finding.code), "a finding is by a rule", finding.code);
  expect(finding.line >= 0 && !finding.text.empty(), "a finding has place and text", finding.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(reinterpret_cast<const char*>(data), size);
  std::string findings;
  std::uint64_t number = 0;
  for (const DocumentFinding& finding : triglub::check_document_text(document)) {
    look_at(finding);
    findings += as_text(finding);
    ++number;
  }
  std::string again;
  std::istringstream stream(document);
  const auto counts =
      triglub::check_document(stream, [&](const DocumentFinding& finding) { again += as_text(finding); });
  triglub_fuzz::expect_same(findings, again, "the findings of a stream");
  expect(counts.errors + counts.warnings == number, "findings are counted");
  return 0;
}
