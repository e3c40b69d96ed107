// The built-in schema, and schemas that users write.
#include "engine/schema/schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tables.h"

namespace triglub_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using triglub::FieldSchema;
using triglub::FieldType;
using triglub::KeyField;
using triglub::Schema;
using triglub::TableSchema;

// How a table is laid out: fields NAME TYPE WIDTH[.DECIMALS], keys behind a bar.
struct Layout {
  const char* table;
  const char* fields;
  const char* primary;
  const char* alternate;
  const char* foreign;
};

const std::vector<Layout>& layouts() {
  static const std::vector<Layout> tables = {
      {"site",
       "sta t6, ondate d8, offdate d8, lat r9.4, lon r9.4, elev r9.4, staname t50, statype t4, refsta t6, dnorth r9.4, "
       "deast r9.4, lddate e17.5",
       "sta ondate::offdate", "", ""},
      {"sitechan",
       "sta t6, chan t8, ondate d8, chanid i8, offdate d8, ctype t4, edepth r9.4, hang r6.1, vang r6.1, descrip t50, "
       "lddate e17.5",
       "sta chan ondate::offdate", "chanid", ""},
      {"sensor",
       "sta t6, chan t8, time e17.5, endtime e17.5, inid i8, chanid i8, jdate d8, calratio r16.6, calper r16.6, tshift "
       "r6.2, instant t1, lddate e17.5",
       "sta chan time::endtime", "", "inid chanid"},
      {"instrument",
       "inid i8, insname t50, instype t6, band t1, digital t1, samprate r11.7, ncalib r16.6, ncalper r16.6, dir t64, "
       "dfile t32, rsptype t6, lddate e17.5",
       "inid", "", ""},
      {"network", "net t8, netname t80, nettype t4, auth t15, commid i8, lddate e17.5", "net", "", ""},
      {"affiliation", "net t8, sta t6, lddate e17.5", "net sta", "", ""},
      {"snetsta", "snet t8, fsta t6, sta t6, auth t15, lddate e17.5", "snet fsta", "sta", ""},
      {"schanloc", "sta t6, chan t8, fchan t8, loc t8, auth t15, lddate e17.5", "sta chan", "", ""},
      {"calibration",
       "sta t6, chan t8, time e17.5, endtime e17.5, snident t16, units t16, samprate r11.7, calib r16, calper r16.6, "
       "fc "
       "r16.6, commid i8, lddate e17.5",
       "sta chan time::endtime", "", ""},
      {"stage",
       "sta t6, chan t8, time e17.5, endtime e17.5, stageid i8, ssident t16, gnom r16, iunits t16, ounits t16, gcalib "
       "r10.6, gtype t20, izero i8, decifac i8, samprate r11.7, leadfac r11.7, dir t64, dfile t32, lddate e17.5",
       "sta chan time::endtime stageid", "", ""},
  };
  return tables;
}

// The null texts that do not follow from type and decimals.
const Row& null_texts() {
  static const Row texts = {
      {"time", "-9999999999.99900"},
      {"endtime", "9999999999.99900"},
      {"lddate", "-9999999999.99900"},
      {"lat", "-999.0000"},
      {"lon", "-999.0000"},
      {"elev", "-999.0000"},
      {"tshift", "-99.00"},
      {"dnorth", "0.0000"},
      {"deast", "0.0000"},
      {"ncalib", "1.000000"},
      {"calib", "0"},
      {"gnom", "-1"},
  };
  return texts;
}

struct ExpectedField {
  std::string name, width, decimals;
  char type = ' ';

  explicit ExpectedField(const std::string& text) {
    std::istringstream words(text);
    std::string layout;
    words >> name >> layout;
    type = layout[0];
    width = layout.substr(1, layout.find('.') - 1);
    if (layout.find('.') != layout.npos) decimals = layout.substr(layout.find('.') + 1);
  }
  std::string format() const {
    if (type == 't') return "%-" + width + "s";
    if (type == 'i' || type == 'd') return "%" + width + "ld";
    return "%" + width + (decimals.empty() ? ".8g" : "." + decimals + "f");
  }
  std::string null_text() const {
    if (null_texts().contains(name)) return null_texts().at(name);
    if (type == 't') return "-";
    if (type == 'i' || type == 'd') return "-1";
    return "-1." + std::string(static_cast<std::size_t>(std::stoi(decimals)), '0');
  }
};

