#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "reference/edition2/random_case.h"
#include "reference/edition2/random_files.h"
#include "reference/edition2/random_stages.h"

namespace triglub_reference::edition2 {

namespace {

// Days that follow one another over the end of a year.
struct Day {
  const char* yearday;
  long days;  // since 1970-01-01
};
constexpr Day kDays[] = {
    {"1999363", 10954}, {"1999364", 10955}, {"1999365", 10956}, {"2000001", 10957}, {"2000002", 10958}};
constexpr int kLastDay = static_cast<int>(std::size(kDays)) - 1;

// The second that is behind the last millisecond of its day when it is rounded, among others.
constexpr double kSeconds[] = {0, 0, 0, 0.0004, 0.0005, 3600, 43200.5, 43200.5, 86399.9994, 86399.9996};

std::string seconds_text(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.5f", seconds);
  return text;
}

class TableMaker {
 public:
  TableMaker(Random& random, Tables& tables) : random_(random), tables_(tables) {}

  void make(int most_stations) {
    for (int n = random_.between(1, most_stations); n > 0; --n) {
      stations_.push_back(n > 3 ? "S" + std::to_string(n)
                                : random_.pick({"AAK", "AAK", "AAK", "A*", "(A", "&", "Ä", "A B", " B", "-", "\"Q'"}));
    }
    for (int n = random_.between(1, 4); n > 0; --n) add_network();
    for (int n = random_.between(0, 4); n > 0; --n) add_instrument();
    for (const std::string& sta : stations_) add_station(sta);
  }

 private:
  void add(const std::string& table, const char* number_field, Row row) {
    row[number_field] = std::to_string(++rows_);
    row["lddate"] = random_.pick({"1.00000", "1.00000", "2.00000", "-9999999999.99900", ""});
    tables_.rows[table].push_back(row);
  }

  void add_network() {
    add("network", "auth",
        {{"net", any_network()},
         {"netname", random_.pick({"A network", "R & D <one> \"two\"", "", "-", "tab\there", "bell\x07here", "]]>"})},
         {"nettype", random_.pick({"ar", "-", "lo"})},
         {"commid", random_.pick({"1", "2", "10", "-1", ""})}});
  }

  void add_instrument() {
    Row row = {{"inid", random_.pick({"1", "2", "-1"})},
               {"insname", random_.pick({"STS-2", "a <b>", "-", "12.50"})},
               {"samprate", random_.pick({"40.0000000", "100", "-1.0000000", "0.0", "0.1"})},
               {"ncalib", random_.pick({"1.000000", "", "0.4", "0.063500", "2400", "-1.5", "0", "1.25"})},
               {"ncalper", random_.pick({"1", "-1.000000", "20", "0.3"})}};
    if (random_.percent(60)) name_chain(row);
    add("instrument", "rsptype", row);
    std::string& type = tables_.rows["instrument"].back()["rsptype"];
    type.insert(0, random_.pick({"", "V", "a", "D", "x"}));
  }

  // A file with the filters of a whole response: of ground motion first, then digital ones whose rates go down.
  void name_chain(Row& row) {
    row["dir"] = random_.pick({"resp", "-"});
    row["dfile"] = random_.pick({"chain", "whole", "missing"});
    const std::string name = (row["dir"] == "-" ? "" : row["dir"] + "/") + row["dfile"];
    if (row["dfile"] == "missing" || tables_.files.contains(name)) return;
    ResponseFile file = random_file(random_);
    if (random_.percent(60)) file.filters = {plain_sensor()};
    int rate = random_.pick({"400", "800", "2000", "300"}) == "300" ? 300 : 800;
    for (int n = random_.between(0, 3); n > 0; --n) {
      file.filters.push_back(random_filter(random_, random_.pick({"fir", "fir", "iir", "paz"})));
      Filter& last = file.filters.back();
      if (last.type == "fir" || last.type == "iir") last.head[0] = std::to_string(rate);
      rate /= 2;
    }
    tables_.files[name] = file;
  }

