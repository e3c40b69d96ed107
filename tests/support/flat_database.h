// Small flat-file databases for tests, in a temporary folder that goes when the object does.
//
//     FlatDatabase files("aak");
//     files.add_row("site", {{"sta", "AAK"}, {"ondate", "1990001"}, {"lat", "42.6375"}});
//     files.add_row("sitechan", {{"sta", "AAK"}, {"chan", "BHZ"}, {"ondate", "1990001"}});
//     files.write_file("resp/sts2.paz", "theoretical 1 instrument paz\n...");
//     Dbptr db;
//     ASSERT_EQ(dbopen(files.write().c_str(), "r", &db), 0);
//
// Rows follow the built-in schema: a value is written as it is given, a field that is not given gets its null text.
// A table or field that the schema does not know and a value wider than its field throw std::runtime_error.
#ifndef TRIGLUB_TESTS_SUPPORT_FLAT_DATABASE_H
#define TRIGLUB_TESTS_SUPPORT_FLAT_DATABASE_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace triglub_test {

// A field of the built-in schema as the files hold it.
struct FlatField {
  std::string name;
  std::size_t width;      // bytes
  std::string null_text;  // as the schema writes it
  bool is_text;           // texts stand at the left of their field, numbers at the right

  // The value at the field's width. An empty value gives a blank field.
  std::string padded(const std::string& value) const {
    if (value.size() > width) throw std::runtime_error("value of " + name + " is too wide: " + value);
    const std::string blanks(width - value.size(), ' ');
    return is_text ? value + blanks : blanks + value;
  }
};

using FlatTable = std::vector<FlatField>;

namespace flat_fields {

inline FlatField text(std::string name, std::size_t width) { return {std::move(name), width, "-", true}; }
inline FlatField integer(std::string name) { return {std::move(name), 8, "-1", false}; }
inline FlatField date(std::string name) { return integer(std::move(name)); }
inline FlatField real(std::string name, std::size_t width, std::string null_text) {
  return {std::move(name), width, std::move(null_text), false};
}
inline FlatField instant(std::string name) { return {std::move(name), 17, "-9999999999.99900", false}; }
inline FlatField endtime() { return {"endtime", 17, "9999999999.99900", false}; }

}  // namespace flat_fields

// The tables of the built-in schema, fields in file order.
inline const std::map<std::string, FlatTable>& flat_schema() {
  using flat_fields::date, flat_fields::endtime, flat_fields::instant, flat_fields::integer, flat_fields::real,
      flat_fields::text;
  static const std::map<std::string, FlatTable> schema = {
      {"site",
       {text("sta", 6), date("ondate"), date("offdate"), real("lat", 9, "-999.0000"), real("lon", 9, "-999.0000"),
        real("elev", 9, "-999.0000"), text("staname", 50), text("statype", 4), text("refsta", 6),
        real("dnorth", 9, "0.0000"), real("deast", 9, "0.0000"), instant("lddate")}},
      {"sitechan",
       {text("sta", 6), text("chan", 8), date("ondate"), integer("chanid"), date("offdate"), text("ctype", 4),
        real("edepth", 9, "-1.0000"), real("hang", 6, "-1.0"), real("vang", 6, "-1.0"), text("descrip", 50),
        instant("lddate")}},
      {"sensor",
       {text("sta", 6), text("chan", 8), instant("time"), endtime(), integer("inid"), integer("chanid"), date("jdate"),
        real("calratio", 16, "-1.000000"), real("calper", 16, "-1.000000"), real("tshift", 6, "-99.00"),
        text("instant", 1), instant("lddate")}},
      {"instrument",
       {integer("inid"), text("insname", 50), text("instype", 6), text("band", 1), text("digital", 1),
        real("samprate", 11, "-1.0000000"), real("ncalib", 16, "1.000000"), real("ncalper", 16, "-1.000000"),
        text("dir", 64), text("dfile", 32), text("rsptype", 6), instant("lddate")}},
      {"network",
       {text("net", 8), text("netname", 80), text("nettype", 4), text("auth", 15), integer("commid"),
        instant("lddate")}},
      {"affiliation", {text("net", 8), text("sta", 6), instant("lddate")}},
      {"snetsta", {text("snet", 8), text("fsta", 6), text("sta", 6), text("auth", 15), instant("lddate")}},
      {"schanloc",
       {text("sta", 6), text("chan", 8), text("fchan", 8), text("loc", 8), text("auth", 15), instant("lddate")}},
      {"calibration",
       {text("sta", 6), text("chan", 8), instant("time"), endtime(), text("snident", 16), text("units", 16),
        real("samprate", 11, "-1.0000000"), real("calib", 16, "0"), real("calper", 16, "-1.000000"),
        real("fc", 16, "-1.000000"), integer("commid"), instant("lddate")}},
      {"stage",
       {text("sta", 6), text("chan", 8), instant("time"), endtime(), integer("stageid"), text("ssident", 16),
        real("gnom", 16, "-1"), text("iunits", 16), text("ounits", 16), real("gcalib", 10, "-1.000000"),
        text("gtype", 20), integer("izero"), integer("decifac"), real("samprate", 11, "-1.0000000"),
        real("leadfac", 11, "-1.0000000"), text("dir", 64), text("dfile", 32), instant("lddate")}},
  };
  return schema;
}

