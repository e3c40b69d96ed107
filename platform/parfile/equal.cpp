// Comparing objects.
#include <algorithm>

#include "parfile/table.h"

namespace {

using triglub::parfile::Lines;
using triglub::parfile::Table;
using triglub::parfile::Value;

bool equal(const Table& a, const Table& b);

bool same(const std::string& a, const std::string& b) { return a == b; }
bool same(const std::unique_ptr<Lines>& a, const std::unique_ptr<Lines>& b) { return a->lines() == b->lines(); }
bool same(const std::unique_ptr<Table>& a, const std::unique_ptr<Table>& b) { return equal(*a, *b); }

bool equal(const Value& a, const Value& b) {
  const auto against = [&b](const auto& left) {
    const auto* right = std::get_if<std::decay_t<decltype(left)>>(&b);
    return right != nullptr && same(left, *right);
  };
  return std::visit(against, a);
}

// The entries come in the order of their keys, so equal tables are equal entry by entry.
bool equal(const Table& a, const Table& b) {
  return std::equal(a.entries().begin(), a.entries().end(), b.entries().begin(), b.entries().end(),
                    [](const auto& left, const auto& right) {
                      return left.first == right.first && equal(left.second.value, right.second.value);
                    });
}

}  // namespace

bool pf_equal(Pf* a, Pf* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return equal(a->root, b->root);
}
