// The texts of numbers: the file's own, those of the schema's formats, the shortest ones.
#include "engine/table/number_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "base/number.h"
#include "built_table.h"
#include "engine/source/flat/flat_file.h"
#include "engine/source/memory/memory_source.h"
#include "platform/parfile.h"
#include "support/random_seed.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using triglub::MemorySource;

// A row of `sitechan` three ways. The flat file's cells are as wide as its fields.
const Row kRow = {{"sta", "A"},     {"ondate", "2000001"}, {"chanid", "0017"}, {"offdate", "+1"},
                  {"edepth", ".5"}, {"hang", "+1.50"},     {"vang", "1e2"},    {"lddate", "1700000000.00000"}};
const Texts kFields = {"ondate", "chanid", "offdate", "edepth", "hang", "vang", "lddate"};

Texts texts_of_row(const triglub::Table& table) {
  Texts texts;
  for (const std::string& field : kFields) texts.push_back(column_texts(table, field).at(0));
  return texts;
}

std::unique_ptr<const triglub::Table> in_memory(const Row& row, MemorySource::Numbers numbers) {
  return MemorySource("x", {{"sitechan", {row}}}, numbers).load(builtin_table("sitechan"), {});
}

TEST(NumberTexts, OfAFileAreItsOwnDigits) {
  const FlatDatabase files;
  const std::string path = files.write_file("db.sitechan", flat_row("sitechan", kRow) + "\n");
  const auto table = triglub::load_flat_file(builtin_table("sitechan"), path, ".", {});
  EXPECT_THAT(texts_of_row(*table), ElementsAre("2000001", "0017", "+1", ".5", "+1.50", "1e2", "1700000000.00000"));
}

TEST(NumberTexts, ByFormatAreAsTheSchemaWritesThem) {
  const auto table = in_memory(kRow, MemorySource::Numbers::by_format);
  EXPECT_THAT(texts_of_row(*table), ElementsAre("2000001", "17", "1", "0.5000", "1.5", "100.0", "1700000000.00000"));
}

TEST(NumberTexts, ThatAreShortestReadBack) {
  const auto table = in_memory(kRow, MemorySource::Numbers::shortest);
  EXPECT_THAT(texts_of_row(*table), ElementsAre("2000001", "17", "1", "0.5", "1.5", "100", "1.7e+09"));
  std::mt19937_64 random(random_seed());
  std::vector<std::vector<std::string>> rows;
  std::vector<double> numbers;
  for (int i = 0; i < 1000; ++i) {
    numbers.push_back(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 130));
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", numbers.back());
    rows.push_back({"A", "B", text});
  }
  const auto many = affiliation_of(rows);
  for (std::uint32_t row = 0; row < 1000; ++row) {
    double read = 0;
    ASSERT_TRUE(triglub::parse_real(many->text(2, row), &read));
    EXPECT_EQ(read, numbers[row]);
    EXPECT_LE(many->text(2, row).size(), rows[row][2].size());
  }
}

TEST(NumberTexts, OfNullsAreTheSchemasNullTexts) {
  const FlatDatabase files;
  const Row nulls = {{"ondate", "-01"}, {"chanid", ""}, {"edepth", "-1"}, {"hang", "-1.00"}};
  const std::string path = files.write_file("db.sitechan", flat_row("sitechan", nulls) + "\n");
  const Texts expected = {"-1", "-1", "-1", "-1.0000", "-1.0", "-1.0", "-9999999999.99900"};
  EXPECT_EQ(texts_of_row(*triglub::load_flat_file(builtin_table("sitechan"), path, ".", {})), expected);
  for (const auto numbers : {MemorySource::Numbers::by_format, MemorySource::Numbers::shortest}) {
    EXPECT_EQ(texts_of_row(*in_memory(nulls, numbers)), expected);
  }
}

TEST(NumberTexts, AreTheSameByCode) {
  const FlatDatabase files;
  const std::string line = flat_row("sitechan", kRow) + "\n";
  const std::string path = files.write_file("db.sitechan", line + flat_row("sitechan", {}) + "\n" + line);
  const auto flat = triglub::load_flat_file(builtin_table("sitechan"), path, ".", {});
  const MemorySource memory("x", {{"sitechan", {kRow, {}, kRow}}}, MemorySource::Numbers::by_format);
  const auto made = memory.load(builtin_table("sitechan"), {});
  for (const auto* table : {flat.get(), made.get()}) {
    for (const std::string& field : kFields) {
      const std::size_t i = field_index(table->schema(), field);
      const triglub::TextCodes codes = table->text_codes(i);
      for (std::uint32_t row = 0; row < 3; ++row) EXPECT_EQ((*codes.dictionary)[codes[row]], table->text(i, row));
      EXPECT_EQ(codes[1], triglub::kNullCode);
      EXPECT_EQ(codes.dictionary->size(), 2u);
    }
  }
}

// Formats of a schema that somebody changed need not fit their fields.
TEST(NumberTexts, ByFormatAreShortestWhereTheFormatDoesNotFit) {
  const FlatDatabase files;
  files.write_file("own.pf",
                   "tables &Tbl{\n t\n}\nt &Arr{\n fields &Tbl{\n a r 9 %d -1 - x\n b i 9 %f -1 - x\n"
                   " c r 9 %s -1 - x\n d r 9 %+.2f -1 - x\n e i 9 %04ld -1 - x\n f r 9 - -1 - x\n}\n}\n");
  const auto schema = triglub::Schema::named("own", files.folder());
  ASSERT_NE(schema, nullptr);
  const Row row = {{"a", "2.50"}, {"b", "7"}, {"c", "2.50"}, {"d", "2.5"}, {"e", "7"}, {"f", "2.50"}};
  const MemorySource source("x", {{"t", {row}}}, MemorySource::Numbers::by_format, schema);
  const auto table = source.load(schema->tables()[0], {});
  Texts texts;
  for (const auto& [field, cell] : row) texts.push_back(column_texts(*table, field)[0]);
  EXPECT_THAT(texts, ElementsAre("2.5", "7", "2.5", "+2.50", "0007", "2.5"));
}

}  // namespace
}  // namespace triglub_test
