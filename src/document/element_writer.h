// The writer of documents of edition 2: elements of the tree over records, and all below them.
//
// What must be known before a tag is written is worked out first: the values of the element's own lines. What shows
// itself only when it is written (that a group is empty, that a required one is) is written and taken back; until that
// is settled nothing goes to the stream.
#ifndef TRIGLUB_SRC_DOCUMENT_ELEMENT_WRITER_H
#define TRIGLUB_SRC_DOCUMENT_ELEMENT_WRITER_H

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "document/element_plan.h"
#include "document/stage_writer.h"

namespace triglub {

// A root element in parts, to be put together: the text before its categories, those, and the text behind.
struct SplitElement {
  std::string head;
  const TreeLine* line = nullptr;      // of the categories
  std::vector<RecordList> categories;  // belong to the writer
  std::string tail;
};

class ElementWriter {
 public:
  // Groups with the tag `cut` (empty: none) are left out with all below. Stages are written by `stages`. All must
  // outlive the writer.
  ElementWriter(const ValueContext& context, const std::string& cut, StageWriter& stages);

  // Writes the group for the records, indented by `depth` blanks; false, with nothing written, for no records or where
  // something required is missing.
  bool write(const TreeGroup& group, const RecordList& records, std::size_t depth, std::ostream& out);
  // The group in parts, where its first line of categories can be written by itself: nothing else could take it back,
  // and it is no part of another group. False where it cannot, or nothing is to be written.
  bool split(const TreeGroup& group, const RecordList& records, std::size_t depth, SplitElement* parts);

 private:
  struct Element;
  // A line of an element in the making, whose groups are being written.
  struct LineInWork {
    Element& element;
    const PlannedLine& line;
    bool is_written = false;  // at least one of them is certain
  };
  // One element in the making.
  struct Element {
    ElementPlan& plan;
    const RecordList& records;
    std::size_t depth;
    bool is_optional;
    TableMask constant = 0;       // tables with one row for all the records
    bool holds = false;           // an attribute or a child
    LineInWork* above = nullptr;  // the line that it belongs to
    bool is_unsettled = false;    // it may have to be taken back
    bool is_certain = false;      // it is not empty and misses nothing: it will be in the document
    std::size_t missing = 0;      // required groups that have written nothing yet
  };

  bool write_element(Element* element, TableMask known);
  bool begin(Element* element, TableMask known);
  bool end(Element* element);
  bool find_texts(Element* element);
  bool find_text(Element* element, PlannedLine& line);
  void write_opening(Element* element);
  void write_lines(Element* element, std::size_t begin, std::size_t end);
  void write_line(Element* element, PlannedLine& line);
  void write_leaf(Element* element, const PlannedLine& line);
  void write_groups(Element* element, PlannedLine& line);
  void write_stage(Element* element, const PlannedLine& line);
  void note_written(LineInWork* work);
  void settle(Element* element);
  std::size_t child_depth(const Element& element) const;
  void tell_missing(const Element& element, const PlannedLine& line, const char* what);
  void check_code(const Element& element, const PlannedLine& line);
  void hand_on();

  const ValueContext& context_;
  StageWriter& stages_;
  ElementPlans plans_;
  std::ostream* out_ = nullptr;
  std::string text_;
  std::size_t unsettled_ = 0;  // elements that may have to be taken back
};

}  // namespace triglub

#endif
