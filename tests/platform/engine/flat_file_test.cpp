// Flat files: what a row may look like, what makes a table refuse to load, and what is said about it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "set_threads.h"
#include "support/random_seed.h"
#include "support/scoped_limit.h"
#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The schema's row of `affiliation`: net t8, sta t6, lddate e17.
const std::string AFFILIATION = "KR       AAK     1700000000.00000";

// A database of one table whose file holds these bytes.
class OneFile {
 public:
  OneFile(const std::string& table, const std::string& bytes) : name_(table) {
    path_ = files_.write_file("db." + table, bytes);
    if (dbopen(files_.prefix().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    table_ = table_of(db_, table);
  }
  ~OneFile() { dbclose(db_); }
  OneFile(const OneFile&) = delete;
  OneFile& operator=(const OneFile&) = delete;

  bool is_loaded() const { return is_view(table_); }
  long count() const { return record_count(table_); }
  Texts texts(const std::string& field) const { return texts_of(table_, field); }
  Dbptr table() const { return table_; }

  // The complaints of loading, the path left out.
  Texts complaints() const {
    Texts lines;
    for (std::string line : log_.lines()) {
      for (std::size_t found = line.find(path_); found != line.npos; found = line.find(path_)) {
        line.replace(found, path_.size(), "FILE");
      }
      lines.push_back(line);
    }
    return lines;
  }

 private:
  CollectedLog log_;
  FlatDatabase files_;
  std::string name_;
  std::string path_;
  Dbptr db_;
  Dbptr table_;
};

const std::string REFUSED = "warning: FILE: table affiliation is not loaded";

TEST(FlatFile, ReadsRowsOfTheSchemasLayout) {
  const OneFile file("affiliation", AFFILIATION + "\n" + "II       ANMO    1600000000.50000\n");
  ASSERT_TRUE(file.is_loaded());
  EXPECT_THAT(file.texts("net"), ElementsAre("KR", "II"));
  EXPECT_THAT(file.texts("sta"), ElementsAre("AAK", "ANMO"));
  EXPECT_THAT(file.texts("lddate"), ElementsAre("1700000000.00000", "1600000000.50000"));
  EXPECT_THAT(file.complaints(), IsEmpty());
}

TEST(FlatFile, OfNoBytesIsAnEmptyTable) {
  const OneFile file("affiliation", "");
  EXPECT_TRUE(file.is_loaded());
  EXPECT_EQ(file.count(), 0);
}

TEST(FlatFile, NeedsNoLastLineEnd) {
  const OneFile file("affiliation", AFFILIATION + "\n" + AFFILIATION);
  EXPECT_EQ(file.count(), 2);
  EXPECT_THAT(file.texts("lddate"), ElementsAre("1700000000.00000", "1700000000.00000"));
}

TEST(FlatFile, AcceptsCarriageReturns) {
  for (const std::string& last : Texts{"", "\r", "\r\n"}) {
    const OneFile file("affiliation", AFFILIATION + "\r\n" + AFFILIATION + last);
    ASSERT_TRUE(file.is_loaded());
    EXPECT_THAT(file.texts("lddate"), ElementsAre("1700000000.00000", "1700000000.00000"));
  }
}

TEST(FlatFile, MixesLineEndsAndLengths) {
  const std::string shorter = "KR       AAK";
  for (const auto& [bytes, rows] : std::vector<std::pair<std::string, std::size_t>>{
           {AFFILIATION + "\n" + AFFILIATION + "\r\n" + shorter + "\n" + AFFILIATION + "\n", 4},
           {shorter + "\n" + AFFILIATION + "\n" + AFFILIATION + "\n", 3},
           {shorter + "\r\n" + AFFILIATION + "   \n" + shorter + "\n" + shorter, 4},
           {AFFILIATION + "\n" + AFFILIATION + " \n" + AFFILIATION, 3}}) {
    const OneFile file("affiliation", bytes);
    ASSERT_TRUE(file.is_loaded());
    EXPECT_EQ(file.texts("sta"), Texts(rows, "AAK"));
    for (const std::string& time : file.texts("lddate")) {
      EXPECT_TRUE(time == "1700000000.00000" || time == "-9999999999.99900") << time;
    }
  }
}

TEST(FlatFile, AcceptsALineLongerByBlanksOnly) {
  const OneFile file("affiliation", AFFILIATION + "     \r\n" + AFFILIATION + "\n");
  EXPECT_EQ(file.count(), 2);
  for (const std::string& more : Texts{"x", " x", "     x  ", "\t"}) {
    const OneFile longer("affiliation", AFFILIATION + more + "\n");
    EXPECT_FALSE(longer.is_loaded());
    const auto bytes = std::to_string(AFFILIATION.size() + more.find_last_not_of(' ') + 1);
    EXPECT_THAT(longer.complaints(),
                ElementsAre("warning: FILE:1: the row has " + bytes + " bytes, expected 33", REFUSED));
  }
}

TEST(FlatFile, RefusesABlankLine) {
  for (const std::string& blank : Texts{"", " ", "\r", std::string(33, ' '), std::string(50, ' ')}) {
    for (const std::string& rest : Texts{"", "\n", "\n" + AFFILIATION}) {
      if (blank.empty() && rest.empty()) continue;
      const OneFile file("affiliation", AFFILIATION + "\n" + blank + rest);
      EXPECT_FALSE(file.is_loaded());
      EXPECT_THAT(file.complaints(),
                  ElementsAre("warning: FILE:2: the line is blank, expected a row of 33 bytes", REFUSED));
    }
  }
}

TEST(FlatFile, RefusesASeparatorThatIsNotBlank) {
  for (const std::size_t column : {8u, 15u}) {
    std::string row = AFFILIATION;
    row[column] = '_';
    const OneFile file("affiliation", row + "\n");
    EXPECT_FALSE(file.is_loaded());
    EXPECT_THAT(file.complaints(),
                ElementsAre("warning: FILE:1: field affiliation." + std::string(column == 8 ? "net" : "sta") +
                                ": a separator column (byte " + std::to_string(column + 1) + ") is not blank",
                            REFUSED));
  }
}

// Every field of every table: filled to its width it is read whole; one byte more or less in the row is told.
TEST(FlatFile, HoldsEveryFieldToItsWidth) {
  for (const auto& [table, fields] : flat_schema()) {
    std::size_t begin = 0;
    const std::string row = flat_row(table, {});
    for (const FlatField& field : fields) {
      const std::string full = field.is_text ? std::string(field.width, 'x') : std::string(field.width, '7');
      std::string line = row;
      line.replace(begin, field.width, full);
      const OneFile exact(table, line + "\n");
      ASSERT_TRUE(exact.is_loaded()) << table << "." << field.name;
      EXPECT_THAT(exact.texts(field.name), ElementsAre(full));

      CollectedLog ignored;
      line.insert(begin, 1, full[0]);  // one byte too many: the next separator is pushed aside, or the row too long
      const OneFile wider(table, line + "\n");
      EXPECT_FALSE(wider.is_loaded()) << table << "." << field.name;

      line = row;
      line.replace(begin, field.width, full.substr(1));  // one too few: what follows moves into the gap
      const OneFile narrower(table, line + "\n");
      const bool is_last = begin + field.width == row.size();
      EXPECT_EQ(narrower.is_loaded(), is_last) << table << "." << field.name;
      begin += field.width + 1;
    }
  }
}

// A line may end after any of the texts and the load date at its end, and nowhere else.
TEST(FlatFile, RefusesARowThatIsCutInOrBeforeANumber) {
  for (const auto& [table, fields] : flat_schema()) {
    std::string row;
    std::size_t needed = 0;  // bytes up to the end of the last number that is no load date
    for (const FlatField& field : fields) {
      if (!row.empty()) row += ' ';
      row += std::string(field.width, field.is_text ? 'x' : '7');
      if (!field.is_text && field.name != "lddate") needed = row.size();
    }
    for (std::size_t length = 1; length <= row.size(); ++length) {
      const OneFile file(table, row.substr(0, length) + "\n");
      EXPECT_EQ(file.is_loaded(), length >= needed) << table << " cut to " << length;
    }
  }
}

TEST(FlatFile, NamesTheFieldThatARowEndsBefore) {
  const std::string site = flat_row("site", {{"sta", "AAK"}, {"lat", "42.0"}});
  const OneFile file("site", site + "\n" + site.substr(0, 30) + "\n");
  EXPECT_FALSE(file.is_loaded());
  EXPECT_THAT(file.complaints(), ElementsAre("warning: FILE:2: field site.lat: the row has 30 bytes and ends before "
                                             "the field, expected 155",
                                             "warning: FILE: table site is not loaded"));
}

TEST(FlatFile, TakesWhatAShortLineLeavesOffForNull) {
  const OneFile file("snetsta", "KR\n" + flat_row("snetsta", {{"fsta", "AAK"}}).substr(0, 12) + "\n");
  ASSERT_TRUE(file.is_loaded());
  EXPECT_THAT(file.texts("snet"), ElementsAre("KR", "-"));
  EXPECT_THAT(file.texts("fsta"), ElementsAre("-", "AAK"));
  EXPECT_THAT(file.texts("sta"), ElementsAre("-", "-"));
  EXPECT_THAT(file.texts("lddate"), ElementsAre("-9999999999.99900", "-9999999999.99900"));
}

// The digits behind the end of a short line are another row's.
TEST(FlatFile, ReadsALoadDateThatALineEndsIn) {
  const OneFile file("affiliation", "KR       AAK    1700000000\r\n" + AFFILIATION + "\nKR       AAK    17");
  ASSERT_TRUE(file.is_loaded());
  EXPECT_THAT(file.texts("lddate"), ElementsAre("1700000000", "1700000000.00000", "17"));
}

TEST(FlatFile, LetsANumberUseItsColumnsAsItLikes) {
  for (const std::string& number :
       Texts{"42.6375  ", "  42.6375", " 42.6375 ", "+42.6375 ", "0042.6375", "4.26375e1", "42.63750 ", "426375e-4"}) {
    const OneFile file("site", flat_row("site", {{"sta", "AAK"}, {"lat", number}}) + "\n");
    ASSERT_TRUE(file.is_loaded()) << number;
    double lat = 0;
    ASSERT_EQ(dbgetv(at(file.table(), 0), nullptr, "lat", &lat, nullptr), 0);
    EXPECT_EQ(lat, 42.6375) << number;
  }
}

TEST(FlatFile, ReadsANumberTooSmallForADoubleAsZero) {
  for (const char* number : {"1e-400", "-1e-400", "2.4e-324"}) {
    const OneFile file("site", flat_row("site", {{"sta", "AAK"}, {"lat", number}}) + "\n");
    ASSERT_TRUE(file.is_loaded()) << number;
    double lat = 123;
    ASSERT_EQ(dbgetv(at(file.table(), 0), nullptr, "lat", &lat, nullptr), 0);
    EXPECT_EQ(lat, 0.0) << number;
  }
}

TEST(FlatFile, RefusesNumbersThatAreNone) {
  struct Case {
    const char* field;
    const char* text;
    const char* expected;
  };
  for (const auto& [field, text, expected] : std::vector<Case>{
           {"chanid", "12x", "an integer"},
           {"chanid", "1.5", "an integer"},
           {"chanid", "1e3", "an integer"},
           {"chanid", "1 2", "an integer"},
           {"chanid", "0x1F", "an integer"},
           {"chanid", "--1", "an integer"},
           {"ondate", "2001-001", "a date (yyyyddd)"},
           {"ondate", "2001001.", "a date (yyyyddd)"},
           {"edepth", "nan", "a number"},
           {"edepth", "-inf", "a number"},
           {"edepth", "Infinity", "a number"},
           {"edepth", "0,5", "a number"},
           {"edepth", "0x1p3", "a number"},
           {"edepth", "1e999", "a number"},
           {"edepth", "*********", "a number"},
           {"edepth", "1.5D+03", "a number"},
       }) {
    const OneFile file("sitechan", flat_row("sitechan", {{"sta", "AAK"}, {field, text}}) + "\n");
    EXPECT_FALSE(file.is_loaded()) << field << " " << text;
    EXPECT_THAT(file.complaints(), ElementsAre("warning: FILE:1: field sitechan." + std::string(field) + ": expected " +
                                                   expected + ", found '" + text + "'",
                                               "warning: FILE: table sitechan is not loaded"));
  }
}

TEST(FlatFile, ReadsAnIntegerOfAllDigitsThatFit) {
  const OneFile file("sitechan", flat_row("sitechan", {{"chanid", "99999999"}}) + "\n" +
                                     flat_row("sitechan", {{"chanid", "-9999999"}}) + "\n");
  EXPECT_THAT(file.texts("chanid"), ElementsAre("99999999", "-9999999"));
}

TEST(FlatFile, RefusesATimeThatIsNone) {
  for (const char* text : {"yesterday", "2014-02-30", "14-03-03 24:00:00", "14/03/03 04:05:06", "14-03-03T04:05:06",
                           "14-03-03 04:05", "\t1700000000", "nan"}) {
    const OneFile file("sensor", flat_row("sensor", {{"time", text}}) + "\n");
    EXPECT_THAT(file.complaints(),
                ElementsAre("warning: FILE:1: field sensor.time: expected a time (epoch seconds, or a date such as "
                            "2014-03-03 11:07:06), found '" +
                                std::string(text) + "'",
                            "warning: FILE: table sensor is not loaded"));
  }
}

// The texts are those of numbers: who reads a time need not know how it was written.
TEST(FlatFile, ReadsTimesThatStandAsDates) {
  const OneFile file("sensor", flat_row("sensor", {{"time", "70-01-02 00:00:01"}, {"endtime", "2000-02-29"}}) + "\n" +
                                   flat_row("sensor", {{"time", "1970-01-02T000001"}, {"endtime", "29-FEB-2000"}}) +
                                   "\n" + flat_row("sensor", {{"time", "86401.0"}, {"endtime", ""}}) + "\n");
  ASSERT_TRUE(file.is_loaded());
  for (const long record : {0, 1, 2}) {
    double time = 0;
    ASSERT_EQ(dbgetv(at(file.table(), record), nullptr, "time", &time, nullptr), 0);
    EXPECT_EQ(time, 86401);
  }
  EXPECT_THAT(file.texts("time"), ElementsAre("86401.00000", "86401.00000", "86401.0"));
  EXPECT_THAT(file.texts("endtime"), ElementsAre("951782400.00000", "951782400.00000", "9999999999.99900"));
  EXPECT_EQ(record_count(dbsubset(file.table(), "time =~ /86401.00000/", nullptr)), 2);
  EXPECT_THAT(texts_of(dbsubset(file.table(), "endtime == 951782400", nullptr), "endtime"),
              ElementsAre("951782400.00000", "951782400.00000"));
  EXPECT_THAT(file.complaints(), IsEmpty());
}

TEST(FlatFile, TellsRunsOfTimesApartByTheirTexts) {
  std::string bytes;
  for (const char* time :
       {"1970-01-02", "70-01-02 00:00:00", "86400.00000", "86400.0", "1970/01/02", "86.4e3", "1e-2", ""}) {
    bytes += flat_row("sensor", {{"time", time}}) + "\n";
  }
  const OneFile file("sensor", bytes);
  std::vector<triglub::TextRun> runs;
  triglub::text_runs(dblookup(file.table(), nullptr, nullptr, "time", nullptr), 0, 8, &runs);
  Texts texts;
  for (const triglub::TextRun& run : runs) texts.emplace_back(run.text);
  EXPECT_THAT(texts, ElementsAre("86400.00000", "86400.0", "86400.00000", "86.4e3", "1e-2", "-9999999999.99900"));
}

TEST(FlatFile, TakesLoadDatesThatAreNoneForNullAndTellsOnce) {
  const auto row = [](const char* date) { return flat_row("affiliation", {{"sta", "A"}, {"lddate", date}}) + "\n"; };
  for (const char* date : {"yesterday", "01-13-01 00:00:00", "01-02-29 00:00:00", "01/02/03 04:05:06", "\t17", "nan"}) {
    const OneFile file("affiliation", row("17") + row(date) + row(date) + row("") + row("tomorrow"));
    ASSERT_TRUE(file.is_loaded());
    EXPECT_THAT(file.texts("lddate"),
                ElementsAre("17", "-9999999999.99900", "-9999999999.99900", "-9999999999.99900", "-9999999999.99900"));
    EXPECT_THAT(file.complaints(),
                ElementsAre("notify: FILE:2: field affiliation.lddate: expected a time (epoch seconds, or a date such "
                            "as 2014-03-03 11:07:06), found '" +
                            std::string(date) + "': taken as null (rows with such a date: 3)"));
  }
}

TEST(FlatFile, IsRefusedForAZeroByteInALoadDate) {
  std::string row = flat_row("affiliation", {{"lddate", "yesterday"}}) + "\n";
  row[row.find("yesterday")] = '\0';
  EXPECT_FALSE(OneFile("affiliation", row).is_loaded());
}

TEST(FlatFile, TakesBlankFieldsForNull) {
  Row blank;
  for (const FlatField& field : flat_schema().at("sitechan")) {
    if (field.name != "sta") blank[field.name] = "";
  }
  blank["sta"] = "AAK";
  const OneFile file("sitechan", flat_row("sitechan", blank) + "\n");
  ASSERT_TRUE(file.is_loaded());
  for (const FlatField& field : flat_schema().at("sitechan")) {
    EXPECT_THAT(file.texts(field.name), ElementsAre(field.name == "sta" ? "AAK" : field.null_text)) << field.name;
  }
}

TEST(FlatFile, TakesANumberThatEqualsTheNullForNull) {
  const OneFile file("site", flat_row("site", {{"lat", "-999"}, {"lon", "-9.99e2"}, {"dnorth", "-0.0"}}) + "\n" +
                                 flat_row("site", {{"lat", "-999.0001"}, {"ondate", "-001"}, {"dnorth", "0.0001"}}) +
                                 "\n");
  EXPECT_THAT(file.texts("lat"), ElementsAre("-999.0000", "-999.0001"));
  EXPECT_THAT(file.texts("lon"), ElementsAre("-999.0000", "-999.0000"));
  EXPECT_THAT(file.texts("dnorth"), ElementsAre("0.0000", "0.0001"));
  EXPECT_THAT(file.texts("ondate"), ElementsAre("-1", "-1"));
}

TEST(FlatFile, TrimsTextsAtBothEnds) {
  const OneFile file("site",
                     flat_row("site", {{"sta", " AAK"}, {"staname", "\t Ala  Archa\t"}, {"refsta", "\t"}}) + "\n");
  EXPECT_THAT(file.texts("sta"), ElementsAre("AAK"));
  EXPECT_THAT(file.texts("staname"), ElementsAre("Ala  Archa"));
  EXPECT_THAT(file.texts("refsta"), ElementsAre("-"));
}

TEST(FlatFile, TakesTextsThatAreNoUtf8ForLatin1) {
  const std::string latin1 = "Z\xFCrich";
  const std::string utf8 = "Z\xC3\xBCrich";
  const OneFile file("site", flat_row("site", {{"staname", latin1}}) + "\n" + flat_row("site", {{"staname", utf8}}) +
                                 "\n" + flat_row("site", {{"staname", latin1}}) + "\n" +
                                 flat_row("site", {{"staname", "\xC3"}}) + "\n" +
                                 flat_row("site", {{"staname", std::string(50, '\xFC')}}) + "\n");
  ASSERT_TRUE(file.is_loaded());
  std::string fifty;
  for (int i = 0; i < 50; ++i) fifty += "\xC3\xBC";
  EXPECT_THAT(file.texts("staname"), ElementsAre(utf8, utf8, utf8, "\xC3\x83", fifty));
  // The three are one value.
  EXPECT_EQ(record_count(dbsubset(file.table(), ("staname == '" + utf8 + "'").c_str(), nullptr)), 3);
}

TEST(FlatFile, CountsWidthsInBytes) {
  std::string row = flat_row("site", {{"sta", "AAK"}, {"staname", "\xE2\x82\xAC"}, {"statype", "ss"}});
  const OneFile file("site", row + "\n");
  EXPECT_THAT(file.texts("staname"), ElementsAre("\xE2\x82\xAC"));
  EXPECT_THAT(file.texts("statype"), ElementsAre("ss"));
}

// The classic interface ends texts at a zero byte, and "A" and "A\0B" would be one station.
TEST(FlatFile, RefusesAZeroByteInAnyField) {
  std::size_t begin = 0;
  for (const FlatField& field : flat_schema().at("affiliation")) {
    for (const std::size_t byte : {begin, begin + 1, begin + field.width - 1}) {
      std::string row = AFFILIATION;
      row[byte] = '\0';
      for (const std::string& before : Texts{"", AFFILIATION + "\n", AFFILIATION + "  \r\n"}) {
        const OneFile file("affiliation", before + row + "\n" + AFFILIATION + "\n");
        EXPECT_FALSE(file.is_loaded()) << byte;
        EXPECT_THAT(file.complaints(),
                    ElementsAre("warning: FILE:" + std::string(before.empty() ? "1" : "2") + ": field affiliation." +
                                    field.name + ": a zero byte (byte " + std::to_string(byte + 1) + ")",
                                REFUSED));
      }
    }
    begin += field.width + 1;
  }
}

TEST(FlatFile, RefusesZeroBytesOutsideOfFieldsToo) {
  std::string row = AFFILIATION;
  row[8] = '\0';
  const OneFile separator("affiliation", row + "\n");
  EXPECT_THAT(separator.complaints(),
              ElementsAre("warning: FILE:1: field affiliation.net: a separator column (byte 9) is not blank", REFUSED));
  const OneFile behind("affiliation", AFFILIATION + std::string(1, '\0') + "\n");
  EXPECT_THAT(behind.complaints(), ElementsAre("warning: FILE:1: the row has 34 bytes, expected 33", REFUSED));
  const OneFile cut("affiliation", std::string("KR       A\0B", 12) + "\n");
  EXPECT_THAT(cut.complaints(), ElementsAre("warning: FILE:1: field affiliation.sta: a zero byte (byte 11)", REFUSED));
}

TEST(FlatFile, TakesOtherControlCharactersForText) {
  const OneFile file("affiliation", "K\x01R      A0\x7F    1700000000.00000\n");
  EXPECT_THAT(file.texts("net"), ElementsAre("K\x01R"));
  EXPECT_THAT(file.texts("sta"), ElementsAre("A0\x7F"));
}

TEST(FlatFile, NamesTheFirstTwentyFaultsAndCountsAll) {
  for (const int faults : {1, 19, 20, 21, 500}) {
    std::string bytes;
    for (int i = 0; i < faults; ++i) bytes += flat_row("snetsta", {}) + "\n" + "x" + flat_row("snetsta", {}) + "\n";
    const OneFile file("snetsta", bytes);
    EXPECT_FALSE(file.is_loaded());
    Texts expected;
    for (int i = 0; i < std::min(faults, 20); ++i) {
      expected.push_back("warning: FILE:" + std::to_string(2 * i + 2) + ": the row has 57 bytes, expected 56");
    }
    if (faults > 20) {
      expected.push_back("warning: FILE: " + std::to_string(faults) + " faults in all, the first 20 are named");
    }
    expected.push_back("warning: FILE: table snetsta is not loaded");
    EXPECT_EQ(file.complaints(), expected);
  }
}

TEST(FlatFile, NamesEveryFaultOfARow) {
  const OneFile file("sitechan", flat_row("sitechan", {{"chanid", "a"}, {"hang", "b"}, {"vang", "c"}}) + "\n");
  EXPECT_EQ(file.complaints().size(), 4u);
}

TEST(FlatFile, GivesTextsLongerThanTheBufferCutBetweenCharacters) {
  for (const std::size_t before : {0u, 1u}) {
    FlatDatabase files;
    files.write_file("own.pf", "tables &Tbl{\n t\n}\nt &Arr{\n fields &Tbl{\n a t 1000 %s - - text\n}\n}\n");
    files.write_file("db", "schema own\n");
    files.write_file("db.t", std::string(before, 'a') + std::string(1000 - before, '\xFC') + "\n");
    Dbptr db;
    ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db), 0);
    const std::string text = text_at(table_of(db, "t"), "a", 0);  // of 2 * (1000 - before) + before bytes whole
    EXPECT_EQ(text.size(), before == 0 ? 1022u : 1023u);
    EXPECT_EQ(text.substr(text.size() - 2), "\xC3\xBC");
    dbclose(db);
  }
}

