// Expressions are compiled for the view that documents are written over.
#include <string>
#include <vector>

#include "element_tree.h"
#include "epoch_document.h"
#include "epochs/record_view.h"
#include "platform/elog.h"
#include "platform/record_expression.h"

namespace triglub {

namespace {

// One value a record is asked for there, and the records are what is split.
bool refuses_records(LineType type) { return is_category(type) || type == LineType::count; }

std::string fault_of(Dbptr view, const std::string& expression, const TreeLine& line, std::uint32_t* tables) {
  std::string fault;
  const auto compiled = RecordExpression::compile(view, expression, &fault);
  if (compiled == nullptr) return fault;
  if (refuses_records(line.type) && compiled->uses_records()) {
    return "functions over records (first, earliest, latest, count) have no place in a line of type " + line.keyword +
           ", whose value is asked for record by record";
  }
  for (const std::size_t table : compiled->all_tables()) *tables |= 1U << table;
  return "";
}

}  // namespace

std::unique_ptr<const ElementTree> read_tree(Dbptr db, Pf* pf, std::uint32_t* tables) {
  const Dbptr names = make_empty_record_view(db);
  std::vector<std::string> faults;
  std::uint32_t used = 0;
  auto tree = ElementTree::read(
      pf, [&](const std::string& expression, const TreeLine& line) { return fault_of(names, expression, line, &used); },
      &faults);
  if (tables != nullptr) *tables = used;
  release_view(names);
  for (const std::string& fault : faults) elog_complain(0, "%s", fault.c_str());
  return tree;
}

}  // namespace triglub