  Filter plain_sensor() {
    if (random_.percent(50)) {
      return {"paz", {"1"}, {{"-0.037", "0.037"}, {"-0.037", "-0.037"}, {"-1131", "0"}}, {{"0", "0"}, {"0", "0"}}};
    }
    return {"fap", {}, {{"0.01", "0.5", "90"}, {"0.5", "2", "10"}, {"2", "1.5", "-30"}, {"10", "0.1", "-400"}}, {}};
  }

  std::string any_network() { return random_.pick({"KR", "KR", "KR", "K", "A&B", "K", "-", "*"}); }

  void add_station(const std::string& sta) {
    const bool is_core = random_.percent(30);
    for (int n = is_core ? random_.between(1, 3) : random_.percent(10); n > 0; --n) {
      tables_.rows["affiliation"].push_back({{"net", any_network()}, {"sta", sta}});
    }
    for (int n = is_core ? 0 : random_.percent(70) ? 1 : random_.between(0, 4); n > 0; --n) {
      add("snetsta", "auth", {{"snet", any_network()}, {"fsta", random_.percent(70) ? sta : "F"}, {"sta", sta}});
    }
    for (int n = random_.percent(90) ? random_.between(1, 3) : 0; n > 0; --n) add_site(sta);
    for (int n = random_.percent(85) ? random_.between(1, 2) : 0; n > 0; --n) {
      add_channel(sta, random_.pick({"BHZ", "BHZ", "BHZ", "L(", "<>", "L(", "-"}));
    }
  }

  void add_site(const std::string& sta) {
    add("site", "refsta",
        days({{"sta", sta},
              {"lat", random_.pick({"42.6375", "42.637512", "-999.0000", "90", "-90.0", "90.0001", "-0.0"})},
              {"lon", random_.pick({"74.4942", "190", "-180", "180", "-999.0000", "-181.25", "360", "540.1"})},
              {"elev", random_.pick({"1.6450", "-999.0000", "0", "0.0123", "1e-06", "-0.0010", "3.3"})},
              {"staname", random_.pick({"A place", "<&>", "-", "", "12", "  in  between", "Ä\"Ö'"})},
              {"statype", random_.pick({"ss", "-", "12", "9", "009"})}}));
  }

  void add_channel(const std::string& sta, const std::string& chan) {
    const Row key = {{"sta", sta}, {"chan", chan}};
    for (int n = random_.percent(70) ? 1 : random_.between(0, 2); n > 0; --n) add_location(key);
    for (int n = random_.between(1, 3); n > 0; --n) add_epoch(key);
    for (int n = random_.between(0, 3); n > 0; --n) add_sensor(key);
    for (int n = random_.between(0, 2); n > 0; --n) add_calibration(key);
    if (random_.percent(65)) add_stages(key);
  }

  void add_location(Row row) {
    row["fchan"] = random_.pick({"BHZ", "LHZ", "-", "B.Z"});
    row["loc"] = random_.pick({"00", "10", "-", "", "7", "--"});
    add("schanloc", "auth", row);
  }

  void add_epoch(Row row) {
    row = days(row);
    row["chanid"] = random_.pick({"1", "2", "-1"});
    row["edepth"] = random_.pick({"0.0000", "0.1", "-1", "1.2345", "-1.0000"});
    row["hang"] = random_.pick({"0.0", "360", "-1.0", "-10", "720.5", "90", "359.9"});
    row["vang"] = random_.pick({"0.0", "90", "-1.0", "270", "-90", "180", "45.5", "180.1"});
    row["ctype"] = random_.pick({"n", "-", "c"});
    add("sitechan", "descrip", row);
  }

