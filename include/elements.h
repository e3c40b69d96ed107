// The element tree: the lines and groups of the parameter file that describe the document.
//
// A group definition N is the table N of the parameter file, with the string "name" (the XML tag; "-" writes no tag)
// and the lists "elements" and "attributes". Each line of the lists is
//
//     NAME FLAG TYPE VALUE...
//
// with words separated by blanks: the XML name (for groups the name of another definition), a flag ("x" ignored, "r"
// required, anything else neither), a type keyword, and the rest of the line as text, field name or expression.
//
// Descriptions and groups evaluate themselves line by line, record by record. That form is for callers: documents are
// written by plans that are made once for a group and give the same.
#ifndef TRIGLUB_ELEMENTS_H
#define TRIGLUB_ELEMENTS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"
#include "platform/parfile.h"

// The deepest nesting of groups: the root is at depth 0 when the tree is walked, at depth 1 when it is written.
inline constexpr int MAX_NODE_DEPTH = 15;

// The type keywords, as the typed evaluator files them.
enum GroupType : int {
  deg_lat = 0,
  deg_lon = 1,
  dip = 2,
  deg_az = 3,
  record_count = 4,
  meters = 5,
  float_type = 6,  // "float"
  integer = 7,
  force_lookup = 8,
  lookup = 9,
  string_type = 10,  // "string"
  epoch_type = 11,   // "epoch"
  julian = 12,
  GROUP = 13,
  CATEGORIZED_GROUP = 14,
  CATEGORIZED_BY_NUMBER = 15,
  STAGE = 16,
  other_pf_site = 17,  // "other_pf:site"
};

// One line of the parameter file. A value type.
class TRIGLUB_API ElementDescription {
 public:
  // Never fails: words that are missing leave their fields empty.
  explicit ElementDescription(char const* line);

  std::string name() const;
  std::string type() const;
  std::string value() const;
  bool is_ignored() const;
  bool is_required() const;
  bool is_group() const;              // type "GROUP" only
  bool is_categorized_group() const;  // "CATEGORIZED_GROUP" or "CATEGORIZED_BY_NUMBER"
  bool is_numeric_group() const;      // "CATEGORIZED_BY_NUMBER"
  bool is_stage() const;              // "STAGE"
  bool is_count() const;              // "count"
  // True when the line names another group definition that is written: a plain or categorized group, not ignored.
  bool leads_to_group() const;

  // True for ignored lines, empty values, "text" and "count": the value stays as it stands in the file.
  bool is_constant() const;
  // Puts the value's text at the handle's record in place of the expression, unless it is constant. Throws
  // std::logic_error for a plain group, and what eval_as_type throws.
  void evaluate(Dbptr db);
  // The line as diagnostics show it.
  std::string as_string() const;
  // ' NAME="VALUE"', or "" when ignored. Throws std::runtime_error for a name that no attribute can have.
  std::string as_xml_attribute() const;

 private:
  std::string name_;
  char flag_ = ' ';
  std::string type_;
  std::string value_;
};

namespace triglub {
// True for the words of the type field that the library knows, "text" and "count" among them.
TRIGLUB_API bool is_type_keyword(std::string_view word);
}  // namespace triglub

// One description a non-null line of the list, which is not changed.
TRIGLUB_API std::vector<ElementDescription> Tbl2ElementDescription(Tbl* list);

// The entries of a group definition; the lists belong to the parameter file and are null when absent.
TRIGLUB_API std::string get_group_name(Pf* pf, std::string group);
TRIGLUB_API Tbl* get_group_elements(Pf* pf, std::string group);
TRIGLUB_API Tbl* get_group_attributes(Pf* pf, std::string group);

// One node type of the document. A value type.
class TRIGLUB_API ElementGroup {
 public:
  // Reads the definition `group`. Throws std::runtime_error naming what is missing and of which group.
  ElementGroup(Pf* pf, std::string group);

  // The XML tag name.
  std::string name() const;
  // The element line at `i`, which must be below element_count().
  const ElementDescription& operator[](std::size_t i) const;
  std::size_t element_count() const;
  // The index of the first element line of that name; -1 when there is none.
  int find_element(std::string name) const;
  std::string value_of_element(std::string name, std::string fallback) const;
  // True when some element line is a plain group and not ignored.
  bool has_children() const;
  // Evaluates every attribute and element line that is not ignored (elements: nor a plain group) at the handle's
  // record.
  void updateFromDatabase(Dbptr db);
  // The attribute line at `i`, which must be below attribute_count().
  const ElementDescription& attribute(std::size_t i) const;
  std::size_t attribute_count() const;
  // Each attribute's text and a blank behind it.
  std::string attribs_as_xml() const;
  // The group as lines of text, for diagnostics.
  std::string report() const;

 private:
  std::vector<ElementDescription> elements_;
  std::vector<ElementDescription> attributes_;
  std::string name_;
  std::map<std::string, std::string> subsets_;  // by element name; consulted by report() only
};

// Walks the definitions from `group` down. Throws std::runtime_error "Exceeded maximum node depth" for a tree deeper
// than MAX_NODE_DEPTH (which a definition that holds itself always is).
TRIGLUB_API void navigateElementTree(Pf* pf, std::string group, unsigned long depth);

#endif
