// The words of a line hang on each other, so the first that is wrong ends the look at them. Names are looked at where
// all those of a group are there.
#include "tree/line_reader.h"

#include "base/characters.h"
#include "base/words.h"
#include "elements.h"
#include "tree/line_type.h"
#include "xml_text.h"

namespace triglub {

namespace {

constexpr std::string_view kLeftOut = "x";
constexpr std::string_view kRequired = "r";
constexpr std::string_view kPlain = "-";

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

}  // namespace

std::string_view line_name(std::string_view text) { return take_word(&text, kWhiteSpace); }

std::optional<TreeLine> LineReader::read(std::string_view text, LinePart part, long number) {
  TreeLine line;
  line.line = number;
  line.name = take_word(&text, kWhiteSpace);
  const std::string_view flag = take_word(&text, kWhiteSpace);
  if (flag == kLeftOut) return std::nullopt;
  line.keyword = take_word(&text, kWhiteSpace);
  std::string fault = read_flag(flag, &line);
  if (fault.empty()) fault = read_type(&line);
  if (!fault.empty()) {
    faults_->add(number, fault);
    return std::nullopt;
  }
  fault = read_value(text, part, &line);
  if (!fault.empty()) faults_->add(number, fault);
  return line;
}

std::string LineReader::read_flag(std::string_view flag, TreeLine* line) {
  line->is_required = flag == kRequired;
  if (line->is_required || flag == kPlain) return "";
  if (flag.empty()) return quoted(line->name) + " stands alone: a line is NAME FLAG TYPE VALUE";
  return quoted(flag) + " is no flag: a line is NAME FLAG TYPE VALUE, and FLAG is -, r (required) or x (left out)";
}

std::string LineReader::read_type(TreeLine* line) {
  if (line->keyword.empty()) return quoted(line->name) + " has no type: a line is NAME FLAG TYPE VALUE";
  const auto type = line_type(line->keyword);
  if (type) {
    line->type = *type;
    return "";
  }
  if (is_type_keyword(line->keyword)) return "the type " + quoted(line->keyword) + " is of edition 1 alone";
  return "the type " + quoted(line->keyword) + " is not known" + did_you_mean(line->keyword, line_type_keywords());
}

std::string LineReader::read_value(std::string_view value, LinePart part, TreeLine* line) {
  if (part == LinePart::attributes && !names_element(line->type)) return "an attribute cannot be a " + line->keyword;
  if (line->type == LineType::literal) return read_literal(value, part, line);
  return has_expression(line->type) ? read_expression(value, line) : "";
}

std::string LineReader::read_literal(std::string_view value, LinePart part, TreeLine* line) {
  const bool is_attribute = part == LinePart::attributes;
  if (line->keyword != kSiteKeyword) {
    line->value = value;
    return xml_text_fault(value, is_attribute);
  }
  if (value.empty()) return quoted(line->name) + " has no value: which key of the parameter file site?";
  const SiteTexts::Answer answer = site_.find(std::string(value));
  if (answer.text == nullptr) return answer.fault;
  line->value = answer.text;
  const std::string fault = xml_text_fault(line->value, is_attribute);
  return fault.empty() ? "" : "the key " + quoted(value) + " (" + answer.place + "): " + fault;
}

std::string LineReader::read_expression(std::string_view value, TreeLine* line) const {
  line->value = value;
  if (value.empty()) return quoted(line->name) + " has no value: " + line->keyword + " takes an expression";
  return check_(line->value, *line);
}

}  // namespace triglub
