// One line of a group: NAME FLAG TYPE VALUE.
#ifndef TRIGLUB_SRC_TREE_LINE_READER_H
#define TRIGLUB_SRC_TREE_LINE_READER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "element_tree.h"
#include "tree/fault_list.h"
#include "tree/site_texts.h"

namespace triglub {

// Which list of a group a line stands in.
enum class LinePart : std::uint8_t { attributes, elements };

// The first word of a line.
std::string_view line_name(std::string_view text);

class LineReader {
 public:
  // Both must live as long.
  LineReader(const ExpressionCheck& check, FaultList* faults) : check_(check), faults_(faults) {}

  // The line, but for its group and whether it is optional, which stand elsewhere. Nothing when it is left out (flag x)
  // or does not hold together, the latter after a fault.
  std::optional<TreeLine> read(std::string_view text, LinePart part, long number);

 private:
  // Each of these gives the fault of what it looks at, empty when there is none.
  static std::string read_flag(std::string_view flag, TreeLine* line);
  static std::string read_type(TreeLine* line);
  std::string read_value(std::string_view value, LinePart part, TreeLine* line);
  std::string read_literal(std::string_view value, LinePart part, TreeLine* line);
  std::string read_expression(std::string_view value, TreeLine* line) const;

  const ExpressionCheck& check_;
  FaultList* faults_;
  SiteTexts site_;
};

}  // namespace triglub

#endif
