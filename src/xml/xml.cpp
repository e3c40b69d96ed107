// Tags and attributes are put together from pieces of known length, in one step of growth.
#include "xml.h"

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

#include "base/characters.h"

namespace {

bool consists_of_alphanumerics_or(std::string_view others, std::string_view name) {
  return std::all_of(name.begin(), name.end(), [others](char c) {
    return triglub::is_alphanumeric(c) || others.find(c) != std::string_view::npos;
  });
}

bool is_markup(char c) { return c == '&' || c == '<' || c == '>' || c == '\'' || c == '"'; }

// Brackets, slash and line ends, and what the content of a broken line stands further in.
constexpr std::size_t kLongestMarkup = 8 + SPACES_PER_NEST;

// Copies the pieces to `to`; returns the place behind them.
char* put(char* to, std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) to = std::copy(piece.begin(), piece.end(), to);
  return to;
}

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

void XmlAttribute::append_safe(std::string const& value, std::string* text) const {
  if (std::any_of(value.begin(), value.end(), is_markup)) {
    text->append(make_value_safe(value));
  } else {
    text->append(value);
  }
}

std::string XmlAttribute::get(std::string name, std::string value) const {
  if (!isvalid_name(name)) throw std::runtime_error("Invalid attribute name: [" + name + "]");
  return " " + name + "=\"" + make_value_safe(std::move(value)) + "\"";
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
  // The indentation stands up to three times: a larger one would make the sum of all lengths begin at 0 again.
  if (indent > text->max_size() / 4) throw std::length_error("ElementTag: more indentation than a text can hold");
  const bool is_transparent = name_ == kTransparentName;
  const bool is_broken = est_len(content) >= MAX_XML_LINE_LENGTH;
  const std::size_t blanks = is_broken ? 3 * indent : indent;
  // Leaves are most of a document: one step of growth for the whole, then plain copies.
  const std::size_t before = text->size();
  text->resize(before + blanks + 2 * name_.size() + attributes_.size() + content.size() + kLongestMarkup, ' ');
  char* to = text->data() + before + indent;
  if (!is_transparent) to = put(to, {"<", name_, attributes_, ">"});
  if (is_broken) to = put(to, {"\n"}) + indent + SPACES_PER_NEST;
  to = put(to, {content});
  if (is_broken) to = put(to, {"\n"}) + indent;
  if (!is_transparent) to = put(to, {"</", name_, ">"});
  to = put(to, {"\n"});
  text->resize(static_cast<std::size_t>(to - text->data()));
}
