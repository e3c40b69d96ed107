// The categories of a line where they are plain to see: the records that share a text of the field lie together, and
// the text matches no other text when it is taken for a regular expression. Then the first and the last match of each
// category enclose just its own records, and one look at every record finds them all.
#ifndef TRIGLUB_SRC_WRITER_CATEGORY_RUNS_H
#define TRIGLUB_SRC_WRITER_CATEGORY_RUNS_H

#include <cstdint>
#include <optional>
#include <vector>

#include "elements.h"
#include "platform/database.h"
#include "smartindex.h"

namespace triglub {

// The field that a line's categories are the texts of, looked up when first asked for. REQUIRES: always the same line
// and view.
class CategoryField {
 public:
  // The handle of the field; nothing when the line's value names no field.
  std::optional<Dbptr> handle(Dbptr db, const ElementDescription& line);

 private:
  std::optional<std::int64_t> field_;
};

using CategoryRuns = std::vector<TextRun>;

// The categories of the line over the records, in the order in which get_categories gives them, each with the records
// that the split of the document writer gives it. False when they are not plain to see; *runs is then of no use.
bool find_category_runs(Dbptr db, const ElementDescription& line, CategoryField* field, const SmartIndex& index,
                        CategoryRuns* runs);

}  // namespace triglub

#endif
