#include "reference/reference_writer.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "reference/reference_stage.h"
#include "reference/reference_value.h"
#include "reference/reference_view.h"

namespace triglub_reference {

namespace {

constexpr unsigned int kDeepest = 15;

// What ends the process.
struct Fatal {
  std::string text;
};

bool all_of_name(const std::string& name, const std::string& others) {
  return std::all_of(name.begin(), name.end(), [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           others.find(c) != std::string::npos;
  });
}

void check_tag(const std::string& name) {
  if (!all_of_name(name, "_-:")) throw std::runtime_error("Unsafe tag: " + name);
}

std::string escaped(const std::string& value) {
  std::string text;
  for (char c : value) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '\'':
        text += "&apos;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        text += c;
    }
  }
  return text;
}

std::string attribute(const std::string& name, const std::string& value) {
  if (!all_of_name(name, ":.-_")) throw std::runtime_error("Invalid attribute name: [" + name + "]");
  return " " + name + "=\"" + escaped(value) + "\"";
}

std::string open_tag(const std::string& name, const std::string& attributes) {
  return name == "-" ? "" : "<" + name + attributes + ">";
}

std::string close_tag(const std::string& name) { return name == "-" ? "" : "</" + name + ">"; }

std::string leaf(const std::string& name, const std::string& content, unsigned int indent) {
  check_tag(name);
  const std::string spaces(indent, ' ');
  const bool fits = 2 * name.size() + content.size() + 4 < 80;
  const std::string middle = fits ? content : "\n" + spaces + " " + content + "\n" + spaces;
  return spaces + open_tag(name, "") + middle + close_tag(name) + "\n";
}

bool is_ignored(const Line& line) { return line.flag == "x"; }
bool is_categorized(const Line& line) {
  return line.type == "CATEGORIZED_GROUP" || line.type == "CATEGORIZED_BY_NUMBER";
}

// A category goes between slashes as it is, so a slash in it, or a bracket without its partner, spoils the condition.
bool spoils_a_condition(const std::string& category) { return category.find_first_of("/(") != std::string::npos; }

// The numbers of the records of a node, in ascending order.
using Records = std::vector<std::size_t>;

class Writer {
 public:
  Writer(const Request& request, ProcessState& state, Outcome& outcome, const View& view)
      : request_(request), state_(state), outcome_(outcome), view_(view), verbose_((request.flags & 3) != 0) {
    switch (request.flags & 0x78) {
      case 0x08:
        cut_ = "Station";
        break;
      case 0x10:
        cut_ = "Channel";
        break;
      case 0x20:
        cut_ = "Stage";
        break;
      default:
        break;
    }
  }

  // Fails when the tree is deeper than it may be.
  void walk(const std::string& group, unsigned int depth) const {
    if (depth > kDeepest) throw std::runtime_error("Exceeded maximum node depth");
    for (const Line& line : definition(group).elements) {
      if (!is_ignored(line) && (line.type == "GROUP" || is_categorized(line))) walk(line.name, depth + 1);
    }
  }

  void write_node(const std::string& group, const Records& records) {
    if (records.empty()) return;
    if (++state_.depth > kDeepest) throw Fatal{"Exceeded maximum node level. Group recursion in parameter file?"};
    const Definition node = evaluated(definition(group), view_[records.front()]);
    std::string attributes;
    for (const Line& line : node.attributes) {
      attributes += (is_ignored(line) ? "" : attribute(line.name, line.value)) + " ";
    }
    check_tag(node.tag);
    if (node.tag == "Channel") {
      const auto rate = std::find_if(node.elements.begin(), node.elements.end(),
                                     [](const Line& line) { return line.name == "SampleRate"; });
      state_.samplerate_is_zero = rate == node.elements.end() || rate->value == "0";
    }
    write_tag(open_tag(node.tag, attributes));
    for (const Line& line : node.elements) {
      if (!is_ignored(line)) write_line(node, line, records);
    }
    write_tag(close_tag(node.tag));
    --state_.depth;
  }

 private:
  const Definition& definition(const std::string& group) const { return request_.tree.definitions.at(group); }

  Definition evaluated(Definition node, const Record& record) {
    for (Line& line : node.attributes) {
      if (!is_ignored(line)) line.value = evaluate(line, record, request_.site, outcome_.log);
    }
    for (Line& line : node.elements) {
      if (!is_ignored(line) && line.type != "GROUP") line.value = evaluate(line, record, request_.site, outcome_.log);
    }
    return node;
  }

  void write_tag(const std::string& tag) {
    if (!tag.empty()) outcome_.document += std::string(state_.depth, ' ') + tag + "\n";
  }

