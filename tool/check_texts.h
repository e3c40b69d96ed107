// Texts that may make a document of edition 1 something that is no XML: the library writes element texts as they are.
#ifndef TRIGLUB_TOOL_CHECK_TEXTS_H
#define TRIGLUB_TOOL_CHECK_TEXTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "tool/value_words.h"
#include "tool/view_tables.h"
#include "tool/written_tree.h"

namespace triglub::tool {

// A first look, at each distinct text once. It sees too much rather than too little.
class TextCheck {
 public:
  // `everything`: the master view.
  TextCheck(Dbptr everything, const WrittenTree& tree);

  // Whether the document has to be looked at when it is there. Else it is well-formed.
  bool are_doubtful() const { return is_tree_doubtful_ || count_ > 0; }
  // Complains about the rows of the doubtful texts, the first of them.
  void tell() const;

 private:
  void read(const TreeGroup& group);
  static void read(const TreeLine& line, ValueWords* words);
  void look_at_tree();
  void look_at_columns();
  // `is_content`: else it is written in attributes alone.
  void look_at(const ViewField& field, bool is_content);

  Dbptr everything_;
  ValueWords contents_;
  ValueWords attributes_;
  std::uint64_t count_ = 0;          // of doubtful values of rows that are selected
  std::vector<std::string> doubts_;  // the first of them
  bool is_tree_doubtful_ = false;
};

}  // namespace triglub::tool

#endif
