// Events, and not the reader's nodes, because of their lines: a node of libxml2 has 16 bits for its line, and documents
// have millions. A document type declaration ends the reading before its entities are looked at, so that none can grow.
#include "checks/xml_stream.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <array>
#include <exception>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>

#include "checks/tag_lengths.h"
#include "checks/vocabulary.h"

namespace triglub::checks {

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 16;

struct FreeParser {
  void operator()(xmlParserCtxtPtr parser) const {
    if (parser->myDoc != nullptr) xmlFreeDoc(parser->myDoc);
    xmlFreeParserCtxt(parser);
  }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

// What the callbacks share.
struct Reading {
  XmlEvents* events = nullptr;
  xmlParserCtxtPtr parser = nullptr;
  XmlEnding ending;
  TagLengths tags;
  std::exception_ptr failure;
};

std::string_view view_of(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

std::string_view view_of(const xmlChar* begin, const xmlChar* end) {
  return {reinterpret_cast<const char*>(begin), static_cast<std::size_t>(end - begin)};
}

int line_of(const Reading& reading) { return reading.parser->input == nullptr ? 0 : reading.parser->input->line; }

void stop(Reading& reading, XmlEnding::Kind kind) {
  reading.ending.kind = kind;
  reading.ending.line = line_of(reading);
  xmlStopParser(reading.parser);
}

bool is_over(const Reading& reading) {
  return reading.failure != nullptr || reading.ending.kind != XmlEnding::Kind::whole;
}

// Exceptions must not pass through the parser, which is C: they are kept until it has returned.
template <class Action>
void guarded(void* context, const Action& action) {
  auto& reading = *static_cast<Reading*>(context);
  if (is_over(reading)) return;
  try {
    action(reading);
  } catch (...) {
    reading.failure = std::current_exception();
    xmlStopParser(reading.parser);
  }
}

// Five texts an attribute: name, prefix, namespace, and where its value begins and ends.
Element element_of(const Reading& reading, const xmlChar* name, int count, const xmlChar** attributes) {
  Element element;
  element.name = view_of(name);
  element.line = line_of(reading);
  for (int i = 0; i < count; ++i) {
    const xmlChar** const one = attributes + static_cast<std::ptrdiff_t>(i) * 5;
    if (one[2] != nullptr || !is_attribute_of_interest(element.name, view_of(one[0]))) continue;
    element.attributes.push_back({view_of(one[0]), std::string(view_of(one[3], one[4]))});
  }
  return element;
}

void on_start(void* context, const xmlChar* name, const xmlChar* /*prefix*/, const xmlChar* name_space,
              int /*namespaces*/, const xmlChar** /*declared*/, int attributes, int /*defaulted*/,
              const xmlChar** values) {
  guarded(context, [&](Reading& reading) {
    if (!reading.events->start(view_of(name_space), element_of(reading, name, attributes, values))) {
      stop(reading, XmlEnding::Kind::stopped);
    }
  });
}

void on_end(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/, const xmlChar* /*name_space*/) {
  guarded(context, [](Reading& reading) { reading.events->end(); });
}

void on_text(void* context, const xmlChar* text, int size) {
  guarded(context, [&](Reading& reading) { reading.events->text(view_of(text, text + size)); });
}

void on_document_type(void* context, const xmlChar* /*name*/, const xmlChar* /*external*/, const xmlChar* /*system*/) {
  guarded(context, [](Reading& reading) { stop(reading, XmlEnding::Kind::document_type); });
}

xmlSAXHandler handlers() {
  xmlSAXHandler sax{};
  sax.initialized = XML_SAX2_MAGIC;
  sax.startElementNs = on_start;
  sax.endElementNs = on_end;
  sax.characters = on_text;
  sax.ignorableWhitespace = on_text;
  sax.internalSubset = on_document_type;
  // Faults are asked for in the end; without this the parser writes them to standard error.
  sax.serror = [](void* /*context*/, auto* /*fault*/) {};
  return sax;
}

std::string one_line(std::string_view text) {
  std::string line(trimmed(text));
  for (char& c : line) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  return line;
}

// Names of undeclared namespaces are faults as well, although the parser goes on behind them.
void note_fault(Reading& reading) {
  const xmlError* fault = xmlCtxtGetLastError(reading.parser);
  if (is_over(reading) || fault == nullptr || fault->level < XML_ERR_ERROR) return;
  reading.ending = {XmlEnding::Kind::faulty, fault->line, one_line(fault->message == nullptr ? "" : fault->message)};
}

// False when there is no more to be read.
bool feed(std::istream& document, Reading& reading) {
  std::array<char, kPieceSize> piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by read()
  document.read(piece.data(), piece.size());
  if (document.bad()) throw std::runtime_error("the document cannot be read to its end");
  const bool is_last = !document;
  if (!reading.tags.are_allowed({piece.data(), static_cast<std::size_t>(document.gcount())})) {
    reading.ending = {XmlEnding::Kind::faulty, line_of(reading),
                      "a tag of more than " + std::to_string(kMostTagBytes) + " bytes"};
    return false;
  }
  xmlParseChunk(reading.parser, piece.data(), static_cast<int>(document.gcount()), is_last ? 1 : 0);
  if (reading.failure != nullptr) std::rethrow_exception(reading.failure);
  note_fault(reading);
  return !is_last && !is_over(reading);
}

}  // namespace

XmlEnding read_xml(std::istream& document, XmlEvents* events) {
  static std::once_flag is_ready;
  std::call_once(is_ready, xmlInitParser);
  xmlSAXHandler sax = handlers();
  Reading reading;
  reading.events = events;
  const Parser parser(xmlCreatePushParserCtxt(&sax, &reading, nullptr, 0, nullptr));
  if (parser == nullptr) throw std::bad_alloc();
  reading.parser = parser.get();
  xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET);
  while (feed(document, reading)) {
  }
  events->finish();
  return reading.ending;
}

}  // namespace triglub::checks
