#include "properties/spoil.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace triglub_properties {

namespace {

using triglub_test::FlatField;

// Each stands for a text that some reader of XML, of numbers or of times stumbles over.
const std::vector<std::string> kTexts = {"",
                                         "-",
                                         "--",
                                         "*",
                                         "&",
                                         "&amp;",
                                         "<",
                                         "</a>",
                                         "]]>",
                                         "<![CDATA[",
                                         "<!--",
                                         "\"",
                                         "'",
                                         "a b",
                                         "\t",
                                         "\x01",
                                         "\x0b",
                                         "\x1f",
                                         "\x7f",
                                         "\xc4",
                                         "\xff\xfe",
                                         "\xc3\x84",
                                         "\xef\xbf\xbe",
                                         "\xef\xbf\xbf",
                                         "\xed\xa0\x80",
                                         "\xf0\x9f\x8c\x8d",
                                         "\xf4\x90\x80\x80",
                                         "\xc2\x85",
                                         "\xe2\x80\xa8",
                                         "%s%n",
                                         "0",
                                         "00",
                                         "7",
                                         "1e5",
                                         "nan",
                                         "BHZ",
                                         "B.Z",
                                         "bhz",
                                         "BHZ_EXTRA",
                                         "TOOLONGACODE",
                                         "m/s",
                                         "M/S**2",
                                         "counts",
                                         "nm/s",
                                         "NM/S/S",
                                         "paz",
                                         "fir",
                                         "iir",
                                         "fap",
                                         std::string(80, 'x'),
                                         std::string(80, '&'),
                                         std::string(80, ']')};

const std::vector<std::string> kNumbers = {
    "0",      "-0",     "1",     "-1",     "2",      "0.5",   "-0.5",  "40",      "90",     "-90",
    "90.1",   "180",    "-180",  "180.5",  "360",    "-360",  "359.9", "1e308",   "-1e308", "1e309",
    "1e-308", "5e-324", "1e6",   "-1e6",   "999999", "1e15",  "1e19",  "1e38",    "1e-40",  "-999",
    "-9999",  "0.1",    "1e+05", "999.99", "-50.0",  "20000", "9e99",  "9999999", "-99999", "100000"};

const std::vector<std::string> kIntegers = {"0",  "-0", "1",   "-1",   "2",    "3",       "10",       "-2",
                                            "99", "-9", "100", "1000", "9999", "1000000", "99999999", "-9999999"};

const std::vector<std::string> kDays = {"-1",      "2000001", "2000060", "2012075", "2012076", "1970001", "2286324",
                                        "2286323", "9999365", "1001",    "2020366", "2999365", "1999365", "2021365"};

const std::vector<std::string> kInstants = {"-9999999999.99900",
                                            "9999999999.99900",
                                            "9999999999.999",
                                            "9999936000.0",
                                            "9999935999.9996",
                                            "0",
                                            "-0.0004",
                                            "0.0005",
                                            "-62135596800.0",
                                            "-62135596801.0",
                                            "253402300799.9",
                                            "253402300800.0",
                                            "1e308",
                                            "-1e308",
                                            "1e20",
                                            "1331769600.00",
                                            "1331769600.0005",
                                            "1262304000.0",
                                            "991180800.0",
                                            "991180799.9996",
                                            "-186710400.0",
                                            "946684800.0",
                                            "1e9",
                                            "-1e11"};

// The texts that documents show.
const struct {
  const char* table;
  const char* field;
} kShown[] = {{"snetsta", "snet"},    {"snetsta", "fsta"},      {"schanloc", "fchan"}, {"schanloc", "loc"},
              {"network", "netname"}, {"site", "staname"},      {"sitechan", "chan"},  {"instrument", "insname"},
              {"stage", "iunits"},    {"calibration", "units"}, {"stage", "ounits"}};

// Response files that are none, or not what they seem.
const std::vector<std::string> kResponses = {
    "",
    "\n",
    "# nothing\n",
    "theoretical 1 sensor paz nominal\n",
    "theoretical 1 sensor paz nominal\n1 1\n0\n0\n",
    "theoretical 1 sensor paz nominal\n1\n0\n0\n",
    "theoretical 1 sensor paz nominal\n0 0\n1\n0 0\n0\n",
    "theoretical 1 sensor paz nominal\n1e308 1\n1\n-1e308 1e308 0 0\n1\n1e-308 0 0 0\n",
    "theoretical 1 sensor paz nominal\nnan inf\n0\n0\n",
    "theoretical 1 sensor paz nominal\n1 1\n999999999\n0 0\n",
    "theoretical 1 sensor paz nominal\n1 1\n-1\n",
    "theoretical 1 digitizer fir nominal\n100\n3\n1\n2\n1\n",
    "theoretical 1 digitizer fir nominal\n100\n3\n1\n2\n1\n0\n",
    "theoretical 1 digitizer fir nominal\n0\n1\n1\n0\n",
    "theoretical 1 digitizer fir nominal\n-100\n1\n1\n0\n",
    "theoretical 1 digitizer fir nominal\n1e308\n1\n1e308\n0\n",
    "theoretical 1 digitizer fir nominal\n100\n0\n0\n",
    "theoretical 1 digitizer iir nominal\n100\n2\n1\n1\n2\n1\n0.5\n",
    "theoretical 1 digitizer iir nominal\n100\n1\n1\n1\n0\n",
    "theoretical 1 sensor fap nominal\n2\n1 1 0\n2 1 0\n",
    "theoretical 1 sensor fap nominal\n0\n",
    "theoretical 1 sensor fap2 nominal\n2\n2 1 0 0 0\n1 1 400 -1 -1\n",
    "theoretical 1 sensor odd nominal\n1\n",
    "theoretical 1 sensor paz nominal\n1 1\n0\n0\ntheoretical 2 digitizer fir nominal\n100\n1\n1\n0\n",
    "theoretical x sensor paz nominal\n1 1\n0\n0\n",
    "measured 1 <b> paz &\n1 1\n0\n0\n",
    std::string("\0\0\0", 3),
    "\xff\xfe\n"};

using Rows = std::vector<Row>;

class Spoiler {
 public:
  Spoiler(Random& random, Database& database) : random_(random), database_(database) {}