std::vector<ExpectedField> expected_fields(const std::string& list) {
  std::vector<ExpectedField> fields;
  std::istringstream parts(list);
  for (std::string part; std::getline(parts, part, ',');) fields.emplace_back(part);
  return fields;
}

std::string key_text(const std::vector<KeyField>& key) {
  std::string text;
  for (const KeyField& field : key) {
    text += (text.empty() ? "" : " ") + field.name + (field.is_range() ? "::" + field.end : "");
  }
  return text;
}

std::size_t kb_core_width(const std::string& table, const std::string& name) {
  const FlatTable& fields = kb_core_schema().at(table);
  return std::find_if(fields.begin(), fields.end(), [&](const FlatField& field) { return field.name == name; })->width;
}

TEST(BuiltinSchema, HasTheTablesInOrder) {
  Texts names;
  for (const TableSchema& table : Schema::builtin()->tables()) names.push_back(table.name);
  Texts expected;
  for (const Layout& layout : layouts()) expected.emplace_back(layout.table);
  EXPECT_EQ(names, expected);
}

TEST(BuiltinSchema, HasEveryFieldAsTheFormatHasIt) {
  for (const Layout& layout : layouts()) {
    const auto schema = Schema::builtin();
    const TableSchema& table = schema->tables()[static_cast<std::size_t>(schema->find(layout.table))];
    const auto expected = expected_fields(layout.fields);
    ASSERT_EQ(table.fields.size(), expected.size()) << layout.table;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const FieldSchema& field = table.fields[i];
      SCOPED_TRACE(std::string(layout.table) + "." + expected[i].name);
      EXPECT_EQ(field.name, expected[i].name);
      EXPECT_EQ(static_cast<char>(field.type), expected[i].type);
      EXPECT_EQ(std::to_string(field.width), expected[i].width);
      EXPECT_EQ(field.format, expected[i].format());
      EXPECT_EQ(field.null_text, expected[i].null_text());
      EXPECT_FALSE(field.description.empty());
    }
    EXPECT_FALSE(table.description.empty());
  }
}

TEST(BuiltinSchema, HasTheKeys) {
  for (const Layout& layout : layouts()) {
    const auto schema = Schema::builtin();
    const TableSchema& table = schema->tables()[static_cast<std::size_t>(schema->find(layout.table))];
    EXPECT_EQ(key_text(table.primary), layout.primary) << layout.table;
    EXPECT_EQ(key_text(table.alternate), layout.alternate) << layout.table;
    EXPECT_EQ(key_text(table.foreign), layout.foreign) << layout.table;
  }
}

TEST(BuiltinSchema, StatesUnits) {
  const auto schema = Schema::builtin();
  const Row units = {{"site.lat", "degrees"},       {"site.lon", "degrees"},      {"site.elev", "km"},
                     {"site.dnorth", "km"},         {"site.deast", "km"},         {"sitechan.edepth", "km"},
                     {"sitechan.hang", "degrees"},  {"sitechan.vang", "degrees"}, {"instrument.samprate", "1/s"},
                     {"instrument.ncalib", "1e-9"}, {"instrument.ncalper", "s"},  {"calibration.calib", "1e-9"},
                     {"calibration.calper", "s"},   {"calibration.fc", "Hz"}};
  for (const auto& [name, unit] : units) {
    const std::size_t point = name.find('.');
    const TableSchema& table = schema->tables()[static_cast<std::size_t>(schema->find(name.substr(0, point)))];
    EXPECT_EQ(table.fields[static_cast<std::size_t>(table.find(name.substr(point + 1)))].unit, unit) << name;
  }
}

