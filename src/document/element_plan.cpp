// Plans are put in their place before their lines are made: the tree has no circles, but many lines can lead to a
// group.
#include "document/element_plan.h"

#include <utility>

#include "document/code_check.h"

namespace triglub {

namespace {

// A list of lines whose parts refer to each other by address is made once and never grows.
template <typename Make>
std::vector<PlannedLine> plan_all(const std::vector<TreeLine>& lines, const Make& make) {
  std::vector<PlannedLine> plans;
  plans.reserve(lines.size());
  for (const TreeLine& line : lines) plans.push_back(make(line));
  return plans;
}

TableMask tables_of(const PlannedLine& line) {
  if (line.value) return line.value->tables();
  return line.split ? line.split->tables() : 0;
}

}  // namespace

PlannedLine ElementPlans::plan_attribute(const TreeGroup& group, const TreeLine& line) const {
  PlannedLine plan;
  plan.line = &line;
  plan.head = " " + line.name + "=\"";
  plan.tail = "\"";
  plan.is_code = is_fdsn_code(group.tag, line.name);
  if (line.type == LineType::count) {
    plan.split.emplace(context_, line);
  } else {
    plan.value.emplace(context_, line, XmlPlace::attribute);
  }
  return plan;
}

PlannedLine ElementPlans::plan_line(const TreeLine& line) {
  PlannedLine plan;
  plan.line = &line;
  if (names_element(line.type) && !line.is_content()) {
    plan.head = "<" + line.name + ">";
    plan.tail = "</" + line.name + ">\n";
  }
  if (is_category(line.type) || line.type == LineType::count) {
    plan.split.emplace(context_, line);
  } else if (names_element(line.type)) {
    plan.value.emplace(context_, line, XmlPlace::content);
  }
  if (line.group != nullptr) {
    plan.is_cut = !cut_.empty() && line.group->tag == cut_;
    if (!plan.is_cut) plan.child = &of(*line.group);
  }
  return plan;
}

ElementPlan& ElementPlans::of(const TreeGroup& group) {
  std::unique_ptr<ElementPlan>& made = plans_[&group];
  if (made != nullptr) return *made;
  made = std::make_unique<ElementPlan>();
  ElementPlan& plan = *made;
  plan.group = &group;
  plan.opening = "<" + group.tag;
  plan.closing = "</" + group.tag + ">\n";
  plan.attributes = plan_all(group.attributes, [&](const TreeLine& line) { return plan_attribute(group, line); });
  plan.lines = plan_all(group.elements, [this](const TreeLine& line) { return plan_line(line); });
  plan.holds_text = !group.elements.empty() && group.elements.front().is_content();
  for (const PlannedLine& attribute : plan.attributes) plan.tables |= tables_of(attribute);
  for (const PlannedLine& line : plan.lines) {
    plan.tables |= tables_of(line);
    if (line.line->is_required && !line.is_cut && !names_element(line.line->type)) ++plan.required_groups;
  }
  return plan;
}

void ElementPlans::forget_values() {
  for (const auto& [group, plan] : plans_) {
    for (std::vector<PlannedLine>* lines : {&plan->attributes, &plan->lines}) {
      for (PlannedLine& line : *lines) {
        if (line.value) line.value->forget();
      }
    }
  }
}

}  // namespace triglub
