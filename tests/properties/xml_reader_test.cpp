#include "properties/xml_reader.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using triglub_properties::Element;
using triglub_properties::read_xml;

TEST(XmlReader, ReadsElementsAttributesAndTexts) {
  const Element root = read_xml(
      "<?xml version=\"1.0\"?>\n<a b=\"1 &lt; 2\" c=\"\">\n <!-- <x> --><d>&quot;&amp;&apos;</d>\n <d>two</d>\n</a>\n");
  EXPECT_EQ(root.name, "a");
  EXPECT_EQ(root.attribute("b"), "1 < 2");
  EXPECT_EQ(root.attribute("c"), "");
  EXPECT_EQ(root.attribute("d"), std::nullopt);
  EXPECT_EQ(root.text_at({"d"}), "\"&'");
  EXPECT_EQ(root.text_at({"e"}), std::nullopt);
  ASSERT_EQ(root.all("d").size(), 2u);
  EXPECT_EQ(root.all("d")[1]->text, "two");
}

TEST(XmlReader, RefusesWhatIsNotWellFormed) {
  for (const char* text :
       {"", "<a>", "<a></b>", "<a></a>b", "<a b=1></a>", "<a b=\"1\" b=\"2\"></a>", "<a b=\"<\"></a>", "<a>&</a>",
        "<a>&none;</a>", "<a>]]></a>", "<a></a><a></a>", "< a></a>"}) {
    EXPECT_THROW(read_xml(text), std::runtime_error) << text;
  }
}

}  // namespace
