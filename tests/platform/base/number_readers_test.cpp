// Numbers at the edges of what a double holds, in tables, in response files and in expressions: one answer everywhere.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "base/number.h"
#include "engine/expression/fault.h"
#include "engine/expression/lex.h"
#include "engine/expression/numbers.h"
#include "platform/response.h"
#include "response/parse.h"

namespace triglub {
namespace {

using Read = std::optional<double>;

Read of_table_cell(const std::string& text) {
  double number = 123;
  return parse_real(text, &number) ? Read(number) : std::nullopt;
}

Read of_response_file(const std::string& text) {
  ResponseFault fault;
  const ResponsePointer response = parse_response("theoretical 1 x fir\n100\n1\n" + text + "\n0\n", &fault);
  if (response == nullptr) return std::nullopt;
  return static_cast<const Fir*>(response->groups.at(0).filter)->numerators.at(0);
}

Read of_expression_text(const std::string& text) {
  const auto number = expression::read_number(text);
  return number ? Read(number->real) : std::nullopt;
}

// Signs and what is no number at all are no numbers to the lexer.
Read of_expression_literal(const std::string& text) {
  try {
    expression::Lexer lexer(text);
    const expression::Token token = lexer.next();
    if (lexer.next().type != expression::TokenType::end) return std::nullopt;
    return token.type == expression::TokenType::real ? Read(token.real) : std::nullopt;
  } catch (const expression::CompileError&) {
    return std::nullopt;
  }
}

// Tells the signs of zeros apart.
std::optional<std::uint64_t> bits(const Read& number) {
  return number ? std::optional(std::bit_cast<std::uint64_t>(*number)) : std::nullopt;
}

constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
constexpr double kLargest = std::numeric_limits<double>::max();

const struct {
  const char* text;
  Read number;
} kCases[] = {
    {"1e-400", 0.0},
    {"1e-99999", 0.0},
    {"0.1e-400", 0.0},
    {"1.e-400", 0.0},
    {"2.4e-324", 0.0},
    {"2.4703282292062327e-324", 0.0},
    {"2.4703282292062328e-324", kDenormal},
    {"2.5e-324", kDenormal},
    {"4.9e-324", kDenormal},
    {"4.9406564584124654e-324", kDenormal},
    {"1e-310", 1e-310},
    {"2.2250738585072009e-308", 2.2250738585072009e-308},
    {"2.2250738585072014e-308", std::numeric_limits<double>::min()},
    {"1e308", 1e308},
    {"1.7976931348623157e308", kLargest},
    {"1.7976931348623158e308", kLargest},
    {"1.7976931348623159e308", std::nullopt},
    {"1.8e308", std::nullopt},
    {"1e309", std::nullopt},
    {"1e99999", std::nullopt},
    {"0e999", 0.0},
    {"0.0e-999", 0.0},
    {"inf", std::nullopt},
    {"infinity", std::nullopt},
    {"INF", std::nullopt},
    {"nan", std::nullopt},
    {"NaN", std::nullopt},
    {"nan(1)", std::nullopt},
    {"0x1p-3", std::nullopt},
    {"0x10", std::nullopt},
    {"1e-400x", std::nullopt},
    {"1e-", std::nullopt},
    {"1e-400.5", std::nullopt},
    {"1d-400", std::nullopt},
    {".e-400", std::nullopt},
};

TEST(NumberReaders, AgreeAtTheEdgesOfADouble) {
  for (const auto& [text, number] : kCases) {
    EXPECT_EQ(bits(of_table_cell(text)), bits(number)) << text;
    EXPECT_EQ(bits(of_response_file(text)), bits(number)) << text;
    EXPECT_EQ(bits(of_expression_text(text)), bits(number)) << text;
    EXPECT_EQ(bits(of_expression_literal(text)), bits(number)) << text;
  }
}

TEST(NumberReaders, AgreeOnSigns) {
  for (const auto& [text, number] : kCases) {
    const Read negative = number ? Read(-*number) : std::nullopt;
    for (const auto& [sign, expected] : {std::pair("+", number), std::pair("-", negative)}) {
      const std::string with_sign = std::string(sign) + text;
      EXPECT_EQ(bits(of_table_cell(with_sign)), bits(expected)) << with_sign;
      EXPECT_EQ(bits(of_response_file(with_sign)), bits(expected)) << with_sign;
      EXPECT_EQ(bits(of_expression_text(with_sign)), bits(expected)) << with_sign;
    }
  }
}

TEST(NumberReaders, TellTooLargeFromNoNumber) {
  const struct {
    const char* text;
    NumberReading reading;
  } cases[] = {
      {"1e-400", NumberReading::number},
      {"-1e-400", NumberReading::number},
      {"1e308", NumberReading::number},
      {"1.8e308", NumberReading::too_large},
      {"-1e309", NumberReading::too_large},
      {"+1e99999", NumberReading::too_large},
      {"inf", NumberReading::none},
      {"-inf", NumberReading::none},
      {"nan", NumberReading::none},
      {"1e309x", NumberReading::none},
      {"", NumberReading::none},
      {"-", NumberReading::none},
  };
  for (const auto& [text, reading] : cases) {
    double number = 123;
    EXPECT_EQ(read_real(text, &number), reading) << text;
    EXPECT_EQ(number == 123, reading != NumberReading::number) << text;
  }
}

}  // namespace
}  // namespace triglub
