// Text is gathered and handed on in large pieces.
#include "document/element_writer.h"

#include <algorithm>
#include <utility>

#include "document/code_check.h"

namespace triglub {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;  // bytes to gather before they are handed on

}  // namespace

ElementWriter::ElementWriter(const ValueContext& context, const std::string& cut, StageWriter& stages)
    : context_(context), stages_(stages), plans_(context, cut) {}

void ElementWriter::hand_on() {
  if (out_ == nullptr || unsettled_ > 0 || text_.size() < kPiece) return;
  out_->write(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.clear();
}

void ElementWriter::tell_missing(const Element& element, const PlannedLine& line, const char* what) {
  const std::string element_name =
      element.plan.group->is_transparent ? element.plan.group->key : element.plan.group->tag;
  const TableMask tables = line.value ? line.value->tables() : TableMask{0};
  context_.findings.add(Rank::warning,
                        context_.tree.place(*line.line) + ": " + element_name + " left out: " + line.line->name + what,
                        context_.records.place(element.records[0], tables));
}

void ElementWriter::check_code(const Element& element, const PlannedLine& line) {
  const std::string& tag = element.plan.group->tag;
  if (!line.is_code || is_allowed_code(tag, line.line->name, *line.text)) return;
  context_.findings.add(
      Rank::warning,
      context_.tree.place(*line.line) + ": a " + line.line->name + " that FDSN does not allow for a " + tag,
      "'" + *line.text + "'");
}

// False when it is empty and required.
bool ElementWriter::find_text(Element* element, PlannedLine& line) {
  if (line.value) {
    line.text = &line.value->write(element->records, element->constant);
  } else {
    line.count = std::to_string(line.split->count(element->records, element->constant, &line.groups));
    line.text = &line.count;
  }
  if (!line.text->empty() || !line.line->is_required) return true;
  tell_missing(*element, line, " is empty");
  return false;
}

bool ElementWriter::find_texts(Element* element) {
  for (PlannedLine& attribute : element->plan.attributes) {
    if (!find_text(element, attribute)) return false;
    check_code(*element, attribute);
  }
  for (PlannedLine& line : element->plan.lines) {
    if (names_element(line.line->type) && !find_text(element, line)) return false;
  }
  return true;
}

void ElementWriter::write_opening(Element* element) {
  if (element->plan.group->is_transparent) return;
  text_.append(element->depth, ' ');
  text_ += element->plan.opening;
  for (const PlannedLine& attribute : element->plan.attributes) {
    if (attribute.text->empty() && attribute.line->is_optional) continue;
    text_.append(attribute.head).append(*attribute.text).append(attribute.tail);
    element->holds = true;
  }
  text_ += ">\n";
}

std::size_t ElementWriter::child_depth(const Element& element) const {
  return element.depth + (element.plan.group->is_transparent ? 0 : 1);
}

// What is certain makes all around it hold something: a long element need not be at its end before that is known.
void ElementWriter::settle(Element* element) {
  const bool is_empty = !element->holds && (element->is_optional || element->plan.group->is_transparent);
  if (element->is_certain || element->missing > 0 || is_empty) return;
  element->is_certain = true;
  if (std::exchange(element->is_unsettled, false)) --unsettled_;
  if (element->above != nullptr) note_written(element->above);
}

void ElementWriter::note_written(LineInWork* work) {
  Element& element = work->element;
  element.holds = true;
  const bool is_first = !std::exchange(work->is_written, true);
  if (is_first && work->line.line->is_required && !names_element(work->line.line->type)) --element.missing;
  settle(&element);
}

void ElementWriter::write_leaf(Element* element, const PlannedLine& line) {
  if (line.text->empty() && line.line->is_optional) return;
  text_.append(child_depth(*element), ' ');
  text_.append(line.head).append(*line.text).append(line.tail);
  LineInWork work{*element, line};
  note_written(&work);
  hand_on();
}

void ElementWriter::write_stage(Element* element, const PlannedLine& line) {
  const std::size_t before = text_.size();
  stages_.append(element->records[0], child_depth(*element), &text_);
  if (text_.size() == before) return;
  LineInWork work{*element, line};
  note_written(&work);
  hand_on();
}

void ElementWriter::write_groups(Element* element, PlannedLine& line) {
  if (line.is_cut) return;
  if (line.split) {
    line.split->split(element->records, element->constant, &line.groups);
  } else {
    line.groups.lists.assign(1, element->records);
  }
  LineInWork work{*element, line};
  for (const RecordList& records : line.groups.lists) {
    Element child{*line.child, records, child_depth(*element), line.line->is_optional};
    child.above = &work;
    if (write_element(&child, element->constant)) hand_on();
  }
}

void ElementWriter::write_line(Element* element, PlannedLine& line) {
  if (names_element(line.line->type)) return write_leaf(element, line);
  if (line.line->type == LineType::stage) return write_stage(element, line);
  write_groups(element, line);
}

// Goes no further when a required group has written nothing.
void ElementWriter::write_lines(Element* element, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    PlannedLine& line = element->plan.lines[i];
    const std::size_t missing = element->missing;
    write_line(element, line);
    const bool is_required = line.line->is_required && !names_element(line.line->type) && !line.is_cut;
    if (is_required && element->missing == missing) return tell_missing(*element, line, " is missing");
  }
}

