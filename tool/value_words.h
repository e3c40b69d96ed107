// What an expression of the tree may bring into the document: fields by name, and the texts in its quotes.
#ifndef TRIGLUB_TOOL_VALUE_WORDS_H
#define TRIGLUB_TOOL_VALUE_WORDS_H

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace triglub::tool {

class ValueWords {
 public:
  // The words and texts of the expression. What stands in xml(...) is made safe, and what stands in is_null(...) goes
  // nowhere: `is_null(x) ? "" : xml(x)` brings nothing but an empty text.
  void add(std::string_view expression);
  // All words of the expression, wherever they stand.
  void add_words(std::string_view expression);
  // A text that stands for itself.
  void add_text(std::string text) { texts_.push_back(std::move(text)); }
  // True when there was the word FIELD or TABLE.FIELD.
  bool has(const std::string& table, const std::string& field) const;
  bool has(const std::string& word) const { return words_.contains(word); }
  const std::vector<std::string>& texts() const { return texts_; }
  // True when some expression has a pattern, in which a quote is none: its words are all there, its texts are not.
  bool are_unclear() const { return are_unclear_; }

 private:
  std::set<std::string, std::less<>> words_;
  std::vector<std::string> texts_;
  bool are_unclear_ = false;
};

}  // namespace triglub::tool

#endif
