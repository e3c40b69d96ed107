#include "document/typed_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace triglub {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNoNumber = std::nan("");

struct Case {
  LineType type;
  double number;
  const char* text;
  ValueRemark remark = ValueRemark::none;
};

const Case kCases[] = {
    {LineType::real, 0.1, "0.1"},
    {LineType::real, -0.0, "0"},
    {LineType::real, 1.0 / 3, "0.3333333333333333"},
    {LineType::real, 1e300, "1e+300"},

    {LineType::integer, 2.999, "2"},
    {LineType::integer, -2.999, "-2"},
    {LineType::integer, -0.5, "0"},
    {LineType::integer, 9223372036854774784.0, "9223372036854774784"},
    {LineType::integer, 9223372036854775808.0, "", ValueRemark::out_of_range},
    {LineType::integer, -9223372036854775808.0, "-9223372036854775808"},
    {LineType::integer, -9223372036854777856.0, "", ValueRemark::out_of_range},
    {LineType::integer, kInfinity, "", ValueRemark::out_of_range},
    {LineType::integer, kNoNumber, "", ValueRemark::out_of_range},

    {LineType::latitude, 90, "", ValueRemark::out_of_range},
    {LineType::latitude, 89.9999999, "89.9999999"},
    {LineType::latitude, -90, "-90"},
    {LineType::latitude, 90.0000001, "", ValueRemark::out_of_range},
    {LineType::latitude, -90.0000001, "", ValueRemark::out_of_range},
    {LineType::latitude, kNoNumber, "", ValueRemark::out_of_range},

    {LineType::longitude, 180, "180"},
    {LineType::longitude, -180, "-180"},
    {LineType::longitude, 180.5, "-179.5", ValueRemark::wrapped},
    {LineType::longitude, -180.5, "179.5", ValueRemark::wrapped},
    {LineType::longitude, 200.1, "-159.9", ValueRemark::wrapped},
    {LineType::longitude, 540, "-180", ValueRemark::wrapped},
    {LineType::longitude, 360, "0", ValueRemark::wrapped},
    {LineType::longitude, 180.0000000001, "-180", ValueRemark::wrapped},
    {LineType::longitude, 999999, "-81", ValueRemark::wrapped},
    {LineType::longitude, 1e6, "", ValueRemark::out_of_range},
    {LineType::longitude, -1e6, "", ValueRemark::out_of_range},
    {LineType::longitude, kInfinity, "", ValueRemark::out_of_range},

    {LineType::azimuth, 0, "0"},
    {LineType::azimuth, 359.9, "359.9"},
    {LineType::azimuth, 360, "0"},
    {LineType::azimuth, -0.1, "359.9"},
    {LineType::azimuth, -1e-12, "0"},
    {LineType::azimuth, 725.3, "5.3"},
    {LineType::azimuth, -1e6, "", ValueRemark::out_of_range},

    {LineType::dip, 0, "-90"},
    {LineType::dip, 180, "90"},
    {LineType::dip, 62.3, "-27.7"},
    {LineType::dip, 180.1, "", ValueRemark::out_of_range},
    {LineType::dip, -0.1, "", ValueRemark::out_of_range},
    {LineType::dip, 180.0000000001, "90"},

    {LineType::meters, 1.645, "1645"},
    {LineType::meters, 0.0011, "1.1"},
    {LineType::meters, -0.0000000000001, "0"},
    {LineType::meters, 1e308, "", ValueRemark::out_of_range},

    {LineType::epoch, 0, "1970-01-01T00:00:00Z"},
    {LineType::epoch, 0.25, "1970-01-01T00:00:00.250Z"},
    {LineType::epoch, 0.007, "1970-01-01T00:00:00.007Z"},
    {LineType::epoch, 0.9996, "1970-01-01T00:00:01Z"},
    {LineType::epoch, -0.5, "1969-12-31T23:59:59.500Z"},
    {LineType::epoch, -62135596800.0, "0001-01-01T00:00:00Z"},
    {LineType::epoch, -62135596800.001, "", ValueRemark::no_date},
    {LineType::epoch, 253402300799.999, "9999-12-31T23:59:59.999Z"},
    {LineType::epoch, 253402300799.9996, "", ValueRemark::no_date},
    {LineType::epoch, kInfinity, "", ValueRemark::no_date},
    {LineType::epoch, kNoNumber, "", ValueRemark::no_date},

    {LineType::julian, 2000366, "2000-12-31T00:00:00Z"},
    {LineType::julian, 2000366.7, "2000-12-31T00:00:00Z"},
    {LineType::julian, 1001, "0001-01-01T00:00:00Z"},
    {LineType::julian, 9999365, "9999-12-31T00:00:00Z"},
    {LineType::julian, 9999366, "", ValueRemark::no_date},
    {LineType::julian, 1999366, "", ValueRemark::no_date},
    {LineType::julian, 2000000, "", ValueRemark::no_date},
    {LineType::julian, 0, "", ValueRemark::no_date},
    {LineType::julian, -2000001, "", ValueRemark::no_date},
    {LineType::julian, 1e7, "", ValueRemark::no_date},
    {LineType::julian, kNoNumber, "", ValueRemark::no_date},
};

