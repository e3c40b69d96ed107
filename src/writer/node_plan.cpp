#include "writer/node_plan.h"

#include "db2stationxml/conversion.h"

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

LineValue::LineValue(const ElementDescription& line, bool groups_stand) : constant_(line.value()) {
  if (line.is_group()) {
    if (!groups_stand) failing_ = line;
  } else if (!line.is_constant()) {
    bound_.emplace(line.value(), line.type());
  }
}

void LineValue::write(Dbptr db, std::string* result) {
  if (bound_) return bound_->write(db, result);
  if (failing_) failing_->evaluate(db);
  *result = constant_;
}

AttributePlan::AttributePlan(const ElementDescription& line)
    : name(line.name()), head(" " + name + "=\""), is_ignored(line.is_ignored()), value(line, false) {}

LinePlan::LinePlan(const ElementDescription& line)
    : line(line), name(line.name()), kind(kind_of(line)), value(line, true) {}

NodePlan::NodePlan(const ElementGroup& group) : name(group.name()), is_channel(name == "Channel") {
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
  const ElementTag tag(name);
  is_transparent = tag.open_tag().empty();
  are_names_checked = true;
}

NodePlan& NodePlans::of(const std::string& group) {
  std::unique_ptr<NodePlan>& plan = plans_[group];
  if (plan == nullptr) plan = std::make_unique<NodePlan>(ElementGroup(conversion_parameters(), group));
  return *plan;
}

}  // namespace triglub
