#include "element_tree.h"

#include <gmock/gmock.h>

#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using triglub::LineType;
using triglub::TreeGroup;
using triglub::TreeLine;

std::vector<std::string> names(const std::vector<TreeLine>& lines) {
  std::vector<std::string> names;
  for (const TreeLine& line : lines) names.push_back(line.name);
  return names;
}

TEST(ElementTree, IsReadFromItsRoot) {
  const auto [tree, faults] = read_tree(
      document("code r string  snetsta.snet\nodd x nonsense\n",
               "Name - text  A &amp; B\n# a comment\n\nHidden x\nstations - CATEGORIZED_GROUP  snetsta.fsta\n",
               "optional &Tbl{\nName\nHidden\nstations\n}\n", group("stations", "-", "", "")));
  ASSERT_THAT(faults, IsEmpty());
  const TreeGroup& root = tree->root();
  EXPECT_EQ(root.key, "document");
  EXPECT_EQ(root.tag, "Root");
  EXPECT_FALSE(root.is_transparent);
  EXPECT_EQ(root.line, 3);
  ASSERT_THAT(names(root.attributes), ElementsAre("code"));
  EXPECT_TRUE(root.attributes[0].is_required);
  EXPECT_FALSE(root.attributes[0].is_optional);
  EXPECT_EQ(root.attributes[0].value, "snetsta.snet");
  EXPECT_EQ(root.attributes[0].keyword, "string");
  EXPECT_EQ(root.attributes[0].line, 6);
  ASSERT_THAT(names(root.elements), ElementsAre("Name", "stations"));
  EXPECT_EQ(root.elements[0].value, "A &amp; B");
  EXPECT_TRUE(root.elements[0].is_optional);
  EXPECT_EQ(root.elements[0].group, nullptr);
  const TreeLine& stations = root.elements[1];
  EXPECT_TRUE(stations.is_optional);
  EXPECT_EQ(stations.value, "snetsta.fsta");
  EXPECT_EQ(stations.line, 14);
  ASSERT_NE(stations.group, nullptr);
  EXPECT_TRUE(stations.group->is_transparent);
  EXPECT_EQ(stations.group->tag, "");
  EXPECT_EQ(tree->path(), "");
  EXPECT_EQ(tree->place(stations), "parameter file:14");
}

TEST(ElementTree, KnowsTheTypesOfLines) {
  const struct {
    const char* keyword;
    LineType type;
  } cases[] = {
      {"text", LineType::literal},
      {"string", LineType::string},
      {"lookup", LineType::string},
      {"float", LineType::real},
      {"integer", LineType::integer},
      {"epoch", LineType::epoch},
      {"julian", LineType::julian},
      {"deg_lat", LineType::latitude},
      {"deg_lon", LineType::longitude},
      {"deg_az", LineType::azimuth},
      {"dip", LineType::dip},
      {"meters", LineType::meters},
      {"count", LineType::count},
      {"GROUP", LineType::group},
      {"STAGE", LineType::stage},
      {"CATEGORIZED_GROUP", LineType::categories},
      {"CATEGORIZED_BY_NUMBER", LineType::number_categories},
  };
  for (const auto& c : cases) {
    const auto [tree, faults] =
        read_tree(document("", std::string("inner - ") + c.keyword + " x\n", "", group("inner", "Inner", "", "")));
    ASSERT_THAT(faults, IsEmpty()) << c.keyword;
    const TreeLine& line = tree->root().elements.at(0);
    EXPECT_EQ(line.type, c.type) << c.keyword;
    EXPECT_EQ(line.keyword, c.keyword);
    EXPECT_EQ(line.group != nullptr, leads_to_group(c.type)) << c.keyword;
    EXPECT_EQ(line.value, c.type == LineType::group || c.type == LineType::stage ? "" : "x") << c.keyword;
  }
}

TEST(ElementTree, ReadsAGroupOnceForAllLinesThatLeadToIt) {
  const auto [tree, faults] = read_tree(document("", "a - GROUP\nb - GROUP\na - CATEGORIZED_GROUP x\n", "",
                                                 group("a", "A", "", "b - GROUP\n") + group("b", "B", "", "")));
  ASSERT_THAT(faults, IsEmpty());
  const auto& lines = tree->root().elements;
  EXPECT_EQ(lines[0].group, lines[2].group);
  EXPECT_EQ(lines[0].group->elements.at(0).group, lines[1].group);
}

TEST(ElementTree, MaySeparateWordsByTabs) {
  const auto [tree, faults] = read_tree(document("", "Name\t-\ttext\tA  B\n"));
  ASSERT_THAT(faults, IsEmpty());
  EXPECT_EQ(tree->root().elements.at(0).value, "A  B");
}

TEST(ElementTree, DoesNotLookAtGroupsThatNoLineLeadsTo) {
  EXPECT_THAT(read_tree(document("", "", "", "spare &Arr{\nnonsense 1\n}\n")).faults, IsEmpty());
}

TEST(ElementTree, MayBeMadeInMemory) {
  const PfPtr pf(pfnew());
  pfput_string(pf.get(), "edition", "2");
  pfput_string(pf.get(), "root_node", "document");
  pfput_string(pf.get(), "document{name}", "Root");
  pfput_tbl(pf.get(), "document{attributes}", {});
  pfput_tbl(pf.get(), "document{elements}", {"Name - string nosuch", "Other r text y"});
  EXPECT_THAT(read_tree(pf.get()).faults,
              ElementsAre("parameter file: no field nosuch for a string\n    nosuch\n    ^"));
  pfput_tbl(pf.get(), "document{elements}", {"Name - string x"});
  const Reading sound = read_tree(pf.get());
  ASSERT_NE(sound.tree, nullptr);
  EXPECT_EQ(sound.tree->place(sound.tree->root().elements.at(0)), "parameter file");
}

// Groups g1 to g<depth>, each holding the next.
std::string chain(int depth) {
  std::string text;
  for (int i = 1; i <= depth; ++i) {
    const std::string key = "g" + std::to_string(i);
    const std::string next = "g" + std::to_string(i + 1) + " - GROUP\n";
    text += group(key, "G", "", i < depth ? next + next : "");
  }
  return text;
}

TEST(ElementTree, MayBeFifteenGroupsDeep) {
  EXPECT_THAT(read_tree("root_node g1\n" + chain(15)).faults, IsEmpty());
  EXPECT_THAT(read_tree("root_node g1\n" + chain(16)).faults,
              ElementsAre("parameter file:133: more than 15 groups inside one another",
                          "parameter file:134: more than 15 groups inside one another"));
  EXPECT_EQ(read_tree("root_node g1\n" + chain(1000)).faults.size(), 2u);
}

}  // namespace
}  // namespace triglub_test