// The tables of the KB Core dialect.
inline const std::map<std::string, FlatTable>& kb_core_schema() {
  static const std::map<std::string, FlatTable> schema = [] {
    const auto narrower_or_wider = [](const std::string& table, FlatField field) {
      static const std::map<std::string, std::size_t> widths = {{"site.lat", 11},      {"site.lon", 11},
                                                                {"sitechan.ctype", 1}, {"sensor.tshift", 16},
                                                                {"network.auth", 20},  {"network.commid", 9}};
      const auto other = widths.find(table + "." + field.name);
      if (other != widths.end()) field.width = other->second;
      return field.name == "lddate" ? FlatField{"lddate", 19, "-", true} : field;
    };
    std::map<std::string, FlatTable> made;
    for (const auto& [table, fields] : flat_schema()) {
      for (const FlatField& field : fields) made[table].push_back(narrower_or_wider(table, field));
    }
    FlatTable& affiliation = made["affiliation"];
    affiliation.insert(affiliation.end() - 1, {flat_fields::instant("time"), flat_fields::endtime()});
    return made;
  }();
  return schema;
}

// The line of a table's file for the values given, without its line end.
inline std::string flat_row(const std::string& table, std::map<std::string, std::string> values,
                            const std::map<std::string, FlatTable>& schema = flat_schema()) {
  const auto found = schema.find(table);
  if (found == schema.end()) throw std::runtime_error("no table " + table);
  std::string line;
  for (const FlatField& field : found->second) {
    const auto given = values.find(field.name);
    if (!line.empty()) line += ' ';
    line += field.padded(given == values.end() ? field.null_text : given->second);
    if (given != values.end()) values.erase(given);
  }
  if (!values.empty()) throw std::runtime_error("table " + table + " has no field " + values.begin()->first);
  return line;
}

// The same of the KB Core dialect; the load date is one, unless it is given.
inline std::string kb_core_row(const std::string& table, std::map<std::string, std::string> values) {
  values.try_emplace("lddate", "2014-03-03 11:07:06");
  return flat_row(table, std::move(values), kb_core_schema());
}

class FlatDatabase {
 public:
  // Makes the temporary folder; tables will be named NAME.TABLE in it.
  explicit FlatDatabase(std::string name = "db") : name_(std::move(name)) {
    std::string folder = (std::filesystem::temp_directory_path() / "triglub_test_XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
    folder_ = folder;
  }
  FlatDatabase(const FlatDatabase&) = delete;
  FlatDatabase& operator=(const FlatDatabase&) = delete;
  ~FlatDatabase() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  void add_row(const std::string& table, const std::map<std::string, std::string>& values) {
    add_line(table, flat_row(table, values));
  }
  // A line as it is, for rows that do not fit the schema. A line end is added.
  void add_line(const std::string& table, std::string_view line) { tables_[table].append(line).append("\n"); }

  // Writes the tables that have rows and returns the prefix to open. Can be called again after further rows.
  std::string write() const {
    for (const auto& [table, lines] : tables_) write_file(name_ + "." + table, lines);
    return prefix();
  }
  // Writes a file of the folder, with the folders on its way; returns its path.
  std::string write_file(const std::string& relative, std::string_view text) const {
    const std::filesystem::path path = folder_ / relative;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path.string());
    return path.string();
  }

  // What dbopen takes.
  std::string prefix() const { return (folder_ / name_).string(); }
  std::string folder() const { return folder_.string(); }

 private:
  std::string name_;
  std::filesystem::path folder_;
  std::map<std::string, std::string> tables_;  // the lines of each table
};

}  // namespace triglub_test

#endif
