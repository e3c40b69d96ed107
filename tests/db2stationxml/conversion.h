// A small network in a flat-file database, a parameter file that describes a whole document, and the conversion.
#ifndef TRIGLUB_TESTS_DB2STATIONXML_CONVERSION_H
#define TRIGLUB_TESTS_DB2STATIONXML_CONVERSION_H

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "db2stationxml.h"
#include "platform/database.h"
#include "platform/parfile.h"
#include "support/flat_database.h"

namespace triglub_test {

using Row = std::map<std::string, std::string>;

// A database of stations and channels, opened when first asked for.
class Stations {
 public:
  ~Stations() {
    if (db_.database >= 0) dbclose(db_);
  }

  void add_network(const std::string& net) { files_.add_row("network", {{"net", net}, {"netname", net + " network"}}); }
  void add_station(const std::string& net, const std::string& sta, const std::string& lat = "42.6375") {
    files_.add_row("snetsta", {{"snet", net}, {"fsta", sta}, {"sta", sta}});
    files_.add_row("site", {{"sta", sta}, {"ondate", "1990001"}, {"lat", lat}, {"lon", "74.4942"}, {"elev", "1.6450"}});
  }
  // A channel epoch from 2001-01-01 on with its location, sensor and calibration, but no stages.
  void add_channel(const std::string& sta, const std::string& chan, const std::string& loc = "00",
                   const std::string& samprate = "40.0") {
    files_.add_row("sitechan", {{"sta", sta}, {"chan", chan}, {"ondate", "2001001"}});
    files_.add_row("schanloc", {{"sta", sta}, {"chan", chan}, {"fchan", chan.substr(0, 3)}, {"loc", loc}});
    add_sensor(sta, chan);
    files_.add_row("calibration",
                   {{"sta", sta}, {"chan", chan}, {"time", begin}, {"samprate", samprate}, {"fc", "1.0"}});
  }
  void add_sensor(const std::string& sta, const std::string& chan, const Row& more = {}) {
    Row values = {{"sta", sta}, {"chan", chan}, {"time", begin}};
    values.insert(more.begin(), more.end());
    files_.add_row("sensor", values);
  }
  void add_stage(const std::string& sta, const std::string& chan, int stageid, const Row& more = {}) {
    Row values = {{"sta", sta},      {"chan", chan},  {"time", begin},  {"stageid", std::to_string(stageid)},
                  {"iunits", "m/s"}, {"ounits", "V"}, {"gnom", "1500"}, {"samprate", "40.0"}};
    for (const auto& [field, value] : more) values[field] = value;
    files_.add_row("stage", values);
  }
  void write_file(const std::string& file, const std::string& text) { files_.write_file(file, text); }
  void write_response(const std::string& file) {
    files_.write_file(file, "theoretical 1 instrument paz author\n1.0 1.0\n1\n-0.1 0.2\n1\n0 0\n");
  }

  void add_row(const std::string& table, const Row& values) { files_.add_row(table, values); }

  // Gives the database a schema of its own: the built-in one, where the table has `to` in place of `from`.
  void change_schema(const std::string& table, const std::string& from, const std::string& to) {
    std::ifstream file(TRIGLUB_SOURCE_DIR "/data/schemas/css3.0.pf");
    std::string schema((std::istreambuf_iterator<char>(file)), {});
    const std::size_t found = schema.find(from, schema.find("\n" + table + " &Arr{"));
    if (found == std::string::npos) throw std::runtime_error("the schema has no " + from);
    files_.write_file("own.pf", schema.replace(found, from.size(), to));
    files_.write_file("db", "schema own\n");
  }

  Dbptr database() {
    if (db_.database < 0 && dbopen(files_.write().c_str(), "r", &db_) != 0) throw std::runtime_error("dbopen");
    return db_;
  }

  static constexpr const char* begin = "978307200.00000";  // 2001-01-01

