#include "document/code_check.h"

#include <gtest/gtest.h>

namespace triglub {
namespace {

TEST(CodeCheck, KnowsWhichAttributesAreCodes) {
  EXPECT_TRUE(is_fdsn_code("Network", "code"));
  EXPECT_TRUE(is_fdsn_code("Station", "code"));
  EXPECT_TRUE(is_fdsn_code("Channel", "code"));
  EXPECT_TRUE(is_fdsn_code("Channel", "locationCode"));
  EXPECT_FALSE(is_fdsn_code("Station", "locationCode"));
  EXPECT_FALSE(is_fdsn_code("Network", "Code"));
  EXPECT_FALSE(is_fdsn_code("Stage", "number"));
}

struct Case {
  const char* tag;
  const char* attribute;
  const char* code;
  bool is_allowed;
};

const Case kCases[] = {
    {"Network", "code", "KR", true},
    {"Network", "code", "X", true},
    {"Network", "code", "ABCD2345", true},
    {"Network", "code", "ABCD23456", false},
    {"Network", "code", "", false},
    {"Network", "code", "kr", false},
    {"Network", "code", "K-R", false},
    {"Network", "code", "K R", false},
    {"Station", "code", "AAK-2", true},
    {"Station", "code", "AAK_2", false},
    {"Station", "code", "", false},
    {"Station", "code", "ABCDEFGHI", false},
    {"Channel", "code", "BHZ", true},
    {"Channel", "code", "BH1", true},
    {"Channel", "code", "BH", false},
    {"Channel", "code", "BHZZ", false},
    {"Channel", "code", "B-Z", false},
    {"Channel", "locationCode", "", true},
    {"Channel", "locationCode", "00", true},
    {"Channel", "locationCode", "--", true},
    {"Channel", "locationCode", "a0", false},
    {"Channel", "locationCode", "123456789", false},
    {"Channel", "locationCode", "\xC3\x84", false},
};

TEST(CodeCheck, AllowsWhatFdsnGivesOut) {
  for (const Case& c : kCases) {
    EXPECT_EQ(is_allowed_code(c.tag, c.attribute, c.code), c.is_allowed) << c.tag << " " << c.code;
  }
}

}  // namespace
}  // namespace triglub