TEST(FlatFile, ThatIsAFolderRefusesToLoad) {
  FlatDatabase files;
  files.write_file("db.site/inside", "x");
  files.write_file("db.network", "");
  Dbptr db;
  ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db), 0);
  CollectedLog log;
  EXPECT_FALSE(is_view(table_of(db, "site")));
  EXPECT_THAT(log.lines(), ElementsAre("warning: " + files.prefix() + ".site: cannot be read: not a regular file"));
  dbclose(db);
}

// Random rows come back as they were written, whatever the lengths of lines.
TEST(FlatFile, GivesBackRandomRows) {
  std::mt19937_64 random(random_seed());
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
  for (int round = 0; round < 30; ++round) {
    const auto table = std::next(flat_schema().begin(), static_cast<std::ptrdiff_t>(below(flat_schema().size())));
    const bool even = below(2) == 0;
    std::string bytes;
    std::vector<Row> rows(below(40));
    for (Row& row : rows) {
      for (const FlatField& field : table->second) {
        if (below(4) == 0) continue;
        row[field.name] = field.is_text ? std::string(1 + below(field.width), static_cast<char>('A' + below(26)))
                                        : std::to_string(1000 + below(9000));
        if (field.width == 1) row[field.name] = "y";
      }
      std::string line = flat_row(table->first, row);
      if (!even && !row.contains("lddate") && below(2) == 0) line.resize(line.size() - 18);
      bytes += line + (even ? "" : std::string(below(3), ' ')) + (!even && below(2) == 0 ? "\r\n" : "\n");
    }
    const OneFile file(table->first, bytes);
    ASSERT_TRUE(file.is_loaded()) << bytes;
    ASSERT_EQ(file.count(), static_cast<long>(rows.size()));
    for (const FlatField& field : table->second) {
      Texts expected;
      for (const Row& row : rows) expected.push_back(row.contains(field.name) ? row.at(field.name) : field.null_text);
      ASSERT_EQ(file.texts(field.name), expected) << table->first << "." << field.name;
    }
  }
}

