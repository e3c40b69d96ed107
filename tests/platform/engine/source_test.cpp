// Where a database's tables are found.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Source : public ::testing::Test {
 protected:
  Source() { unsetenv("TRIGLUB_PFPATH"); }
  ~Source() override {
    if (db_.database >= 0) dbclose(db_);
  }

  // A site table of one station.
  static std::string site(const std::string& sta) { return flat_row("site", {{"sta", sta}}) + "\n"; }
  void put(const std::string& relative, const std::string& text) { files_.write_file(relative, text); }
  int open(const std::string& relative) { return dbopen((files_.folder() + "/" + relative).c_str(), "r", &db_); }
  // The stations of the database's site table.
  Texts stations() { return texts_of(table_of(db_, "site"), "sta"); }
  std::string path(const std::string& relative) const { return files_.folder() + "/" + relative; }

  FlatDatabase files_;
  Dbptr db_;
  CollectedLog log_;
};

TEST_F(Source, IsThePrefixOfItsTableFiles) {
  put("db.site", site("AAK"));
  put("other.site", site("NOT"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("AAK"));
  EXPECT_EQ(db_, (Dbptr{db_.database, dbALL, dbALL, dbALL}));
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(Source, HasAnEmptyTableWhereThereIsNoFile) {
  put("db.site", site("AAK"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_EQ(record_count(table_of(db_, "sitechan")), 0);
  EXPECT_EQ(triglub::table_path(db_, "sitechan"), "");
  EXPECT_EQ(triglub::table_path(db_, "site"), path("db.site"));
}

TEST_F(Source, NamesNoFileForWhatIsNoTable) {
  put("db.site", "");
  put("db.notes", "");
  ASSERT_EQ(open("db"), 0);
  EXPECT_EQ(triglub::table_path(db_, "notes"), "");
  EXPECT_EQ(triglub::table_path(Dbptr(), "site"), "");
}

TEST_F(Source, ThatIsNowhereIsReported) {
  EXPECT_EQ(open("db"), -1);
  EXPECT_EQ(db_, Dbptr());
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("there is no such database")));
}

TEST_F(Source, ThatIsAFolderIsReported) {
  std::filesystem::create_directory(path("db"));
  EXPECT_EQ(open("db"), -1);
  EXPECT_EQ(open("db/"), -1);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("is a folder"), HasSubstr("is a folder")));
}

TEST_F(Source, WithoutANameIsReported) {
  EXPECT_EQ(dbopen("", "r", &db_), -1);
  EXPECT_EQ(dbopen(nullptr, "r", &db_), -1);
  const std::string message =
      "warning: dbopen: the name of the database is empty, expected DIR/NAME for the tables DIR/NAME.site ...";
  EXPECT_THAT(log_.lines(), ElementsAre(message, message));
}

TEST_F(Source, MayHaveAFolderOfItsNameBesideItsTables) {
  put("db/sts2.paz", "");
  put("db.site", site("AAK"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("AAK"));
}

TEST_F(Source, IsOpenedForReadingOnly) {
  put("db.site", site("AAK"));
  for (const char* mode : {"r+", "w", "rw", ""}) EXPECT_EQ(dbopen(path("db").c_str(), mode, &db_), -1);
  EXPECT_EQ(dbopen(path("db").c_str(), nullptr, &db_), -1);
  EXPECT_EQ(dbopen(nullptr, "r", &db_), -1);
  EXPECT_EQ(dbopen("", "r", &db_), -1);
  EXPECT_EQ(db_, Dbptr());
  EXPECT_EQ(log_.lines().size(), 7u);
}

TEST_F(Source, CanBeNamedFromTheCurrentFolder) {
  put("db.site", site("AAK"));
  std::filesystem::current_path(files_.folder());
  ASSERT_EQ(dbopen("db", "r", &db_), 0);
  EXPECT_THAT(stations(), ElementsAre("AAK"));
  const char* folder = nullptr;
  ASSERT_EQ(dbquery(table_of(db_, "site"), dbTABLE_DIRNAME, &folder), 0);
  EXPECT_STREQ(folder, ".");
  folder = nullptr;
  ASSERT_EQ(dbquery(dblookup(db_, nullptr, "site", "lat", nullptr), dbTABLE_DIRNAME, &folder), 0);
  EXPECT_STREQ(folder, ".");
}

// --- descriptors ---------------------------------------------------------------------------------------------------

TEST_F(Source, WithADescriptorNeedsNoTable) {
  put("db", "");
  ASSERT_EQ(open("db"), 0);
  EXPECT_EQ(record_count(table_of(db_, "site")), 0);
}

TEST_F(Source, FindsFurtherTablesInFoldersAndPrefixes) {
  put("db", "# where things are\r\ndbpath a:/nowhere/else/db:\tother/name \r\nunknown key\nempty\n");
  put("a/db.site", site("INA"));
  put("other/name.network", flat_row("network", {{"net", "KR"}}) + "\n");
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("INA"));
  EXPECT_THAT(texts_of(table_of(db_, "network"), "net"), ElementsAre("KR"));
  EXPECT_EQ(triglub::table_path(db_, "site"), path("") + "a/db.site");
}