TEST(TypedText, IsWhatTheTypeAsksFor) {
  for (const Case& c : kCases) {
    std::string text = "+";  // what is there already stays
    const ValueRemark remark = append_number_as(c.type, c.number, 0, &text);
    EXPECT_EQ(text, std::string("+") + c.text) << static_cast<int>(c.type) << " " << c.number;
    EXPECT_EQ(remark, c.remark) << static_cast<int>(c.type) << " " << c.number;
  }
}

struct DoubtfulCase {
  LineType type;
  double number;
  double doubt;
  const char* text;
  ValueRemark remark = ValueRemark::none;
};

const DoubtfulCase kDoubtfulCases[] = {
    {LineType::real, 1 / 14.285714, 2.45e-9, "0.07"},
    {LineType::real, 1e9 / 0.39811, 0.5, "2511868579"},
    {LineType::real, -0.00001, 0.00005, "0"},
    {LineType::real, 99999.99999, 0.0005, "1e+05"},
    {LineType::integer, 1.9999999, 0.05, "1"},

    {LineType::latitude, 54.4540000001, 0.00005, "54.454"},
    {LineType::latitude, 89.99999, 0.00005, "", ValueRemark::out_of_range},
    {LineType::latitude, -90.00001, 0.00005, "-90"},

    {LineType::longitude, 180.00001, 0.00005, "180"},
    {LineType::longitude, 180.5001, 0.00005, "-179.4999", ValueRemark::wrapped},
    {LineType::longitude, -539.9999, 0.00005, "-179.9999", ValueRemark::wrapped},

    {LineType::azimuth, 359.99, 0.05, "0"},
    {LineType::azimuth, -0.01, 0.05, "0"},
    {LineType::azimuth, 725.3, 0.05, "5.3"},

    {LineType::dip, 62.3, 0.05, "-27.7"},
    {LineType::dip, 180.01, 0.05, "90"},
    {LineType::dip, 180.1, 0.05, "", ValueRemark::out_of_range},
    {LineType::dip, 90.0123456789123, 5e-14, "0.0123456789123"},

    {LineType::meters, 1.645 - 0.0021, 0.00005, "1642.9"},
    {LineType::meters, 0.00011, 0.000005, "0.11"},
    {LineType::meters, 1.6450123456789, 5e-14, "1645.0123456789"},
    {LineType::meters, 1e308, 1, "", ValueRemark::out_of_range},
};

TEST(TypedText, HasTheDigitsThatTheNumberHas) {
  for (const DoubtfulCase& c : kDoubtfulCases) {
    std::string text;
    const ValueRemark remark = append_number_as(c.type, c.number, c.doubt, &text);
    EXPECT_EQ(text, c.text) << static_cast<int>(c.type) << " " << c.number;
    EXPECT_EQ(remark, c.remark) << static_cast<int>(c.type) << " " << c.number;
  }
}

TEST(TypedText, ATextIsTheNumberThatItHolds) {
  const auto number = [](const char* text) {
    RecordValue value;
    value.is_null = false;
    value.text = text;
    return number_of(value, ValueKind::text);
  };
  EXPECT_EQ(number("1.5"), 1.5);
  EXPECT_EQ(number(" -1e3 "), -1000);
  for (const char* none : {"", " ", "x", "1x", "1 2", "nan", "inf", "0x10"})
    EXPECT_EQ(number(none), std::nullopt) << none;
}

}  // namespace
}  // namespace triglub
