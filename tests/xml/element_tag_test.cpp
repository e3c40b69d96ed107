#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "xml.h"

namespace {

TEST(ElementTag, TakesNamesOfAsciiLettersDigitsAndThreeMarks) {
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    const bool is_safe =
        (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ':' || c == '-' || c == '_';
    EXPECT_EQ(ElementTag::is_safe(std::string(1, c)), is_safe) << code;
  }
  EXPECT_TRUE(ElementTag::is_safe(""));
  EXPECT_TRUE(ElementTag::is_safe("fdsn:Extra"));
}

// Unlike an attribute's name, a tag's may not hold a '.'.
TEST(ElementTag, RefusesANameThatIsNotSafeInEveryConstructor) {
  const auto message = [](auto... arguments) -> std::string {
    try {
      ElementTag tag(arguments...);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "nothing thrown";
  };
  const std::string name = "Station.Name";
  EXPECT_EQ(message(name), "Unsafe tag: Station.Name");
  EXPECT_EQ(message(name, std::string(" code=\"A\"")), "Unsafe tag: Station.Name");
  EXPECT_EQ(message(name, std::vector<std::string>{"a"}), "Unsafe tag: Station.Name");
}

TEST(ElementTag, WritesItsTags) {
  EXPECT_EQ(ElementTag("fdsn:Extra").open_tag(), "<fdsn:Extra>");
  EXPECT_EQ(ElementTag("Station").close_tag(), "</Station>");
  EXPECT_EQ(ElementTag("Station", " code=\"AAK\"").open_tag(), "<Station code=\"AAK\">");
  EXPECT_EQ(ElementTag("Station", " code=\"AAK\"").close_tag(), "</Station>");
  EXPECT_EQ(ElementTag("").open_tag(), "<>");
}

TEST(ElementTag, PutsABlankBeforeEachListedAttribute) {
  EXPECT_EQ(ElementTag("T", std::vector<std::string>{}).open_tag(), "<T>");
  EXPECT_EQ(ElementTag("T", std::vector<std::string>{"a", "b"}).open_tag(), "<T a b>");
}

TEST(ElementTag, LeavesAttributesAsTheyAre) { EXPECT_EQ(ElementTag("T", "<&>").open_tag(), "<T<&>>"); }

TEST(ElementTag, HasNoTagsWhenTransparent) {
  const ElementTag tag("-", " code=\"AAK\"");
  EXPECT_EQ(tag.open_tag(), "");
  EXPECT_EQ(tag.close_tag(), "");
  EXPECT_EQ(ElementTag("--").open_tag(), "<-->");
}

TEST(ElementTag, HasTheMeasuresThatDocumentsKeep) {
  EXPECT_EQ(SPACES_PER_NEST, 1);
  EXPECT_EQ(MAX_XML_LINE_LENGTH, 80);
}

TEST(ElementTag, IndentsByTheNumberOfBlanksAskedFor) {
  EXPECT_EQ(ElementTag::get_spacer(0), "");
  EXPECT_EQ(ElementTag::get_spacer(1), " ");
  EXPECT_EQ(ElementTag::get_spacer(7), std::string(7, ' '));
  EXPECT_THROW(ElementTag::get_spacer(std::string().max_size() + 1), std::length_error);
  EXPECT_THROW(ElementTag::get_spacer(std::numeric_limits<unsigned long>::max()), std::length_error);
}

TEST(ElementTag, EstimatesOneCharacterLessThanItWrites) {
  const ElementTag tag("Latitude", " unit=\"DEGREES\"");
  const std::string content = "42.6375";
  EXPECT_EQ(tag.est_len(content), 2 * 8 + 7 + 15 + 4);
  EXPECT_EQ(tag.wrap(content, 0).size(), tag.est_len(content) + 1 + 1);
  EXPECT_EQ(ElementTag("").est_len(""), 4);
}

TEST(ElementTag, WrapsShortContentOnOneLine) {
  EXPECT_EQ(ElementTag("Latitude").wrap("45.3", 3), "   <Latitude>45.3</Latitude>\n");
  EXPECT_EQ(ElementTag("Latitude").wrap("", 0), "<Latitude></Latitude>\n");
}

// The estimate of "Name" is content + 12.
TEST(ElementTag, WrapsContentOnItsOwnLineFromAnEstimateOf80) {
  const ElementTag tag("Name");
  const std::string short_content(67, 'x');
  ASSERT_EQ(tag.est_len(short_content), 79);
  EXPECT_EQ(tag.wrap(short_content, 2), "  <Name>" + short_content + "</Name>\n");
  const std::string long_content(68, 'x');
  ASSERT_EQ(tag.est_len(long_content), 80);
  EXPECT_EQ(tag.wrap(long_content, 2), "  <Name>\n   " + long_content + "\n  </Name>\n");
}

TEST(ElementTag, DoesNotCountTheIndentation) {
  const std::string content(67, 'x');
  EXPECT_EQ(ElementTag("Name").wrap(content, 50), std::string(50, ' ') + "<Name>" + content + "</Name>\n");
}

TEST(ElementTag, RefusesAnIndentationThatNoTextCanHold) {
  constexpr unsigned long highest = std::numeric_limits<unsigned long>::max();
  const unsigned long longest = std::string().max_size();
  const ElementTag tag("Name", " a=\"b\"");
  for (const unsigned long indent : {longest / 4 + 1, longest / 3, longest / 3 + 50, longest - 50, longest, longest + 1,
                                     highest / 3, highest / 3 + 1, highest / 3 + 50, highest / 2, highest / 3 * 2,
                                     highest / 3 * 2 + 1, highest / 3 * 2 + 50, highest - 100, highest - 1, highest}) {
    for (const ElementTag& any : {tag, ElementTag("-")}) {
      for (const std::size_t length : {0, 1, 80, 1000}) {
        const std::string content(length, 'x');
        EXPECT_THROW(any.wrap(content, indent), std::length_error) << indent;
        std::string text = "before";
        EXPECT_THROW(any.append_wrapped(content, indent, &text), std::length_error) << indent;
        EXPECT_EQ(text, "before") << indent;
      }
    }
  }
}

TEST(ElementTag, CountsAttributesOnce) {
  const std::string content(57, 'x');
  EXPECT_EQ(ElementTag("Name", std::string(10, 'a')).wrap(content, 0),
            "<Name" + std::string(10, 'a') + ">" + content + "</Name>\n");
  EXPECT_EQ(ElementTag("Name", std::string(11, 'a')).wrap(content, 0),
            "<Name" + std::string(11, 'a') + ">\n " + content + "\n</Name>\n");
}

TEST(ElementTag, WrapsContentWithoutTagsWhenTransparent) {
  EXPECT_EQ(ElementTag("-").wrap("text", 2), "  text\n");
  const std::string content(74, 'x');
  EXPECT_EQ(ElementTag("-").wrap(content, 2), "  \n   " + content + "\n  \n");
}

TEST(ElementTag, WritesContentAsItIs) { EXPECT_EQ(ElementTag("T").wrap("a<b/>&", 0), "<T>a<b/>&</T>\n"); }

}  // namespace
