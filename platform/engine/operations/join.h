// Joins a table to a view.
#ifndef TRIGLUB_ENGINE_OPERATIONS_JOIN_H
#define TRIGLUB_ENGINE_OPERATIONS_JOIN_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/operations/join_plan.h"
#include "engine/view/view.h"

namespace triglub {

enum class JoinKind { inner, outer };

struct Joined {
  std::unique_ptr<const View> view;
  std::vector<std::string> keys;  // what was compared
};

// Joins `other`, a view of one table, to the view: on `keys`, or on the keys that the two share when there are none. An
// outer join keeps the view's records that have no match. Rows come in the view's order, and for each record in
// `other`'s. Nothing after a complaint.
std::optional<Joined> join_views(const View& view, const View& other, const std::optional<JoinKeys>& keys,
                                 JoinKind kind);

}  // namespace triglub

#endif
