// A bare field, the most common expression, is read from the view; the others run on the machine.
#include "engine/operations/record_expression.h"

#include <algorithm>
#include <utility>

#include "base/half_place.h"
#include "engine/expression/nullable_expression.h"
#include "engine/expression/numbers.h"
#include "engine/view/view_record.h"
#include "platform/text.h"

namespace triglub {

namespace {

using expression::Kind;
using expression::NullableExpression;
using expression::Value;

// The names of a view's fields, with the nearest one for a name that is none.
class ViewNames final : public expression::FieldNames {
 public:
  explicit ViewNames(const View& view) : view_(view) {}
  std::optional<expression::Field> find(std::string_view name) const override { return view_.find(name); }
  std::optional<std::string> nearest_to(std::string_view name) const override {
    return nearest(name, names(name.find('.') != std::string_view::npos));
  }

 private:
  std::vector<std::string> names(bool with_table) const {
    std::vector<std::string> names;
    for (const ViewField& field : view_.fields()) {
      const std::string& name = view_.schema_of(field).name;
      names.push_back(with_table ? view_.table_of(field).schema().name + "." + name : name);
    }
    return names;
  }

  const View& view_;
};

// Some records of a view.
class ListedRecords final : public expression::Records {
 public:
  ListedRecords(const View& view, const RecordList& list) : at_(view, 0), list_(list) {}
  std::uint32_t count() const override { return list_.count; }
  const expression::Record& record(std::uint32_t i) override {
    at_.move_to(list_[i]);
    return at_;
  }

 private:
  ViewRecord at_;
  const RecordList& list_;
};

std::vector<std::size_t> tables_of(const View& view, const std::vector<int>& fields) {
  std::vector<std::size_t> tables;
  for (const int field : fields) {
    const std::size_t table = view.fields()[static_cast<std::size_t>(field)].table;
    if (tables.empty() || tables.back() != table) tables.push_back(table);  // fields are ordered by table
  }
  return tables;
}

std::vector<std::size_t> united(const std::vector<std::size_t>& a, const std::vector<std::size_t>& b) {
  std::vector<std::size_t> all;
  std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(all));
  return all;
}

ValueKind as_value_kind(Kind kind) {
  switch (kind) {
    case Kind::integer:
      return ValueKind::integer;
    case Kind::real:
      return ValueKind::real;
    case Kind::text:
      break;
  }
  return ValueKind::text;
}

}  // namespace

class RecordExpression::State {
 public:
  State(const View& view, std::unique_ptr<NullableExpression> compiled)
      : compiled(std::move(compiled)),
        kind(this->compiled->kind()),
        is_field(this->compiled->bare_field() != expression::kNoField),
        tables(tables_of(view, this->compiled->own_fields())),
        all_tables(united(tables, tables_of(view, this->compiled->fields_over_records()))),
        view_(view) {
    if (is_field) field_ = view.fields()[static_cast<std::size_t>(this->compiled->bare_field())];
  }

  void read_field(std::uint32_t record, RecordValue* value) const;
  bool run(std::uint32_t record, const RecordList& records, RecordValue* value) const;
  std::string_view text_at(std::uint32_t record, const RecordValue& value);

  const std::unique_ptr<NullableExpression> compiled;
  const Kind kind;
  const bool is_field;
  const std::vector<std::size_t> tables;
  const std::vector<std::size_t> all_tables;

 private:
  const View& view_;
  ViewField field_;  // when that is all there is
  expression::NumberBuffer buffer_{};
};

void RecordExpression::State::read_field(std::uint32_t record, RecordValue* value) const {
  value->is_null = view_.is_null(field_, record);
  if (value->is_null) return;
  switch (kind) {
    case Kind::integer:
      value->integer = view_.integer(field_, record);
      break;
    case Kind::real:
      value->real = view_.real(field_, record);
      value->doubt = view_.doubt(field_, record);
      break;
    case Kind::text:
      value->text = view_.text(field_, record);
      break;
  }
}

bool RecordExpression::State::run(std::uint32_t record, const RecordList& records, RecordValue* value) const {
  ListedRecords listed(view_, records);
  Value computed;
  const bool succeeds = compiled->evaluate(ViewRecord(view_, record), &listed, &computed, &value->doubt);
  value->is_null = !succeeds || computed.is_null();
  if (value->is_null) return succeeds;
  switch (kind) {
    case Kind::integer:
      value->integer = computed.integer;
      break;
    case Kind::real:
      value->real = computed.real;
      break;
    case Kind::text:
      value->text = computed.text();
      break;
  }
  return true;
}

// Of a value that is not null.
std::string_view RecordExpression::State::text_at(std::uint32_t record, const RecordValue& value) {
  if (kind == Kind::text) return value.text;
  if (is_field) return view_.text(field_, record);
  return kind == Kind::integer ? expression::text_of(value.integer, &buffer_)
                               : expression::text_of(fewest_digits(value.real, value.doubt), &buffer_);
}

RecordExpression::RecordExpression(std::unique_ptr<State> state) : state_(std::move(state)) {}
RecordExpression::~RecordExpression() = default;

ValueKind RecordExpression::kind() const { return as_value_kind(state_->kind); }
bool RecordExpression::is_field() const { return state_->is_field; }
bool RecordExpression::uses_records() const { return state_->compiled->uses_records(); }
const std::vector<std::size_t>& RecordExpression::tables() const { return state_->tables; }
const std::vector<std::size_t>& RecordExpression::all_tables() const { return state_->all_tables; }
std::uint64_t RecordExpression::assumed() const { return state_->compiled->assumed(); }

bool RecordExpression::evaluate(std::uint32_t record, const RecordList& records, RecordValue* value) {
  if (!state_->is_field) return state_->run(record, records, value);
  state_->read_field(record, value);
  return true;
}

bool RecordExpression::evaluate_text(std::uint32_t record, const RecordList& records, RecordValue* value) {
  if (!evaluate(record, records, value)) return false;
  if (!value->is_null) value->text = state_->text_at(record, *value);
  return true;
}

std::unique_ptr<RecordExpression> RecordExpressionCompiler::compile(const View& view, std::string_view text,
                                                                    std::string* fault) {
  expression::Fault found{};
  auto compiled = NullableExpression::compile(text, ViewNames(view), &found);
  if (compiled == nullptr) {
    if (fault != nullptr) *fault = found.text;
    return nullptr;
  }
  auto state = std::make_unique<RecordExpression::State>(view, std::move(compiled));
  return std::unique_ptr<RecordExpression>(new RecordExpression(std::move(state)));
}

std::optional<double> number_in(std::string_view text) {
  double number = 0;
  return expression::to_real(text, &number) ? std::optional(number) : std::nullopt;
}

void append_shortest(double number, std::string* text) {
  expression::NumberBuffer buffer;
  text->append(expression::text_of(number, &buffer));
}

void append_decimal(std::int64_t number, std::string* text) {
  expression::NumberBuffer buffer;
  text->append(expression::text_of(number, &buffer));
}

double rounded_within(double number, double doubt) { return fewest_digits(number, doubt); }

void append_rounded(double number, double doubt, std::string* text) {
  append_shortest(rounded_within(number, doubt), text);
}

}  // namespace triglub
