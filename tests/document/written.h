// Documents of trees of edition 2, written over databases made by hand.
#ifndef TRIGLUB_TESTS_DOCUMENT_WRITTEN_H
#define TRIGLUB_TESTS_DOCUMENT_WRITTEN_H

#include <sstream>
#include <string>
#include <vector>

#include "epoch_document.h"
#include "platform/parfile/pf_ptr.h"
#include "support/made_database.h"

namespace triglub_test {

struct Written {
  bool is_written = false;
  std::string text;
  std::vector<std::string> told;  // as MadeDatabase::lines_of()
};

inline Written write_document(const MadeDatabase& made, const std::string& tree,
                              triglub::DetailLevel level = triglub::DetailLevel::response) {
  triglub::EpochDocument document(made.db(), parsed(tree).get(), nullptr, level);
  std::ostringstream out;
  const bool is_written = document.write(out);
  return {is_written, out.str(), made.lines_of(document.findings())};
}

// The same put together from its parts; `is_written` is false where it has none.
inline Written write_in_parts(const MadeDatabase& made, const std::string& tree,
                              triglub::DetailLevel level = triglub::DetailLevel::response) {
  triglub::EpochDocument document(made.db(), parsed(tree).get(), nullptr, level);
  triglub::EpochDocument::Parts parts;
  if (!document.split(&parts)) return {false, "", made.lines_of(document.findings())};
  triglub::EpochDocument::PieceWriter writer(document);
  triglub::Findings found = document.findings();
  std::ostringstream out;
  for (std::size_t i = 0; i < parts.pieces; ++i) writer.write(i, out, &found);
  return {true, parts.head + out.str() + parts.tail, made.lines_of(found)};
}

}  // namespace triglub_test

#endif
