// One line of the element tree.
#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "base/words.h"
#include "dbhelper.h"
#include "elements.h"
#include "elements/keywords.h"
#include "platform/text.h"
#include "xml.h"

using triglub::LineShape;

namespace {

// A tab is part of a word.
constexpr std::string_view kSeparator = " ";

// An unknown keyword is evaluated as deg_lat is.
LineShape shape_of(const std::string& type) {
  const triglub::Keyword* keyword = triglub::find_keyword(type);
  return keyword == nullptr ? LineShape::value : keyword->shape;
}

}  // namespace

void triglub::refuse_to_evaluate_group() {
  throw std::logic_error("Cannot evaluate groups in ElementDescription::evaluate. (yet?)");
}

ElementDescription::ElementDescription(char const* line) {
  std::string_view rest = line == nullptr ? "" : line;
  name_ = triglub::take_word(&rest, kSeparator);
  const std::string_view flag = triglub::take_word(&rest, kSeparator);
  if (flag.size() == 1) flag_ = flag[0];
  type_ = triglub::take_word(&rest, kSeparator);
  value_ = triglub::trimmed(rest);
}

std::string ElementDescription::name() const { return name_; }
std::string ElementDescription::type() const { return type_; }
std::string ElementDescription::value() const { return value_; }
bool ElementDescription::is_ignored() const { return flag_ == 'x'; }
bool ElementDescription::is_required() const { return flag_ == 'r'; }
bool ElementDescription::is_group() const { return shape_of(type_) == LineShape::group; }
bool ElementDescription::is_categorized_group() const {
  return shape_of(type_) == LineShape::categories || is_numeric_group();
}
bool ElementDescription::is_numeric_group() const { return shape_of(type_) == LineShape::number_categories; }
bool ElementDescription::is_stage() const { return shape_of(type_) == LineShape::stage; }
bool ElementDescription::is_count() const { return shape_of(type_) == LineShape::count; }
bool ElementDescription::leads_to_group() const { return !is_ignored() && (is_group() || is_categorized_group()); }

bool ElementDescription::is_constant() const {
  return is_ignored() || value_.empty() || shape_of(type_) == LineShape::text || is_count();
}

void ElementDescription::evaluate(Dbptr db) {
  if (is_group()) triglub::refuse_to_evaluate_group();
  if (!is_constant()) value_ = eval_as_type(db, value_.c_str(), type_);
}

std::string ElementDescription::as_string() const { return name_ + "   " + flag_ + " " + type_ + "   " + value_; }

std::string ElementDescription::as_xml_attribute() const {
  // An empty value is written too, required or not: an attribute that is asked for is never silently missing.
  return is_ignored() ? "" : XmlAttribute().get(name_, value_);
}

std::vector<ElementDescription> Tbl2ElementDescription(Tbl* list) {
  std::vector<ElementDescription> lines;
  const long count = maxtbl(list);
  lines.reserve(static_cast<std::size_t>(count));
  for (long i = 0; i < count; ++i) {
    const auto* line = static_cast<const char*>(gettbl(list, i));
    if (line != nullptr) lines.emplace_back(line);
  }
  return lines;
}
