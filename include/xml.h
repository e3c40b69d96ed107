// XML primitives: attribute values, tags, leaf elements. Text in, text out; nothing here is shared or stored.
//
//     ElementTag tag("Station", XmlAttribute().get("code", "AAK"));
//     out << ElementTag::get_spacer(2) << tag.open_tag() << "\n";      //   <Station code="AAK">
//     out << ElementTag("Latitude").wrap("42.6375", 3);                //    <Latitude>42.6375</Latitude>
#ifndef TRIGLUB_XML_H
#define TRIGLUB_XML_H

#include <string>
#include <vector>

#include "platform/export.h"

// Blanks of indentation for each level of nesting.
inline constexpr unsigned long SPACES_PER_NEST = 1;
// The estimated length (ElementTag::est_len) from which a leaf element's content goes on a line of its own.
inline constexpr unsigned long MAX_XML_LINE_LENGTH = 80;

// Replaces every `from` in `text`, left to right, going on behind what was put in. An empty `from` changes nothing.
TRIGLUB_API void stringreplace(std::string& text, std::string const& from, std::string const& to);

// One attribute as text.
class TRIGLUB_API XmlAttribute {
 public:
  // ASCII letters, digits and : . - _ only; the empty name is valid.
  bool isvalid_name(std::string name) const;
  // The value with & < > ' " as entities; an entity in the input is escaped once more.
  std::string make_value_safe(std::string value) const;
  // ' NAME="VALUE"' with its leading blank, the value escaped.
  // Throws std::runtime_error "Invalid attribute name: [NAME]".
  std::string get(std::string name, std::string value) const;
  // As make_value_safe, behind what *text holds.
  void append_safe(std::string const& value, std::string* text) const;
};

// The tags of one element. The name "-" makes a transparent element: both tags are empty.
class TRIGLUB_API ElementTag {
 public:
  // The name of an element that groups others without being seen itself.
  static constexpr const char* kTransparentName = "-";

  // Each throws std::runtime_error "Unsafe tag: NAME" for a name that is not safe. Attributes are taken as they are:
  // empty, or pieces that each begin with a blank; the list form puts that blank before each item.
  explicit ElementTag(std::string name);
  ElementTag(std::string name, std::string attributes);
  ElementTag(std::string name, std::vector<std::string> attributes);

  // ASCII letters, digits and _ - : only (no '.', unlike attribute names); the empty name is safe.
  static bool is_safe(std::string name);
  // n blanks. Throws std::length_error for more than a text can hold.
  static std::string get_spacer(unsigned long n);

  std::string open_tag() const;
  std::string close_tag() const;
  // 2 x name + content + attributes + 4: the length that wrap() judges by.
  unsigned long est_len(std::string const& content) const;
  // The whole leaf element with line end(s), indented by `indent` blanks: on one line while est_len is below
  // MAX_XML_LINE_LENGTH, else the content on a line of its own, one blank further in. Content is written as it is.
  // Throws std::length_error when the whole is more than a text can hold.
  std::string wrap(std::string content, unsigned long indent) const;
  // The same, behind what *text holds, which stays as it is when this throws.
  void append_wrapped(std::string const& content, unsigned long indent, std::string* text) const;

 private:
  std::string name_;
  std::string attributes_;
};

#endif
