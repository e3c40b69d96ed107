// Tables of a schema of one's own: which row a record sees.
#include "epochs/own_tables.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "epochs/record_view.h"
#include "fatal_failure.h"
#include "support/flat_database.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

constexpr std::uint32_t kFirstOwn = 1U << kRecordTables;

// The built-in schema with one more table, "keeper", with the fields of `key` (as the schema has keys) and a name.
std::string schema_with_keeper(const std::string& key, const std::string& fields) {
  std::ifstream file(TRIGLUB_SOURCE_DIR "/data/schemas/css3.0.pf");
  std::stringstream text;
  text << file.rdbuf();
  std::string schema = text.str();
  schema.insert(schema.find("    site\n"), "    keeper\n");
  return schema + "keeper &Arr{\ndescription Who keeps it\nprimary " + key + "\nfields &Tbl{\n" + fields +
         "name t 6 %-6s - - who\n}\n}\n";
}

// Station AAK (1990001 on), channels BHZ from 2000001 to 2000010 and from 2000011 on, LHZ from 2000001 on.
class OwnTables : public testing::Test {
 protected:
  void write(const std::string& key, const std::string& fields, const std::string& rows) {
    files_.add_row("site", {{"sta", "AAK"}, {"ondate", "1990001"}});
    files_.add_row("snetsta", {{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}});
    const auto channel = [&](const char* chan, const char* on, const char* off) {
      files_.add_row("sitechan", {{"sta", "AAK"}, {"chan", chan}, {"ondate", on}, {"offdate", off}});
    };
    channel("BHZ", "2000001", "2000010");
    channel("BHZ", "2000011", "-1");
    channel("LHZ", "2000001", "-1");
    files_.write_file("own.pf", schema_with_keeper(key, fields));
    files_.write_file("test", "schema ./own.pf\n");
    files_.write_file("test.keeper", rows);
    ASSERT_EQ(dbopen(files_.write().c_str(), "r", &db_), 0);
  }

  // The name in the row that each record sees, "-" for none.
  std::vector<std::string> names() {
    Findings findings;
    RecordChoice choice;
    // Built in, too, is `affiliation`, behind it.
    choice.tables = kFirstOwn;
    Dbptr view = make_record_view(db_, choice, &findings).view;
    std::vector<std::string> names;
    long records = 0;
    dbquery(view, dbRECORD_COUNT, &records);
    Dbptr name = dblookup(view, nullptr, nullptr, "keeper.name", nullptr);
    for (name.record = 0; name.record < records; ++name.record) {
      char text[MAX_VALUE_BYTES + 1] = "";
      dbget(name, text);
      names.emplace_back(text);
    }
    return names;
  }

  triglub_test::FlatDatabase files_{"test"};
  Dbptr db_;
};

TEST_F(OwnTables, HaveTheRowOfTheKey) {
  write("sta chan", "sta t 6 %-6s - - station\nchan t 8 %-8s - - channel\n",
        "AAK    BHZ      Anna  \nTKM    LHZ      Berta \n");
  EXPECT_THAT(names(), ElementsAre("Anna", "Anna", "-"));
}

TEST_F(OwnTables, HaveTheRowThatHoldsWhenTheEpochBegins) {
  write("sta ondate::offdate", "sta t 6 %-6s - - station\nondate d 8 %8ld -1 - first\noffdate d 8 %8ld -1 - last\n",
        "AAK     1990001  2000010 Anna  \nAAK     2000011       -1 Berta \n");
  EXPECT_THAT(names(), ElementsAre("Anna", "Berta", "Anna"));
}

TEST_F(OwnTables, OfSeveralRowsHaveTheOneFurtherDown) {
  write("snet", "snet t 8 %-8s - - network\n", "KR       Anna  \nKR       Berta \n");
  EXPECT_THAT(names(), ElementsAre("Berta", "Berta", "Berta"));
}

TEST_F(OwnTables, WithAKeyThatRecordsDoNotHaveCannotBeLookedAt) {
  write("commid", "commid i 8 %8ld -1 - remark\n", "       1 Anna  \n");
  EXPECT_THAT([&] { names(); },
              ThrowsMessage<FatalFailure>("the table keeper has the key 'commid', which records do not have"));
}

TEST_F(OwnTables, AreThoseThatRecordsDoNotHaveByThemselves) {
  write("sta", "sta t 6 %-6s - - station\n", "AAK    Anna  \n");
  EXPECT_THAT(own_tables_of(db_), ElementsAre("keeper", "affiliation"));
}

}  // namespace
}  // namespace triglub
