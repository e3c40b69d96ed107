// A few rows of one key make many pairs: what is too much is refused with a row, before it is made.
#include "epochs/row_budget.h"

#include <gmock/gmock.h>

#include <string>

#include "document/written.h"
#include "fatal_failure.h"
#include "support/scoped_limit.h"
#include "tree/tree_reading.h"

namespace triglub_test {
namespace {

using testing::HasSubstr;
using triglub::FatalFailure;
using triglub::Limit;
using triglub::ScopedLimit;

const std::string kTree =
    document("", "channel - CATEGORIZED_GROUP chan\n", "", group("channel", "Channel", "code - string chan\n", ""));

const std::string kSix =
    "theoretical 1 a paz\n1\n0\n0\ntheoretical 2 b paz\n1\n0\n0\ntheoretical 3 c paz\n1\n0\n0\n"
    "theoretical 4 d paz\n1\n0\n0\ntheoretical 5 e paz\n1\n0\n0\ntheoretical 6 f paz\n1\n0\n0\n";

struct Product {
  const char* what;
  MadeRows rows;
  const char* told;
};

std::vector<Product> products() {
  const FieldTexts begin = {{"time", at_hour(0)}};
  MadeRows stages = {{"snetsta", {}}, {"site", {}}, {"sitechan", {}}};
  MadeRows codes = {{"site", {}}, {"sitechan", {}}};
  MadeRows sites = {{"snetsta", {}}};
  MadeRows made = {
      {"affiliation", {{"net", "KR"}}},
      {"site", {}},
      {"sitechan", {}},
      {"instrument", {{"inid", "1"}, {"ncalib", "2"}, {"ncalper", "1"}, {"dfile", "six.paz"}, {"dir", "r"}}}};
  for (int i = 0; i < 5; ++i) {
    const FieldTexts hour = {{"time", at_hour(i)}, {"endtime", at_hour(i + 1)}};
    FieldTexts sensor = hour;
    sensor["inid"] = "1";
    stages.push_back({"sensor", hour});
    stages.push_back({"stage", {{"stageid", std::to_string(i + 1)}}});
    codes.push_back({"sensor", hour});
    codes.push_back({"snetsta", {{"fsta", "S" + std::to_string(i)}}});
    made.push_back({"sensor", sensor});
    sites.push_back({"site", {{"ondate", std::to_string(2000001 + i)}}});
    sites.push_back({"sitechan", {{"chan", "B" + std::to_string(i)}}});
  }
  return {{"stages of each epoch", stages, "sitechan:1: with the rows that belong to it there are more than 20 rows"},
          {"codes of each epoch", codes, "snetsta:4: with the rows that belong to it there are more than 20 rows"},
          {"sites of each channel", sites, "sitechan:5: with the rows that belong to it there are more than 20 rows"},
          {"stages of instruments", made, "instrument:1: with the rows that belong to it there are more than 20 rows"}};
}

TEST(RowBudget, IsThatOfThePairsOfRows) {
  for (const Product& product : products()) {
    const MadeDatabase made(product.rows, {{"r/six.paz", kSix}});
    EXPECT_TRUE(write_document(made, kTree).is_written) << product.what;
    const ScopedLimit few(Limit::join_rows, 20);
    try {
      write_document(made, kTree);
      ADD_FAILURE() << product.what;
    } catch (const FatalFailure& failure) {
      EXPECT_THAT(made.shortened(failure.what()), HasSubstr(product.told)) << product.what;
      EXPECT_THAT(failure.what(), HasSubstr("(the limit join-rows)"));
    }
  }
}

TEST(RowBudget, IsThatOfEachPieceOfWork) {
  const ScopedLimit few(Limit::join_rows, 3);
  triglub::RowBudget budget;
  const auto place = [] { return std::string("here"); };
  budget.take(2, place);
  budget.take(1, place);
  EXPECT_THROW(budget.take(1, place), FatalFailure);
  triglub::RowBudget another;
  EXPECT_NO_THROW(another.take(3, place));
}

}  // namespace
}  // namespace triglub_test