TEST(BuiltinSchema, IsWhatTheShippedFileHolds) {
  const auto shipped = Schema::named(TRIGLUB_SOURCE_DIR "/data/schemas/css3.0.pf", ".");
  ASSERT_NE(shipped, nullptr);
  const auto builtin = Schema::builtin();
  ASSERT_EQ(shipped->tables().size(), builtin->tables().size());
  for (std::size_t t = 0; t < builtin->tables().size(); ++t) {
    ASSERT_EQ(shipped->tables()[t].fields.size(), builtin->tables()[t].fields.size());
    for (std::size_t f = 0; f < builtin->tables()[t].fields.size(); ++f) {
      EXPECT_EQ(shipped->tables()[t].fields[f].detail, builtin->tables()[t].fields[f].detail);
    }
  }
}

// What is different in the other dialect; all else is the same.
TEST(KbCoreSchema, HasTheStandardTablesWithOtherWidths) {
  const Row widths = {{"site.lat", "%11.6f"},      {"site.lon", "%11.6f"},    {"sitechan.ctype", "%-1s"},
                      {"sensor.tshift", "%16.2f"}, {"network.auth", "%-20s"}, {"network.commid", "%9ld"}};
  unsetenv("TRIGLUB_PFPATH");
  const auto schema = Schema::kb_core();
  for (const TableSchema& table : schema->tables()) {
    const auto builtin = Schema::builtin();
    const TableSchema& standard = builtin->tables()[static_cast<std::size_t>(builtin->find(table.name))];
    for (const FieldSchema& field : table.fields) {
      const std::string name = table.name + "." + field.name;
      SCOPED_TRACE(name);
      const int index = standard.find(field.name);
      if (table.name == "affiliation" && index < 0) continue;
      ASSERT_GE(index, 0);
      const FieldSchema& same = standard.fields[static_cast<std::size_t>(index)];
      EXPECT_EQ(field.type, same.type);
      EXPECT_EQ(field.unit, same.unit);
      EXPECT_EQ(field.null_integer, same.null_integer);
      EXPECT_EQ(field.null_real, same.null_real);
      const std::string other = field.name == "lddate"  ? "%19.5f"
                                : widths.contains(name) ? widths.at(name)
                                                        : same.format;
      EXPECT_EQ(field.format, other);
      EXPECT_EQ(static_cast<std::size_t>(field.width), kb_core_width(table.name, field.name));
    }
    EXPECT_EQ(table.name == "affiliation" ? "net sta time::endtime" : key_text(standard.primary),
              key_text(table.primary));
  }
  EXPECT_EQ(schema->tables().size(), Schema::builtin()->tables().size());
}

TEST(KbCoreSchema, HasTimesOfAffiliations) {
  const auto schema = Schema::kb_core();
  const TableSchema& table = schema->tables()[static_cast<std::size_t>(schema->find("affiliation"))];
  Texts fields;
  for (const FieldSchema& field : table.fields) {
    fields.push_back(field.name + " " + field.format + " " + field.null_text);
  }
  EXPECT_THAT(fields, ElementsAre("net %-8s -", "sta %-6s -", "time %17.5f -9999999999.99900",
                                  "endtime %17.5f 9999999999.99900", "lddate %19.5f -9999999999.99900"));
}

TEST(KbCoreSchema, IsFoundByItsName) {
  unsetenv("TRIGLUB_PFPATH");
  EXPECT_EQ(Schema::named("kbcore", "/nowhere"), Schema::kb_core());
}

TEST(ParseKeyField, TellsRangesFromFields) {
  EXPECT_EQ(triglub::parse_key_field("sta"), (KeyField{"sta", ""}));
  EXPECT_EQ(triglub::parse_key_field("ondate::offdate"), (KeyField{"ondate", "offdate"}));
  EXPECT_EQ(triglub::parse_key_field("a.time::a.endtime"), (KeyField{"a.time", "a.endtime"}));
}

// --- schema files --------------------------------------------------------------------------------------------------

class SchemaFile : public ::testing::Test {
 protected:
  SchemaFile() { unsetenv("TRIGLUB_PFPATH"); }

