// Documents of edition 2 by way of the entry points that both editions have.
#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "conversion.h"
#include "db2stationxml.h"
#include "document/written.h"
#include "support/collected_log.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;
using triglub::DetailLevel;
using triglub::FatalFailure;
using triglub::flags_for;

constexpr const char* kRefusal = "a document of edition 2 is written whole: by db2stationxml or triglub::EpochDocument";

class Entries : public testing::Test {
 protected:
  ~Entries() override { freearr(subset_, nullptr); }

  PfPtr tree_ = parsed(document("", "channel r CATEGORIZED_GROUP chan\n", "",
                                group("channel", "Channel", "code - string chan\n", "D - deg_lon lon\n")));
  MadeDatabase made_{
      {{"snetsta", {}}, {"site", {{"lon", "200.5"}}}, {"sitechan", {{"chan", "BHE"}}}, {"sitechan", {}}}};
  rbtree* subset_ = newarr(nullptr);
};

constexpr const char* kDocument =
    " <Root>\n  <Channel code=\"BHE\">\n   <D>-159.5</D>\n  </Channel>\n"
    "  <Channel code=\"BHZ\">\n   <D>-159.5</D>\n  </Channel>\n </Root>\n";

TEST_F(Entries, Db2stationxmlWritesTheWholeAndTellsWhatItFound) {
  const CollectedLog log;
  std::ostringstream out;
  EXPECT_EQ(db2stationxml(made_.db(), tree_.get(), subset_, out, flags_for(DetailLevel::response)), 0);
  EXPECT_EQ(out.str(), kDocument);
  EXPECT_THAT(log.lines_with("notify: "), testing::ElementsAre(HasSubstr("brought into range by whole turns")));
}

TEST_F(Entries, AConversionWritesTheWhole) {
  const CollectedLog log;
  triglub::Conversion conversion;
  for (int time = 0; time < 2; ++time) {
    std::ostringstream out;
    conversion.write(made_.db(), tree_.get(), subset_, out, flags_for(DetailLevel::response));
    EXPECT_EQ(out.str(), kDocument);
  }
  char pattern[] = "/BHE/";
  setarr(subset_, "sitechan.chan", pattern);
  std::ostringstream out;
  conversion.write(made_.db(), tree_.get(), subset_, out, flags_for(DetailLevel::network));
  EXPECT_EQ(out.str(), " <Root>\n  <Channel code=\"BHE\">\n   <D>-159.5</D>\n  </Channel>\n </Root>\n");
}

TEST_F(Entries, ThereIsNoViewToPrepare) {
  triglub::Conversion conversion;
  EXPECT_THAT([&] { conversion.prepare(made_.db(), tree_.get(), subset_, 0); }, ThrowsMessage<FatalFailure>(kRefusal));
}

TEST_F(Entries, NoNodeIsWrittenByItself) {
  const CollectedLog log;
  triglub::Conversion conversion;
  std::ostringstream out;
  conversion.write(made_.db(), tree_.get(), subset_, out, flags_for(DetailLevel::response));
  const PfPtr one = parsed("g &Arr{\nname G\nattributes &Tbl{\n}\nelements &Tbl{\n}\noptional &Tbl{\n}\n}\n");
  const ElementGroup group(one.get(), "g");
  const SmartIndex index(1, true);
  const Dbptr site = made_.table("site");
  const ElementDescription line("g - GROUP");
  EXPECT_THAT([&] { conversion.write_node(out, site, group, index); }, ThrowsMessage<FatalFailure>(kRefusal));
  EXPECT_THAT([&] { conversion.write_node(out, site, group, index, [](const ElementDescription&) {}); },
              ThrowsMessage<FatalFailure>(kRefusal));
  EXPECT_THAT([&] { conversion.write_group_line(out, site, group, line, index); },
              ThrowsMessage<FatalFailure>(kRefusal));
}

using EntriesDeathTest = Entries;

TEST_F(EntriesDeathTest, TheProcessEndsWhereAConversionThrows) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(prepare_conversion(made_.db(), tree_.get(), subset_, 0), testing::ExitedWithCode(1), kRefusal);
  char pattern[] = "/x/";
  setarr(subset_, "nosuch", pattern);
  EXPECT_EXIT(db2stationxml(made_.db(), tree_.get(), subset_, std::cout, 0), testing::ExitedWithCode(1),
              "fatal: a condition cannot be used: .*nosuch");
}

TEST_F(EntriesDeathTest, TheProcessEndsWhereANodeIsAskedForByItself) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const PfPtr one = parsed("g &Arr{\nname G\nattributes &Tbl{\n}\nelements &Tbl{\n}\noptional &Tbl{\n}\n}\n");
  const ElementGroup group(one.get(), "g");
  const SmartIndex index(1, true);
  const ElementDescription line("g - GROUP");
  std::ostringstream out;
  const auto write = [&] { db2stationxml(made_.db(), tree_.get(), subset_, out, flags_for(DetailLevel::network)); };
  EXPECT_EXIT((write(), xml_create_node(out, made_.table("site"), group, index)), testing::ExitedWithCode(1), kRefusal);
  EXPECT_EXIT((write(), xml_create_node(out, made_.table("site"), group, index, [](const ElementDescription&) {})),
              testing::ExitedWithCode(1), kRefusal);
  EXPECT_EXIT((write(), xml_create_group_line(out, made_.table("site"), group, line, index)),
              testing::ExitedWithCode(1), kRefusal);
}

}  // namespace
}  // namespace triglub_test
