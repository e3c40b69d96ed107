#include <gtest/gtest.h>

#include <clocale>
#include <stdexcept>
#include <string>

#include "xml.h"

namespace {

const XmlAttribute attribute;

TEST(XmlAttribute, TakesNamesOfAsciiLettersDigitsAndFourMarks) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    const bool is_valid = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ':' ||
                          c == '.' || c == '-' || c == '_';
    EXPECT_EQ(attribute.isvalid_name(std::string(1, c)), is_valid) << code;
    EXPECT_EQ(attribute.isvalid_name(std::string("a") + c + "b"), is_valid) << code;
  }
  EXPECT_TRUE(attribute.isvalid_name(""));
  EXPECT_TRUE(attribute.isvalid_name("xsi:schemaLocation"));
  EXPECT_FALSE(attribute.isvalid_name("n\u00e4me"));
}

TEST(XmlAttribute, JudgesNamesAlikeInEveryLocale) {
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  EXPECT_FALSE(attribute.isvalid_name("\xe4"));
  std::setlocale(LC_ALL, "C");
}

TEST(XmlAttribute, EscapesEachSpecialCharacterOnce) {
  EXPECT_EQ(attribute.make_value_safe("<a href='x'>&"), "&lt;a href=&apos;x&apos;&gt;&amp;");
  EXPECT_EQ(attribute.make_value_safe("\"&<>'"), "&quot;&amp;&lt;&gt;&apos;");
  EXPECT_EQ(attribute.make_value_safe(""), "");
  EXPECT_EQ(attribute.make_value_safe("Bl\u00e5sj\u00f6"), "Bl\u00e5sj\u00f6");
}

TEST(XmlAttribute, EscapesAnEntityOfTheInputOnceMore) {
  EXPECT_EQ(attribute.make_value_safe("A&amp;B"), "A&amp;amp;B");
  EXPECT_EQ(attribute.make_value_safe("&lt;"), "&amp;lt;");
}

TEST(XmlAttribute, WritesNameAndValueBehindABlank) {
  EXPECT_EQ(attribute.get("code", "A&B"), " code=\"A&amp;B\"");
  EXPECT_EQ(attribute.get("xml:lang", ""), " xml:lang=\"\"");
  EXPECT_EQ(attribute.get("", "x"), " =\"x\"");
}

TEST(XmlAttribute, RefusesANameThatIsNotValid) {
  try {
    attribute.get("bad name", "x");
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Invalid attribute name: [bad name]");
  }
}

TEST(XmlAttribute, AppendsWhatMakeValueSafeMakes) {
  for (const char* value : {"", "plain", "a&b", "a<b", "a>b", "it's", "say \"x\"", "&<>'\""}) {
    std::string text = "before ";
    XmlAttribute().append_safe(value, &text);
    EXPECT_EQ(text, "before " + XmlAttribute().make_value_safe(value));
  }
}

}  // namespace
