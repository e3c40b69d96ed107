// FDSN StationXML documents against the rules that data centres apply beyond the schema: codes, spans, places,
// orientations, and responses that fit together.
//
//     std::ifstream file("network.xml", std::ios::binary);
//     const triglub::DocumentCounts counts = triglub::check_document(file, [](const triglub::DocumentFinding& finding)
//     {
//       std::cout << finding.line << ": " << finding.code << ": " << finding.text << '\n';
//     });
//
// doc/checks.md explains every rule. The schema itself is not looked at: a document that breaks it is read as far as
// the rules need it. This header belongs to a library of its own, triglub-checks.
#ifndef TRIGLUB_DOCUMENT_CHECKS_H
#define TRIGLUB_DOCUMENT_CHECKS_H

#include <cstdint>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export.h"

namespace triglub {

// An error makes data unusable or wrong for whoever trusts the document; a warning is most likely a mistake.
enum class CheckRank : std::uint8_t { warning, error };

struct DocumentFinding {
  std::string_view code;  // of the rule, such as "unit-chain"; stays the same from version to version
  CheckRank rank = CheckRank::warning;
  std::string
      path;      // "NET.STA.LOC.CHA 2001-05-30T00:00:00Z stage 3", as far down as the place lies; empty: the document
  int line = 0;  // on which the start tag of the element ends; from 1
  std::string text;  // what was found, what was expected and what to do
};

// What a document holds, and how many findings there were.
struct DocumentCounts {
  std::uint64_t networks = 0;
  std::uint64_t stations = 0;  // station epochs, as channels are channel epochs
  std::uint64_t channels = 0;
  std::uint64_t errors = 0;
  std::uint64_t warnings = 0;
};

// Takes a finding, which stays no longer than the call.
using FindingSink = std::function<void(const DocumentFinding&)>;

// Reads the document to its end and hands findings over as they are made, those of one station one after the other.
// What cannot be read as XML or is no StationXML gives one error, where reading ends. One channel at a time is held, so
// that documents of any size can be read. Throws std::runtime_error when the stream fails, and passes on what the sink
// throws. Any number of documents can be checked side by side, each by one thread.
TRIGLUB_API DocumentCounts check_document(std::istream& document, const FindingSink& sink);

// All findings of a document in memory.
TRIGLUB_API std::vector<DocumentFinding> check_document_text(const std::string& text);

// A rule as doc/checks.md lists it.
struct DocumentRule {
  std::string_view code;
  CheckRank rank = CheckRank::warning;
  std::string_view advice;  // how to mend what breaks it; the end of every text
};

// All rules, in the order of the page.
TRIGLUB_API const std::vector<DocumentRule>& document_rules();

}  // namespace triglub

#endif
