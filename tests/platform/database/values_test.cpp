// Values in quantity: runs of texts, fields by handle, texts of expressions.
#include <random>

#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

class Values : public testing::Test {
 protected:
  void open(const std::vector<Row>& rows) {
    for (const Row& row : rows) files_.add_row("site", row);
    ASSERT_EQ(dbopen(files_.write().c_str(), "r", &db_), 0);
    site_ = table_of(db_, "site");
  }
  ~Values() override { dbclose(db_); }

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

  FlatDatabase files_;
  Dbptr db_;
  Dbptr site_;
};

TEST_F(Values, RunsOfEqualTextsFollowOneAnother) {
  open({{{"sta", "A"}, {"lat", "1.5"}},
        {{"sta", "A"}, {"lat", "1.50"}},
        {{"sta", "B"}, {"lat", "1.50"}},
        {{"sta", "A"}, {"lat", "1.50"}},
        {{"sta", ""}, {"lat", ""}}});
  EXPECT_EQ(runs_of(field(site_, "sta"), 0, 5), (Texts{"A 0-2", "B 2-3", "A 3-4", "- 4-5"}));
  // The texts count, not the numbers.
  EXPECT_EQ(runs_of(field(site_, "lat"), 0, 5), (Texts{"1.5 0-1", "1.50 1-4", "-999.0000 4-5"}));
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
        {{"sta", "A"}, {"lat", "1.50"}},
        {{"sta", "B"}, {"lat", ""}},
        {{"sta", "A"}, {"lat", "1.50"}}});
  using Records = std::vector<std::uint32_t>;
  int asked = 0;
  const auto is_a = [&](std::string_view text) { return ++asked > 0 && text == "A"; };
  EXPECT_EQ(triglub::records_with_text(field(site_, "sta"), is_a), (Records{0, 1, 3}));
  EXPECT_EQ(asked, 3);
  const auto is_as_written = [](std::string_view text) { return text == "1.50" || text == "-999.0000"; };
  EXPECT_EQ(triglub::records_with_text(field(site_, "lat"), is_as_written), (Records{1, 2, 3}));
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

// Cells whose bytes were met before take a short way; every value must be what its own cell says.
TEST_F(Values, CellsThatRepeatAreReadLikeAnyOther) {
  std::mt19937_64 random(random_seed());
  const auto pick = [&](const Texts& texts) { return texts[random() % texts.size()]; };
  const Texts numbers = {"1.5", "-1.5", "01.50", "1e2", "", "99.9999", "0", "-0"};
  std::vector<Row> rows;
  Row row;
  for (int i = 0; i < 3000; ++i) {
    for (const char* name : {"lat", "lon", "elev"}) {
      if (random() % 2 == 0) row[name] = pick(numbers);
    }
    if (random() % 2 == 0) row["sta"] = pick({"A", "AB", "ABC", "B", "", "-"});
    if (random() % 3 == 0) row["staname"] = pick({"one", "a place with a long name", "", "another"});
    if (random() % 3 == 0) row["ondate"] = std::to_string(2000000 + static_cast<int>(random() % 200));
    rows.push_back(row);
  }
  open(rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const auto& [name, value] : rows[i]) {
      const bool is_number = name == "lat" || name == "lon" || name == "elev";
      const std::string null_text = is_number ? "-999.0000" : "-";
      const auto record = static_cast<std::int64_t>(i);
      ASSERT_EQ(text_at(site_, name, record), value.empty() ? null_text : value) << i << " " << name;
      double number = 0;
      if (is_number && dbgetv(at(site_, record), nullptr, name.c_str(), &number, nullptr) == 0) {
        ASSERT_EQ(number, value.empty() ? -999.0 : std::stod(value)) << i << " " << name;
      }
    }
  }
}

}  // namespace
}  // namespace triglub_test
