#include "xml_text.h"

#include <gtest/gtest.h>

namespace {

using triglub::is_xml_name;
using triglub::xml_text_fault;

TEST(XmlNames, AreThoseOfTheStandard) {
  for (const char* name : {"a", "Z", "_", "Latitude", "a-b.c_d9", "fdsn:type", "xml:lang", "\u00C9tage", "a\u00B7",
                           "a\u0300", "\U00010000"}) {
    EXPECT_TRUE(is_xml_name(name)) << name;
  }
  for (const char* name : {"", "-", "9a", ".a", "a b", "a/b", "a:", ":a", "a:b:c", "a:9", "a\u00D7", "\u0300a", "<a",
                           "a&b", "a\"", "\U000F0000"}) {
    EXPECT_FALSE(is_xml_name(name)) << name;
  }
}

TEST(XmlPrefixes, StandBeforeTheColon) {
  EXPECT_EQ(triglub::xml_prefix("fdsn:type"), "fdsn");
  EXPECT_EQ(triglub::xml_prefix("type"), "");
}

TEST(XmlTexts, ThatAreWellFormedHaveNoFault) {
  for (const char* text : {"", "plain", "a > b", "&amp;&lt;&gt;&quot;&apos;", "&#65;&#x1F600;&#9;", "'", "] ] >", "\t",
                           "\u00E9\U0001F600"}) {
    EXPECT_EQ(xml_text_fault(text, false), "") << text;
    EXPECT_EQ(xml_text_fault(text, true), "") << text;
  }
  EXPECT_EQ(xml_text_fault("\"quoted\"", false), "");
  EXPECT_EQ(xml_text_fault("]]>", true), "");
}

TEST(XmlTexts, HaveTheirFirstFaultTold) {
  const struct {
    const char* text;
    bool is_attribute;
    const char* fault;
  } cases[] = {
      {"a & b", false, "a bare & (write &amp;)"},
      {"a &", false, "a bare & (write &amp;)"},
      {"a &; b", false, "a bare & (write &amp;)"},
      {"R&D; no", false, "&D; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&nbsp;", false, "&nbsp; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&#0;", false, "&#0; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&#xD800;", false, "&#xD800; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&#X41;", false, "&#X41; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&#;", false, "&#; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"&#99999999999;", false, "&#99999999999; is not known to XML (write the character itself; &amp; for a mere &)"},
      {"<b>", false, "a bare < (write &lt;)"},
      {"a<b&", true, "a bare < (write &lt;)"},
      {"]]>", false, "a bare ]]> (write ]]&gt;)"},
      {"a \"b\"", true, "a bare \" in an attribute (write &quot;)"},
      {"a\x01", false, "the character U+0001, which XML does not allow"},
      {"\uFFFE", true, "the character U+FFFE, which XML does not allow"},
  };
  for (const auto& c : cases) EXPECT_EQ(xml_text_fault(c.text, c.is_attribute), c.fault) << c.text;
}

}  // namespace