// Finds what the element's own lines hold and writes its opening; false when something required is missing.
bool ElementWriter::begin(Element* element, TableMask known) {
  if (element->records.count == 0) return false;
  element->constant = known | context_.records.constant_tables(element->plan.tables & ~known, element->records);
  if (!find_texts(element)) return false;
  element->missing = element->plan.required_groups;
  element->is_unsettled = element->missing > 0 || element->is_optional;
  if (element->is_unsettled) ++unsettled_;
  write_opening(element);
  settle(element);
  return true;
}

// Closes the element; false when it is to be taken back.
bool ElementWriter::end(Element* element) {
  const bool is_taken_back = element->missing > 0 || (!element->holds && element->is_optional);
  if (element->is_unsettled) --unsettled_;
  if (is_taken_back) return false;
  if (element->plan.group->is_transparent) return element->holds;
  text_.append(element->depth, ' ').append(element->plan.closing);
  return true;
}

bool ElementWriter::write_element(Element* element, TableMask known) {
  const std::size_t before = text_.size();
  if (!begin(element, known)) return false;
  write_lines(element, 0, element->plan.lines.size());
  if (end(element)) return true;
  text_.resize(before);
  return false;
}

bool ElementWriter::write(const TreeGroup& group, const RecordList& records, std::size_t depth, std::ostream& out) {
  out_ = &out;
  Element element{plans_.of(group), records, depth, false};
  const bool is_written = write_element(&element, 0);
  out_->write(text_.data(), static_cast<std::streamsize>(text_.size()));
  text_.clear();
  return is_written;
}

bool ElementWriter::split(const TreeGroup& group, const RecordList& records, std::size_t depth, SplitElement* parts) {
  ElementPlan& plan = plans_.of(group);
  const auto line = std::find_if(plan.lines.begin(), plan.lines.end(),
                                 [](const PlannedLine& candidate) { return candidate.child != nullptr; });
  if (group.is_transparent || line == plan.lines.end() || !line->split) return false;
  if (plan.required_groups > (line->line->is_required ? 1U : 0U)) return false;
  out_ = nullptr;
  Element element{plan, records, depth, false};
  if (!begin(&element, 0)) return false;
  const auto at = static_cast<std::size_t>(line - plan.lines.begin());
  write_lines(&element, 0, at);
  parts->head = std::exchange(text_, {});
  line->split->split(records, element.constant, &line->groups);
  parts->line = line->line;
  parts->categories = line->groups.lists;
  element.missing = 0;
  write_lines(&element, at + 1, plan.lines.size());
  end(&element);
  parts->tail = std::exchange(text_, {});
  return true;
}

}  // namespace triglub
