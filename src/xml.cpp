#include "xml.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace {

// A fixed table rather than isalnum: the caller's locale must not let bytes above 127 into a name.
bool is_ascii_alphanumeric(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool consists_of_alphanumerics_or(std::string_view others, std::string_view name) {
  return std::all_of(name.begin(), name.end(),
                     [others](char c) { return is_ascii_alphanumeric(c) || others.find(c) != std::string_view::npos; });
}

// The name of an element that groups others without being seen itself.
constexpr std::string_view kTransparentName = "-";

std::string joined_attributes(const std::vector<std::string>& attributes) {
  std::string text;
  for (const std::string& attribute : attributes) text.append(1, ' ').append(attribute);
  return text;
}

}  // namespace

void stringreplace(std::string& text, std::string const& from, std::string const& to) {
  if (from.empty()) return;
  std::size_t found = text.find(from);
  if (found == std::string::npos) return;
  // Built anew instead of shifting the tail at each replacement, which would be quadratic.
  std::string replaced;
  std::size_t copied = 0;
  for (; found != std::string::npos; found = text.find(from, copied)) {
    replaced.append(text, copied, found - copied).append(to);
    copied = found + from.size();
  }
  replaced.append(text, copied);
  text = std::move(replaced);
}

bool XmlAttribute::isvalid_name(std::string name) const { return consists_of_alphanumerics_or(":.-_", name); }

std::string XmlAttribute::make_value_safe(std::string value) const {
  // The ampersand goes first, or it would take apart the entities that the others put in.
  stringreplace(value, "&", "&amp;");
  stringreplace(value, "<", "&lt;");
  stringreplace(value, ">", "&gt;");
  stringreplace(value, "'", "&apos;");
  stringreplace(value, "\"", "&quot;");
  return value;
}

std::string XmlAttribute::get(std::string name, std::string value) const {
  std::string text;
  append(name, value, &text);
  return text;
}

void XmlAttribute::append(std::string const& name, std::string const& value, std::string* text) const {
  if (!isvalid_name(name)) throw std::runtime_error("Invalid attribute name: [" + name + "]");
  text->append(1, ' ').append(name).append("=\"");
  if (value.find_first_of("&<>'\"") == std::string::npos) {
    text->append(value);
  } else {
    text->append(make_value_safe(value));
  }
  text->append(1, '"');
}

ElementTag::ElementTag(std::string name) : ElementTag(std::move(name), std::string()) {}

ElementTag::ElementTag(std::string name, std::string attributes)
    : name_(std::move(name)), attributes_(std::move(attributes)) {
  if (!is_safe(name_)) throw std::runtime_error("Unsafe tag: " + name_);
}

ElementTag::ElementTag(std::string name, std::vector<std::string> attributes)
    : ElementTag(std::move(name), joined_attributes(attributes)) {}

// Stricter than an attribute's name: a '.' in a tag is most often a field name ("site.lat") in the wrong column.
bool ElementTag::is_safe(std::string name) { return consists_of_alphanumerics_or("_-:", name); }

std::string ElementTag::get_spacer(unsigned long n) {
  std::string spacer(n, ' ');
  return spacer;
}

std::string ElementTag::open_tag() const {
  if (name_ == kTransparentName) return {};
  return "<" + name_ + attributes_ + ">";
}

std::string ElementTag::close_tag() const {
  if (name_ == kTransparentName) return {};
  return "</" + name_ + ">";
}

// One less than tags and content take (there are five characters of markup). Documents in use break their lines by
// this estimate, so it stays.
unsigned long ElementTag::est_len(std::string const& content) const {
  return 2 * name_.size() + content.size() + attributes_.size() + 4;
}

std::string ElementTag::wrap(std::string content, unsigned long indent) const {
  std::string text;
  append_wrapped(content, indent, &text);
  return text;
}

void ElementTag::append_wrapped(std::string const& content, unsigned long indent, std::string* text) const {
  const bool is_transparent = name_ == kTransparentName;
  text->append(indent, ' ');
  if (!is_transparent) text->append(1, '<').append(name_).append(attributes_).append(1, '>');
  if (est_len(content) < MAX_XML_LINE_LENGTH) {
    text->append(content);
  } else {
    text->append(1, '\n').append(indent + 1, ' ').append(content).append(1, '\n').append(indent, ' ');
  }
  if (!is_transparent) text->append("</").append(name_).append(1, '>');
  text->append(1, '\n');
}
