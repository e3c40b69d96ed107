// The columns are as wide as their longest text, which is known when all nodes have been met.
#include "tool/tree_drawing.h"

#include <algorithm>
#include <string_view>

#include "base/utf8.h"
#include "platform/elog.h"

namespace triglub::tool {

namespace {

constexpr std::size_t kWidth = 100;
constexpr std::size_t kLeastValueWidth = 30;
constexpr std::string_view kGap = "  ";

std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return !continues_character(c); }));
}

// A node with the branches before its name.
struct Row {
  const TreeNode* node;
  std::string branches;
  std::string branches_below;  // of further lines of the same node
};

std::vector<Row> rows_of(const TreeNode& root) {
  std::vector<Row> rows;
  const auto add = [&rows](const auto& self, const TreeNode& node, const std::string& branches,
                           const std::string& below) -> void {
    rows.push_back({&node, branches, below + (node.children.empty() ? "" : "│ ")});
    for (const TreeNode& child : node.children) {
      const bool is_last = &child == &node.children.back();
      self(self, child, below + (is_last ? "└ " : "├ "), below + (is_last ? "  " : "│ "));
    }
  };
  add(add, root, "", "");
  return rows;
}

bool is_operator(std::string_view word) { return word.find_first_not_of("?:&|=!~<>+-*/%") == std::string_view::npos; }

// A word off the front of *text, with the blanks before it. An operator goes with what is behind it.
std::string_view take_piece(std::string_view* text) {
  const std::size_t begin = std::min(text->find_first_not_of(' '), text->size());
  std::size_t end = std::min(text->find(' ', begin), text->size());
  if (end < text->size() && is_operator(text->substr(begin, end - begin)))
    end = std::min(text->find(' ', end + 1), text->size());
  const std::string_view piece = text->substr(0, end);
  text->remove_prefix(end);
  return piece;
}

// The text in lines of at most `width` columns, broken at blanks; a word that is longer has a line of its own.
std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  while (!text.empty()) {
    std::string_view word = take_piece(&text);
    if (!lines.back().empty() && width_of(lines.back()) + width_of(word) > width) {
      lines.emplace_back();
      word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
    }
    lines.back() += word;
  }
  return lines;
}

class Drawing {
 public:
  explicit Drawing(const TreeNode& root) : rows_(rows_of(root)) {
    for (const Row& row : rows_) {
      widen(&name_width_, row.branches + elog_printable(row.node->name));
      widen(&mark_width_, row.node->mark);
      widen(&type_width_, row.node->type);
    }
  }

  std::string text() && {
    for (const Row& row : rows_) draw(row);
    return std::move(text_);
  }

 private:
  static void widen(std::size_t* width, std::string_view text) { *width = std::max(*width, width_of(text)); }

  void draw(const Row& row) {
    const std::vector<std::string> values = value_lines(*row.node);
    add_columns(row.branches + elog_printable(row.node->name), row.node->mark, row.node->type, values.front());
    for (std::size_t i = 1; i < values.size(); ++i) add_columns(row.branches_below, "", "", values[i]);
  }

  std::vector<std::string> value_lines(const TreeNode& node) const {
    const std::size_t width = value_width();
    std::vector<std::string> lines = wrapped(elog_printable(node.value), width);
    if (node.note.empty()) return lines;
    if (lines.back().empty() || width_of(lines.back()) + kGap.size() + width_of(node.note) <= width) {
      lines.back().append(lines.back().empty() ? "" : kGap).append(node.note);
    } else {
      lines.push_back(node.note);
    }
    return lines;
  }

  std::size_t value_width() const {
    const std::size_t before = name_width_ + column(mark_width_) + column(type_width_) + kGap.size();
    return std::max(before < kWidth ? kWidth - before : 0, kLeastValueWidth);
  }

  static std::size_t column(std::size_t width) { return width == 0 ? 0 : kGap.size() + width; }

  void add_columns(std::string_view name, std::string_view mark, std::string_view type, std::string_view value) {
    add_padded(name, name_width_);
    for (const auto& [text, width] : {std::pair(mark, mark_width_), std::pair(type, type_width_)}) {
      if (width == 0) continue;
      text_ += kGap;
      add_padded(text, width);
    }
    text_.append(kGap).append(value);
    text_.resize(text_.find_last_not_of(' ') + 1);
    text_ += '\n';
  }

  void add_padded(std::string_view text, std::size_t width) {
    text_ += text;
    text_.append(width - width_of(text), ' ');
  }

  std::vector<Row> rows_;
  std::size_t name_width_ = 0;
  std::size_t mark_width_ = 0;
  std::size_t type_width_ = 0;
  std::string text_;
};

}  // namespace

std::string draw_tree(const TreeNode& root) { return Drawing(root).text(); }

}  // namespace triglub::tool
