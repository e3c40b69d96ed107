// Expressions of any text, where nulls are values and where they propagate, over records of any values: an answer or a
// refusal with its place, the same each time, and over one record the same as at it.
#include "engine/expression/expression.h"

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/expression/nullable_expression.h"
#include "engine/expression/numbers.h"
#include "platform/database.h"
#include "support/bytes.h"
#include "support/expect.h"

namespace {

namespace ex = triglub::expression;
using triglub_fuzz::Bytes;
using triglub_fuzz::expect;

struct NamedField {
  std::string_view name;
  ex::Kind kind;
};
constexpr std::array<NamedField, 9> kFields = {{{"sta", ex::Kind::text},
                                                {"chan", ex::Kind::text},
                                                {"code", ex::Kind::text},
                                                {"lat", ex::Kind::real},
                                                {"site.elev", ex::Kind::real},
                                                {"time", ex::Kind::real},
                                                {"ondate", ex::Kind::integer},
                                                {"inid", ex::Kind::integer},
                                                {"none", ex::Kind::integer}}};

class Names final : public ex::FieldNames {
 public:
  std::optional<ex::Field> find(std::string_view name) const override {
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      if (kFields[i].name == name) return ex::Field{static_cast<int>(i), kFields[i].kind, name == "lat"};
    }
    return std::nullopt;
  }
};

struct FieldValue {
  std::string text;
  std::int64_t integer = 0;
  double real = 0;
  bool is_null = false;
};

FieldValue value_of(Bytes* bytes, ex::Kind kind) {
  constexpr std::array kTexts = {
      "AAK",   "BHZ",  "",     "007",        " 42.5 ", "a<b & c", "Z\xC3\xBCrich \xE2\x82\xAC",
      "1e400", "%.1f", "<%s>", "2000-02-29", "-"};
  constexpr std::array kReals = {42.6375,        0.0, -0.0, 1e308, -1e308, 4.9e-324, 9223372036854775807.0, 978307200.0,
                                 9999999999.999, 0.1, -1.5, 3.0};
  constexpr std::array<std::int64_t, 8> kIntegers = {
      2001001, 0, 7, 1, -5, std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
      2000366};
  ex::NumberBuffer buffer;
  FieldValue value;
  value.is_null = bytes->one_in(6);
  switch (kind) {
    case ex::Kind::text:
      value.text = value.is_null ? "-" : bytes->one_of(kTexts);
      break;
    case ex::Kind::real:
      value.real = value.is_null ? -999 : bytes->one_of(kReals);
      value.text = ex::text_of(value.real, &buffer);
      break;
    case ex::Kind::integer:
      value.integer = value.is_null ? -1 : bytes->one_of(kIntegers);
      value.text = ex::text_of(value.integer, &buffer);
      break;
  }
  return value;
}

class MadeRecord final : public ex::Record {
 public:
  explicit MadeRecord(Bytes* bytes) {
    for (const NamedField& field : kFields) values_.push_back(value_of(bytes, field.kind));
  }
  std::int64_t integer(int field) const override { return at(field).integer; }
  double real(int field) const override { return at(field).real; }
  std::string_view text(int field) const override { return at(field).text; }
  bool is_null(int field) const override { return at(field).is_null; }
  double doubt(int field) const override { return kFields[static_cast<std::size_t>(field)].name == "lat" ? 5e-5 : 0; }

 private:
  const FieldValue& at(int field) const { return values_[static_cast<std::size_t>(field)]; }
  std::vector<FieldValue> values_;
};

class MadeRecords final : public ex::Records {
 public:
  explicit MadeRecords(std::vector<MadeRecord> records) : records_(std::move(records)) {}
  std::uint32_t count() const override { return static_cast<std::uint32_t>(records_.size()); }
  const ex::Record& record(std::uint32_t i) override { return records_[i]; }

 private:
  std::vector<MadeRecord> records_;
};

void look_at(const ex::Fault& fault, std::string_view text) {
  expect(fault.position <= text.size() && fault.text.starts_with("expected "), "a fault has its place", fault.text);
}

// As values, so that the same can be asked again.
struct Answers {
  std::optional<std::string> text;
  std::optional<std::int64_t> integer;
  std::optional<double> real;
  bool is_true = false;

  bool operator==(const Answers& other) const {
    const auto bits = [](const std::optional<double>& number) { return number ? std::to_string(*number) : "none"; };
    return text == other.text && integer == other.integer && bits(real) == bits(other.real) && is_true == other.is_true;
  }
};