  // The complaints that reading this schema brings, the path left out.
  Texts complaints_of(const std::string& text) {
    const std::string path = files_.write_file("own.pf", text);
    CollectedLog log;
    EXPECT_EQ(Schema::named("own", files_.folder()), nullptr);
    Texts lines = log.lines();
    for (std::string& line : lines) {
      const std::size_t found = line.find(path);
      if (found != line.npos) line.replace(found, path.size(), "FILE");
    }
    return lines;
  }
  // The same of a schema of one table `t` with these lines.
  Texts complaints_of_table(const std::string& lines) {
    return complaints_of("tables &Tbl{\n t\n}\nt &Arr{\n" + lines + "\n}\n");
  }
  static std::string fields(const std::string& lines) {
    return " fields &Tbl{\n a t 6 %-6s - - text\n d d 8 %8ld -1 - date\n e e 17 %17.5f -1 - time\n r r 9 %9.4f -1 - "
           "real\n" +
           lines + "\n}\n";
  }
  static std::string fault(const std::string& text) { return "warning: schema FILE: table 't': " + text; }

  FlatDatabase files_;
};

TEST_F(SchemaFile, IsRefusedWithTheFaultNamed) {
  EXPECT_THAT(complaints_of("schema own\n"), ElementsAre("warning: schema FILE: no list 'tables'"));
  EXPECT_THAT(complaints_of("tables &Tbl{\n}\n"), ElementsAre("warning: schema FILE: no list 'tables'"));
  EXPECT_THAT(complaints_of("tables &Tbl{\n t\n}\n"), ElementsAre(fault("no list of fields")));
  EXPECT_THAT(complaints_of_table(" primary a\n"), ElementsAre(fault("no list of fields")));
}

TEST_F(SchemaFile, NamesTheFieldLineThatIsFaulty) {
  struct Case {
    const char* line;
    const char* fault;
  };
  for (const auto& [line, what] : std::vector<Case>{
           {"x", "expected NAME TYPE WIDTH FORMAT NULL UNIT DESCRIPTION"},
           {"x t 6 %-6s -", "expected NAME TYPE WIDTH FORMAT NULL UNIT DESCRIPTION"},
           {"x s 6 %-6s - - text", "the type must be one of t i r e d"},
           {"x tt 6 %-6s - - text", "the type must be one of t i r e d"},
           {"x t 0 %-6s - - text", "the width must be 1 to 1000"},
           {"x t -6 %-6s - - text", "the width must be 1 to 1000"},
           {"x t 1001 %-6s - - text", "the width must be 1 to 1000"},
           {"x t six %-6s - - text", "the width must be 1 to 1000"},
           {"x t 6.0 %-6s - - text", "the width must be 1 to 1000"},
           {"x i 8 %8ld - - number", "the null of an integer or date must be an integer"},
           {"x d 8 %8ld 1.5 - date", "the null of an integer or date must be an integer"},
           {"x r 8 %8.2f - - real", "the null of a real or time must be a number"},
           {"x e 17 %17.5f nan - time", "the null of a real or time must be a number"},
           {"a t 6 %-6s - - again", "field 'a' is there twice"},
       }) {
    const bool shows_line = std::string(what) != "field 'a' is there twice";
    EXPECT_THAT(complaints_of_table(fields(line)),
                ElementsAre(fault(std::string(what) + (shows_line ? ": '" + std::string(line) + "'" : ""))));
  }
}

TEST_F(SchemaFile, HasAThousandTablesFieldsAndKeyFieldsAtMost) {
  const auto fields_of = [](int count) {
    std::string text = "fields &Tbl{\n";
    for (int i = 0; i < count; ++i) text += "f" + std::to_string(i) + " t 1 %-1s - - a text\n";
    return text + "}\n";
  };
  const auto tables = [&](int count) {
    std::string text = "tables &Tbl{\n";
    for (int i = 0; i < count; ++i) text += "t\n";
    return text + "}\nt &Arr{\n" + fields_of(1) + "}\n";
  };
  const auto key_of = [](int count) {
    std::string text = "primary";
    for (int i = 0; i < count; ++i) text += " f0";
    return text + "\n";
  };
  const auto is_taken = [&](const std::string& text) {
    files_.write_file("own.pf", text);
    return Schema::named("own", files_.folder()) != nullptr;
  };
  const auto table_of = [](const std::string& lines) { return "tables &Tbl{\n t\n}\nt &Arr{\n" + lines + "}\n"; };
  for (const int count : {999, 1000}) {
    EXPECT_TRUE(is_taken(tables(count)));
    EXPECT_TRUE(is_taken(table_of(fields_of(count))));
    EXPECT_TRUE(is_taken(table_of(key_of(count) + fields_of(1))));
  }
  EXPECT_THAT(complaints_of(tables(1001)), ElementsAre("warning: schema FILE: more than 1000 tables"));
  EXPECT_THAT(complaints_of(table_of(fields_of(1001))), ElementsAre(fault("more than 1000 fields")));
  EXPECT_THAT(complaints_of(table_of(key_of(1001) + fields_of(1))),
              ElementsAre(fault("more than 1000 fields in a key")));
}