 private:
  FlatDatabase files_;
  Dbptr db_;
};

inline std::string definition(const std::string& group, const std::string& name, const std::string& attributes,
                              const std::string& elements) {
  return group + " &Arr{\nname " + name + "\nattributes &Tbl{\n" + attributes + "}\nelements &Tbl{\n" + elements +
         "}\n}\n";
}

// The date formats, which every conversion reads, and the root group's name.
inline std::string preamble(const std::string& root) {
  return "epochtime_xmlstring_format %GT%H:%M:%S.%u\njdate_xmlstring_format %G\nroot_node " + root + "\n";
}

// Networks, stations, channels, stages.
inline std::string whole_tree() {
  return preamble("root") +
         definition("root", "FDSNStationXML", "schemaVersion - text 1.1\n",
                    "Source - text Example\nnetwork - CATEGORIZED_GROUP snetsta.snet\n") +
         definition("network", "Network", "code - string snetsta.snet\n",
                    "SelectedNumberStations - count sitechan.sta\nstation - CATEGORIZED_GROUP sitechan.sta\n") +
         definition("station", "Station", "code - string sitechan.sta\n",
                    "Latitude - deg_lat site.lat\nchannel - CATEGORIZED_GROUP sitechan.chan\n") +
         definition("channel", "Channel", "code - string schanloc.fchan\nlocationCode - string schanloc.loc\n",
                    "SampleRate - float calibration.samprate\nresponse_group - GROUP\n") +
         definition("response_group", "Response", "", "stage - CATEGORIZED_BY_NUMBER stage.stageid\n") +
         definition("stage", "Stage", "number - integer stage.stageid\n", "response - STAGE stage\n");
}

// The text that stands for a stage of m/s to V without a response file.
inline std::string digital_stage() {
  return "          <Coefficients>\n"
         "           <InputUnits><Name>m/s</Name></InputUnits>\n"
         "           <OutputUnits><Name>V</Name></OutputUnits>\n"
         "           <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>\n"
         "          </Coefficients>\n"
         "        <Decimation>\n"
         "          <InputSampleRate>40 </InputSampleRate>\n"
         "          <Factor>1</Factor>\n"
         "          <Offset>0</Offset>\n"
         "          <Delay>0</Delay>\n"
         "          <Correction>0</Correction>\n"
         "        </Decimation>\n"
         "          <StageGain>\n"
         "            <Value>1500</Value>\n"
         "            <Frequency>1</Frequency>\n"
         "          </StageGain>\n";
}

class Conversion : public ::testing::Test {
 protected:
  ~Conversion() override {
    pffree(pf_);
    freearr(subset_, nullptr);
  }

  // KR with AAK (two channels, one of them with a stage) and ANMO of IU (one channel).
  void add_two_networks() {
    stations_.add_network("KR");
    stations_.add_network("IU");
    stations_.add_station("KR", "AAK");
    stations_.add_station("IU", "ANMO", "34.9459");
    stations_.add_channel("AAK", "BHZ");
    stations_.add_channel("AAK", "BHN");
    stations_.add_channel("ANMO", "BHZ", "10");
    stations_.add_stage("AAK", "BHZ", 1);
  }
  // A network KR with the station AAK and channels of these names.
  void add_channels(std::initializer_list<const char*> names) { add_channels(stations_, names); }
  static void add_channels(Stations& stations, std::initializer_list<const char*> names) {
    stations.add_network("KR");
    stations.add_station("KR", "AAK");
    for (const char* name : names) stations.add_channel("AAK", name);
  }

  Pf* parse(const std::string& text) {
    pffree(pf_);
    pf_ = nullptr;
    if (pfparse(text, "test", &pf_) != 0) throw std::runtime_error("pfparse");
    return pf_;
  }
  // The document of the stations and the parameter file, which is the whole tree unless parsed before.
  std::string convert(unsigned int flags) { return convert(stations_, flags); }
  std::string convert(Stations& stations, unsigned int flags) {
    if (pf_ == nullptr) parse(whole_tree());
    std::ostringstream out;
    EXPECT_EQ(db2stationxml(stations.database(), pf_, subset_, out, flags), 0);
    return out.str();
  }

  Stations stations_;
  Pf* pf_ = nullptr;
  rbtree* subset_ = newarr(nullptr);
};

}  // namespace triglub_test

#endif