Answers answers_at(const ex::Compiled& compiled, const ex::Record& record, ex::Scratch* scratch) {
  Answers answers;
  std::string text = "untouched";
  std::int64_t integer = 0;
  double real = 0;
  if (compiled.text(record, scratch, &text)) answers.text = text;
  expect(answers.text || text == "untouched", "a failure touches nothing", text);
  if (compiled.integer(record, scratch, &integer)) answers.integer = integer;
  if (compiled.real(record, scratch, &real)) answers.real = real;
  answers.is_true = compiled.is_true(record, scratch);
  return answers;
}

void evaluate_as_values(std::string_view text, MadeRecords* records) {
  ex::Fault fault{};
  ex::Scratch used;
  for (const int type : {dbSTRING, dbINTEGER, dbREAL, dbTIME, dbYEARDAY}) {
    const auto compiled = ex::Compiled::compile(text, Names(), type, &fault);
    if (compiled == nullptr) return look_at(fault, text);
    for (std::uint32_t i = 0; i < records->count(); ++i) {
      const ex::Record& record = records->record(i);
      ex::Scratch fresh;
      const Answers answers = answers_at(*compiled, record, &used);
      expect(answers == answers_at(*compiled, record, &fresh), "the same each time", text);
      const auto match = compiled->field_match();
      if (!match) continue;
      expect((match->matcher->matches(record.text(match->field)) != match->negated) == answers.is_true,
             "a match of a field is what its matcher says", text);
    }
  }
}

std::string as_text(const ex::Value& value, ex::Kind kind) {
  if (value.is_null()) return "null";
  if (kind == ex::Kind::text) return "text " + std::string(value.text());
  ex::NumberBuffer buffer;
  const bool is_integer = kind == ex::Kind::integer;
  if (!is_integer && std::isnan(value.real)) return "no number";
  return "number " + std::string(is_integer ? ex::text_of(value.integer, &buffer) : ex::text_of(value.real, &buffer));
}

std::string nullable_at(ex::NullableExpression* expression, const ex::Record& record, ex::Records* records,
                        double* doubt) {
  ex::Value value;
  if (!expression->evaluate(record, records, &value, doubt)) return "fails";
  return as_text(value, expression->kind());
}

// Of one record, the first is the value at it, and so many values are counted.
void evaluate_over_one(const std::string& text, const MadeRecord& record) {
  ex::Fault fault{};
  const auto plain = ex::NullableExpression::compile(text, Names(), &fault);
  const auto first = ex::NullableExpression::compile("first((" + text + "))", Names(), &fault);
  const auto count = ex::NullableExpression::compile("count((" + text + "))", Names(), &fault);
  if (first == nullptr || count == nullptr) return;
  MadeRecords one({record});
  const std::string value = nullable_at(plain.get(), record, nullptr, nullptr);
  triglub_fuzz::expect_same(value, nullable_at(first.get(), record, &one, nullptr), "the first of one");
  const std::string number = value == "fails" ? "fails" : value == "null" ? "number 0" : "number 1";
  triglub_fuzz::expect_same(number, nullable_at(count.get(), record, &one, nullptr), "the count of one");
}

void evaluate_with_nulls(const std::string& text, MadeRecords* records, const MadeRecord& one) {
  ex::Fault fault{};
  const auto expression = ex::NullableExpression::compile(text, Names(), &fault);
  if (expression == nullptr) return look_at(fault, text);
  for (std::uint32_t i = 0; i < records->count(); ++i) {
    double doubt = 0;
    const std::string value = nullable_at(expression.get(), records->record(i), records, nullptr);
    triglub_fuzz::expect_same(value, nullable_at(expression.get(), records->record(i), records, nullptr), "each time");
    triglub_fuzz::expect_same(value, nullable_at(expression.get(), records->record(i), records, &doubt), "with doubt");
    expect(!(doubt < 0), "a doubt is not negative", text);
  }
  if (!expression->uses_records()) evaluate_over_one(text, one);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  const std::string text(bytes.take_until('\n'));
  const MadeRecord first(&bytes);
  MadeRecords records({first, MadeRecord(&bytes), MadeRecord(&bytes)});
  evaluate_as_values(text, &records);
  evaluate_with_nulls(text, &records, first);
  return 0;
}
