// Lines and attributes are sorted out once: what stands in the file stays a text, what the records give is bound.
#include "writer/node_plan.h"

#include "elements/keywords.h"

namespace triglub {

namespace {

LineKind kind_of(const ElementDescription& line) {
  if (line.is_ignored()) return LineKind::ignored;
  if (line.is_categorized_group()) return LineKind::categories;
  if (line.is_stage()) return LineKind::stage;
  if (line.is_group()) return LineKind::group;
  return line.is_count() ? LineKind::count : LineKind::leaf;
}

}  // namespace

LineValue::LineValue(const ElementDescription& line, bool groups_stand)
    : constant_(line.value()), is_refused_(line.is_group() && !groups_stand) {
  if (!line.is_group() && !line.is_constant()) bound_.emplace(line.value(), line.type());
}

void LineValue::write(ConversionState& state, Dbptr db, std::string* result) {
  if (bound_) return bound_->write(state, db, result);
  if (is_refused_) refuse_to_evaluate_group();
  *result = constant_;
}

AttributePlan::AttributePlan(const ElementDescription& line)
    : name(line.name()), head(" " + name + "=\""), is_ignored(line.is_ignored()), value(line, false) {}

LinePlan::LinePlan(const ElementDescription& line)
    : line(line), name(line.name()), kind(kind_of(line)), value(line, true) {}

NodePlan::NodePlan(const ElementGroup& group)
    : name(group.name()), is_channel(name == "Channel"), is_transparent(name == ElementTag::kTransparentName) {
  for (std::size_t i = 0; i < group.attribute_count(); ++i) attributes.emplace_back(group.attribute(i));
  for (std::size_t i = 0; i < group.element_count(); ++i) lines.emplace_back(group[i]);
  const int line = group.find_element("SampleRate");
  if (line >= 0) samplerate = static_cast<std::size_t>(line);
}

void NodePlan::check_names() {
  if (are_names_checked) return;
  for (const AttributePlan& attribute : attributes) {
    if (!attribute.is_ignored) XmlAttribute().get(attribute.name, "");
  }
  [[maybe_unused]] const ElementTag checked(name);  // throws for one that is not safe
  are_names_checked = true;
}

NodePlan& NodePlans::of(Pf* parameters, const std::string& group) {
  std::unique_ptr<NodePlan>& plan = plans_[group];
  if (plan == nullptr) plan = std::make_unique<NodePlan>(ElementGroup(parameters, group));
  return *plan;
}

}  // namespace triglub
