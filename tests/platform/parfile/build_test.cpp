#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parfile/grammar.h"
#include "platform/parfile/pf_ptr.h"

namespace {

using Lines = std::vector<std::string>;

TEST(BuiltParameters, AreFoundAgain) {
  const PfPtr pf(pfnew());
  EXPECT_EQ(pfput_string(pf.get(), "root_node", "document"), 0);
  EXPECT_EQ(pfput_string(pf.get(), "document{name}", "FDSNStationXML"), 0);
  EXPECT_EQ(pfput_tbl(pf.get(), "document{elements}", {"Source - text  x", "}} x"}), 0);
  EXPECT_EQ(pfput_tbl(pf.get(), "document{attributes}", {}), 0);
  EXPECT_EQ(pfput_arr(pf.get(), "empty"), 0);
  EXPECT_EQ(pfput_string(pf.get(), "a{b}{c}{d}", ""), 0);
  EXPECT_EQ(string_at(pf, "root_node"), "document");
  EXPECT_EQ(string_at(pf, "document{name}"), "FDSNStationXML");
  EXPECT_EQ(lines_at(pf, "document{elements}"), (Lines{"Source - text  x", "}} x"}));
  EXPECT_EQ(lines_at(pf, "document{attributes}"), Lines{});
  EXPECT_EQ(string_at(pf, "a{b}{c}{d}"), "");
  EXPECT_EQ(pf_keys(pf.get(), ""), (Lines{"root_node", "document", "empty", "a"}));
  EXPECT_STREQ(pf_path(pf.get()), "");
}

TEST(BuiltParameters, ReplaceWhatStoodThere) {
  const PfPtr pf(pfnew());
  pfput_string(pf.get(), "a", "string");
  pfput_string(pf.get(), "b", "string");
  pfput_string(pf.get(), "a{x}", "1");
  EXPECT_EQ(string_at(pf, "a"), "(null)");
  EXPECT_EQ(string_at(pf, "a{x}"), "1");
  pfput_string(pf.get(), "a{y}", "2");
  EXPECT_EQ(string_at(pf, "a{x}"), "1");
  pfput_tbl(pf.get(), "a{x}", {"line"});
  EXPECT_EQ(lines_at(pf, "a{x}"), Lines{"line"});
  pfput_arr(pf.get(), "a");
  EXPECT_EQ(pf_keys(pf.get(), "a"), Lines{});
  pfput_string(pf.get(), "a", "again");
  EXPECT_EQ(string_at(pf, "a"), "again");
  EXPECT_EQ(pf_keys(pf.get(), ""), (Lines{"a", "b"}));
}

TEST(BuiltParameters, RefuseKeysThatNoFileCanHold) {
  for (const char* key : {"",
                          " ",
                          "a b",
                          " a",
                          "a ",
                          "a\tb",
                          "a\nb",
                          "a\vb",
                          "#a",
                          "a{#b}",
                          "{",
                          "}",
                          "a}",
                          "a{",
                          "a{}",
                          "{a}",
                          "a{b",
                          "a{b}}",
                          "a{b}c",
                          "a{b}{",
                          "a{{b}}",
                          "a{b c}",
                          "&Arr{",
                          "&Tbl{",
                          "Caf\xE9",
                          "a\rb",
                          "\xEF\xBB\xBF"
                          "a",
                          "a{\xEF\xBB\xBF"
                          "a}"}) {
    const PfPtr pf(pfnew());
    EXPECT_EQ(pfput_string(pf.get(), key, "value"), -1) << key;
    EXPECT_EQ(pfput_tbl(pf.get(), key, {"line"}), -1) << key;
    EXPECT_EQ(pfput_arr(pf.get(), key), -1) << key;
    EXPECT_EQ(pf2text(pf.get()), "") << key;
  }
  const PfPtr pf(pfnew());
  EXPECT_EQ(pfput_string(pf.get(), nullptr, "value"), -1);
  EXPECT_EQ(pfput_tbl(pf.get(), nullptr, {}), -1);
  EXPECT_EQ(pfput_arr(pf.get(), nullptr), -1);
  EXPECT_EQ(pfput_string(nullptr, "a", "value"), -1);
  EXPECT_EQ(pfput_tbl(nullptr, "a", {}), -1);
  EXPECT_EQ(pfput_arr(nullptr, "a"), -1);
}

TEST(BuiltParameters, RefuseStringsThatNoFileCanHold) {
  for (const std::string& value : Lines{" ", " a", "a ", "\ta", "a\n", "a\nb", "a\rb", "\r", "&Arr{", "&Tbl{",
                                        "&Arr{ x", "&Arr {", "&tbl{", std::string("a\0b", 3), "Caf\xE9"}) {
    const PfPtr pf(pfnew());
    EXPECT_EQ(pfput_string(pf.get(), "a{b}", value), -1) << value;
    EXPECT_EQ(pf2text(pf.get()), "") << value;
  }
}

TEST(BuiltParameters, RefuseLinesThatNoListCanHold) {
  for (const std::string& line :
       Lines{"", " ", " a", "a ", "a\nb", "a\rb", "}", "# a", "#", std::string("a\0b", 3), "\xFF"}) {
    const PfPtr pf(pfnew());
    EXPECT_EQ(pfput_tbl(pf.get(), "a{b}", {"good", line}), -1) << line;
    EXPECT_EQ(pf2text(pf.get()), "") << line;
  }
}

TEST(BuiltParameters, AreNoDeeperThanAFileCanBe) {
  std::string key = "a";
  for (std::size_t i = 1; i < triglub::parfile::kMaxDepth; ++i) key += "{a}";
  const PfPtr pf(pfnew());
  EXPECT_EQ(pfput_arr(pf.get(), (key + "{x}").c_str()), -1);
  EXPECT_EQ(pfput_tbl(pf.get(), (key + "{x}").c_str(), {}), -1);
  EXPECT_EQ(pfput_string(pf.get(), (key + "{x}{y}").c_str(), "1"), -1);
  EXPECT_EQ(pfput_arr(pf.get(), key.c_str()), 0);
  EXPECT_EQ(pfput_string(pf.get(), (key + "{x}").c_str(), "1"), 0);
  EXPECT_TRUE(pf_equal(parsed(pf2text(pf.get())).get(), pf.get()));
}

TEST(BuiltParameters, AreEqualWhenTheirEntriesAre) {
  const char* text = "a 1\nb &Arr{\n x 1\n y &Tbl{\n one\n two\n }\n}\nc &Tbl{\n}\n";
  const PfPtr pf = parsed(text);
  const struct {
    const char* text;
    bool equal;
  } cases[] = {
      {text, true},
      {"b &Arr{\n y &Tbl{\n one\n two\n }\n x 1\n}\n c &Tbl{\n}\na 1\n", true},
      {"a 1\nb &Arr{\n x 1\n y &Tbl{\n two\n one\n }\n}\nc &Tbl{\n}\n", false},
      {"a 1\nb &Arr{\n x 1\n y &Tbl{\n one\n two\n }\n}\n", false},
      {"a 1\nb &Arr{\n x 1\n y &Tbl{\n one\n two\n }\n}\nc &Tbl{\n}\nd\n", false},
      {"a 1\nb &Arr{\n x 1\n y &Tbl{\n one\n two\n }\n}\nc &Arr{\n}\n", false},
      {"a 1\nb &Arr{\n x 1\n y &Tbl{\n one\n two\n }\n}\nc\n", false},
      {"a 1\nb &Arr{\n x 2\n y &Tbl{\n one\n two\n }\n}\nc &Tbl{\n}\n", false},
      {"a 1\nb &Arr{\n z 1\n y &Tbl{\n one\n two\n }\n}\nc &Tbl{\n}\n", false},
      {"a 1\nb &Arr{\n w 1\n y &Tbl{\n one\n two\n }\n}\nc &Tbl{\n}\n", false},
      {"", false},
  };
  for (const auto& c : cases) {
    const PfPtr other = parsed(c.text);
    ASSERT_NE(other, nullptr) << c.text;
    EXPECT_EQ(pf_equal(pf.get(), other.get()), c.equal) << c.text;
    EXPECT_EQ(pf_equal(other.get(), pf.get()), c.equal) << c.text;
  }
  EXPECT_TRUE(pf_equal(nullptr, nullptr));
  EXPECT_FALSE(pf_equal(pf.get(), nullptr));
  EXPECT_FALSE(pf_equal(nullptr, pf.get()));
}

TEST(BuiltParameters, OfNothingCanBeReleased) { pffree(nullptr); }

}  // namespace