// A line of any bytes either loads or is refused, and never reads past the file.
TEST(FlatFile, BearsRandomBytes) {
  std::mt19937_64 random(random_seed());
  for (int round = 0; round < 1000; ++round) {
    std::string bytes = AFFILIATION + "\n" + AFFILIATION + "\r\n" + AFFILIATION;
    for (auto changes = random() % 4; changes > 0; --changes) {
      constexpr std::string_view LETTERS("\n\r \0-1x\xFC", 8);
      const char letter = LETTERS[random() % LETTERS.size()];
      const std::size_t place = random() % bytes.size();
      if (random() % 2 == 0) {
        bytes[place] = letter;
      } else {
        bytes.insert(place, 1, letter);
      }
    }
    const OneFile file("affiliation", bytes);
    if (!file.is_loaded()) {
      EXPECT_FALSE(file.complaints().empty());
      continue;
    }
    for (const char* field : {"net", "sta", "lddate"}) file.texts(field);
  }
}

// Two texts that are the same up to a zero byte are not the same, and the classic interface cannot tell them apart.
TEST(FlatFile, RefusesAZeroByteInAnyCell) {
  for (const std::string& table : Texts{"affiliation", "site", "sensor"}) {
    std::size_t begin = 0;
    const std::string row = flat_row(table, {});
    for (const FlatField& field : flat_schema().at(table)) {
      for (const std::size_t at : {begin, begin + field.width / 2, begin + field.width - 1}) {
        std::string line = row;
        line[at] = '\0';
        const OneFile file(table, row + "\n" + line + "\n");
        EXPECT_FALSE(file.is_loaded());
        EXPECT_THAT(file.complaints(), ElementsAre("warning: FILE:2: field " + table + "." + field.name +
                                                       ": a zero byte (byte " + std::to_string(at + 1) + ")",
                                                   "warning: FILE: table " + table + " is not loaded"));
      }
      begin += field.width + 1;
    }
  }
}

