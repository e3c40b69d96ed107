// Categories: which records go together, and in which order.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "document/written.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::ElementsAreArray;

// Channels of one station, in the order of their names A, B, C, ...; `descrip` and `edepth` as given.
MadeRows channels(const std::vector<std::string>& texts) {
  MadeRows rows = {{"site", {}}, {"snetsta", {}}};
  char name = 'A';
  for (const std::string& text : texts)
    rows.push_back({"sitechan", {{"chan", std::string(1, name++)}, {"descrip", text}}});
  return rows;
}

// Each category as "VALUE:CHANNELS".
std::vector<std::string> categories(const MadeRows& rows, const std::string& type, const std::string& expression,
                                    bool is_optional = false) {
  const std::string further = is_optional ? "optional &Tbl{\ncategory\n}\n" : "";
  const std::string tree = document("", "category - " + type + " " + expression + "\n", further,
                                    group("category", "C", "v - string " + expression + "\n", "channel - GROUP\n") +
                                        group("channel", "-", "", "each - CATEGORIZED_GROUP chan\n") +
                                        group("each", "E", "n - string chan\n", ""));
  const Written written = write_document(MadeDatabase(rows), tree);
  std::vector<std::string> lines;
  std::istringstream text(written.text);
  for (std::string line; std::getline(text, line);) {
    const std::size_t value = line.find('"') + 1;
    const std::string quoted = line.substr(value, line.find('"', value) - value);
    if (line.find("<C v") != std::string::npos) lines.push_back(quoted + ":");
    if (line.find("<E n") != std::string::npos) lines.back() += quoted;
  }
  return lines;
}

struct Case {
  const char* what;
  std::vector<std::string> texts;
  std::string expression;
  std::vector<std::string> by_text;
  std::vector<std::string> by_number;
};

const Case kCases[] = {
    {"one value", {"x", "x"}, "descrip", {"x:AB"}, {"x:AB"}},
    {"in order", {"a", "b", "b"}, "descrip", {"a:A", "b:BC"}, {"a:A", "b:BC"}},
    {"out of order and scattered", {"b", "a", "b", "a"}, "descrip", {"a:BD", "b:AC"}, {"a:BD", "b:AC"}},
    {"bytes before letters of other scripts",
     {"\xC3\xA9", "z", "Z"},
     "descrip",
     {"Z:C", "z:B", "\xC3\xA9:A"},
     {"Z:C", "z:B", "\xC3\xA9:A"}},
    {"texts that are numbers",
     {"10", "9", "x", "1e1", "9.0"},
     "descrip",
     {"10:A", "1e1:D", "9:B", "9.0:E", "x:C"},
     {"9:B", "9.0:E", "10:A", "1e1:D", "x:C"}},
    {"null is the first", {"b", "-", "a", "-"}, "descrip", {":BD", "a:C", "b:A"}, {":BD", "a:C", "b:A"}},
    {"integers", {"9", "10", "-2", "9"}, "int(descrip)", {"-2:C", "10:B", "9:AD"}, {"-2:C", "9:AD", "10:B"}},
    {"reals", {"9.5", "10", "-2", "9.50"}, "real(descrip)", {"-2:C", "9.5:AD", "10:B"}, {"-2:C", "9.5:AD", "10:B"}},
    {"both zeros are one", {"0", "-0.0", "1"}, "real(descrip)", {"0:AB", "1:C"}, {"0:AB", "1:C"}},
    {"computed texts", {"b", "a", "b"}, "concat(' ', descrip, ' ')", {"a:B", "b:AC"}, {"a:B", "b:AC"}},
};

TEST(Categories, AreOfEqualValuesAndInOrder) {
  for (const Case& c : kCases) {
    EXPECT_THAT(categories(channels(c.texts), "CATEGORIZED_GROUP", c.expression), ElementsAreArray(c.by_text))
        << c.what;
    EXPECT_THAT(categories(channels(c.texts), "CATEGORIZED_BY_NUMBER", c.expression), ElementsAreArray(c.by_number))
        << c.what;
  }
}

TEST(Categories, OfAnOptionalLineLeaveOutNull) {
  EXPECT_THAT(categories(channels({"b", "-", "a", "-"}), "CATEGORIZED_GROUP", "descrip", true),
              ElementsAreArray({"a:C", "b:A"}));
  EXPECT_THAT(categories(channels({"-", "-"}), "CATEGORIZED_GROUP", "descrip", true),
              ElementsAreArray(std::vector<std::string>()));
}

TEST(Categories, WhatCannotBeWorkedOutIsNullAndTold) {
  const std::string tree =
      document("", "category - CATEGORIZED_GROUP 1 / edepth\n", "", group("category", "C", "n - count chan\n", ""));
  const MadeDatabase made({{"site", {}},
                           {"snetsta", {}},
                           {"sitechan", {{"chan", "A"}, {"edepth", "0.0"}}},
                           {"sitechan", {{"chan", "B"}}},
                           {"sitechan", {{"chan", "C"}, {"edepth", "0.5"}}}});
  const Written written = write_document(made, tree);
  EXPECT_EQ(written.text, " <Root>\n  <C n=\"2\">\n  </C>\n  <C n=\"1\">\n  </C>\n </Root>\n");
  EXPECT_THAT(written.told,
              testing::ElementsAre(testing::EndsWith("category: cannot be worked out, taken as null: 1 (sitechan:1)")));
}

struct CountCase {
  const char* what;
  std::vector<std::string> texts;
  std::string expression;
  const char* count;
};

const CountCase kCounts[] = {
    {"distinct values", {"b", "a", "b"}, "descrip", "2"},
    {"nulls do not count", {"b", "-", "a", "-"}, "descrip", "2"},
    {"nothing but nulls", {"-", "-"}, "descrip", "0"},
    {"one for all", {"a", "b"}, "sitechan.sta", "1"},
    {"equal numbers", {"0", "-0.0", "1"}, "real(descrip)", "2"},
    {"integers", {"10", "9", "10"}, "int(descrip)", "2"},
};

TEST(Categories, ACountIsOfTheDistinctValues) {
  for (const CountCase& c : kCounts) {
    const Written written =
        write_document(MadeDatabase(channels(c.texts)), document("", "N - count " + c.expression + "\n"));
    EXPECT_EQ(written.text, std::string(" <Root>\n  <N>") + c.count + "</N>\n </Root>\n") << c.what;
  }
}

}  // namespace
}  // namespace triglub_test
