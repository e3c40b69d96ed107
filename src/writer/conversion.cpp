// A conversion of the program's own: a state and the writers over it.
#include "conversion.h"

#include <utility>

#include "state/conversion_state.h"
#include "writer/categories.h"
#include "writer/document.h"
#include "writer/node_writer.h"

namespace triglub {

namespace {

// The depth of a state as it was, however a writing ends: a program may go on after a failure.
class DepthGuard {
 public:
  explicit DepthGuard(ConversionState& state) : state_(state), depth_(state.depth) {}
  ~DepthGuard() { state_.depth = depth_; }
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;

 private:
  ConversionState& state_;
  unsigned int depth_;
};

}  // namespace

Conversion::Conversion() : state_(std::make_unique<ConversionState>()) {}

Conversion::~Conversion() = default;

Conversion::Conversion(Conversion&& other) noexcept = default;

Conversion& Conversion::operator=(Conversion&& other) noexcept = default;

void Conversion::use_site(Pf* site) { state_->site = site; }

void Conversion::use_responses(std::shared_ptr<const ResponseCache> responses) {
  state_->kept_responses = std::move(responses);
  state_->use_responses(*state_->kept_responses);
}

void Conversion::forget_units() { state_->stages.forget_units(); }

void Conversion::write(Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags) {
  const DepthGuard guard(*state_);
  write_document(*state_, db, pf, subset, out, flags);
}

Dbptr Conversion::prepare(Dbptr db, Pf* pf, rbtree* subset, unsigned int flags) {
  return prepare_document(*state_, db, pf, subset, flags);
}

void Conversion::write_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index) {
  refuse_epoch_documents(*state_);
  const DepthGuard guard(*state_);
  NodePlan plan(group);
  NodeWriter(*state_, out).write_node(db, plan, index, nullptr);
}

void Conversion::write_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index,
                            const GroupLineHandler& handle_group_line) {
  refuse_epoch_documents(*state_);
  const DepthGuard guard(*state_);
  NodePlan plan(group);
  NodeWriter(*state_, out).write_node(db, plan, index, &handle_group_line);
}

void Conversion::write_group_line(std::ostream& out, Dbptr db, const ElementGroup& group,
                                  const ElementDescription& line, const SmartIndex& index) {
  refuse_epoch_documents(*state_);
  const DepthGuard guard(*state_);
  NodePlan plan(group);
  LinePlan line_plan(line);
  NodeWriter(*state_, out).write_line_of_groups(db, plan, line_plan, index);
}

std::vector<std::string> Conversion::categories(Dbptr db, const ElementDescription& line, const SmartIndex& index) {
  return categories_of(*state_, db, line, index);
}

}  // namespace triglub
