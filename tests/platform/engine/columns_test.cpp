// Columns read in bulk, and views put together from row numbers.
#include "platform/columns.h"

#include <limits>
#include <stdexcept>

#include "support/scoped_limit.h"
#include "tables.h"

namespace triglub_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using triglub::ComputedColumn;
using triglub::put_together;
using triglub::row_place;
using triglub::rows_of;
using triglub::TableColumns;
using triglub::TextColumn;
using triglub::ViewPart;

constexpr std::uint32_t kNone = triglub::NO_BASE_ROW;

class Columns : public ::testing::Test {
 protected:
  Columns() {
    tables_.add_all("site", {{{"sta", "B"}, {"lat", "42.5"}, {"ondate", "2000001"}},
                             {{"sta", "A"}},
                             {{"sta", "-"}, {"lat", "-1.5"}, {"staname", " padded "}}});
    tables_.add_all("sensor", {{{"sta", "A"}, {"time", "100.5"}, {"inid", "7"}}});
  }
  Dbptr table(const char* name) { return tables_.table(name); }

  // A view of site and a computed table.
  Dbptr view(std::vector<std::uint32_t> sites, std::vector<std::uint32_t> own) {
    std::vector<ViewPart> parts(2);
    parts[0].table = table("site");
    parts[0].rows = std::move(sites);
    parts[1].name = "own";
    parts[1].columns = {{"time", "an instant", true, -9.5, {0.1, -9.5}}, {"number", "a number", false, 0, {}, {5, -1}}};
    parts[1].rows = std::move(own);
    return put_together(tables_.db(), std::move(parts), "put together");
  }

  Tables tables_;
};

TEST_F(Columns, AreReadByRow) {
  const TableColumns site(table("site"));
  ASSERT_EQ(site.row_count(), 3U);
  EXPECT_THAT(std::vector<double>(site.reals("lat").begin(), site.reals("lat").end()),
              ElementsAre(42.5, site.null_real("lat"), -1.5));
  const auto days = site.integers("ondate");
  EXPECT_THAT(std::vector<std::int64_t>(days.begin(), days.end()),
              ElementsAre(2000001, site.null_integer("ondate"), site.null_integer("ondate")));
  const TableColumns sensor(table("sensor"));
  EXPECT_EQ(sensor.reals("time")[0], 100.5);
  EXPECT_EQ(sensor.null_real("endtime"), 9999999999.999);
  EXPECT_EQ(sensor.reals("endtime")[0], sensor.null_real("endtime"));
}

TEST_F(Columns, TextsAreTrimmedAndHaveCodes) {
  const TextColumn sta = TableColumns(table("site")).texts("sta");
  EXPECT_EQ(sta.text(0), "B");
  EXPECT_EQ(sta.text(1), "A");
  EXPECT_NE(sta.codes()[0], sta.codes()[1]);
  EXPECT_TRUE(sta.is_null(2));
  EXPECT_FALSE(sta.is_null(0));
  EXPECT_EQ(sta.text(2), sta.text_of(TextColumn::kNull));
  EXPECT_EQ(sta.code_count(), 3U);
  EXPECT_EQ(TableColumns(table("site")).texts("staname").text(2), "padded");
}

TEST_F(Columns, OfRealsHaveADoubtByTheirFormatOrTheirOwnDigits) {
  tables_.add_all("stage",
                  {{{"gnom", "12.5"}, {"samprate", "20.0"}, {"gcalib", "1.0"}, {"leadfac", "0.123456789"}}, {}});
  const TableColumns stage(table("stage"));
  EXPECT_EQ(stage.half_places("samprate").half_place(0), 5e-8);
  EXPECT_EQ(stage.half_place("gcalib", 0), 5e-7);
  EXPECT_EQ(stage.half_place("leadfac", 0), 5e-10) << "finer than its format";
  EXPECT_EQ(stage.half_place("samprate", 1), 0) << "a null";
  EXPECT_EQ(TableColumns(table("site")).half_place("lat", 0), 5e-5);
  EXPECT_EQ(TableColumns(table("sensor")).half_place("time", 0), 0) << "times are exact";
  EXPECT_THROW(stage.half_places("stageid"), std::logic_error);
}

