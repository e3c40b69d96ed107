#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parfile/grammar.h"
#include "platform/parfile/pf_ptr.h"

namespace {

using Lines = std::vector<std::string>;

TEST(ParameterFile, HoldsStringsListsAndTables) {
  const PfPtr pf = parsed(R"(# the root of the document
root_node   document

document &Arr{
    name        FDSNStationXML
    # what its opening tag says
    attributes &Tbl{
        xmlns         - text  http://www.fdsn.org/xml/station/1

        # not a line
        schemaVersion - text  1.1
    }
    elements &Tbl{
        network_group - CATEGORIZED_GROUP snetsta.snet
    }
    empty_list &Tbl{
    }
    empty_table &Arr{
    }
}
)");
  ASSERT_NE(pf, nullptr);
  EXPECT_EQ(string_at(pf, "root_node"), "document");
  EXPECT_EQ(string_at(pf, "document{name}"), "FDSNStationXML");
  EXPECT_EQ(lines_at(pf, "document{attributes}"),
            (Lines{"xmlns         - text  http://www.fdsn.org/xml/station/1", "schemaVersion - text  1.1"}));
  EXPECT_EQ(lines_at(pf, "document{elements}"), Lines{"network_group - CATEGORIZED_GROUP snetsta.snet"});
  EXPECT_EQ(lines_at(pf, "document{empty_list}"), Lines{});
  EXPECT_EQ(pf_keys(pf.get(), "document{empty_table}"), Lines{});
  EXPECT_EQ(pf_keys(pf.get(), ""), (Lines{"root_node", "document"}));
  EXPECT_EQ(pf_keys(pf.get(), "document"), (Lines{"name", "attributes", "elements", "empty_list", "empty_table"}));
}

TEST(ParameterFile, TakesTheRestOfALineAsTheValue) {
  const struct {
    const char* line;
    const char* key;
    const char* value;
  } cases[] = {
      {"key value", "key", "value"},
      {"key\tvalue", "key", "value"},
      {" \t key \t several  words \t ", "key", "several  words"},
      {"key", "key", ""},
      {"key   ", "key", ""},
      {"key value # no comment", "key", "value # no comment"},
      {"key #value", "key", "#value"},
      {"key }", "key", "}"},
      {"key {a}", "key", "{a}"},
      {"key a &Arr{", "key", "a &Arr{"},
      {"key &", "key", "&"},
      {"key &Arrow", "key", "&Arrow"},
      {"key &Ar{", "key", "&Ar{"},
      {"key \xC3\xA9t\xC3\xA9", "key", "\xC3\xA9t\xC3\xA9"},
      {"cl\xC3\xA9 value", "cl\xC3\xA9", "value"},
      {"a.b:c-d value", "a.b:c-d", "value"},
      {"IU.ANMO.00:BHZ value", "IU.ANMO.00:BHZ", "value"},
      {"- dash", "-", "dash"},
      {"& value", "&", "value"},
      {"key# value", "key#", "value"},
      {"\"key\" \"value\"", "\"key\"", "\"value\""},
      {"key value\v\f", "key", "value"},
      {"key\fvalue", "key", "value"},
  };
  for (const auto& c : cases) {
    for (const char* line_end : {"", "\n", "\r\n"}) {
      const PfPtr pf = parsed(std::string(c.line) + line_end);
      ASSERT_NE(pf, nullptr) << c.line;
      EXPECT_EQ(string_at(pf, c.key), c.value) << c.line;
      EXPECT_EQ(pf_keys(pf.get(), ""), Lines{c.key}) << c.line;
    }
  }
}

TEST(ParameterFile, MayBeEmpty) {
  for (const char* text : {"", "\n", "   ", "# a comment", "\r\n\r\n", "\xEF\xBB\xBF", "\n\t\n  # a\n#b\n"}) {
    const PfPtr pf = parsed(text);
    ASSERT_NE(pf, nullptr) << testing::PrintToString(text);
    EXPECT_EQ(pf_keys(pf.get(), ""), Lines{}) << testing::PrintToString(text);
  }
}

TEST(ParameterFile, TakesAByteOrderMarkAndWindowsLineEnds) {
  const PfPtr pf = parsed("\xEF\xBB\xBFkey value\r\nlist &Tbl{\r\n  one\r\n\r\n  # no\r\n  two\r\n}\r\n");
  ASSERT_NE(pf, nullptr);
  EXPECT_EQ(string_at(pf, "key"), "value");
  EXPECT_EQ(lines_at(pf, "list"), (Lines{"one", "two"}));
}

TEST(ParameterFile, TrimsTheLinesOfAListAndKeepsWhatIsInside) {
  const PfPtr pf = parsed("list &Tbl{\n  a   b  \n\tc\td\t\n x &Arr{\n &Tbl{\n }}\n } x\n key\n a#b\n}");
  EXPECT_EQ(lines_at(pf, "list"), (Lines{"a   b", "c\td", "x &Arr{", "&Tbl{", "}}", "} x", "key", "a#b"}));
}

TEST(ParameterFile, LetsTheLaterOfTwoEqualKeysStand) {
  const PfPtr pf = parsed(R"(
    a first
    a second
    b &Tbl{
      line
    }
    b string
    c string
    c &Arr{
      x 1
    }
    c &Arr{
      y 2
    }
    d &Arr{
      x 1
    }
    d &Tbl{
      line
    }
    e &Tbl{
      one
    }
    e &Tbl{
      two
    }
    f &Arr{
      a 1
      a 2
    }
)");
  ASSERT_NE(pf, nullptr);
  EXPECT_EQ(string_at(pf, "a"), "second");
  EXPECT_EQ(string_at(pf, "b"), "string");
  EXPECT_EQ(lines_at(pf, "b"), Lines{"(null)"});
  EXPECT_EQ(string_at(pf, "c"), "(null)");
  EXPECT_EQ(string_at(pf, "c{x}"), "(null)");
  EXPECT_EQ(string_at(pf, "c{y}"), "2");
  EXPECT_EQ(lines_at(pf, "d"), Lines{"line"});
  EXPECT_EQ(string_at(pf, "d{x}"), "(null)");
  EXPECT_EQ(lines_at(pf, "e"), Lines{"two"});
  EXPECT_EQ(string_at(pf, "f{a}"), "2");
  EXPECT_EQ(pf_keys(pf.get(), ""), (Lines{"a", "b", "c", "d", "e", "f"}));
}

TEST(ParameterFile, ComplainsOfFaultsByFileAndLine) {
  const struct {
    std::string text;
    const char* complaint;
  } cases[] = {
      {"a &Arr{\n", "test.pf:1: the block 'a' is never closed"},
      {"x 1\na &Tbl{\n  line\n", "test.pf:2: the block 'a' is never closed"},
      {"a &Arr{\n b &Tbl{\n line\n}\n", "test.pf:1: the block 'a' is never closed"},
      {"a &Arr{\n\n b &Arr{\n", "test.pf:3: the block 'b' is never closed"},
      {"a &Tbl{\n} x\n", "test.pf:1: the block 'a' is never closed"},
      {"}", "test.pf:1: '}' where no block is open"},
      {"a &Arr{\n}\n}\n", "test.pf:3: '}' where no block is open"},
      {"\r\n\r\n  }  \r\n", "test.pf:3: '}' where no block is open"},
      {"a {\n x 1\n}\n", "test.pf:3: '}' where no block is open"},
      {"} x\n", "test.pf:1: '}' with something behind it"},
      {"a &Arr{\n}} \n", "test.pf:2: '}' with something behind it"},
      {"a &Arr{\n} # end\n", "test.pf:2: '}' with something behind it"},
      {"&Arr{\n}\n", "test.pf:1: a block without a key"},
      {"x 1\n  &Tbl{\n}\n", "test.pf:2: a block without a key"},
      {"&Arr{ x\n}\n", "test.pf:1: a block without a key"},
      {"a &Arr{ x 1 }\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a &Tbl{}\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a &Arr{ # comment\n}\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a &Arr {\n}\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a &arr{\n}\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a &TBL\n{\n}\n", "test.pf:1: a block is opened by '&Arr{' or '&Tbl{' with nothing behind it"},
      {"a&Arr{\n}\n", "test.pf:1: a key that holds a brace"},
      {"a{b} value\n", "test.pf:1: a key that holds a brace"},
      {"{ value\n", "test.pf:1: a key that holds a brace"},
      {"a} value\n", "test.pf:1: a key that holds a brace"},
      {std::string("x 1\na b\0c\n", 10), "test.pf:2: a zero byte"},
      {std::string("# \0\n", 4), "test.pf:1: a zero byte"},
      {"x 1\nname Caf\xE9\n", "test.pf:2: a text that is not UTF-8"},
      {"# Caf\xE9\n", "test.pf:1: a text that is not UTF-8"},
      {"a &Tbl{\n x\n \xC0\xAF\n}\n", "test.pf:3: a text that is not UTF-8"},
      {"\xFF\xFEk\n", "test.pf:1: a text that is not UTF-8"},
      {"a 1\rb 2\rc 3\r", "test.pf:1: a carriage return inside the line"},
      {"x 1\n\xEF\xBB\xBFy 2\n", "test.pf:2: a byte order mark inside the text"},
      {"\xEF\xBB\xBF\xEF\xBB\xBFy 2\n", "test.pf:1: a byte order mark inside the text"},
  };
  for (const auto& c : cases) {
    const Complaints complaints;
    const PfPtr not_null(pfnew());
    Pf* pf = not_null.get();
    EXPECT_EQ(pfparse(c.text, "test.pf", &pf), -3) << c.text;
    EXPECT_EQ(pf, nullptr) << c.text;
    EXPECT_EQ(complaints.texts(), Lines{c.complaint}) << c.text;
  }
}

TEST(ParameterFile, ShortensALongKeyInAComplaint) {
  std::string key;
  for (int i = 0; i < 1000; ++i) key += "\xE2\x82\xAC";
  const Complaints complaints;
  EXPECT_EQ(parsed(key + " &Arr{"), nullptr);
  EXPECT_EQ(complaints.texts(), Lines{"test.pf:1: the block '" + key.substr(0, 60) + "' is never closed"});
}

// `depth` tables inside one another.
std::string nested(std::size_t depth) {
  std::string text;
  for (std::size_t i = 0; i < depth; ++i) text += "a &Arr{\n";
  text += "x 1\n";
  for (std::size_t i = 0; i < depth; ++i) text += "}\n";
  return text;
}

TEST(ParameterFile, LimitsTheDepthOfNesting) {
  using triglub::parfile::kMaxDepth;
  std::string key = "a";
  for (std::size_t i = 1; i < kMaxDepth; ++i) key += "{a}";
  EXPECT_EQ(string_at(parsed(nested(kMaxDepth)), key + "{x}"), "1");
  for (const std::size_t depth : {kMaxDepth + 1, std::size_t{1000000}}) {
    const Complaints complaints;
    EXPECT_EQ(parsed(nested(depth)), nullptr);
    EXPECT_EQ(complaints.texts(), Lines{"test.pf:101: too many blocks inside one another"});
  }
}

TEST(ParameterFile, MayHaveLinesOfAnyLength) {
  const std::string longest(1 << 20, 'x');
  const PfPtr pf = parsed(longest + " " + longest + "\nlist &Tbl{\n" + longest + "\n}\n");
  ASSERT_NE(pf, nullptr);
  EXPECT_TRUE(string_at(pf, longest) == longest);
  EXPECT_TRUE(lines_at(pf, "list") == Lines{longest});
}

TEST(ParameterFile, MayHaveManyKeysAndLines) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "key" + std::to_string(i) + " " + std::to_string(i) + "\n";
  text += "list &Tbl{\n";
  for (int i = 0; i < 100000; ++i) text += "  line " + std::to_string(i) + "\n";
  const PfPtr pf = parsed(text + "}\n");
  ASSERT_NE(pf, nullptr);
  EXPECT_EQ(string_at(pf, "key99999"), "99999");
  EXPECT_EQ(lines_at(pf, "list").at(99999), "line 99999");
  EXPECT_EQ(pf_keys(pf.get(), "").size(), 100001u);
}

}  // namespace
