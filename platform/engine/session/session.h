// What one user makes of a snapshot: views, their names, and expressions compiled for them.
//
// One thread at a time may use a session. Sessions over the same snapshot have nothing else in common, so that each can
// be used by a thread of its own.
#ifndef TRIGLUB_ENGINE_SESSION_SESSION_H
#define TRIGLUB_ENGINE_SESSION_SESSION_H

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/operations/expression.h"
#include "engine/session/snapshot.h"
#include "engine/view/view.h"

namespace triglub {

class Session {
 public:
  explicit Session(std::shared_ptr<const Snapshot> snapshot);

  const std::shared_ptr<const Snapshot>& snapshot() const { return snapshot_; }

  // Views have numbers, from 0, which are not used again; first come the schema's tables.

  // The number of a table of the schema, loaded if need be, or of a named view; dbINVALID when there is none or it
  // refuses to load.
  std::int64_t find_view(std::string_view name);
  // Keeps a view under the next number; a name (null or "": none) that is in use moves to it, unless it is a table's.
  std::int64_t add_view(std::unique_ptr<const View> view, const char* name);
  // Null for an unknown number.
  const View* view(std::int64_t number) const {
    if (number < 0 || static_cast<std::size_t>(number) >= slots_.size()) return nullptr;
    return slots_[static_cast<std::size_t>(number)].view.get();
  }
  // Frees a view that is not kept, and its expressions.
  void release_view(std::int64_t number);

  // Expressions that can be compiled in a session, those of views that are gone included.
  static constexpr std::size_t kMaxExpressions = 100000;
  // The expression compiled for a view, once for each text and result type, and kept as long as the view. Null after a
  // complaint.
  // REQUIRES: there is a view of that number.
  Expression* expression(std::int64_t view, const char* text, int type);

  // Views that are kept for as long as the session: base tables, and joins of kept views that step lists asked for.
  // The tables do not change, so the next step list that begins alike need not join them again.
  bool is_kept(std::int64_t view) const;
  // The view that a step made of a kept view before; dbINVALID when it was not asked for yet.
  std::int64_t kept_join(std::int64_t view, const std::string& step) const;
  void keep_join(std::int64_t view, const std::string& step, std::int64_t result);

 private:
  using ExpressionsByText = std::map<std::string, std::unique_ptr<Expression>, std::less<>>;

  struct Slot {
    std::shared_ptr<const View> view;                // null: a table that was not asked for, or a view that is gone
    std::map<int, ExpressionsByText> expressions{};  // by result type
  };

  std::int64_t open_table(std::size_t index);

  std::shared_ptr<const Snapshot> snapshot_;
  std::vector<Slot> slots_;  // by number
  std::size_t compiled_ = 0;
  std::map<std::string, std::int64_t, std::less<>> view_by_name_;
  std::map<std::pair<std::int64_t, std::string>, std::int64_t> kept_joins_;  // by view and step
  std::set<std::int64_t> kept_;
};

}  // namespace triglub

#endif