TEST_F(SchemaFile, ShowsOfALongTextWhatItIsFoundBy) {
  const std::string name(100000, 'x');
  EXPECT_THAT(
      complaints_of_table(fields(name)),
      ElementsAre(fault("expected NAME TYPE WIDTH FORMAT NULL UNIT DESCRIPTION: '" + std::string(100, 'x') + "...'")));
  EXPECT_THAT(complaints_of_table(" primary " + name + "\n" + fields("")),
              ElementsAre(fault("the key field '" + std::string(100, 'x') + "...' is no field of the table")));
}

TEST_F(SchemaFile, IsNotReadFromAPipe) {
  ASSERT_EQ(mkfifo((files_.folder() + "/own.pf").c_str(), 0600), 0);
  CollectedLog log;
  EXPECT_EQ(Schema::named("own.pf", files_.folder()), nullptr);
  EXPECT_THAT(log.lines(), ElementsAre("warning: " + files_.folder() + "/own.pf: not a regular file",
                                       "warning: schema " + files_.folder() + "/own.pf: cannot be read"));
}

TEST_F(SchemaFile, NamesTheKeyThatIsFaulty) {
  const auto with_key = [&](const std::string& key) { return complaints_of_table(" " + key + "\n" + fields("")); };
  EXPECT_THAT(with_key("primary a x"), ElementsAre(fault("the key field 'x' is no field of the table")));
  EXPECT_THAT(with_key("alternate x"), ElementsAre(fault("the key field 'x' is no field of the table")));
  EXPECT_THAT(with_key("foreign x"), ElementsAre(fault("the key field 'x' is no field of the table")));
  EXPECT_THAT(with_key("primary d::x"), ElementsAre(fault("the key field 'x' is no field of the table")));
  EXPECT_THAT(with_key("primary ::d"), ElementsAre(fault("the key field '' is no field of the table")));
  EXPECT_THAT(with_key("primary a::a"), ElementsAre(fault("the range 'a::a' needs two dates or two times")));
  EXPECT_THAT(with_key("primary d::a"), ElementsAre(fault("the range 'd::a' needs two dates or two times")));
  EXPECT_THAT(with_key("primary d::e"), ElementsAre(fault("the range 'd::e' needs two dates or two times")));
  EXPECT_THAT(with_key("primary e::d"), ElementsAre(fault("the range 'e::d' needs two dates or two times")));
}

TEST_F(SchemaFile, ThatIsMalformedIsNamedByTheReaderOfParameterFiles) {
  const Texts lines = complaints_of("tables &Tbl{\n t\n");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind("warning: FILE:", 0), 0u) << lines[0];
}

TEST_F(SchemaFile, TakesWidthsUpToTheLimit) {
  files_.write_file("own.pf",
                    "tables &Tbl{\n t\n}\nt &Arr{\n fields &Tbl{\n a t 1000 %s - - text\n b t 1 %s - - x\n}\n}\n");
  const auto schema = Schema::named("own", files_.folder());
  ASSERT_NE(schema, nullptr);
  EXPECT_EQ(schema->tables()[0].fields[0].width, 1000);
  EXPECT_EQ(schema->tables()[0].fields[1].width, 1);
}

