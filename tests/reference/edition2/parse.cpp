#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "reference/edition2/expression.h"

namespace triglub_reference::edition2 {

namespace {

// From the weakest to the tightest. An operator that begins with another stands in front of it.
const std::vector<std::vector<const char*>> kOperators = {
    {"||"}, {"&&"}, {"=~", "!~"}, {"==", "!="}, {"<=", ">=", "<", ">"}, {"+", "-"}, {"*", "/", "%"}};

Kind kind_of_both(const Node& a, const Node& b) {
  if ((a.kind == Kind::text) != (b.kind == Kind::text)) throw std::runtime_error("a text and a number");
  return a.kind == b.kind ? a.kind : Kind::real;
}

bool is_arithmetic(const std::string& what) { return what == "+" || what == "-" || what == "*" || what == "%"; }

Kind kind_of(const Node& node) {
  const std::vector<Node>& parts = node.parts;
  if (node.what == "/") return Kind::real;
  if (is_arithmetic(node.what)) return kind_of_both(parts[0], parts[1]);
  if (node.what == "?") return kind_of_both(parts[1], parts[2]);
  if (node.what == "assume" || node.what == "agreed") return kind_of_both(parts[0], parts[1]);
  if (node.what == "concat" || node.what == "xml") return Kind::text;
  for (const char* name : {"negative", "first", "last", "earliest", "latest"}) {
    if (node.what == name) return parts[0].kind;
  }
  return Kind::integer;
}

Node node_of(const std::string& what, std::vector<Node> parts) {
  Node node = {.what = what, .parts = std::move(parts), .pattern = {}, .field = {}};
  node.kind = kind_of(node);
  return node;
}

class Parser {
 public:
  explicit Parser(const std::string& text) : text_(text) {}

  Node whole() {
    Node node = choice();
    skip_blanks();
    if (at_ != text_.size()) throw std::runtime_error("not known: " + text_.substr(at_));
    return node;
  }

 private:
  void skip_blanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }

  bool taken(const std::string& word) {
    skip_blanks();
    if (text_.compare(at_, word.size(), word) != 0) return false;
    at_ += word.size();
    return true;
  }

  void expect(const std::string& word) {
    if (!taken(word)) throw std::runtime_error("no " + word + " in " + text_);
  }

  // Up to the character, which is taken as well.
  std::string until(char end) {
    const std::size_t begin = at_;
    at_ = text_.find(end, begin);
    if (at_ == std::string::npos) throw std::runtime_error("not closed: " + text_);
    return text_.substr(begin, at_++ - begin);
  }

  template <typename Predicate>
  std::string taken_while(Predicate is_part) {
    const std::size_t begin = at_;
    while (at_ < text_.size() && is_part(text_[at_])) ++at_;
    return text_.substr(begin, at_ - begin);
  }

  Node choice() {
    Node condition = binary(0);
    if (!taken("?")) return condition;
    Node yes = choice();
    expect(":");
    Node no = choice();
    return node_of("?", {condition, yes, no});
  }

  Node binary(std::size_t level) {
    if (level == kOperators.size()) return prefix();
    Node left = binary(level + 1);
    for (bool is_more = true; is_more;) {
      is_more = false;
      for (const char* name : kOperators[level]) {
        if (!taken(name)) continue;
        left = std::string(name).ends_with("~") ? match(name, left) : node_of(name, {left, binary(level + 1)});
        is_more = true;
        break;
      }
    }
    return left;
  }

  Node match(const char* name, const Node& left) {
    expect("/");
    Node node = node_of(name, {left});
    node.pattern = until('/');
    return node;
  }

  Node prefix() {
    if (taken("-")) return node_of("negative", {prefix()});
    if (taken("!")) return node_of("!", {prefix()});
    return primary();
  }

  Node primary() {
    if (taken("(")) {
      Node inside = choice();
      expect(")");
      return inside;
    }
    for (const char* quote : {"\"", "'"}) {
      if (taken(quote))
        return {
            .what = "literal", .kind = Kind::text, .parts = {}, .pattern = {}, .field = {}, .literal = until(*quote)};
    }
    return std::isdigit(static_cast<unsigned char>(text_[at_])) != 0 ? number() : name();
  }

  Node number() {
    const std::string digits =
        taken_while([](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.'; });
    Node node = {.what = "literal", .parts = {}, .pattern = {}, .field = {}};
    node.kind = digits.find('.') == std::string::npos ? Kind::integer : Kind::real;
    if (node.kind == Kind::integer) node.literal = std::strtol(digits.c_str(), nullptr, 10);
    if (node.kind == Kind::real) node.literal = std::strtod(digits.c_str(), nullptr);
    return node;
  }

  Node name() {
    const std::string word =
        taken_while([](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.'; });
    if (taken("(")) return call(word);
    const auto field = find_field(word);
    if (!field) throw std::runtime_error("no field " + word);
    return {.what = "field", .kind = field->kind, .parts = {}, .pattern = {}, .field = field};
  }

  Node call(const std::string& function) {
    std::vector<Node> arguments = {choice()};
    while (taken(",")) arguments.push_back(choice());
    expect(")");
    return node_of(function, arguments);
  }

  const std::string& text_;
  std::size_t at_ = 0;
};

}  // namespace

Node parsed(const std::string& expression) { return Parser(expression).whole(); }

}  // namespace triglub_reference::edition2
