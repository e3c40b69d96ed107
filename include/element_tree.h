// The element tree of edition 2: what a parameter file says of the document, read and checked once.
//
//     std::vector<std::string> faults;
//     const auto tree = triglub::ElementTree::read(pf, check, &faults);
//     if (tree == nullptr) ...                 // every fault with its place
//     for (const triglub::TreeLine& line : tree->root().elements) ...
//
// doc/parameter-files.md has the grammar. What is read is sound: types are known, groups are there and end, names and
// literals are XML, and every expression has passed the check. Lines that are left out (flag x) are not there.
#ifndef TRIGLUB_ELEMENT_TREE_H
#define TRIGLUB_ELEMENT_TREE_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export.h"
#include "platform/parfile.h"

namespace triglub {

// 1 when the key `edition` is absent or "1", 2 for "2". Throws FatalFailure (fatal_failure.h), naming file, line and
// value, for anything else.
TRIGLUB_API int edition_of(Pf* pf);

enum class LineType : std::uint8_t {
  literal,  // XML text as it stands in the parameter file, or in site.pf
  string,
  unit,  // a text that is the name of a unit
  real,
  integer,
  epoch,
  julian,
  latitude,
  longitude,
  azimuth,
  dip,
  meters,
  count,
  group,              // a group, once
  categories,         // a group for each category, by text
  number_categories,  // the same, by number
  stage,              // the filter, decimation and gain of a response stage
};

constexpr bool is_category(LineType type) {
  return type == LineType::categories || type == LineType::number_categories;
}
constexpr bool leads_to_group(LineType type) { return type == LineType::group || is_category(type); }
// True where the name of the line is that of an attribute or element; else it does not go into the document.
constexpr bool names_element(LineType type) { return !leads_to_group(type) && type != LineType::stage; }
// True where the value of the line is an expression.
constexpr bool has_expression(LineType type) {
  return type != LineType::literal && type != LineType::group && type != LineType::stage;
}

struct TreeGroup;

// One line of a group: an attribute, a leaf element, or what leads to groups and stages.
struct TreeLine {
  std::string name;  // the XML name; of a line that leads to a group the name of the group's table; see is_content()
  LineType type = LineType::literal;
  std::string keyword;  // the type as the file has it
  // Literals: XML text, keys of site.pf already looked up. Groups and stages: empty. Else the expression.
  std::string value;
  bool is_required = false;
  bool is_optional = false;
  const TreeGroup* group = nullptr;  // where the line leads to one
  long line = 0;                     // in the parameter file; 0 for one made in memory

  // True for a line without an element of its own: its value is what the element of its group holds. It is then the
  // only one in `elements`.
  bool is_content() const { return names_element(type) && name == "-"; }
};

struct TreeGroup {
  std::string key;  // the name of its table
  std::string tag;  // empty when transparent
  bool is_transparent = false;
  std::vector<TreeLine> attributes;
  std::vector<TreeLine> elements;
  long line = 0;      // of the opening of its table
  long tag_line = 0;  // of its name
};

// What is wrong with a tree of groups, of whatever edition, that somebody has put together: names that are none in XML,
// attributes that are there twice, prefixes that are not declared, groups that contain themselves or nest too deep, and
// more than the limit tree_elements (platform/limits.h) for one record. Each fault is "path:line: what", in the order
// of lines; empty where there is none.
TRIGLUB_API std::vector<std::string> tree_faults(const std::string& path, const TreeGroup& root);

// What a parameter file says beside the tree of how its documents are written.
struct TreeOptions {
  // Units as the tables have them, with the spelling that documents have.
  std::map<std::string, std::string, std::less<>> unit_spellings;
  // Filters of finite response as <Coefficients>, also where <FIR> holds all of them.
  bool writes_fir_as_coefficients = false;
  // The unit of ground motion of calibrations of instruments that do not tell.
  std::string calibration_units = "m";

  // The unit as documents have it: as it is where no spelling is known. A view of this object or of `unit`.
  std::string_view spelled(std::string_view unit) const {
    const auto found = unit_spellings.find(unit);
    return found == unit_spellings.end() ? unit : std::string_view(found->second);
  }
};

// By the name of the table. Groups stay where they are in memory.
using TreeGroups = std::map<std::string, TreeGroup, std::less<>>;

// Gives the fault of the line's expression, empty when there is none. The type of the line says what is asked of it:
// a category has no functions over records.
using ExpressionCheck = std::function<std::string(const std::string& expression, const TreeLine& line)>;

// Does not change: any number of threads may use it.
class TRIGLUB_API ElementTree {
 public:
  // Null when there is any fault; *faults then has all of them, "path:line: what". `pf` is not kept.
  static std::unique_ptr<const ElementTree> read(Pf* pf, const ExpressionCheck& check,
                                                 std::vector<std::string>* faults);

  ElementTree(const ElementTree&) = delete;
  ElementTree& operator=(const ElementTree&) = delete;

  const TreeGroup& root() const { return *root_; }
  const TreeOptions& options() const { return options_; }
  // Of the parameter file; empty for one made in memory.
  const std::string& path() const { return path_; }
  // "stationxml.pf:12", for messages.
  std::string place(const TreeLine& line) const;

 private:
  ElementTree(std::string path, TreeOptions options, TreeGroups groups, const TreeGroup* root);

  std::string path_;
  TreeOptions options_;
  TreeGroups groups_;
  const TreeGroup* root_;  // one of the groups
};

}  // namespace triglub

#endif