  void add_sensor(Row row) {
    row = instants(row);
    row["inid"] = random_.pick({"1", "2", "3", "-1"});
    row["chanid"] = random_.pick({"1", "1", "2", "-1", "-1"});
    row["calratio"] = random_.pick({"1", "-1.000000", "0.5", "1.0005"});
    row["calper"] = random_.pick({"-1.000000", "-1.000000", "1", "10", "0"});
    add("sensor", "tshift", row);
  }

  void add_calibration(Row row) {
    row = instants(row);
    row["samprate"] = random_.pick({"40.0000000", "0", "-1", "1.0", "123.456789", "100000"});
    row["fc"] = random_.pick({"1.0", "0.05", "-1.000000", "1e-07", "1234567"});
    row["units"] = random_.pick({"nm/s", "-", "V", "<V>", "counts"});
    row["calib"] = random_.pick({"0", "1.5", "0.3", "1", "0.39811", "12345678.9", "0.3333333333333"});
    row["calper"] = random_.pick({"1", "0", "-1.000000", "20.000000", "0.3", "14.285714", "0.0123456", "0.0500000001"});
    add("calibration", "snident", row);
  }

  // Of a channel: any rows, or a chain.
  void add_stages(const Row& key) {
    if (random_.percent(40)) {
      for (int n = random_.between(1, 5); n > 0; --n) add_stage(key);
    } else {
      for (const Row& row : random_chain(random_, instants(key), tables_)) add("stage", "ssident", row);
    }
  }

  void add_stage(Row row) {
    row = instants(row);
    row["stageid"] = random_.pick({"1", "1", "2", "10", "-1"});
    row["gnom"] = random_.pick({"1500", "-1", "1", "4.19e+05", "0.000125", "0"});
    row["gcalib"] = random_.pick({"1.000000", "-1.000000", "0.997511"});
    row["leadfac"] = random_.pick({"0.1234567", "-1.0000000", "0", "1e-9"});
    row["iunits"] = random_.pick({"m/s", "V", "-", "", " V"});
    row["izero"] = random_.pick({"0", "-1", "5", "2000366", "2001366"});
    row["decifac"] = random_.pick({"1", "4", "-1", "10", ""});
    add("stage", "ssident", row);
  }

  // At times reversed, often open or touching others.
  Row days(Row row) {
    const int begin = random_.below(kLastDay + 1);
    const int end = random_.percent(4) ? random_.below(kLastDay + 1) : random_.between(begin, kLastDay);
    row["ondate"] = random_.percent(12) ? random_.pick({"-1", ""}) : kDays[begin].yearday;
    row["offdate"] = random_.percent(45) ? random_.pick({"-1", "", "2286324", "2999365"}) : kDays[end].yearday;
    if (random_.below(1000) < 1) row[random_.pick({"ondate", "offdate"})] = random_.pick({"1999366", "0", "2000000"});
    return row;
  }

  Row instants(Row row) {
    row["time"] = random_.percent(12) ? random_.pick({"-9999999999.99900", "", "-70000000000.0"}) : instant();
    row["endtime"] =
        random_.percent(30) ? random_.pick({"9999999999.99900", "", "9999936000.0", "9999935999.9996"}) : instant();
    if (random_.percent(90) && row["time"] > row["endtime"] && row["endtime"].starts_with("94")) {
      std::swap(row["time"], row["endtime"]);
    }
    if (random_.percent(1)) row["time"] = "260000000000.0";
    return row;
  }
  std::string instant() {
    const Day& day = kDays[random_.below(kLastDay + 1)];
    return seconds_text(static_cast<double>(day.days) * 86400.0 + random_.one_of(kSeconds));
  }

  Random& random_;
  Tables& tables_;
  std::vector<std::string> stations_;
  int rows_ = 0;
};

}  // namespace

Tables random_tables(Random& random, int most_stations) {
  Tables tables;
  TableMaker(random, tables).make(most_stations);
  return tables;
}

}  // namespace triglub_reference::edition2
