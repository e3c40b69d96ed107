// Values in quantity: runs of texts, fields by handle, texts of expressions.
#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

class Values : public testing::Test {
 protected:
  void open(const std::vector<Row>& rows) {
    tables_.add_all("site", rows);
    site_ = tables_.table("site");
  }

  static Dbptr field(Dbptr view, const char* name) { return dblookup(view, nullptr, nullptr, name, nullptr); }

  static Texts runs_of(Dbptr handle, std::uint64_t begin, std::uint64_t end) {
    std::vector<triglub::TextRun> runs = {{"left over", 1, 2}};
    triglub::text_runs(handle, begin, end, &runs);
    Texts texts;
    for (const auto& run : runs) {
      texts.push_back(std::string(run.text) + " " + std::to_string(run.begin) + "-" + std::to_string(run.end));
    }
    return texts;
  }

  Tables tables_;
  Dbptr site_;
};

TEST_F(Values, RunsOfEqualTextsFollowOneAnother) {
  open({{{"sta", "A"}, {"lat", "1.5"}},
        {{"sta", "A"}, {"lat", "2.5"}},
        {{"sta", "B"}, {"lat", "2.5"}},
        {{"sta", "A"}, {"lat", "2.5"}},
        {{"sta", ""}, {"lat", ""}}});
  EXPECT_EQ(runs_of(field(site_, "sta"), 0, 5), (Texts{"A 0-2", "B 2-3", "A 3-4", "- 4-5"}));
  EXPECT_EQ(runs_of(field(site_, "lat"), 0, 5), (Texts{"1.5 0-1", "2.5 1-4", "-999.0000 4-5"}));
  EXPECT_EQ(runs_of(field(site_, "sta"), 1, 3), (Texts{"A 1-2", "B 2-3"}));
  EXPECT_EQ(runs_of(field(site_, "sta"), 3, 99), (Texts{"A 3-4", "- 4-5"}));
  EXPECT_EQ(runs_of(field(site_, "sta"), 2, 2), Texts());
  EXPECT_EQ(runs_of(field(site_, "sta"), 7, 9), Texts());
  EXPECT_EQ(runs_of(site_, 0, 5), Texts());
  EXPECT_EQ(runs_of(Dbptr{}, 0, 5), Texts());
}

TEST_F(Values, RunsShowWhatDbgetShows) {
  std::mt19937_64 random(random_seed());
  std::vector<Row> rows;
  for (int i = 0; i < 300; ++i) {
    rows.push_back({{"sta", std::string(1, static_cast<char>('A' + random() % 3))},
                    {"ondate", std::to_string(2000001 + random() % 2)},
                    {"elev", random() % 4 == 0 ? "" : std::to_string(random() % 3)}});
  }
  open(rows);
  const Dbptr sorted = process(site_, {"dbsort sta"});
  for (const char* name : {"sta", "ondate", "elev"}) {
    std::vector<triglub::TextRun> runs;
    triglub::text_runs(field(sorted, name), 0, rows.size(), &runs);
    Texts texts;
    for (const auto& run : runs) texts.insert(texts.end(), run.end - run.begin, std::string(run.text));
    EXPECT_EQ(texts, texts_of(sorted, name)) << name;
    for (std::size_t i = 1; i < runs.size(); ++i) EXPECT_NE(runs[i].text, runs[i - 1].text);
  }
}

TEST_F(Values, RecordsAreFoundByTheirText) {
  open({{{"sta", "A"}, {"lat", "1.5"}},
        {{"sta", "A"}, {"lat", "2.5"}},
        {{"sta", "B"}, {"lat", ""}},
        {{"sta", "A"}, {"lat", "2.5"}}});
  using Records = std::vector<std::uint32_t>;
  int asked = 0;
  const auto is_a = [&](std::string_view text) { return ++asked > 0 && text == "A"; };
  EXPECT_EQ(triglub::records_with_text(field(site_, "sta"), is_a), (Records{0, 1, 3}));
  EXPECT_EQ(asked, 3);
  const auto is_number = [](std::string_view text) { return text == "2.5" || text == "-999.0000"; };
  EXPECT_EQ(triglub::records_with_text(field(site_, "lat"), is_number), (Records{1, 2, 3}));
  EXPECT_EQ(triglub::records_with_text(field(site_, "sta"), [](std::string_view) { return false; }), Records());
  EXPECT_EQ(triglub::records_with_text(site_, [](std::string_view) { return true; }), Records());
  EXPECT_EQ(triglub::records_with_text(Dbptr{}, [](std::string_view) { return true; }), Records());
}

TEST_F(Values, FieldsAreReadByHandleAsByName) {
  open({{{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.5"}}});
  char text[8] = "";
  std::int64_t date = 0;
  double latitude = 0;
  EXPECT_EQ(triglub::read_field(at(field(site_, "sta"), 0), text), 0);
  EXPECT_EQ(triglub::read_field(at(field(site_, "ondate"), 0), &date), 0);
  EXPECT_EQ(triglub::read_field(at(field(site_, "lat"), 0), &latitude), 0);
  EXPECT_STREQ(text, "AAK");
  EXPECT_EQ(date, 1990001);
  EXPECT_EQ(latitude, 42.5);
  EXPECT_EQ(triglub::read_field(at(field(site_, "lat"), dbNULL), &latitude), 0);
  EXPECT_EQ(latitude, -999.0);
  EXPECT_EQ(triglub::read_field(at(field(site_, "offdate"), dbNULL), &date), 0);
  EXPECT_EQ(date, -1);
  latitude = 7;
  for (const Dbptr& none : {at(field(site_, "lat"), 1), at(site_, 0), field(site_, "lat"), Dbptr{}}) {
    EXPECT_LT(triglub::read_field(none, &latitude), 0);
  }
  EXPECT_EQ(latitude, 7);
}

TEST_F(Values, TextsOfExpressionsReplaceWhatWasThere) {
  open({{{"sta", "AAK"}, {"elev", "0.5"}}, {{"sta", "B"}, {"elev", "0"}}});
  Expression* compiled = nullptr;
  ASSERT_EQ(dbex_compile(site_, "concat(sta, \"-\", sta)", &compiled, dbSTRING), 0);
  std::string text = "something longer than the result";
  EXPECT_TRUE(triglub::evaluate_text(at(site_, 0), compiled, &text));
  EXPECT_EQ(text, "AAK-AAK");
  EXPECT_TRUE(triglub::evaluate_text(at(site_, 1), compiled, &text));
  EXPECT_EQ(text, "B-B");
  EXPECT_FALSE(triglub::evaluate_text(at(site_, 2), compiled, &text));
  EXPECT_FALSE(triglub::evaluate_text(at(site_, 0), nullptr, &text));
  ASSERT_EQ(dbex_compile(site_, "1 / elev", &compiled, dbSTRING), 0);
  EXPECT_FALSE(triglub::evaluate_text(at(site_, 1), compiled, &text));
  EXPECT_EQ(text, "B-B");
  EXPECT_TRUE(triglub::evaluate_text(at(site_, 0), compiled, &text));
  EXPECT_EQ(text, "2");
}

}  // namespace
}  // namespace triglub_test
