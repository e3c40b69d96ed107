// What is wrong with the document as a whole is told last, where reading ended.
#include "document_checks.h"

#include <sstream>

#include "checks/document_walk.h"

namespace triglub {

namespace {

using checks::Place;
using checks::Rule;
using checks::XmlEnding;

void tell_ending(const XmlEnding& ending, checks::Reporter* reporter) {
  const Place document(reporter, "");
  if (ending.kind == XmlEnding::Kind::faulty) {
    document.tell(Rule::not_xml, ending.line, "no well-formed XML: " + ending.fault);
  } else if (ending.kind == XmlEnding::Kind::document_type) {
    document.tell(Rule::document_type, ending.line, "there is a document type declaration, expected none");
  }
}

}  // namespace

DocumentCounts check_document(std::istream& document, const FindingSink& sink) {
  checks::Reporter reporter(sink);
  checks::DocumentWalk walk(&reporter);
  tell_ending(read_xml(document, &walk), &reporter);
  return reporter.counts();
}

std::vector<DocumentFinding> check_document_text(const std::string& text) {
  std::istringstream document(text);
  std::vector<DocumentFinding> findings;
  check_document(document, [&findings](const DocumentFinding& finding) { findings.push_back(finding); });
  return findings;
}

}  // namespace triglub
