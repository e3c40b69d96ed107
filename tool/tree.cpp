// No database is needed: expressions are compiled over tables without rows.
#include "tool/tree.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>

#include "element_tree.h"
#include "epoch_document.h"
#include "platform/database.h"
#include "platform/elog.h"
#include "tool/check_tree.h"
#include "tool/parameters.h"
#include "tool/tree_nodes.h"

namespace triglub::tool {

namespace {

std::optional<TreeNode> nodes_of_edition_2(Pf* pf) {
  const Dbptr db = open_empty();
  const auto tree = read_tree(db, pf);
  dbclose(db);
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
