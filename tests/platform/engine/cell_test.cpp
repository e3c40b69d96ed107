// What the text of a cell stands for.
#include "engine/table/cell.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace triglub_test {
namespace {

using triglub::cell_fault;
using triglub::FieldSchema;
using triglub::FieldType;
using triglub::parse_cell;

FieldSchema field_of(FieldType type, const std::string& name = "x") {
  FieldSchema field;
  field.name = name;
  field.type = type;
  field.null_text = "-1";
  field.null_integer = -1;
  field.null_real = -1;
  return field;
}

TEST(Cell, OfBlanksIsNull) {
  for (const std::string& blank : std::vector<std::string>{"", " ", std::string(7, ' '), std::string(30, ' ')}) {
    std::int64_t integer = 5;
    double real = 5;
    EXPECT_TRUE(parse_cell(field_of(FieldType::integer), blank, &integer));
    EXPECT_TRUE(parse_cell(field_of(FieldType::real), blank, &real));
    EXPECT_EQ(integer, -1);
    EXPECT_EQ(real, -1);
  }
}

TEST(Cell, MayHaveBlanksAroundItsValue) {
  for (const int before : {0, 1, 8, 20}) {
    for (const int behind : {0, 1, 7, 8, 9, 30}) {
      const std::string cell = std::string(static_cast<std::size_t>(before), ' ') + "17" +
                               std::string(static_cast<std::size_t>(behind), ' ');
      std::int64_t integer = 0;
      EXPECT_TRUE(parse_cell(field_of(FieldType::integer), cell, &integer));
      EXPECT_EQ(integer, 17);
      EXPECT_EQ(triglub::without_blanks(cell), "17");
    }
  }
}

TEST(Cell, IsReadAsItsFieldSays) {
  struct Case {
    FieldType type;
    std::string name;
    std::string cell;
    std::string fault;
  };
  const std::string zero("1\0", 2);
  const std::string kTime = "a time (epoch seconds, or a date such as 2014-03-03 11:07:06)";
  for (const auto& [type, name, cell, fault] : std::vector<Case>{
           {FieldType::text, "x", "any \x01 text", ""},
           {FieldType::text, "x", "\xFC", ""},
           {FieldType::text, "x", zero, "a zero byte (byte 12)"},
           {FieldType::integer, "x", " 12 ", ""},
           {FieldType::integer, "x", "1.5", "expected an integer, found '1.5'"},
           {FieldType::integer, "x", "\t1", "expected an integer, found '\t1'"},
           {FieldType::integer, "x", zero, "a zero byte (byte 12)"},
           {FieldType::integer, "x", "  " + zero, "a zero byte (byte 14)"},
           {FieldType::date, "x", "2000001", ""},
           {FieldType::date, "x", "2000-01", "expected a date (yyyyddd), found '2000-01'"},
           {FieldType::real, "x", "1e3", ""},
           {FieldType::real, "x", " nan", "expected a number, found 'nan'"},
           {FieldType::real, "x", zero, "a zero byte (byte 12)"},
           {FieldType::time, "x", "17.5", ""},
           {FieldType::time, "x", "01-02-03 04:05:06", ""},
           {FieldType::time, "x", "\t17", "expected " + kTime + ", found '\t17'"},
           {FieldType::time, "x", "01-02-30 04:05:06", "expected " + kTime + ", found '01-02-30 04:05:06'"},
           {FieldType::real, "x", "2014-03-03", "expected a number, found '2014-03-03'"},
           {FieldType::time, "lddate", "yesterday", ""},
           {FieldType::text, "lddate", "yesterday", ""},
           {FieldType::integer, "lddate", "yesterday", "expected an integer, found 'yesterday'"},
           {FieldType::time, "lddate", zero, "a zero byte (byte 12)"},
       }) {
    EXPECT_EQ(cell_fault(field_of(type, name), cell, 11), fault) << name << " " << cell;
  }
}

TEST(Cell, OfATimeMayHoldADate) {
  for (const char* name : {"time", "lddate"}) {
    double time = 0;
    ASSERT_TRUE(parse_cell(field_of(FieldType::time, name), " 1970-01-02T000001 ", &time));
    EXPECT_EQ(time, 86401);
    ASSERT_TRUE(parse_cell(field_of(FieldType::time, name), "19700102", &time));
    EXPECT_EQ(time, 19700102);
  }
}

TEST(Cell, IsAnUnreadLoadDateWhenItHoldsNoTime) {
  const auto is_unread = [](FieldType type, const char* name, std::string_view cell) {
    return triglub::is_unread_load_date(field_of(type, name), cell);
  };
  EXPECT_TRUE(is_unread(FieldType::time, "lddate", "yesterday"));
  EXPECT_TRUE(is_unread(FieldType::time, "lddate", "2014-02-30"));
  EXPECT_FALSE(is_unread(FieldType::time, "lddate", "2014-02-28"));
  EXPECT_FALSE(is_unread(FieldType::time, "lddate", "  "));
  EXPECT_FALSE(is_unread(FieldType::time, "lddate", std::string_view("1\0", 2)));
  EXPECT_FALSE(is_unread(FieldType::time, "time", "yesterday"));
  EXPECT_FALSE(is_unread(FieldType::text, "lddate", "yesterday"));
  EXPECT_FALSE(is_unread(FieldType::integer, "lddate", "yesterday"));
}

}  // namespace
}  // namespace triglub_test
