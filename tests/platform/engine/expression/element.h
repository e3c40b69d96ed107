// An element of three made-up records with nulls among their values, and short ways to ask for an expression's value at
// one of them.
#ifndef TRIGLUB_TESTS_EXPRESSION_ELEMENT_H
#define TRIGLUB_TESTS_EXPRESSION_ELEMENT_H

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/nullable_expression.h"
#include "engine/expression/numbers.h"
#include "station.h"

namespace triglub::expression {

// What differs from the station at the second and third record. The first is the station.
inline const std::array<std::vector<StationField>, 3>& element_fields() {
  static const std::array<std::vector<StationField>, 3> all = {{
      {},
      {{"sta", Kind::text, "BFO"},
       {"chan", Kind::text, "-", 0, 0, true},
       {"code", Kind::text, "-", 0, 0, true},
       {"lat", Kind::real, "-999.0000", 0, -999, true},
       {"zero", Kind::real, "-0.0000", 0, -0.0},
       {"elev", Kind::real, "2.0", 0, 2},
       {"endtime", Kind::real, "86400.00000", 0, 86400},
       {"offdate", Kind::integer, "1970002", 1970002}},
      {{"sta", Kind::text, "AAK"},
       {"chan", Kind::text, "BHN"},
       {"lat", Kind::real, "-1.50", 0, -1.5},
       {"inid", Kind::integer, "-1", -1, 0, true},
       {"elev", Kind::real, "2.0000", 0, 2},
       {"endtime", Kind::real, "3600.00000", 0, 3600}},
  }};
  return all;
}

inline const StationField& field_of_element(std::uint32_t record, std::size_t field) {
  const StationField& of_station = station_fields()[field];
  for (const StationField& own : element_fields()[record]) {
    if (own.name == of_station.name) return own;
  }
  return of_station;
}

class ElementRecord final : public Record {
 public:
  explicit ElementRecord(std::uint32_t record) : record_(record) {}
  std::int64_t integer(int field) const override { return at(field).integer; }
  double real(int field) const override { return at(field).real; }
  std::string_view text(int field) const override { return at(field).text; }
  bool is_null(int field) const override { return at(field).is_null; }

 private:
  const StationField& at(int field) const { return field_of_element(record_, static_cast<std::size_t>(field)); }
  std::uint32_t record_;
};

class ElementRecords final : public Records {
 public:
  std::uint32_t count() const override { return 3; }
  const Record& record(std::uint32_t i) override { return records_[i]; }

 private:
  std::array<ElementRecord, 3> records_{ElementRecord(0), ElementRecord(1), ElementRecord(2)};
};

inline std::unique_ptr<NullableExpression> compile_nullable(std::string_view text, Fault* fault = nullptr) {
  return NullableExpression::compile(text, StationNames(), fault);
}

inline std::string as_text(const Value& value, const NullableExpression& expression, std::uint32_t record) {
  if (value.is_null()) return "null";
  if (expression.bare_field() != kNoField) return std::string(ElementRecord(record).text(expression.bare_field()));
  NumberBuffer buffer;
  if (expression.kind() == Kind::text) return std::string(value.text());
  return std::string(expression.kind() == Kind::integer ? text_of(value.integer, &buffer)
                                                        : text_of(value.real, &buffer));
}

// The value at a record as text, "null", "fails", or the fault when the text does not compile.
inline std::string text_in_element(std::string_view text, std::uint32_t record = 0) {
  Fault fault{};
  const auto expression = compile_nullable(text, &fault);
  if (expression == nullptr) return fault.text;
  ElementRecords records;
  Value value;
  if (!expression->evaluate(ElementRecord(record), &records, &value, nullptr)) return "fails";
  return as_text(value, *expression, record);
}

}  // namespace triglub::expression

#endif