TEST_F(Source, PrefersItsOwnTablesThenTheFirstPlace) {
  put("db", "dbpath a:b\n");
  put("b/db.site", site("INB"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("INB"));
  dbclose(db_);
  put("a/db.site", site("INA"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("INA"));
  dbclose(db_);
  put("db.site", site("OWN"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("OWN"));
}

TEST_F(Source, PutsItsNameForWhatStandsInBraces) {
  put("db", "dbpath " + path("{x}-tables/{css}") + "\n");
  put("db-tables/db.site", site("AAK"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("AAK"));
}

TEST_F(Source, TakesBracesThatDoNotCloseAsTheyAre) {
  put("db", "dbpath a{b\n");
  put("a{b.site", site("AAK"));
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(stations(), ElementsAre("AAK"));
}

TEST_F(Source, AnswersTheFolderWhereATableIs) {
  put("db", "dbpath a\n");
  put("a/db.site", site("AAK"));
  put("db.network", "");
  ASSERT_EQ(open("db"), 0);
  const auto folder_of = [&](const char* table) {
    const char* folder = nullptr;
    EXPECT_EQ(dbquery(table_of(db_, table), dbTABLE_DIRNAME, &folder), 0);
    return std::string(folder);
  };
  EXPECT_EQ(folder_of("site"), path("a"));
  EXPECT_EQ(folder_of("network"), files_.folder());
  EXPECT_EQ(folder_of("stage"), files_.folder());  // which has no file
}

TEST_F(Source, WithASchemaThatCannotBeUsedIsRefused) {
  put("db", "schema nothing\n");
  put("db.site", site("AAK"));
  EXPECT_EQ(open("db"), -1);
  ASSERT_EQ(log_.lines().size(), 2u);
  EXPECT_EQ(log_.lines()[1], "warning: " + path("db") + ": the descriptor names a schema that cannot be used");
}

TEST_F(Source, TakesTheLaterOfTwoSchemas) {
  put("db", "schema nothing\nschema css3.0\n");
  EXPECT_EQ(open("db"), 0);
}

TEST_F(Source, HasADescriptorOfAMebibyteAndAHundredPlacesAtMost) {
  put("db.site", site("AAK"));
  for (const std::size_t size : {(1u << 20) - 1, 1u << 20}) {
    put("db", std::string(size, '\n'));
    ASSERT_EQ(open("db"), 0);
    dbclose(db_);
  }
  const auto places = [](int count) {
    std::string text = "dbpath a:b\ndbpath ";
    for (int i = 2; i < count; ++i) text += "::c";
    return text + "\n";
  };
  for (const int count : {99, 100}) {
    put("db", places(count));
    ASSERT_EQ(open("db"), 0);
    dbclose(db_);
  }
  EXPECT_THAT(log_.lines(), IsEmpty());
  put("db", std::string((1u << 20) + 1, '\n'));
  EXPECT_EQ(open("db"), -1);
  put("db", places(101));
  EXPECT_EQ(open("db"), -1);
  db_.database = -1;
  EXPECT_THAT(log_.lines(),
              ElementsAre("warning: " + path("db") + ": the descriptor cannot be read: more than 1048576 bytes",
                          "warning: " + path("db") + ": the descriptor names more than 100 places in its dbpath"));
}

TEST_F(Source, WithADescriptorThatIsAPipeIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo(path("db").c_str(), 0600), 0);
  EXPECT_EQ(open("db"), -1);
  EXPECT_THAT(log_.lines(),
              ElementsAre("warning: " + path("db") + ": the descriptor cannot be read: not a regular file"));
}

// --- tables that are there but cannot be read ----------------------------------------------------------------------

TEST_F(Source, DoesNotTakeATableForEmptyThatCannotBeReached) {
  ASSERT_EQ(symlink("db.site", path("db.site").c_str()), 0);        // a link to itself
  ASSERT_EQ(symlink("not_there", path("db.sitechan").c_str()), 0);  // a link to nothing
  ASSERT_EQ(open("db"), 0);
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  EXPECT_FALSE(is_view(table_of(db_, "sitechan")));
  EXPECT_THAT(log_.lines(),
              ElementsAre(HasSubstr("db.site: cannot be read: "), HasSubstr("db.sitechan: cannot be read: ")));
}

TEST_F(Source, ComplainsOnceOfATableThatRefusesToLoad) {
  put("db.site", "too short\n");
  ASSERT_EQ(open("db"), 0);
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  const std::size_t complaints = log_.lines().size();
  EXPECT_EQ(complaints, 2u);
  EXPECT_FALSE(is_view(table_of(db_, "site")));
  EXPECT_EQ(log_.lines().size(), complaints);
}

TEST_F(Source, LoadsATableThatWasMendedWhenItIsOpenedAnew) {
  put("db.network", "cut\n");
  ASSERT_EQ(open("db"), 0);
  EXPECT_FALSE(is_view(table_of(db_, "network")));
  dbclose(db_);
  put("db.network", "");
  ASSERT_EQ(open("db"), 0);
  EXPECT_TRUE(is_view(table_of(db_, "network")));
}

TEST_F(Source, LoadsATableWhenItIsAskedForOnce) {
  put("db.site", site("AAK"));
  put("db.sitechan", "faulty\n");
  ASSERT_EQ(open("db"), 0);
  EXPECT_THAT(log_.lines(), IsEmpty());
  EXPECT_THAT(stations(), ElementsAre("AAK"));
  put("db.site.new", site("BBB"));
  std::filesystem::rename(path("db.site.new"), path("db.site"));
  EXPECT_THAT(stations(), ElementsAre("AAK"));
}

}  // namespace
}  // namespace triglub_test