TEST(FlatFile, HoldsTheLimitOfRowsButNotARowMore) {
  const triglub::ScopedLimit limit(triglub::Limit::table_rows, 3);
  for (const std::size_t rows : {2u, 3u, 4u, 40u}) {
    std::string bytes;
    for (std::size_t i = 0; i < rows; ++i) bytes += AFFILIATION + "\n";
    const OneFile file("affiliation", bytes);
    EXPECT_EQ(file.is_loaded(), rows <= 3);
    if (rows <= 3) continue;
    EXPECT_THAT(file.complaints(),
                ElementsAre("warning: FILE:4: more than 3 rows of a table (the limit table-rows)", REFUSED));
  }
}

TEST(FlatFile, HasLinesOfAMebibyteAtMost) {
  constexpr std::size_t kMost = 1 << 20;
  for (const std::size_t size : {kMost - 1, kMost, kMost + 1, 7 * kMost}) {
    std::string line = AFFILIATION;
    line.resize(size, ' ');
    const OneFile file("affiliation", AFFILIATION + "\n" + line + "\n" + AFFILIATION + "\n");
    EXPECT_EQ(file.is_loaded(), size <= kMost);
    if (size <= kMost) {
      EXPECT_THAT(file.texts("lddate"), ::testing::Each("1700000000.00000"));
      EXPECT_EQ(file.count(), 3);
      continue;
    }
    EXPECT_THAT(file.complaints(),
                ElementsAre("warning: FILE:2: the line has more than 1048576 bytes, expected a row of 33", REFUSED));
  }
}

