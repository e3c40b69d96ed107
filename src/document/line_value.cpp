// Neighbouring elements mostly share rows: what depends on nothing else is not worked out again.
#include "document/line_value.h"

#include "platform/text.h"

namespace triglub {

namespace {

const char* text_of(ValueRemark remark) {
  switch (remark) {
    case ValueRemark::wrapped:
      return "brought into range by whole turns";
    case ValueRemark::no_number:
      return "no number, left empty";
    case ValueRemark::out_of_range:
      return "out of range, left empty";
    case ValueRemark::no_date:
      return "no date, left empty";
    case ValueRemark::forbidden_characters:
      return "characters that XML does not allow, left out";
    case ValueRemark::none:
      break;
  }
  return "";
}

Rank rank_of(ValueRemark remark) { return remark == ValueRemark::wrapped ? Rank::note : Rank::warning; }

}  // namespace

TreeValue::TreeValue(const ValueContext& context, const TreeLine& line, XmlPlace place)
    : context_(context), line_(line), place_(place) {
  if (!has_expression(line.type)) {
    text_ = line.value;
    return;
  }
  expression_ = RecordExpression::compile(context.records.view(), line.value, nullptr);
  tables_ = mask_of(expression_->tables());
  is_kept_ = !expression_->uses_records();
}

void TreeValue::tell(Rank rank, const char* what, std::uint32_t record) {
  context_.findings.add(rank, context_.tree.place(line_) + ": " + line_.name + ": " + what,
                        context_.records.place(record, mask_of(expression_->all_tables())));
}

bool TreeValue::is_latest(std::uint32_t record) const {
  return has_latest_ && is_kept_ && context_.records.are_same(tables_, latest_record_, record);
}

std::string_view TreeValue::spelled(std::string_view value) const {
  return line_.type == LineType::unit ? context_.tree.options().spelled(trimmed(value)) : value;
}

ValueRemark TreeValue::append_text(std::string_view value, std::string* text) const {
  return append_escaped(trimmed(value), place_, text) ? ValueRemark::none : ValueRemark::forbidden_characters;
}

ValueRemark TreeValue::append_value(std::uint32_t record, const RecordList& records, std::string* text,
                                    bool* has_failed) {
  RecordValue value;
  if (line_.type == LineType::string || line_.type == LineType::unit) {
    *has_failed = !expression_->evaluate_text(record, records, &value);
    return value.is_null ? ValueRemark::none : append_text(spelled(value.text), text);
  }
  *has_failed = !expression_->evaluate(record, records, &value);
  if (value.is_null) return ValueRemark::none;
  if (line_.type == LineType::integer && expression_->kind() == ValueKind::integer) {
    append_decimal(value.integer, text);
    return ValueRemark::none;
  }
  if (expression_->kind() == ValueKind::text && trimmed(value.text).empty()) return ValueRemark::none;
  const std::optional<double> number = number_of(value, expression_->kind());
  return number ? append_number_as(line_.type, *number, value.doubt, text) : ValueRemark::no_number;
}

// Replaces *text. REQUIRES: an expression.
void TreeValue::evaluate(std::uint32_t record, const RecordList& records, std::string* text, bool tells) {
  text->clear();
  bool has_failed = false;
  const std::uint64_t assumed = expression_->assumed();
  const ValueRemark remark = append_value(record, records, text, &has_failed);
  if (!tells) return;
  if (has_failed) tell(Rank::warning, "cannot be worked out, left empty", record);
  if (remark != ValueRemark::none) tell(rank_of(remark), text_of(remark), record);
  if (expression_->assumed() != assumed) tell(Rank::note, "a null, for which a value is assumed", record);
}

// Looks at the records at which a row is another than at the one before.
void TreeValue::check_same(const RecordList& records, TableMask constant) {
  const TableMask changing = tables_ & ~constant;
  if (changing == 0) return;
  for (std::uint32_t i = 1; i < records.count; ++i) {
    if (context_.records.are_same(changing, records[i - 1], records[i])) continue;
    evaluate(records[i], records, &other_, false);
    if (other_ == text_) continue;
    const TableMask tables = mask_of(expression_->all_tables());
    context_.findings.add(
        Rank::warning,
        context_.tree.place(line_) + ": " + line_.name +
            ": not the same for all records of its element; that of the first stands",
        context_.records.place(records[0], tables) + " and " + context_.records.place(records[i], tables));
    return;
  }
}

const std::string& TreeValue::write(const RecordList& records, TableMask constant) {
  if (expression_ == nullptr) return text_;
  if (!is_latest(records[0])) {
    evaluate(records[0], records, &text_, true);
    has_latest_ = true;
    latest_record_ = records[0];
  }
  check_same(records, constant);
  return text_;
}

}  // namespace triglub
