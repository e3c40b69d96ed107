// An element of a document with what the rules look at, and the numbers in it.
#ifndef TRIGLUB_CHECKS_ELEMENT_H
#define TRIGLUB_CHECKS_ELEMENT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub::checks {

struct Attribute {
  std::string_view name;
  std::string value;
};

// Names are valid as long as the parser that met them.
struct Element {
  std::string_view name;
  int line = 0;
  std::string text;  // its own, without that of its children; white space around it is dropped by trimmed()
  std::vector<Attribute> attributes;
  std::vector<Element> children;
};

std::string_view trimmed(std::string_view text);

// Null when there is none; the first when there are several. A null element has no children.
const Element* child(const Element* element, std::string_view name);
// Null when there is none.
const std::string* attribute(const Element& element, std::string_view name);
// Empty when there is none.
std::string attribute_text(const Element& element, std::string_view name);

// A number that stands in an element, or ought to.
struct Figure {
  const Element* element = nullptr;  // null: there is no such element
  std::optional<double> value;       // none: no element, or no finite number in it

  explicit operator bool() const { return value.has_value(); }
  double operator*() const { return *value; }
  bool is_there() const { return element != nullptr; }
};

Figure figure(const Element* element);
Figure figure_in(const Element* parent, std::string_view name);

// The finite number that a text is (white space around it does not count); none otherwise.
std::optional<double> finite_number(std::string_view text);

}  // namespace triglub::checks

#endif
