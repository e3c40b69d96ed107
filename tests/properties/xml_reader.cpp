#include "properties/xml_reader.h"

#include <cctype>
#include <stdexcept>
#include <utility>

namespace triglub_properties {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Element document() {
    skip_prolog();
    Element root = element();
    skip_blanks();
    if (at_ != text_.size()) fail("something behind the document");
    return root;
  }

 private:
  [[noreturn]] void fail(const std::string& why) const {
    throw std::runtime_error(why + " at byte " + std::to_string(at_) + ": " + std::string(text_.substr(at_, 60)));
  }
  bool is_at(std::string_view token) const { return text_.substr(at_).starts_with(token); }
  bool take(std::string_view token) {
    if (!is_at(token)) return false;
    at_ += token.size();
    return true;
  }
  void expect(std::string_view token) {
    if (!take(token)) fail("expected " + std::string(token));
  }
  void skip_blanks() {
    while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
  }
  std::string until(std::string_view token) {
    const std::size_t end = text_.find(token, at_);
    if (end == std::string_view::npos) fail("expected " + std::string(token));
    std::string passed(text_.substr(at_, end - at_));
    at_ = end + token.size();
    return passed;
  }
  void skip_prolog() {
    if (take("<?xml")) until("?>");
    skip_blanks();
  }

  std::string name() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) || is_in_name(text_[at_])))
      ++at_;
    if (at_ == begin) fail("expected a name");
    return std::string(text_.substr(begin, at_ - begin));
  }
  static bool is_in_name(char c) { return c == '_' || c == '-' || c == '.' || c == ':'; }

  std::string decoded(const std::string& text) const {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '&') {
        const std::size_t end = text.find(';', i);
        if (end == std::string::npos) fail("an entity without end before");
        out += character(text.substr(i + 1, end - i - 1));
        i = end;
      } else {
        out += text[i];
      }
    }
    return out;
  }
  char character(const std::string& entity) const {
    static const std::map<std::string, char> known = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    const auto found = known.find(entity);
    if (found == known.end()) fail("the entity " + entity + " before");
    return found->second;
  }

  void attributes(Element& element) {
    for (skip_blanks(); !is_at(">"); skip_blanks()) {
      const std::string key = name();
      expect("=\"");
      const std::string value = until("\"");
      if (value.find('<') != std::string::npos) fail("markup in an attribute before");
      if (!element.attributes.emplace(key, decoded(value)).second) fail("an attribute twice before");
    }
  }

  Element element() {
    Element element;
    expect("<");
    element.name = name();
    attributes(element);
    expect(">");
    content(element);
    expect(element.name + ">");
    return element;
  }

  // Passes the "</" behind it.
  void content(Element& element) {
    std::string text;
    for (;;) {
      const std::string before = until("<");
      if (before.find("]]>") != std::string::npos) fail("the end of a section without begin before");
      text += before;
      if (take("/")) break;
      if (take("!--")) {
        until("-->");
        continue;
      }
      --at_;
      element.children.push_back(this->element());
    }
    element.text = decoded(text);
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::optional<std::string> Element::attribute(const std::string& of_name) const {
  const auto found = attributes.find(of_name);
  return found == attributes.end() ? std::nullopt : std::optional(found->second);
}

const Element* Element::child(std::string_view of_name) const {
  for (const Element& child : children) {
    if (child.name == of_name) return &child;
  }
  return nullptr;
}

std::optional<std::string> Element::text_at(const std::vector<std::string>& way) const {
  const Element* at = this;
  for (const std::string& step : way) {
    at = at->child(step);
    if (at == nullptr) return std::nullopt;
  }
  return at->text;
}

std::vector<const Element*> Element::all(std::string_view of_name) const {
  std::vector<const Element*> found;
  for (const Element& child : children) {
    if (child.name == of_name) found.push_back(&child);
  }
  return found;
}

Element read_xml(std::string_view document) { return Reader(document).document(); }

}  // namespace triglub_properties
