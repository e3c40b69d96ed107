#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/parfile/pf_ptr.h"
#include "platform/text.h"

namespace {

using Keys = std::vector<std::string>;

class Lookup : public testing::Test {
 protected:
  PfPtr pf_ = parsed(R"(
    root top
    a &Arr{
      name  inner
      b &Arr{
        c &Arr{
          deep yes
        }
        list &Tbl{
          one
        }
      }
    }
    lines &Tbl{
      one
      two
    }
)");
};

TEST_F(Lookup, GoesToAnyDepth) {
  EXPECT_EQ(string_at(pf_, "root"), "top");
  EXPECT_EQ(string_at(pf_, "a{name}"), "inner");
  EXPECT_EQ(string_at(pf_, "a{b}{c}{deep}"), "yes");
  EXPECT_EQ(lines_at(pf_, "a{b}{list}"), Keys{"one"});
}

TEST_F(Lookup, OfAMissingKeyIsNull) {
  for (const char* key : {"Root", "roo", "root2", "name", "a{nam}", "a{b}{c}{deeper}", "a{x}{name}", "x{name}"}) {
    EXPECT_EQ(pfget_string(pf_.get(), key), nullptr) << key;
    EXPECT_EQ(pfget_tbl(pf_.get(), key), nullptr) << key;
  }
}

TEST_F(Lookup, OfAnotherKindIsNull) {
  EXPECT_EQ(pfget_string(pf_.get(), "a"), nullptr);
  EXPECT_EQ(pfget_string(pf_.get(), "lines"), nullptr);
  EXPECT_EQ(pfget_string(pf_.get(), "a{b}"), nullptr);
  EXPECT_EQ(pfget_string(pf_.get(), "root{name}"), nullptr);
  EXPECT_EQ(pfget_string(pf_.get(), "lines{one}"), nullptr);
  EXPECT_EQ(pfget_tbl(pf_.get(), "a"), nullptr);
  EXPECT_EQ(pfget_tbl(pf_.get(), "root"), nullptr);
  EXPECT_EQ(pfget_tbl(pf_.get(), "a{name}"), nullptr);
}

TEST_F(Lookup, OfAKeyThatIsNoneIsNull) {
  for (const char* key : {"",         "{",        "}",        "{}",          "{a}",      "{root}",    "a{",
                          "a{}",      "a{name",   "a{name}}", "a{name}x",    "a{name}{", "a{name}{}", "a{{name}}",
                          "a {name}", "a{ name}", "a.name",   "a{b}c{deep}", " root",    "root "}) {
    EXPECT_EQ(pfget_string(pf_.get(), key), nullptr) << key;
    EXPECT_EQ(pfget_tbl(pf_.get(), key), nullptr) << key;
  }
  EXPECT_EQ(pfget_string(pf_.get(), nullptr), nullptr);
  EXPECT_EQ(pfget_tbl(pf_.get(), nullptr), nullptr);
}

TEST_F(Lookup, InANullObjectIsNull) {
  EXPECT_EQ(pfget_string(nullptr, "root"), nullptr);
  EXPECT_EQ(pfget_tbl(nullptr, "root"), nullptr);
  EXPECT_TRUE(pf_keys(nullptr, "").empty());
  EXPECT_STREQ(pf_path(nullptr), "");
}

TEST_F(Lookup, ListsTheKeysOfATableInFileOrder) {
  EXPECT_EQ(pf_keys(pf_.get(), ""), (Keys{"root", "a", "lines"}));
  EXPECT_EQ(pf_keys(pf_.get(), "a{b}"), (Keys{"c", "list"}));
  for (const char* key : {"root", "lines", "x", "a{", "a{name}"}) EXPECT_EQ(pf_keys(pf_.get(), key), Keys{}) << key;
  EXPECT_EQ(pf_keys(pf_.get(), nullptr), Keys{});
}

TEST_F(Lookup, TellsTheLinesOfKeys) {
  const struct {
    const char* key;
    long line;
  } cases[] = {{"root", 2},   {"a", 3},   {"a{name}", 4}, {"a{b}", 5}, {"a{b}{c}{deep}", 7}, {"a{b}{list}", 9},
               {"lines", 14}, {"lin", 0}, {"a{x}", 0},    {"", 0},     {"root{name}", 0}};
  for (const auto& c : cases) EXPECT_EQ(pf_key_line(pf_.get(), c.key), c.line) << c.key;
  EXPECT_EQ(pf_key_line(pf_.get(), nullptr), 0);
  EXPECT_EQ(pf_key_line(nullptr, "root"), 0);
}

TEST_F(Lookup, TellsNoLineOfKeysThatWereSetInMemory) {
  pfput_string(pf_.get(), "root", "other");
  pfput_string(pf_.get(), "a{b}{c}{further}", "x");
  pfput_tbl(pf_.get(), "lines", {"x"});
  pfput_arr(pf_.get(), "new");
  for (const char* key : {"root", "a{b}{c}{further}", "lines", "new"}) EXPECT_EQ(pf_key_line(pf_.get(), key), 0) << key;
  EXPECT_EQ(pf_key_line(pf_.get(), "a{b}{c}"), 6);
  EXPECT_EQ(pf_key_line(pf_.get(), "a{b}{c}{deep}"), 7);
}

TEST_F(Lookup, GivesTextsThatMayBeTrimmedInPlace) {
  char* text = pfget_string(pf_.get(), "root");
  EXPECT_EQ(strtrim(text), text);
  char* line = static_cast<char*>(gettbl(pfget_tbl(pf_.get(), "lines"), 1));
  EXPECT_EQ(strtrim(line), line);
  EXPECT_STREQ(line, "two");
  EXPECT_EQ(pfget_string(pf_.get(), "root"), text);
}

TEST_F(Lookup, GivesTextsThatStayWhileOtherKeysAreSet) {
  char* text = pfget_string(pf_.get(), "root");
  char* inner = pfget_string(pf_.get(), "a{name}");
  Tbl* lines = pfget_tbl(pf_.get(), "lines");
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(pfput_string(pf_.get(), number.c_str(), "value"), 0);
    ASSERT_EQ(pfput_string(pf_.get(), std::string("a{").append(number).append("}").c_str(), "value"), 0);
  }
  EXPECT_EQ(pfget_string(pf_.get(), "root"), text);
  EXPECT_STREQ(text, "top");
  EXPECT_EQ(pfget_string(pf_.get(), "a{name}"), inner);
  EXPECT_STREQ(inner, "inner");
  EXPECT_EQ(pfget_tbl(pf_.get(), "lines"), lines);
  EXPECT_EQ(maxtbl(lines), 2);
}

}  // namespace
