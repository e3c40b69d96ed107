// An XML document as events, read piece by piece.
#ifndef TRIGLUB_CHECKS_XML_STREAM_H
#define TRIGLUB_CHECKS_XML_STREAM_H

#include <istream>
#include <string>
#include <string_view>

#include "checks/element.h"

namespace triglub::checks {

// Takes the events. Names and texts are valid during the call only, but for the name of an element (see Element).
class XmlEvents {
 public:
  virtual ~XmlEvents() = default;
  // `element` has its name, its line and the attributes of no namespace that are looked at. False when reading is to
  // end.
  virtual bool start(std::string_view name_space, Element element) = 0;
  virtual void text(std::string_view text) = 0;
  virtual void end() = 0;
  // Behind the last event, while names are valid still.
  virtual void finish() = 0;
};

// How reading ended.
struct XmlEnding {
  enum class Kind { whole, stopped, faulty, document_type } kind = Kind::whole;
  int line = 0;       // of the fault
  std::string fault;  // in the parser's words, on one line
};

// Reads to the end, the first fault or a document type declaration, whichever comes first. No entity but those of XML
// itself is ever looked up, and nothing but the stream is read. Throws std::runtime_error when the stream fails, and
// what the events throw.
XmlEnding read_xml(std::istream& document, XmlEvents* events);

}  // namespace triglub::checks

#endif
