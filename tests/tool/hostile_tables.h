// A small whole database with one value that is not as it should be, and what the command makes of it.
#ifndef TRIGLUB_TESTS_TOOL_HOSTILE_TABLES_H
#define TRIGLUB_TESTS_TOOL_HOSTILE_TABLES_H

#include <map>
#include <string>

#include "support/flat_database.h"
#include "tool/command.h"

namespace triglub_test {

inline const char* const kEditions[] = {"stationxml", "stationxml-edition1"};

// By "table.field".
using OtherValues = std::map<std::string, std::string>;

// One channel with a seismometer and a digitizer, all of whose fields that documents have are set.
class HostileTables {
 public:
  explicit HostileTables(const OtherValues& values = {}) : values_(values) {
    const std::map<std::string, std::string> channel = {{"sta", "AAA"}, {"chan", "BHZ"}};
    const std::map<std::string, std::string> at = {
        {"sta", "AAA"}, {"chan", "BHZ"}, {"time", "946684800.00000"}, {"endtime", "1500000000.00000"}};
    add("site", {{"sta", "AAA"},
                 {"ondate", "2000001"},
                 {"offdate", "2017195"},
                 {"lat", "42.6375"},
                 {"lon", "74.4942"},
                 {"elev", "1.6450"},
                 {"staname", "A place"}});
    add("sitechan", channel,
        {{"ondate", "2000001"},
         {"offdate", "2017195"},
         {"edepth", "0.0300"},
         {"hang", "0.0"},
         {"vang", "0.0"},
         {"descrip", "a channel"},
         {"chanid", "1"}});
    add("snetsta", {{"snet", "XX"}, {"fsta", "AAA"}, {"sta", "AAA"}});
    add("schanloc", channel, {{"fchan", "BHZ"}, {"loc", "00"}});
    add("network", {{"net", "XX"}, {"netname", "Network of tests"}});
    add("sensor", at, {{"inid", "1"}, {"chanid", "1"}, {"calratio", "1.0"}, {"calper", "1.0"}});
    add("instrument", {{"inid", "1"},
                       {"insname", "Seismometer"},
                       {"samprate", "40.0"},
                       {"ncalib", "0.4"},
                       {"ncalper", "1.0"},
                       {"rsptype", "V"}});
    add("calibration", at,
        {{"units", "m/s"}, {"samprate", "40.0"}, {"calib", "0.4"}, {"calper", "1.0"}, {"fc", "1.0"}});
    add("stage", at,
        {{"stageid", "1"},
         {"gnom", "2500.0"},
         {"iunits", "m/s"},
         {"ounits", "V"},
         {"gtype", "paz"},
         {"dir", "resp"},
         {"dfile", "s.paz"}});
    add("stage", at,
        {{"stageid", "2"},
         {"gnom", "1e6"},
         {"iunits", "V"},
         {"ounits", "counts"},
         {"gtype", "fir"},
         {"decifac", "2"},
         {"samprate", "40.0"},
         {"dir", "resp"},
         {"dfile", "d.fir"}});
    files_.write_file("resp/s.paz", "theoretical 1 s paz\n0.5 1\n1\n-0.037 0.037\n1\n0 0\n");
    files_.write_file("resp/d.fir", "theoretical 1 d fir\n80 1\n3\n0.25\n0.5\n0.25\n0\n");
    files_.write();
  }

  // Runs `triglub convert` with these arguments. The document goes to the file document().
  Outcome convert(const std::string& edition, const std::string& arguments = "") const {
    return run_shell("$TRIGLUB convert -p " + edition + " " + arguments + " " + files_.prefix() + " -o " + document() +
                     " 2>&1");
  }
  std::string document() const { return files_.folder() + "/document.xml"; }
  // What is wrong with the document as XML.
  std::string fault() const { return run_shell("xmllint --noout " + document() + " 2>&1").output; }
  const FlatDatabase& files() const { return files_; }

 private:
  using Row = std::map<std::string, std::string>;

  void add(const std::string& table, const Row& row, const Row& further = {}) {
    Row whole = row;
    whole.insert(further.begin(), further.end());
    for (auto& [field, value] : whole) {
      const auto other = values_.find(table + "." + field);
      if (other != values_.end()) value = other->second;
    }
    files_.add_row(table, whole);
  }

  OtherValues values_;
  FlatDatabase files_{"aaa"};
};

}  // namespace triglub_test

#endif
