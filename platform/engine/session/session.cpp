// Tables come from the snapshot as views that all sessions share; what a session makes of them is its own.
#include "engine/session/session.h"

#include "platform/database.h"
#include "platform/elog.h"

namespace triglub {

Session::Session(std::shared_ptr<const Snapshot> snapshot)
    : snapshot_(std::move(snapshot)), slots_(snapshot_->schema().tables().size()) {}

std::int64_t Session::open_table(std::size_t index) {
  std::shared_ptr<const View>& view = slots_[index].view;
  if (view == nullptr) view = snapshot_->table(index);
  return view == nullptr ? dbINVALID : static_cast<std::int64_t>(index);
}

std::int64_t Session::find_view(std::string_view name) {
  const auto named = view_by_name_.find(name);
  if (named != view_by_name_.end()) return named->second;
  const int index = snapshot_->schema().find(name);
  return index < 0 ? dbINVALID : open_table(static_cast<std::size_t>(index));
}

std::int64_t Session::add_view(std::unique_ptr<const View> view, const char* name) {
  slots_.push_back({std::move(view)});
  const auto number = static_cast<std::int64_t>(slots_.size()) - 1;
  if (name != nullptr && *name != '\0' && snapshot_->schema().find(name) < 0) view_by_name_[name] = number;
  return number;
}

void Session::release_view(std::int64_t number) {
  if (view(number) == nullptr || is_kept(number)) return;
  slots_[static_cast<std::size_t>(number)] = {};
  std::erase_if(view_by_name_, [number](const auto& entry) { return entry.second == number; });
}

Expression* Session::expression(std::int64_t view, const char* text, int type) {
  Slot& slot = slots_[static_cast<std::size_t>(view)];
  ExpressionsByText& compiled = slot.expressions[type];
  const auto known = compiled.find(std::string_view(text));
  if (known != compiled.end()) return known->second.get();
  if (compiled_ == kMaxExpressions) {
    elog_complain(0, "more than %zu expressions of one session", kMaxExpressions);
    return nullptr;
  }
  auto made = compile_expression(*slot.view, text, type);
  if (made == nullptr) return nullptr;
  ++compiled_;
  return compiled.emplace(text, std::move(made)).first->second.get();
}

bool Session::is_kept(std::int64_t view) const {
  const bool is_table = view >= 0 && static_cast<std::size_t>(view) < snapshot_->schema().tables().size();
  return is_table || kept_.contains(view);
}

std::int64_t Session::kept_join(std::int64_t view, const std::string& step) const {
  const auto entry = kept_joins_.find({view, step});
  return entry == kept_joins_.end() ? dbINVALID : entry->second;
}

void Session::keep_join(std::int64_t view, const std::string& step, std::int64_t result) {
  kept_.insert(result);  // first: what is known as a join must not be released
  kept_joins_[{view, step}] = result;
}

}  // namespace triglub
