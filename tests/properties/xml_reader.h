// A reader of XML as far as documents of stations go: elements, attributes, texts, the five entities, a declaration,
// comments. No namespaces, no document types.
#ifndef TRIGLUB_TESTS_PROPERTIES_XML_READER_H
#define TRIGLUB_TESTS_PROPERTIES_XML_READER_H

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub_properties {

struct Element {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::vector<Element> children;
  std::string text;  // its own, without its children's

  // Nothing when there is none.
  std::optional<std::string> attribute(const std::string& of_name) const;
  // The first of the name; null when there is none.
  const Element* child(std::string_view of_name) const;
  // The text of the first element on this way from child to child.
  std::optional<std::string> text_at(const std::vector<std::string>& way) const;
  std::vector<const Element*> all(std::string_view of_name) const;
};

// std::runtime_error, with the place, where the document is not well-formed.
Element read_xml(std::string_view document);

}  // namespace triglub_properties

#endif
