// The value of one line of the tree, record by record.
#ifndef TRIGLUB_SRC_DOCUMENT_LINE_VALUE_H
#define TRIGLUB_SRC_DOCUMENT_LINE_VALUE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "document/record_set.h"
#include "document/typed_text.h"
#include "document/xml_escape.h"
#include "element_tree.h"
#include "findings.h"
#include "platform/record_expression.h"

namespace triglub {

// What the values of one document share.
struct ValueContext {
  const ElementTree& tree;
  const RecordSet& records;
  Findings& findings;
};

// A literal, or an expression with the text that its type asks for. One thread at a time.
class TreeValue {
 public:
  // All must outlive it. REQUIRES: the line has a value, and its expression compiles for the view.
  TreeValue(const ValueContext& context, const TreeLine& line, XmlPlace place);

  // The text for an element, as XML, at the first of its records: empty where there is none. Valid until the next call.
  // Tells what is wrong with the value, and when it is another at others of the records. `constant`: tables that have
  // one row for all of them.
  const std::string& write(const RecordList& records, TableMask constant);
  // The next text is worked out anew, whatever the latest record was.
  void forget() { has_latest_ = false; }
  // The tables on whose rows the text depends.
  TableMask tables() const { return tables_; }
  const TreeLine& line() const { return line_; }

 private:
  bool is_latest(std::uint32_t record) const;
  void evaluate(std::uint32_t record, const RecordList& records, std::string* text, bool tells);
  ValueRemark append_value(std::uint32_t record, const RecordList& records, std::string* text, bool* has_failed);
  // A unit as documents have it; other texts as they are.
  std::string_view spelled(std::string_view value) const;
  ValueRemark append_text(std::string_view value, std::string* text) const;
  void check_same(const RecordList& records, TableMask constant);
  void tell(Rank rank, const char* what, std::uint32_t record);

  const ValueContext& context_;
  const TreeLine& line_;
  XmlPlace place_;
  std::unique_ptr<RecordExpression> expression_;  // null for a literal
  TableMask tables_ = 0;
  bool is_kept_ = false;  // whether the latest text holds for other records with the same rows
  bool has_latest_ = false;
  std::uint32_t latest_record_ = 0;
  std::string text_;
  std::string scratch_;
  std::string other_;
};

}  // namespace triglub

#endif
