#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include "elements.h"
#include "platform/database.h"
#include "support/collected_log.h"
#include "support/flat_database.h"

namespace triglub_test {
namespace {

using ::testing::IsEmpty;

class Group : public ::testing::Test {
 protected:
  ~Group() override { pffree(pf_); }

  Pf* parse(const std::string& text) {
    pffree(pf_);
    pf_ = nullptr;
    if (pfparse(text, "test", &pf_) != 0) throw std::runtime_error("pfparse");
    return pf_;
  }
  static std::string definition(const std::string& group, const std::string& name, const std::string& attributes,
                                const std::string& elements) {
    return group + " &Arr{\nname " + name + "\nattributes &Tbl{\n" + attributes + "}\nelements &Tbl{\n" + elements +
           "}\n}\n";
  }
  ElementGroup group(const std::string& attributes, const std::string& elements) {
    return {parse(definition("g", "Station", attributes, elements)), "g"};
  }

  Pf* pf_ = nullptr;
};

std::string message_of(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::runtime_error& e) {
    return e.what();
  }
  return "no exception";
}

TEST_F(Group, IsReadFromItsDefinition) {
  const ElementGroup station = group("code r string sta\n", "Latitude - deg_lat lat\nchannel - GROUP\n");
  EXPECT_EQ(station.name(), "Station");
  ASSERT_EQ(station.element_count(), 2u);
  EXPECT_EQ(station[0].name(), "Latitude");
  EXPECT_EQ(station[1].name(), "channel");
  EXPECT_EQ(get_group_name(pf_, "g"), "Station");
  EXPECT_EQ(maxtbl(get_group_elements(pf_, "g")), 2);
  EXPECT_EQ(maxtbl(get_group_attributes(pf_, "g")), 1);
}

TEST_F(Group, FindsElementsByName) {
  const ElementGroup station = group("Code - text 0\n", "A - text 1\nB - text 2\nA - text 3\n");
  EXPECT_EQ(station.find_element("A"), 0);
  EXPECT_EQ(station.find_element("B"), 1);
  EXPECT_EQ(station.find_element("Code"), -1);
  EXPECT_EQ(station.find_element("a"), -1);
  EXPECT_EQ(station.value_of_element("A", "none"), "1");
  EXPECT_EQ(station.value_of_element("Code", "none"), "none");
}

TEST_F(Group, MayBeEmpty) {
  const ElementGroup empty = group("", "");
  EXPECT_EQ(empty.element_count(), 0u);
  EXPECT_FALSE(empty.has_children());
  EXPECT_EQ(empty.find_element("A"), -1);
  EXPECT_EQ(empty.find_element(""), -1);
  EXPECT_EQ(empty.value_of_element("A", "none"), "none");
  EXPECT_EQ(empty.attribs_as_xml(), "");
  EXPECT_EQ(empty.report(), "Name: Station\n   Attribute List: \n   Element List: \n");
}

TEST_F(Group, HasPlainGroupsForChildren) {
  EXPECT_TRUE(group("", "A - text 1\nchannel - GROUP\n").has_children());
  EXPECT_TRUE(group("", "channel - GROUP\nchannel x GROUP\n").has_children());
  EXPECT_FALSE(group("", "channel x GROUP\n").has_children());
  EXPECT_FALSE(group("", "a - CATEGORIZED_GROUP sta\nb - CATEGORIZED_BY_NUMBER n\nc - STAGE s\n").has_children());
  EXPECT_FALSE(group("channel - GROUP\n", "").has_children());
}

TEST_F(Group, KeepsTheSpacingOfAttributes) {
  EXPECT_EQ(group("code - text AAK\nstartDate - text now\n", "").attribs_as_xml(), " code=\"AAK\"  startDate=\"now\" ");
  EXPECT_EQ(group("code x text AAK\n", "").attribs_as_xml(), " ");
  EXPECT_EQ(group("a - text 1\nb x text 2\nc - text\n", "").attribs_as_xml(), " a=\"1\"   c=\"\" ");
}

TEST_F(Group, ReportsItself) {
  const ElementGroup station = group("code r string sta\n", "Latitude - deg_lat lat\nchannel x GROUP\nsub - GROUP\n");
  EXPECT_EQ(station.report(),
            "Name: Station\n"
            "   Attribute List: \n"
            "      code   r string   sta\n"
            "   Element List: \n"
            "      Latitude   - deg_lat   lat\n"
            "      channel   x GROUP   \n"
            "      sub   - GROUP   \n");
}

TEST_F(Group, EvaluatesItsLinesAtARecord) {
  FlatDatabase files;
  files.add_row("site", {{"sta", "AAK"}, {"ondate", "2001001"}, {"lat", "42.6375"}});
  Dbptr db;
  ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
  Dbptr site = dblookup(db, nullptr, "site", nullptr, nullptr);
  site.record = 0;
  ElementGroup station = group("code - string sta\nbad x string nosuch\n",
                               "Latitude - deg_lat lat\nbad x deg_lat nosuch\nsub - GROUP v\nstages - STAGE nosuch\n"
                               "c - CATEGORIZED_GROUP sta\nn - count sta\n");
  const ElementGroup before = station;
  station.updateFromDatabase(site);
  EXPECT_EQ(station.attribs_as_xml(), " code=\"AAK\"  ");
  EXPECT_EQ(station[0].value(), "42.637500");
  EXPECT_EQ(station[1].value(), "nosuch");
  EXPECT_EQ(station[2].value(), "v");
  EXPECT_EQ(station[3].value(), "nosuch");
  EXPECT_EQ(station[4].value(), "sta");
  EXPECT_EQ(station[5].value(), "sta");
  EXPECT_EQ(before[0].value(), "lat");
  dbclose(db);
}

TEST_F(Group, RefusesAnAttributeThatIsAGroup) {
  ElementGroup station = group("code - GROUP sta\n", "");
  EXPECT_THROW(station.updateFromDatabase({}), std::logic_error);
}

TEST_F(Group, NamesWhatItsDefinitionLacks) {
  const std::string lists = "attributes &Tbl{\n}\nelements &Tbl{\n}\n";
  parse("a &Arr{\n" + lists + "}\nb &Arr{\nname B\nattributes &Tbl{\n}\n}\nc &Arr{\nname C\nelements &Tbl{\n}\n}\n" +
        "d text\ne &Arr{\nname &Tbl{\n}\n" + lists + "}\n");
  const CollectedLog log;
  EXPECT_EQ(message_of([&] { ElementGroup(pf_, "a"); }), "parameter file: group [a] has no name");
  EXPECT_EQ(message_of([&] { ElementGroup(pf_, "b"); }), "parameter file: group [b] has no list of elements");
  EXPECT_EQ(message_of([&] { ElementGroup(pf_, "c"); }), "parameter file: group [c] has no list of attributes");
  for (const char* name : {"d", "e", "nosuch", ""}) {
    EXPECT_EQ(message_of([&] { ElementGroup(pf_, name); }),
              "parameter file: group [" + std::string(name) + "] has no name");
  }
  EXPECT_THAT(log.lines(), IsEmpty());
  EXPECT_EQ(get_group_elements(pf_, "nosuch"), nullptr);
  EXPECT_EQ(get_group_attributes(pf_, "nosuch"), nullptr);
}

class Tree : public Group {
 protected:
  // Groups g0 to g<depth>, each holding the next by a line of the kinds in turn.
  Pf* chain(int depth) {
    const std::string kinds[] = {"GROUP", "CATEGORIZED_GROUP sta", "CATEGORIZED_BY_NUMBER sta"};
    std::string text;
    for (int i = 0; i <= depth; ++i) {
      const std::string next = "g" + std::to_string(i + 1) + " - " + kinds[i % 3] + "\n";
      text += definition("g" + std::to_string(i), "G", "", i < depth ? next : "");
    }
    return parse(text);
  }
};

TEST_F(Tree, HoldsUpToFifteenLevelsBelowTheRoot) {
  EXPECT_NO_THROW(navigateElementTree(chain(15), "g0", 0));
  EXPECT_EQ(message_of([&] { navigateElementTree(chain(16), "g0", 0); }), "Exceeded maximum node depth");
  EXPECT_NO_THROW(navigateElementTree(chain(0), "g0", 15));
  EXPECT_EQ(message_of([&] { navigateElementTree(chain(0), "g0", 16); }), "Exceeded maximum node depth");
}

TEST_F(Tree, RefusesAGroupThatHoldsItself) {
  parse(definition("a", "A", "", "a - GROUP\n"));
  EXPECT_EQ(message_of([&] { navigateElementTree(pf_, "a", 0); }), "Exceeded maximum node depth");
  parse(definition("a", "A", "", "b - CATEGORIZED_GROUP sta\n") + definition("b", "B", "", "a - GROUP\n"));
  EXPECT_EQ(message_of([&] { navigateElementTree(pf_, "a", 0); }), "Exceeded maximum node depth");
}

TEST_F(Tree, FollowsOnlyGroupsThatAreWritten) {
  parse(definition("a", "A", "", "b x GROUP\nc x CATEGORIZED_GROUP sta\nd - STAGE s\ne - text GROUP\n"));
  EXPECT_NO_THROW(navigateElementTree(pf_, "a", 0));
  for (const char* line : {"b - GROUP\n", "b r CATEGORIZED_GROUP sta\n", "b - CATEGORIZED_BY_NUMBER sta\n"}) {
    parse(definition("a", "A", "", line));
    EXPECT_EQ(message_of([&] { navigateElementTree(pf_, "a", 0); }), "parameter file: group [b] has no name") << line;
  }
}

TEST_F(Group, LeavesAttributesAloneThatAreIgnored) {
  ElementGroup station = group("a x GROUP v\n", "");
  station.updateFromDatabase(Dbptr{});
  EXPECT_EQ(station.attribute(0).value(), "v");
}

}  // namespace
}  // namespace triglub_test
