// Quotes hide the end of a tag; within comments, character data and instructions nothing but their own end counts.
#include "checks/tag_lengths.h"

#include <algorithm>

namespace triglub::checks {

// Behind <: ! and ? begin what is no tag; of a comment and of character data the next character tells which.
void TagLengths::open(char c) {
  if (c == '?') {
    end_ = "?>";
  } else if (c == '-') {
    end_ = "-->";
  } else if (c == '[') {
    end_ = "]]>";
  }
  if (c == '!') return;
  where_ = end_.empty() ? Where::tag : Where::section;
  matched_ = 0;
  if (where_ == Where::tag) take(c);
}

void TagLengths::take(char c) {
  switch (where_) {
    case Where::text:
      if (c != '<') return;
      where_ = Where::opening;
      end_ = {};
      length_ = 0;
      return;
    case Where::opening:
      return open(c);
    case Where::tag:
      ++length_;
      if (c == '>') where_ = Where::text;
      if (c != '"' && c != '\'') return;
      quote_ = c;
      where_ = Where::value;
      return;
    case Where::value:
      ++length_;
      if (c == quote_) where_ = Where::tag;
      return;
    case Where::section:
      if (c == end_[matched_]) {
        ++matched_;
      } else if (matched_ + 1 < end_.size() || c != end_.front()) {
        matched_ = c == end_.front() ? 1 : 0;
      }
      if (matched_ == end_.size()) where_ = Where::text;
      return;
  }
}

bool TagLengths::are_allowed(std::string_view piece) {
  while (!piece.empty()) {
    if (where_ == Where::text) piece.remove_prefix(std::min(piece.find('<'), piece.size()));
    if (piece.empty()) return true;
    take(piece.front());
    if (length_ > kMostTagBytes) return false;
    piece.remove_prefix(1);
  }
  return true;
}

}  // namespace triglub::checks