TEST_F(Columns, OfAnotherTypeOrNameAreRefused) {
  const TableColumns site(table("site"));
  EXPECT_THROW(site.reals("sta"), std::logic_error);
  EXPECT_THROW(site.integers("lat"), std::logic_error);
  EXPECT_THROW(site.texts("ondate"), std::logic_error);
  EXPECT_THROW(site.texts("nosuch"), std::logic_error);
  EXPECT_THROW(site.null_real("ondate"), std::logic_error);
}

TEST_F(Columns, OfWhatIsNoBaseTableAreRefused) {
  EXPECT_THROW(TableColumns{Dbptr()}, std::logic_error);
  EXPECT_THROW(TableColumns{tables_.db()}, std::logic_error);
  EXPECT_THROW(TableColumns{tables_.process({"dbopen site", "dbsort sta"})}, std::logic_error);
  EXPECT_THROW(TableColumns{view({0}, {0})}, std::logic_error);
}

TEST_F(Columns, AViewThatIsPutTogetherHasTheRowsThatItWasGiven) {
  const Dbptr together = view({2, 0, kNone, 0}, {0, kNone, 1, 0});
  ASSERT_TRUE(is_view(together));
  EXPECT_THAT(records_of(together, {"sta", "own.time", "number"}),
              ElementsAre("- 0.1 5", "B -9.50000 -1", "- -9.50000 -1", "B 0.1 5"));
  EXPECT_THAT(rows_of(together, 0), ElementsAre(2, 0, kNone, 0));
  EXPECT_THAT(rows_of(together, 1), ElementsAre(0, kNone, 1, 0));
  EXPECT_THAT(rows_of(together, 2), IsEmpty());
  EXPECT_THAT(rows_of(table("site"), 0), IsEmpty()) << "its rows are the records themselves";
}

TEST_F(Columns, SuchAViewDoesWhatOthersDo) {
  const Dbptr together = view({2, 0, 1}, {0, 1, kNone});
  EXPECT_THAT(texts_of(dbsubset(together, "number == 5", nullptr), "sta"), ElementsAre("-"));
  EXPECT_THAT(texts_of(process(together, {"dbsort sta"}), "sta"), ElementsAre("-", "A", "B"));
  EXPECT_THAT(rows_of(process(together, {"dbsort sta"}), 0), ElementsAre(2, 1, 0));
}

TEST_F(Columns, PlacesAreThoseOfTheRows) {
  const Dbptr together = view({2, kNone}, {0, 1});
  EXPECT_EQ(row_place(together, 0, 0), TableColumns(table("site")).place(2));
  EXPECT_EQ(row_place(together, 0, 1), "") << "absent";
  EXPECT_EQ(row_place(together, 1, 1), "own row 2");
  EXPECT_EQ(row_place(together, 2, 0), "") << "no such table";
  EXPECT_EQ(row_place(together, 0, 2), "") << "no such record";
  EXPECT_EQ(row_place(Dbptr(), 0, 0), "");
}

TEST_F(Columns, WhatDoesNotFitTogetherIsRefused) {
  EXPECT_TRUE(is_view(view({}, {})));
  EXPECT_FALSE(is_view(view({3}, {0}))) << "a row beyond the end of site";
  EXPECT_FALSE(is_view(view({0}, {2}))) << "a row beyond the end of the computed table";
  EXPECT_FALSE(is_view(view({0, 1}, {0}))) << "rows of different number";
  std::vector<ViewPart> parts(1);
  parts[0].table = tables_.process({"dbopen site", "dbsort sta"});
  EXPECT_FALSE(is_view(put_together(tables_.db(), std::move(parts), "no base table")));
}

TEST_F(Columns, NumbersThatWereWorkedOutReadBack) {
  std::vector<ViewPart> parts(1);
  parts[0].name = "own";
  parts[0].columns = {{"x", "a time", true, 1, {1e-7, 1e300, 946684800.123456, -0.0}}};
  parts[0].rows = {0, 1, 2, 3};
  const Dbptr together = put_together(tables_.db(), std::move(parts), "numbers");
  EXPECT_THAT(texts_of(together, "x"), ElementsAre("1e-07", "1e+300", "946684800.123456", "0"));
}

// Three rows of site, and two that are made of rows of affiliation.
class AddedRowsOfSite : public Columns {
 protected:
  static triglub::AddedRows rows(Dbptr made_of) {
    triglub::AddedRows rows;
    rows.count = 2;
    rows.texts["sta"] = {"NEW", "B"};
    rows.reals["lat"] = {1.25, -2};
    rows.made_of = made_of;
    rows.made_of_rows = {2, 0};
    return rows;
  }
};