TEST_F(SchemaFile, IsLookedForBesideTheDatabaseThenInTheDataFolders) {
  const auto one_table = [](const std::string& name) {
    return "tables &Tbl{\n " + name + "\n}\n" + name + " &Arr{\n fields &Tbl{\n a t 6 %-6s - - text\n}\n}\n";
  };
  const auto table_of_own = [&] { return Schema::named("own", files_.folder())->tables()[0].name; };
  setenv("TRIGLUB_PFPATH", (files_.folder() + "/none::" + files_.folder() + "/p1:" + files_.folder() + "/p2").c_str(),
         1);
  files_.write_file("p2/schemas/own.pf", one_table("second"));
  EXPECT_EQ(table_of_own(), "second");
  files_.write_file("p1/schemas/own.pf", one_table("first"));
  EXPECT_EQ(table_of_own(), "first");
  files_.write_file("own.pf", one_table("beside"));
  EXPECT_EQ(table_of_own(), "beside");
  EXPECT_EQ(Schema::named("p2/schemas/own.pf", files_.folder())->tables()[0].name, "second");
  EXPECT_EQ(Schema::named(files_.folder() + "/p1/schemas/own.pf", "/nowhere")->tables()[0].name, "first");
}

TEST_F(SchemaFile, OfTheDataFoldersStandsInForTheOneCompiledIn) {
  EXPECT_EQ(Schema::standard(), Schema::builtin());
  EXPECT_EQ(Schema::named("css3.0", files_.folder()), Schema::builtin());
  files_.write_file("p/schemas/css3.0.pf",
                    "tables &Tbl{\n only\n}\nonly &Arr{\n fields &Tbl{\n a t 6 %-6s - - text\n}\n}\n");
  setenv("TRIGLUB_PFPATH", (files_.folder() + "/p").c_str(), 1);
  EXPECT_EQ(Schema::standard()->tables()[0].name, "only");
  EXPECT_EQ(Schema::named("css3.0", files_.folder())->tables()[0].name, "only");
}

TEST_F(SchemaFile, ThatIsNotThereIsReported) {
  for (const char* name : {"nothing", "nothing.pf", "./nothing"}) {
    CollectedLog log;
    EXPECT_EQ(Schema::named(name, files_.folder()), nullptr);
    EXPECT_EQ(log.lines().size(), 1u) << name;
  }
}

// A schema of other widths, a further field and a further table carries a whole database.
TEST_F(SchemaFile, ChangesWidthsFieldsAndTables) {
  files_.write_file(
      "own.pf",
      "tables &Tbl{\n site\n remark\n}\n"
      "site &Arr{\n primary sta\n fields &Tbl{\n"
      "  sta t 3 %-3s _ - station\n  depth i 4 %4ld 9999 m depth\n  good t 1 %s ? - flag\n }\n}\n"
      "remark &Arr{\n primary sta\n fields &Tbl{\n  sta t 5 %-5s - - station\n  said t 10 %-10s - - text\n }\n}\n");
  files_.write_file("db", "schema own\n");
  files_.write_file("db.site", "AAK   12 y\n_   9999\nBBB     \n");
  files_.write_file("db.remark", "AAK   fine\nBBB   noisy site\n");
  Dbptr db;
  ASSERT_EQ(dbopen(files_.prefix().c_str(), "r", &db), 0);
  const Dbptr site = table_of(db, "site");
  EXPECT_THAT(records_of(site, {"sta", "depth", "good"}), ElementsAre("AAK 12 y", "_ 9999 ?", "BBB 9999 ?"));
  std::int64_t depth = 0;
  ASSERT_EQ(dbgetv(at(site, 2), nullptr, "depth", &depth, nullptr), 0);
  EXPECT_EQ(depth, 9999);
  EXPECT_THAT(records_of(process(db, {"dbopen site", "dbjoin remark"}), {"site.sta", "said"}),
              ElementsAre("AAK fine", "BBB noisy site"));
  EXPECT_FALSE(is_view(table_of(db, "sitechan")));
  EXPECT_THAT(triglub::table_names(db), ElementsAre("site", "remark"));
  dbclose(db);
}

}  // namespace
}  // namespace triglub_test