  void spoil_once() {
    if (random_.percent(20)) return spoil_shown_text();
    Rows& rows = any_table();
    if (rows.empty() || random_.percent(10)) return spoil_response();
    Row& row = any_row(rows);
    const int kind = random_.below(100);
    if (kind < 60) return set_field(row);
    if (kind < 66) return turn_span(row);
    if (kind < 76) return move_to_key_of(row, random_.one_of(rows));
    if (kind < 86) return rows.push_back(Row(row));
    if (kind < 94) return drop(rows, row);
    if (kind < 95) return rows.clear();
    repeat_value(row, rows);
  }

 private:
  Rows& any_table() {
    const auto& schema = triglub_test::flat_schema();
    table_ = std::next(schema.begin(), random_.below(static_cast<int>(schema.size())))->first;
    return database_.tables.rows[table_];
  }

  Row& any_row(Rows& rows) { return rows[static_cast<std::size_t>(random_.below(static_cast<int>(rows.size())))]; }

  void spoil_shown_text() {
    const auto& shown = random_.one_of(kShown);
    Rows& rows = database_.tables.rows[shown.table];
    const auto& fields = triglub_test::flat_schema().at(shown.table);
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&](const FlatField& of) { return of.name == shown.field; });
    if (!rows.empty()) any_row(rows)[shown.field] = odd_value(*field);
  }

  const FlatField& any_field() { return random_.one_of(triglub_test::flat_schema().at(table_)); }

  void set_field(Row& row) {
    const FlatField& field = any_field();
    const int kind = random_.below(10);
    row[field.name] = kind == 0 ? "" : kind == 1 ? field.null_text : odd_value(field);
  }

  std::string odd_value(const FlatField& field) {
    std::string value = field.is_text ? odd_text() : odd_number(field);
    // What is cut off from a number would make it another one, or none.
    if (value.size() > field.width) value = field.is_text ? value.substr(0, field.width) : "1";
    return value;
  }
  std::string odd_text() { return random_.one_of(kTexts) + (random_.percent(30) ? random_.one_of(kTexts) : ""); }
  std::string odd_number(const FlatField& field) {
    if (field.name == "ondate" || field.name == "offdate") return odd_day();
    if (field.width == 8) return random_.one_of(kIntegers);
    return random_.one_of(field.width == 17 ? kInstants : kNumbers);
  }
  // A day that is none refuses the whole database, so it is rare.
  std::string odd_day() { return random_.percent(2) ? random_.one_of(kIntegers) : random_.one_of(kDays); }

  static void turn_span(Row& row) {
    if (row.contains("time")) std::swap(row["time"], row["endtime"]);
    if (row.contains("ondate")) std::swap(row["ondate"], row["offdate"]);
  }

  static void move_to_key_of(Row& row, const Row& other) {
    for (const char* key : {"sta", "chan", "net", "snet", "fsta", "inid"}) {
      const auto found = other.find(key);
      if (found != other.end()) row[key] = found->second;
    }
  }

  static void drop(Rows& rows, const Row& row) { rows.erase(rows.begin() + (&row - rows.data())); }

  // One row's value in another, so that rows overlap, meet and double.
  void repeat_value(Row& row, const Rows& rows) {
    const Row& other = random_.one_of(rows);
    const auto found = other.find(any_field().name);
    if (found != other.end()) row[found->first] = found->second;
  }

  void spoil_response() {
    Rows& stages = database_.tables.rows["stage"];
    if (random_.percent(50) || database_.files.empty()) return name_response(stages);
    std::string& text = database_.files[any_file(random_, database_).first];
    const int kind = random_.below(4);
    if (kind == 0) text = random_.one_of(kResponses);
    if (kind == 1) text.resize(static_cast<std::size_t>(random_.below(static_cast<int>(text.size()) + 1)));
    if (kind == 2) text += any_file(random_, database_).second;
    if (kind == 3 && !text.empty()) change_byte(text);
  }
  void change_byte(std::string& text) {
    text[static_cast<std::size_t>(random_.below(static_cast<int>(text.size())))] =
        random_.pick({"9", "-", "e", " ", "\n"})[0];
  }
  void name_response(Rows& stages) {
    if (stages.empty()) return;
    Row& stage = any_row(stages);
    stage["dir"] = random_.pick({"resp", ".", "", "-", "/", "missing"});
    stage["dfile"] = "odd" + std::to_string(random_.below(static_cast<int>(kResponses.size())));
    if (random_.percent(90)) stage["dir"] = "resp";
    if (random_.percent(80)) database_.files["resp/" + stage["dfile"]] = random_.one_of(kResponses);
  }

  Random& random_;
  Database& database_;
  std::string table_;  // the one at hand
};

}  // namespace

const std::pair<const std::string, std::string>& any_file(Random& random, const Database& database) {
  return *std::next(database.files.begin(), random.below(static_cast<int>(database.files.size())));
}

void spoil(Random& random, Database& database) {
  Spoiler spoiler(random, database);
  constexpr int kMost[] = {3, 30, 100, 300};
  const int most = random.one_of(kMost);
  for (int n = random.between(1, most); n > 0; --n) spoiler.spoil_once();
}

}  // namespace triglub_properties