TEST_F(AddedRowsOfSite, StandBehindThoseOfTheTable) {
  const TableColumns before(table("site"));
  const Dbptr made = triglub::with_added_rows(table("site"), rows(table("site")));
  ASSERT_TRUE(is_view(made));
  const TableColumns after(made);
  ASSERT_EQ(after.row_count(), before.row_count() + 2);
  for (std::uint32_t row = 0; row < before.row_count(); ++row) {
    EXPECT_EQ(after.texts("sta").codes()[row], before.texts("sta").codes()[row]);
    EXPECT_EQ(after.reals("lat")[row], before.reals("lat")[row]);
    EXPECT_EQ(after.place(row), before.place(row));
  }
  EXPECT_EQ(after.texts("sta").text(before.row_count()), "NEW");
  EXPECT_EQ(after.texts("sta").text(before.row_count() + 1), "B");
  EXPECT_EQ(after.reals("lat")[before.row_count()], 1.25);
  EXPECT_EQ(after.reals("lon")[before.row_count()], after.null_real("lon"));
  EXPECT_TRUE(after.texts("staname").is_null(before.row_count()));
  EXPECT_EQ(after.place(before.row_count()), before.place(2));
  EXPECT_EQ(after.place(before.row_count() + 1), before.place(0));
  triglub::release_view(made);
}

TEST_F(AddedRowsOfSite, AreNoMoreThanATableCanHave) {
  const std::uint32_t all = TableColumns(table("site")).row_count() + 2;
  for (const std::uint64_t most : {all + 1, all, all - 1}) {
    const triglub::ScopedLimit limit(triglub::Limit::table_rows, most);
    const CollectedLog log;
    EXPECT_EQ(is_view(triglub::with_added_rows(table("site"), rows(table("site")))), most >= all);
    EXPECT_EQ(log.lines_with("warning: site with rows added: more than").size(), most >= all ? 0u : 1u);
  }
}

TEST_F(AddedRowsOfSite, AreFoundAsOthersAre) {
  const Dbptr made = triglub::with_added_rows(table("site"), rows(table("site")));
  const Texts before = texts_of(table("site"), "lat");
  Texts all = before;
  all.insert(all.end(), {"1.25", "-2"});
  EXPECT_EQ(texts_of(made, "lat"), all);
  EXPECT_THAT(texts_of(dbsubset(made, "sta =~ /NEW/", nullptr), "lat"), ElementsAre("1.25"));
  EXPECT_THAT(texts_of(dbsubset(made, "lat == -2", nullptr), "sta"), ElementsAre("B"));
}

TEST_F(AddedRowsOfSite, StayWithTheViewsThatAreMadeOfThem) {
  const Dbptr made = triglub::with_added_rows(table("site"), rows(table("site")));
  std::vector<ViewPart> parts(1);
  parts[0].table = made;
  parts[0].rows = {3, 0};
  const Dbptr together = put_together(tables_.db(), std::move(parts), "rows");
  triglub::release_view(made);
  EXPECT_THAT(texts_of(together, "lat"), ElementsAre("1.25", texts_of(table("site"), "lat")[0]));
}

TEST_F(AddedRowsOfSite, AreNoneWhereNothingIsAdded) {
  EXPECT_EQ(triglub::with_added_rows(table("site"), {}), table("site"));
}

TEST_F(AddedRowsOfSite, HaveToFitTheTable) {
  for (const char* field : {"nosuch", "ondate", "sta"}) {
    triglub::AddedRows wrong = rows(table("site"));
    wrong.reals[field] = {1, 2};
    EXPECT_THROW(triglub::with_added_rows(table("site"), wrong), std::logic_error) << field;
  }
  triglub::AddedRows shorter = rows(table("site"));
  shorter.texts["staname"] = {"one"};
  EXPECT_THROW(triglub::with_added_rows(table("site"), shorter), std::logic_error);
  EXPECT_FALSE(is_view(triglub::with_added_rows(table("site"), rows(Dbptr()))));
  EXPECT_FALSE(is_view(triglub::with_added_rows(tables_.db(), rows(table("site")))));
}

}  // namespace
}  // namespace triglub_test
