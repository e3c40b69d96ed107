// No database is needed: expressions are compiled over tables without rows.
#include "tool/tree.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>

#include "platform/database.h"
#include "platform/elog.h"
#include "platform/record_expression.h"
#include "tool/check_tree.h"
#include "tool/parameters.h"
#include "tool/tree_nodes.h"

namespace triglub::tool {

namespace {

// A view with the names of all fields that expressions may use.
Dbptr record_names(Dbptr db) {
  Tbl* steps = newtbl(0);
  for (const char* step : {"dbopen sitechan", "dbjoin snetsta", "dbjoin schanloc", "dbjoin network snet:net",
                           "dbjoin site", "dbjoin sensor", "dbjoin instrument", "dbjoin calibration", "dbjoin stage"}) {
    pushtbl(steps, const_cast<char*>(step));
  }
  const Dbptr view = dbprocess(db, steps, nullptr);
  freetbl(steps, nullptr);
  return view;
}

std::string fault_of(Dbptr names, const std::string& text, const TreeLine& line) {
  std::string fault;
  const auto expression = RecordExpression::compile(names, text, &fault);
  if (expression == nullptr) return fault;
  if (is_category(line.type) && expression->uses_records()) {
    return "a category cannot use functions over records, for it is what tells the records apart\n" + text;
  }
  return "";
}

std::optional<TreeNode> nodes_of_edition_2(Pf* pf) {
  const Dbptr db = open_empty();
  const Dbptr names = record_names(db);
  std::vector<std::string> faults;
  const auto check = [&](const std::string& text, const TreeLine& line) { return fault_of(names, text, line); };
  const auto tree = ElementTree::read(pf, check, &faults);
  dbclose(db);
  for (const std::string& fault : faults) elog_complain(0, "%s", fault.c_str());
  if (tree == nullptr) return std::nullopt;
  return tree_nodes(*tree);
}

std::optional<TreeNode> nodes_of_edition_1(Pf* pf) {
  if (!check_tree(pf)) return std::nullopt;
  return tree_nodes(pf);
}

int run(const TreeOptions& options) {
  const Parameters parameters = read_parameters(options.parameters);
  Pf* pf = parameters.get();
  const int edition = edition_of(pf);
  const auto nodes = edition == 1 ? nodes_of_edition_1(pf) : nodes_of_edition_2(pf);
  if (!nodes) elog_die(0, "parameter file %s: cannot be used", options.parameters.c_str());
  std::cout << pf_path(pf) << ", edition " << edition << "\n\n" << draw_tree(*nodes) << std::flush;
  if (!std::cout) elog_die(0, "standard output: cannot be written");
  return EXIT_SUCCESS;
}

}  // namespace

int tree(const TreeOptions& options) {
  try {
    return run(options);
  } catch (const std::exception& e) {
    elog_die(0, "%s", e.what());
  }
}

}  // namespace triglub::tool
