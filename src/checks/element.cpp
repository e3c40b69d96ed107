// Elements of interest are few within their parents, but for long lists of coefficients, which nobody looks up by name.
#include "checks/element.h"

#include <algorithm>

#include "base/characters.h"
#include "base/number.h"

namespace triglub::checks {

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kWhiteSpace);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kWhiteSpace) + 1 - begin);
}

const Element* child(const Element* element, std::string_view name) {
  if (element == nullptr) return nullptr;
  const auto found = std::find_if(element->children.begin(), element->children.end(),
                                  [name](const Element& one) { return one.name == name; });
  return found == element->children.end() ? nullptr : &*found;
}

const std::string* attribute(const Element& element, std::string_view name) {
  const auto found = std::find_if(element.attributes.begin(), element.attributes.end(),
                                  [name](const Attribute& one) { return one.name == name; });
  return found == element.attributes.end() ? nullptr : &found->value;
}

std::string attribute_text(const Element& element, std::string_view name) {
  const std::string* value = attribute(element, name);
  return value == nullptr ? std::string() : *value;
}

Figure figure(const Element* element) {
  if (element == nullptr) return {};
  return {element, finite_number(element->text)};
}

Figure figure_in(const Element* parent, std::string_view name) { return figure(child(parent, name)); }

std::optional<double> finite_number(std::string_view text) {
  double value = 0;
  if (!parse_real(trimmed(text), &value)) return std::nullopt;
  return value;
}

}  // namespace triglub::checks
