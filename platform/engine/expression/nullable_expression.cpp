// The compiled form with what its evaluations need.
#include "engine/expression/nullable_expression.h"

#include <algorithm>
#include <string>
#include <utility>

#include "engine/expression/bind.h"
#include "engine/expression/doubt_evaluation.h"
#include "engine/expression/emit.h"
#include "engine/expression/fault.h"
#include "engine/expression/over_records.h"
#include "engine/expression/parse.h"
#include "engine/expression/text_check.h"

namespace triglub::expression {

namespace {

bool reads_field(const Instruction& instruction) {
  return instruction.op >= Op::field_integer && instruction.op <= Op::field_is_null;
}

void append_fields(const Program& program, std::vector<int>* fields) {
  for (const Instruction& instruction : program.code) {
    if (reads_field(instruction)) fields->push_back(instruction.field);
  }
}

void keep_each_once(std::vector<int>* fields) {
  std::sort(fields->begin(), fields->end());
  fields->erase(std::unique(fields->begin(), fields->end()), fields->end());
}

class CompiledNullable final : public NullableExpression {
 public:
  // Throws CompileError.
  CompiledNullable(std::string_view text, const FieldNames& names) : source_(text) {
    Tree tree = parse(source_);
    bind(&tree, names, Nulls::propagate);
    program_ = emit(tree, Nulls::propagate);
    if (tree.root().type == NodeType::field) bare_field_ = tree.root().field;
    matchers_ = std::move(tree.matchers);
    collect_fields();
    for (const ProgramOverRecords& part : program_.parts) parts_.emplace_back(part);
  }

  Kind kind() const override { return program_.result; }
  int bare_field() const override { return bare_field_; }
  bool uses_records() const override { return !parts_.empty(); }
  const std::vector<int>& own_fields() const override { return own_fields_; }
  const std::vector<int>& fields_over_records() const override { return fields_over_records_; }
  std::uint64_t assumed() const override { return assumed_; }

  bool evaluate(const Record& record, Records* records, Value* result, double* doubt) override {
    std::string* texts = scratch_.texts(program_.scratch_size);
    return run_program(program_, record, texts, {records, &parts_, &assumed_}, result, doubt);
  }

 private:
  void collect_fields() {
    append_fields(program_, &own_fields_);
    for (const ProgramOverRecords& part : program_.parts) append_fields(part.argument, &fields_over_records_);
    keep_each_once(&own_fields_);
    keep_each_once(&fields_over_records_);
  }

  std::string source_;  // literals and patterns are views of it
  Program program_;
  std::vector<std::unique_ptr<Matcher>> matchers_;
  int bare_field_ = kNoField;
  std::vector<int> own_fields_;
  std::vector<int> fields_over_records_;
  std::vector<FunctionOverRecords> parts_;  // by number of the program's part
  Scratch scratch_;
  std::uint64_t assumed_ = 0;
};

}  // namespace

std::unique_ptr<NullableExpression> NullableExpression::compile(std::string_view text, const FieldNames& names,
                                                                Fault* fault) {
  try {
    check_text(text);
    return std::make_unique<CompiledNullable>(text, names);
  } catch (const CompileError& error) {
    if (fault != nullptr) *fault = describe(error, text);
    return nullptr;
  }
}

}  // namespace triglub::expression
