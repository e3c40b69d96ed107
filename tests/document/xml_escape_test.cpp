#include "document/xml_escape.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace triglub {
namespace {

std::string escaped(std::string_view text, XmlPlace place) {
  std::string xml = ">";  // what is there already stays
  append_escaped(text, place, &xml);
  return xml.substr(1);
}

struct Case {
  const char* what;
  std::string_view text;
  std::string_view content;
  std::string_view attribute;
};

using namespace std::string_view_literals;

const Case kCases[] = {
    {"nothing", "", "", ""},
    {"plain", "AAK 00 'x'", "AAK 00 'x'", "AAK 00 'x'"},
    {"markup", "<a & \"b\">", "&lt;a &amp; \"b\"&gt;", "&lt;a &amp; &quot;b&quot;&gt;"},
    {"an entity is text", "&amp;", "&amp;amp;", "&amp;amp;"},
    {"what would end a section", "]]>", "]]&gt;", "]]&gt;"},
    {"tabs and line ends", "a\tb\nc\rd\r\ne", "a b c d  e", "a b c d  e"},
    {"forbidden at both ends and alone",
     "\x01"
     "a\x1F",
     "a", "a"},
    {"delete is allowed", "a\x7F", "a\x7F", "a\x7F"},
    {"letters of two, three and four bytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8B",
     "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8B", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\x8B"},
    {"U+FFFE and U+FFFF",
     "a\xEF\xBF\xBE"
     "b\xEF\xBF\xBF",
     "ab", "ab"},
    {"their neighbours", "\xEF\xBF\xBD\xEF\xBC\xA1\xEF\xBB\xBF", "\xEF\xBF\xBD\xEF\xBC\xA1\xEF\xBB\xBF",
     "\xEF\xBF\xBD\xEF\xBC\xA1\xEF\xBB\xBF"},
    {"nul", "a\0b"sv, "ab", "ab"},
};

TEST(XmlEscape, AReaderGetsTheTextBack) {
  for (const Case& c : kCases) {
    EXPECT_EQ(escaped(c.text, XmlPlace::content), c.content) << c.what;
    EXPECT_EQ(escaped(c.text, XmlPlace::attribute), c.attribute) << c.what;
  }
}

TEST(XmlEscape, NoOtherControlCharacterIsWritten) {
  for (char c = 0; c < 0x20; ++c) {
    const bool is_blank = c == '\t' || c == '\n' || c == '\r';
    EXPECT_EQ(escaped(std::string(1, c), XmlPlace::content), is_blank ? " " : "") << static_cast<int>(c);
  }
}

}  // namespace
}  // namespace triglub