// A file of zeros, as a disk that was full leaves one, takes no memory to refuse.
TEST(FlatFile, OfNothingButZerosIsRefusedAtItsFirstLine) {
  FlatDatabase files;
  std::filesystem::resize_file(files.write_file("db.affiliation", ""), std::uintmax_t{300} << 20);
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  CollectedLog log;
  Dbptr db;
  ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db), 0);
  EXPECT_FALSE(is_view(table_of(db, "affiliation")));
  dbclose(db);
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 100000);  // kilobytes
  EXPECT_THAT(log.lines(), ElementsAre(::testing::EndsWith("db.affiliation:1: the line has more than 1048576 bytes, "
                                                           "expected a row of 33"),
                                       ::testing::EndsWith("table affiliation is not loaded")));
}

// The digits of numbers are asked for long after the table was loaded.
TEST(FlatFile, IsOfNoConcernOnceItIsLoaded) {
  FlatDatabase files;
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes += AFFILIATION + "\n";
  const std::string path = files.write_file("db.affiliation", bytes);
  Dbptr db;
  ASSERT_EQ(dbopen(files.prefix().c_str(), "r", &db), 0);
  const Dbptr table = table_of(db, "affiliation");
  ASSERT_EQ(record_count(table), 5000);
  std::filesystem::resize_file(path, 0);
  EXPECT_THAT(texts_of(table, "lddate"), ::testing::Each("1700000000.00000"));
  dbclose(db);
}

