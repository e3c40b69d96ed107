// format(fmt, x): as printf for what it takes, and nothing else taken.
#include "engine/expression/format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <random>

#include "station.h"
#include "support/random_seed.h"

namespace triglub::expression {
namespace {

void expect_texts(std::initializer_list<Case> cases) {
  for (const auto& [expression, text] : cases) EXPECT_EQ(text_at_station(expression), text) << expression;
}

template <typename Argument>
std::string written(const Format& format, Argument argument) {
  std::string text = "what was there before";
  format.write(argument, &text);
  return text;
}

TEST(Format, WritesNumbers) {
  expect_texts({
      {"format('%d', 7)", "7"},
      {"format('%i', -7)", "-7"},
      {"format('%d', 7.9)", "7"},
      {"format('%d', inid)", "7"},
      {"format('%5d|', 7)", "    7|"},
      {"format('%-5d|', 7)", "7    |"},
      {"format('%05d', -7)", "-0007"},
      {"format('%+d', 7)", "+7"},
      {"format('% d', 7)", " 7"},
      {"format('%.3d', 7)", "007"},
      {"format('%x', 255)", "ff"},
      {"format('%#x', 255)", "0xff"},
      {"format('%x', -1)", "ffffffffffffffff"},
      {"format('%d', -9223372036854775807 - 1)", "-9223372036854775808"},
      {"format('%.2f', lat)", "42.64"},
      {"format('%f', 7)", "7.000000"},
      {"format('%8.3f|', -1.5)", "  -1.500|"},
      {"format('%e', 12345.678)", "1.234568e+04"},
      {"format('%g', 0.0001)", "0.0001"},
      {"format('%#.0f', 1)", "1."},
      {"format('%.f', 2.5)", "2"},
      {"format('%g', 1e300)", "1e+300"},
  });
}

TEST(Format, WritesTextsByCharacters) {
  expect_texts({
      {"format('%s', sta)", "AAK"},
      {"format('%5s|', sta)", "  AAK|"},
      {"format('%-5s|', sta)", "AAK  |"},
      {"format('%.2s', sta)", "AA"},
      {"format('%-8.3s|', place)", "Z\xC3\xBCr     |"},
      {"format('%3s|', '\xE2\x82\xAC')", "  \xE2\x82\xAC|"},
      {"format('%s', elev)", "1.6450"},
      {"format('%s', elev + 0)", "1.645"},
      {"format('%s', 7)", "7"},
      {"format('%.0s|', sta)", "|"},
  });
}

TEST(Format, KeepsTheTextAroundTheConversion) {
  expect_texts({
      {"format('gain %g dB', 3)", "gain 3 dB"},
      {"format('%% %d %%', 3)", "% 3 %"},
      {"format('%d%%', 3)", "3%"},
      {"format('%%%d', 3)", "%3"},
      {"format('\xC3\xBC%d', 3)",
       "\xC3\xBC"
       "3"},
  });
}

TEST(Format, MayComeFromTheRecord) {
  expect_texts({
      {"format(fmt, lat)", "42.6"},
      {"format(fmt, inid)", "7.0"},
      {"format(fmt, sta)", "fails"},
      {"format(fmt_s, sta)", "<AAK>"},
      {"format(fmt_s, elev)", "<1.6450>"},
      {"format(fmt_s, elev + 0)", "<1.645>"},
      {"format(fmt_s, inid + 0)", "<7>"},
      {"format(sta, 1)", "fails"},
      {"format(fmt, odd)", "fails"},
      {"format(concat('%', '04d'), 7.9)", "0007"},
      {"format(concat('%', '04d'), 7)", "0007"},
      {"format(concat('%', 'd'), 1e19)", "fails"},
      {"format(concat('%', 'n'), 1)", "fails"},
  });
}

TEST(Format, FailsForNumbersThatDoNotFit) {
  expect_texts({{"format('%d', 1e19)", "fails"}, {"format('%f', odd)", "fails"}, {"format('%x', odd)", "fails"}});
}

TEST(Format, TakesGreatWidthsAndPrecisions) {
  EXPECT_EQ(text_at_station("format('%100d', 7)"), std::string(99, ' ') + "7");
  EXPECT_EQ(text_at_station("format('%.100f', 1)"), "1." + std::string(100, '0'));
  EXPECT_EQ(text_at_station("format('%.100f', -1e308)").size(), 309u + 1 + 100 + 1);
}

TEST(Format, RefusesEverythingElse) {
  struct {
    std::string_view format;
    std::string_view expected;
    std::size_t offset;
  } const cases[] = {
      {"", "expected a conversion like %d, %.2f or %s", 0},
      {"plain", "expected a conversion like %d, %.2f or %s", 0},
      {"100 %%", "expected a conversion like %d, %.2f or %s", 0},
      {"%", "expected one of d i f e g x s %", 1},
      {"%5", "expected one of d i f e g x s %", 2},
      {"%n", "expected one of d i f e g x s %", 1},
      {"%ld", "expected one of d i f e g x s %", 1},
      {"%*d", "expected one of d i f e g x s %", 1},
      {"%.*f", "expected one of d i f e g x s %", 2},
      {"%1$d", "expected one of d i f e g x s %", 2},
      {"%'d", "expected one of d i f e g x s %", 1},
      {"%p", "expected one of d i f e g x s %", 1},
      {"%c", "expected one of d i f e g x s %", 1},
      {"%X", "expected one of d i f e g x s %", 1},
      {"%5%", "expected one of d i f e g x s %", 2},
      {"%d %d", "expected one conversion only", 3},
      {"%d %", "expected one conversion only", 3},
      {"%101d", "expected a width and precision of at most 100", 1},
      {"%99999999999999999999d", "expected a width and precision of at most 100", 1},
      {"%.101f", "expected a width and precision of at most 100", 2},
      {"%.-1f", "expected one of d i f e g x s %", 2},
      {"%#d", "expected no such flag for %d", 1},
      {"%05s", "expected no such flag for %s", 1},
      {"%-+x", "expected no such flag for %x", 2},
  };
  for (const auto& [format, expected, offset] : cases) {
    FormatFault fault;
    EXPECT_FALSE(Format::read(format, &fault)) << format;
    EXPECT_EQ(fault.expected, expected) << format;
    EXPECT_EQ(fault.offset, offset) << format;
  }
}

TEST(Format, WritesAPointInEveryLocale) {
  const char* with_comma = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
    if (with_comma == nullptr) with_comma = std::setlocale(LC_ALL, name);
  }
  if (with_comma == nullptr) GTEST_SKIP() << "no locale with a decimal comma here";
  EXPECT_EQ(text_at_station("format('%.1f', 1.5)"), "1.5");
  EXPECT_EQ(text_at_station("1.5 + 1"), "2.5");
  EXPECT_EQ(real_at_station("'1.5'"), 1.5);
}

template <typename Argument>
std::string printed(const std::string& conversion, Argument argument) {
  char buffer[1024];
  const int length = std::snprintf(buffer, sizeof buffer, conversion.c_str(), argument);
  return {buffer, static_cast<std::size_t>(length)};
}

TEST(Format, AgreesWithPrintfOnRandomConversions) {
  std::mt19937 random(triglub_test::random_seed());
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  for (int i = 0; i < 20000; ++i) {
    const char type = "difegxs"[below(7)];
    const std::string_view flags = type == 's'                  ? "-"
                                   : type == 'x'                ? "-#0"
                                   : type == 'd' || type == 'i' ? "-+ 0"
                                                                : "-+ #0";
    std::string head = "%";
    for (const char flag : flags) {
      if (below(3) == 0) head += flag;
    }
    if (below(2) == 0) head += std::to_string(1 + below(100));
    if (below(2) == 0) head += "." + (below(8) == 0 ? "" : std::to_string(below(101)));
    const std::string conversion = head + type;
    FormatFault fault;
    const auto format = Format::read(conversion, &fault);
    ASSERT_TRUE(format) << conversion << ": " << fault.expected;
    if (type == 's') {
      const std::string text(static_cast<std::size_t>(below(20)), 'k');
      ASSERT_EQ(written(*format, std::string_view(text)), printed(conversion, text.c_str())) << conversion;
    } else if (type == 'd' || type == 'i' || type == 'x') {
      const std::int64_t number = below(4) == 0 ? 0 : below(1000000) - 500000;
      ASSERT_EQ(written(*format, number), printed(head + "ll" + type, static_cast<long long>(number))) << conversion;
    } else {
      const double number = (below(1000000) - 500000) / 64.0 * (below(2) == 0 ? 1 : 1e200);
      ASSERT_EQ(written(*format, number), printed(conversion, number)) << conversion;
    }
  }
}

}  // namespace
}  // namespace triglub::expression
