// The parser is given the text piece by piece; nothing is made of it.
#include "tool/well_formed.h"

#include <expat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>

#include "fatal_failure.h"
#include "tool/write_parts.h"

namespace triglub::tool {

namespace {

constexpr int kPiece = 1 << 18;  // bytes
constexpr XML_Char kBehindNamespace = '\n';

// Not 0, and not the same for every run.
unsigned long salt() {
  return static_cast<unsigned long>(std::chrono::steady_clock::now().time_since_epoch().count()) | 1UL;
}

class Parser {
 public:
  Parser() : parser_(XML_ParserCreateNS("UTF-8", kBehindNamespace), &XML_ParserFree) {
    if (parser_ == nullptr) throw std::bad_alloc();
    // Without a salt the parser asks for one, and the C library ends the process when the system has none to give.
    XML_SetHashSalt(parser_.get(), salt());
  }

  void* room() {
    void* const room = XML_GetBuffer(parser_.get(), kPiece);
    if (room == nullptr) throw std::bad_alloc();
    return room;
  }
  // Of what stands in the room. False at a fault.
  bool take(int size) {
    return XML_ParseBuffer(parser_.get(), size, size == 0 ? XML_TRUE : XML_FALSE) != XML_STATUS_ERROR;
  }
  bool take(std::string_view text, bool is_last) {
    return XML_Parse(parser_.get(), text.data(), static_cast<int>(text.size()), is_last ? XML_TRUE : XML_FALSE) !=
           XML_STATUS_ERROR;
  }

  std::string fault() const {
    const XML_Error code = XML_GetErrorCode(parser_.get());
    if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    return "line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ", column " +
           std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1) + ": " + XML_ErrorString(code);
  }

 private:
  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
};

int read_piece(int descriptor, off_t at, void* to) {
  const ssize_t count = read_at(descriptor, at, to, kPiece);
  if (count < 0) throw FatalFailure(std::string("the document cannot be read back: ") + std::strerror(errno));
  return static_cast<int>(count);
}

}  // namespace

std::string xml_fault_of_file(int descriptor) {
  Parser parser;
  for (off_t at = 0;;) {
    const int count = read_piece(descriptor, at, parser.room());
    if (!parser.take(count)) return parser.fault();
    if (count == 0) return "";
    at += count;
  }
}

bool is_content(std::string_view text) {
  Parser parser;
  return parser.take("<r>", false) && parser.take(text, false) && parser.take("</r>", true);
}

}  // namespace triglub::tool