// Whatever a table does while it is read, it is one that stood there, or it is refused.
TEST(FlatFile, ThatShrinksAndGrowsWhileItIsReadIsWholeOrRefused) {
  FlatDatabase files;
  std::string bytes;
  for (int i = 0; i < 60000; ++i) bytes += AFFILIATION + "\n";
  const std::string path = files.write_file("db.affiliation", bytes);
  const SetThreads threads(2);
  std::atomic<bool> is_done = false;
  std::thread writer([&] {
    while (!is_done) {
      std::filesystem::resize_file(path, 34 * 100);
      std::ofstream(path, std::ios::binary | std::ios::app)
          .write(bytes.data(), static_cast<std::streamsize>(34 * 59900));
    }
  });
  CollectedLog log;
  for (int round = 0; round < 60; ++round) {
    Dbptr db;
    if (dbopen(files.prefix().c_str(), "r", &db) != 0) continue;
    const Dbptr table = table_of(db, "affiliation");
    if (is_view(table)) {
      Texts times = texts_of(table, "lddate");
      if (!times.empty()) times.pop_back();  // the writer may have come to the middle of it
      EXPECT_THAT(times, ::testing::Each("1700000000.00000"));
    }
    dbclose(db);
  }
  is_done = true;
  writer.join();
  for (const std::string& line : log.lines()) {
    EXPECT_THAT(line, ::testing::MatchesRegex(".*(changed while it was read|is not loaded|bytes, expected 33|"
                                              "ends before the field.*)"));
  }
}

}  // namespace
}  // namespace triglub_test
