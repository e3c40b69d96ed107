// A record of made-up fields, and short ways to ask for an expression's value at it.
#ifndef TRIGLUB_TESTS_EXPRESSION_STATION_H
#define TRIGLUB_TESTS_EXPRESSION_STATION_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/expression.h"
#include "platform/database.h"

namespace triglub::expression {

struct StationField {
  std::string_view name;
  Kind kind;
  std::string_view text;  // as dbget gives it
  std::int64_t integer = 0;
  double real = 0;
  bool is_null = false;
};

// Texts of numbers keep the digits of a file, which are not the shortest ones.
inline const std::vector<StationField>& station_fields() {
  static const std::vector<StationField> fields = {
      {"sta", Kind::text, "AAK"},
      {"chan", Kind::text, "BHZ"},
      {"refsta", Kind::text, "-", 0, 0, true},
      {"place", Kind::text, "Z\xC3\xBCrich \xE2\x82\xAC"},
      {"markup", Kind::text, "a < b & c"},
      {"code", Kind::text, "007"},
      {"digits", Kind::text, "42.5"},
      {"nothing", Kind::text, ""},
      {"fmt", Kind::text, "%.1f"},
      {"fmt_s", Kind::text, "<%s>"},
      {"site.lat", Kind::real, "42.6375", 0, 42.6375},
      {"lat", Kind::real, "42.6375", 0, 42.6375},
      {"elev", Kind::real, "1.6450", 0, 1.645},
      {"zero", Kind::real, "0.0000", 0, 0.0},
      {"odd", Kind::real, "nan", 0, __builtin_nan("")},
      {"time", Kind::real, "978307200.00000", 0, 978307200.0},
      {"endtime", Kind::real, "9999999999.99900", 0, 9999999999.999, true},
      {"ondate", Kind::integer, "2001001", 2001001},
      {"offdate", Kind::integer, "-1", -1, 0, true},
      {"inid", Kind::integer, "0007", 7},
      {"none", Kind::integer, "0", 0},
  };
  return fields;
}

class StationNames : public FieldNames {
 public:
  std::optional<Field> find(std::string_view name) const override {
    const auto& fields = station_fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (fields[i].name == name) return Field{static_cast<int>(i), fields[i].kind};
    }
    return std::nullopt;
  }
};

class StationRecord : public Record {
 public:
  std::int64_t integer(int field) const override { return at(field).integer; }
  double real(int field) const override { return at(field).real; }
  std::string_view text(int field) const override { return at(field).text; }
  bool is_null(int field) const override { return at(field).is_null; }

 private:
  static const StationField& at(int field) { return station_fields()[static_cast<std::size_t>(field)]; }
};

// One for all tests, as a scratch may serve.
inline Scratch* scratch() {
  static Scratch all;
  return &all;
}

inline std::unique_ptr<Compiled> compile(std::string_view text, int type = dbINTEGER, Fault* fault = nullptr) {
  return Compiled::compile(text, StationNames(), type, fault);
}

// The value as text, "fails" when there is none at the record, and the fault when the text does not compile.
inline std::string text_at_station(std::string_view text) {
  Fault fault{};
  const auto compiled = compile(text, dbSTRING, &fault);
  if (compiled == nullptr) return fault.text;
  std::string result = "untouched";
  if (compiled->text(StationRecord(), scratch(), &result)) return result;
  return result == "untouched" ? "fails" : "fails, but wrote " + result;
}

inline std::optional<std::int64_t> integer_at_station(std::string_view text) {
  const auto compiled = compile(text, dbINTEGER);
  std::int64_t result = 0;
  if (compiled == nullptr || !compiled->integer(StationRecord(), scratch(), &result)) return std::nullopt;
  return result;
}

inline std::optional<double> real_at_station(std::string_view text) {
  const auto compiled = compile(text, dbREAL);
  double result = 0;
  if (compiled == nullptr || !compiled->real(StationRecord(), scratch(), &result)) return std::nullopt;
  return result;
}

// An expression and the text it comes to.
struct Case {
  std::string_view expression;
  std::string_view text;
};

}  // namespace triglub::expression

#endif