  void write_line(const Definition& node, const Line& line, const Records& records) {
    if (is_categorized(line)) {
      write_categories(line, records);
    } else if (line.type == "STAGE") {
      write_stage(records.front());
    } else if (line.type == "GROUP") {
      if (state_.samplerate_is_zero && node.tag == "Channel" && line.name == "response_group") return;
      if (definition(line.name).tag != cut_) write_node(line.name, records);
    } else if (line.type == "count") {
      outcome_.document += leaf(line.name, std::to_string(categories(line, records).size()), state_.depth + 1);
    } else {
      outcome_.document += leaf(line.name, line.value, state_.depth + 1);
    }
  }

  void write_stage(std::size_t record) {
    try {
      outcome_.document += stage_text(view_[record], state_);
    } catch (const std::runtime_error& e) {
      outcome_.log.push_back(std::string("warning: Problem with Response: ") + e.what() + " [" +
                             std::to_string(record) + "]");
    }
  }

  std::vector<std::string> categories(const Line& line, const Records& records) const {
    std::vector<std::string> values;
    try {
      const ViewField field = required_field(line.value);
      std::set<std::string> distinct;
      for (std::size_t record : records) distinct.insert(text_of(view_[record], field));
      values.assign(distinct.begin(), distinct.end());
    } catch (const std::runtime_error& e) {
      throw Fatal{e.what()};
    }
    if (line.type == "CATEGORIZED_BY_NUMBER") {
      std::stable_sort(values.begin(), values.end(),
                       [](const std::string& a, const std::string& b) { return std::stoi(a) < std::stoi(b); });
    }
    return values;
  }

  void write_categories(const Line& line, const Records& records) {
    if (definition(line.name).tag == cut_) return;
    const std::vector<std::string> values = categories(line, records);
    trace_categories(values);
    if (values.size() == 1 && values[0] == "-1") return;
    Records remaining = records;
    for (const std::string& category : values) {
      if (spoils_a_condition(category)) {
        throw Fatal{"expression didn't compile: [" + line.value + " =~ /" + category + "/]"};
      }
      const Records taken = taken_by(category, required_field(line.value), remaining);
      write_node(line.name, taken);
      std::erase_if(remaining, [&](std::size_t r) { return std::binary_search(taken.begin(), taken.end(), r); });
    }
  }

  // The records that are left between the first match at or after the first of them and the last match at or before the
  // last of them. The matches themselves may be records of others.
  Records taken_by(const std::string& category, const ViewField& field, const Records& remaining) const {
    if (remaining.empty()) return {};
    const auto matched = [&](std::size_t record) { return matches(text_of(view_[record], field), category); };
    std::size_t from = remaining.front();
    while (from < view_.size() && !matched(from)) ++from;
    std::size_t behind = remaining.back() + 1;
    while (behind > 0 && !matched(behind - 1)) --behind;
    Records taken;
    for (std::size_t record : remaining) {
      if (from <= record && record < behind) taken.push_back(record);
    }
    return taken;
  }

  void trace_categories(const std::vector<std::string>& values) {
    if (!verbose_) return;
    std::string text = "debug:  vector Categorized Group:contains:";
    for (const std::string& value : values) text += " | " + value;
    outcome_.log.push_back(text);
  }

  const Request& request_;
  ProcessState& state_;
  Outcome& outcome_;
  const View& view_;
  bool verbose_;
  std::string cut_;
};

void write_tree(const Request& request, ProcessState& state, Outcome& outcome) {
  const auto view = master_view(request.tables, request.subset);
  if (!view) throw std::logic_error("invalid response from querying the database");
  Writer writer(request, state, outcome, *view);
  if ((request.flags & 3) != 0) {
    try {
      writer.walk(request.tree.root, 0);
    } catch (const std::runtime_error& e) {
      throw std::logic_error(e.what());  // leaves the conversion as it is
    }
  }
  if ((request.flags & 0x78) == 0x40 && !state.responses) state.responses = readable_responses(request.tables);
  Records all;
  for (std::size_t record = 0; record < view->size(); ++record) all.push_back(record);
  writer.write_node(request.tree.root, all);
}

}  // namespace

Outcome reference_conversion(const Request& request, ProcessState& state) {
  Outcome outcome;
  try {
    write_tree(request, state, outcome);
    outcome.end = "returned";
  } catch (const Fatal& fatal) {
    outcome.end = "fatal: " + fatal.text;
  } catch (const MissingCache&) {
    outcome.end = kAnyFatal;
  } catch (const std::runtime_error& e) {
    outcome.end = std::string("fatal: ") + e.what();
  } catch (const std::logic_error& e) {
    outcome.end = std::string("exception: ") + e.what();
  }
  return outcome;
}

}  // namespace triglub_reference
