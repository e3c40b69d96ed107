// The compiled form: what the steps of a compilation made, and the values it answers.
#include "engine/expression/expression.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "engine/expression/bind.h"
#include "engine/expression/emit.h"
#include "engine/expression/evaluate.h"
#include "engine/expression/fault.h"
#include "engine/expression/numbers.h"
#include "engine/expression/parse.h"
#include "engine/expression/text_check.h"
#include "platform/database.h"

namespace triglub::expression {

namespace {

class CompiledExpression final : public Compiled {
 public:
  // Throws CompileError.
  CompiledExpression(std::string_view text, const FieldNames& names) : source_(text) {
    Tree tree = parse(source_);
    bind(&tree, names, Nulls::as_values);
    program_ = emit(tree, Nulls::as_values);
    const Node& root = tree.root();
    if (root.type == NodeType::field) bare_field_ = root.field;
    if (root.type == NodeType::match && tree.nodes[root.a].type == NodeType::field) {
      field_match_ = {tree.nodes[root.a].field, root.matcher, root.oper == Operator::no_match};
    }
    matchers_ = std::move(tree.matchers);
  }

  bool integer(const Record& record, Scratch* scratch, std::int64_t* result) const override;
  bool real(const Record& record, Scratch* scratch, double* result) const override;
  bool text(const Record& record, Scratch* scratch, std::string* result) const override;
  bool is_true(const Record& record, Scratch* scratch) const override;
  std::optional<FieldMatch> field_match() const override { return field_match_; }

 private:
  std::string source_;  // literals and patterns are views of it
  Program program_;
  std::vector<std::unique_ptr<Matcher>> matchers_;
  int bare_field_ = kNoField;  // when the expression is no more than that
  std::optional<FieldMatch> field_match_;
};

bool CompiledExpression::integer(const Record& record, Scratch* scratch, std::int64_t* result) const {
  Evaluation evaluation(program_, record, scratch->texts(program_.scratch_size));
  Value value;
  if (!evaluation.run(&value)) return false;
  switch (program_.result) {
    case Kind::integer:
      *result = value.integer;
      return true;
    case Kind::real:
      return to_integer(value.real, result);
    case Kind::text:
      return to_integer(value.text(), result);
  }
  return false;
}

bool CompiledExpression::real(const Record& record, Scratch* scratch, double* result) const {
  Evaluation evaluation(program_, record, scratch->texts(program_.scratch_size));
  Value value;
  if (!evaluation.run(&value)) return false;
  switch (program_.result) {
    case Kind::integer:
      *result = static_cast<double>(value.integer);
      return true;
    case Kind::real:
      *result = value.real;
      return true;
    case Kind::text:
      return to_real(value.text(), result);
  }
  return false;
}

bool CompiledExpression::text(const Record& record, Scratch* scratch, std::string* result) const {
  if (bare_field_ != kNoField) {
    result->assign(record.text(bare_field_));
    return true;
  }
  Evaluation evaluation(program_, record, scratch->texts(program_.scratch_size));
  Value value;
  if (!evaluation.run(&value)) return false;
  NumberBuffer buffer;
  switch (program_.result) {
    case Kind::integer:
      result->assign(text_of(value.integer, &buffer));
      return true;
    case Kind::real:
      result->assign(text_of(value.real, &buffer));
      return true;
    case Kind::text:
      result->assign(value.text());
      return true;
  }
  return false;
}

bool CompiledExpression::is_true(const Record& record, Scratch* scratch) const {
  if (field_match_) {
    return field_match_->matcher->matches(record.text(field_match_->field)) != field_match_->negated;
  }
  if (program_.result == Kind::integer) {
    std::int64_t number = 0;
    return integer(record, scratch, &number) && number != 0;
  }
  double number = 0;
  return real(record, scratch, &number) && number != 0 && !std::isnan(number);
}

bool is_result_type(int type) { return type >= dbINTEGER && type <= dbSTRING; }

void check(std::string_view text, int type) {
  if (!is_result_type(type)) throw CompileError{0, "expected a result type, not " + std::to_string(type)};
  check_text(text);
}

}  // namespace

std::unique_ptr<Compiled> Compiled::compile(std::string_view text, const FieldNames& names, int type, Fault* fault) {
  try {
    check(text, type);
    return std::make_unique<CompiledExpression>(text, names);
  } catch (const CompileError& error) {
    if (fault != nullptr) *fault = describe(error, text);
    return nullptr;
  }
}

}  // namespace triglub::expression
