#include <cstdio>

#include "reference/random_case.h"

namespace triglub_reference {

namespace {

// Borders of epochs: a few days that follow one another closely, around ends of years and a leap day.
struct Day {
  const char* yearday;
  long days;  // since 1970-01-01
};
constexpr Day kDays[] = {{"1999364", 10955}, {"1999365", 10956}, {"2000001", 10957}, {"2000060", 11016},
                         {"2000061", 11017}, {"2000366", 11322}, {"2001001", 11323}};

// A validity range by the places of its borders in kDays; -1 is open.
struct Epoch {
  int begin;
  int end;
};

class TableMaker {
 public:
  TableMaker(Random& random, const Extent& extent, Tables& tables)
      : random_(random), extent_(extent), tables_(tables) {}

  void make() {
    for (const char* net : {"KR", "K", "IU", "AA", "AAB"}) {
      if (random_.percent(55)) networks_.push_back(net);
    }
    if (networks_.empty()) networks_.push_back("KR");
    for (const std::string& net : networks_) add_network(net);
    add_instruments();
    for (int n = random_.between(1, extent_.stations); n > 0; --n) {
      add_station(random_.pick({"AAK", "AA", "AAB", "ANMO", "A1", "-", "B2", "C3"}));
    }
    write_files();
  }

 private:
  // Each row has a load date of its own, which no key holds: it tells rows that are otherwise the same apart.
  void add(const std::string& table, Row row) {
    for (int n = random_.percent(4) ? 2 : 1; n > 0; --n) {
      row["lddate"] = std::to_string(++rows_) + ".00000";
      tables_.rows[table].push_back(row);
    }
  }

  void add_network(const std::string& net) {
    if (random_.percent(4)) return;
    for (int n = random_.percent(8) ? 2 : 1; n > 0; --n) {
      add("network", {{"net", net},
                      {"netname", random_.pick({"Kyrgyz Network", "Global <Seismograph> & \"Network\"", "", "A",
                                                "A network with a name that is longer than eighty less the tag's"})},
                      {"commid", random_.pick({"1", "2", "10", "-1"})}});
    }
  }

  void add_instruments() {
    for (const char* inid : {"1", "2", "3", "-1"}) {
      if (random_.percent(inid[0] == '-' ? 5 : 75)) {
        add("instrument", {{"inid", inid},
                           {"insname", random_.pick({"STS-2", "CMG-3T", "-", "Streckeisen's \"best\""})},
                           {"samprate", random_.pick({"40.0000000", "20", "-1.0000000", "0.0"})},
                           {"band", random_.pick({"b", "s", ""})}});
      }
    }
  }

  Epoch random_epoch() {
    const int days = static_cast<int>(std::size(kDays));
    if (random_.percent(3)) return {random_.below(days), random_.below(days)};  // at times reversed
    const int begin = random_.percent(8) ? -1 : random_.below(days);
    if (random_.percent(45)) return {begin, -1};
    const int first = begin < 0 ? 0 : begin;
    return {begin, random_.percent(8) ? first : random_.between(first, days - 1)};
  }

  std::string day_text(int day) { return day < 0 ? random_.pick({"-1", ""}) : kDays[day].yearday; }

  std::string instant_text(int day, const char* null_text) {
    if (day < 0) return random_.percent(50) ? null_text : "";
    const double of_day[] = {0, 0, 0, 0, 0, 0.25, 43200.5, 86399.99, 86399.9996};
    return instant_text_at(day, random_.one_of(of_day));
  }
  static std::string instant_text_at(int day, double second) {
    char text[32];
    std::snprintf(text, sizeof text, "%.5f", static_cast<double>(kDays[day].days) * 86400.0 + second);
    return text;
  }
  Row instants(const Epoch& epoch, Row row) {
    row["time"] = instant_text(epoch.begin, "-9999999999.99900");
    row["endtime"] = instant_text(epoch.end, "9999999999.99900");
    if (epoch.begin >= 0 && random_.percent(4)) {  // backward, but within one day
      row["time"] = instant_text_at(epoch.begin, 43200.5);
      row["endtime"] = instant_text_at(epoch.begin, random_.percent(50) ? 0.25 : 43200.49);
    }
    return row;
  }
  Row days(const Epoch& epoch, Row row) {
    row["ondate"] = day_text(epoch.begin);
    row["offdate"] = day_text(epoch.end);
    return row;
  }
  // The epoch itself, an open one or any.
  Epoch near(const Epoch& epoch) {
    if (random_.percent(60)) return epoch;
    return random_.percent(50) ? Epoch{-1, -1} : random_epoch();
  }

  void add_station(const std::string& sta) {
    plain_types_ = random_.percent(60);
    for (int n = random_.percent(10) ? 2 : 1; n > 0; --n) {
      const std::string snet = random_.percent(5) ? "XX" : random_.one_of(networks_);
      const std::string fsta = random_.percent(80) ? sta : "F" + sta;
      if (random_.percent(97)) add("snetsta", {{"snet", snet}, {"fsta", fsta}, {"sta", sta}});
    }
    for (int n = random_.percent(70) ? 1 : 2; n > 0; --n) {
      if (random_.percent(4)) continue;
      add("site", days(random_.percent(60) ? Epoch{0, -1} : random_epoch(),
                       {{"sta", sta},
                        {"lat", random_.pick({"42.6375", "-999.0000", "100", "-95.5", "0"})},
                        {"lon", random_.pick({"74.4942", "190", "-180", "-999.0000", "-181.25", "360"})},
                        {"elev", random_.pick({"1.6450", "-999.0000", "0", "1000", "-0.0010", "3.3"})},
                        {"staname", random_.pick({"Ala Archa", "O'Brien's <peak>", "", "Évry & Cie"})},
                        {"statype", random_.percent(2) ? "(" : random_.pick({"ss", "-", "7"})}}));
    }
    for (const char* chan : {"BHZ", "BH", "BHZ_01", "LHZ", "00", "-"}) {
      if (random_.percent(chan[0] == '-' ? 5 : 45)) add_channel(sta, chan);
    }
  }

  void add_channel(const std::string& sta, const std::string& chan) {
    for (int n = random_.percent(10) ? 2 : 1; n > 0; --n) {
      if (random_.percent(3)) continue;
      add("schanloc", {{"sta", sta},
                       {"chan", chan},
                       {"fchan", random_.pick({"BHZ", "BHN", "LHZ", "-", "BH.|LHZ"})},
                       {"loc", random_.pick({"00", "10", "-", "", "7", "1"})}});
    }
    for (int n = random_.percent(60) ? 1 : random_.between(2, 3); n > 0; --n) add_epoch(sta, chan, random_epoch());
  }

  void add_epoch(const std::string& sta, const std::string& chan, const Epoch& epoch) {
    const std::string chanid = random_.percent(15) ? "-1" : std::to_string(random_.between(1, 30));
    const Row channel = {{"sta", sta}, {"chan", chan}};
    Row sitechan = days(epoch, channel);
    sitechan["chanid"] = chanid;
    sitechan["edepth"] = random_.pick({"0.0000", "0.1", "-1", "1.2345"});
    sitechan["hang"] = random_.pick({"0.0", "360", "-1.0", "-10", "720", "90"});
    sitechan["vang"] = random_.pick({"0.0", "90", "-1.0", "270", "-90", "180", "45.5"});
    sitechan["descrip"] = random_.pick({"", "a channel", "a <b> & c", "12", "12.5"});
    sitechan["ctype"] = random_.pick({"n", "-", "c"});
    add("sitechan", sitechan);
    Epoch of_sensor = epoch;
    for (int n = random_.percent(75) ? 1 : 2; n > 0; --n) {
      if (random_.percent(6)) continue;
      of_sensor = near(epoch);
      Row sensor = instants(of_sensor, channel);
      sensor["inid"] = random_.pick({"1", "2", "3", "4", "-1"});
      sensor["chanid"] = random_.percent(65) ? chanid : random_.pick({"-1", "1", "2", "30"});
      sensor["tshift"] = random_.pick({"0.00", "-99.00", "1.5"});
      add("sensor", sensor);
    }
    if (random_.percent(94)) {
      Row calibration = instants(near(of_sensor), channel);
      calibration["samprate"] = random_.pick({"40.0000000", "0", "0.0", "-1", "1.0", "123.456789"});
      calibration["fc"] = random_.pick({"1.0", "0.05", "-1.000000", "1e-07", "1234567"});
      calibration["units"] = random_.pick({"nm/s", "-", "V"});
      add("calibration", calibration);
    }
    for (int n = random_.percent(25) ? 0 : random_.between(1, extent_.stages), id = 1; n > 0; --n, ++id) {
      add_stage(channel, near(of_sensor), random_.percent(90) ? id : random_.between(-1, 12));
    }
  }

  void add_stage(const Row& channel, const Epoch& epoch, int id) {
    Row stage = instants(epoch, channel);
    stage["stageid"] = std::to_string(id);
    stage["gnom"] = random_.pick({"1500", "-1", "1", "4.19e+05", "0.000125", "-1.00", "1234567"});
    stage["iunits"] = random_.pick({"m/s", "V", "counts", "-", "", "-"});
    stage["ounits"] = random_.pick({"V", "counts", "-", "", "V"});
    stage["gtype"] = plain_types_ ? random_.pick({"H", "-"}) : random_.pick({"H", "G1", "G2", "G.", "F|G."});
    stage["izero"] = random_.pick({"0", "-1", "5"});
    stage["decifac"] = random_.pick({"1", "4", "-1", "2", "0", ""});
    stage["samprate"] = random_.pick({"25", "-1", "-1.0000000", "100.0", "1234567.5", "0"});
    stage["dir"] = random_.pick({"resp", "resp", "resp", "resp/deep", "-", "", "-resp"});
    stage["dfile"] = random_.pick({"-", "-", "", "a.paz", "b.fir", "c.fir", "d.fap2", "e.fap", "f.iir", "g.odd", "two",
                                   "bad", "missing", "-dash"});
    add("stage", stage);
  }

  // Most of the files that the stages name.
  void write_files() {
    for (const Row& row : tables_.rows["stage"]) {
      const std::string& dir = row.at("dir");
      const std::string& dfile = row.at("dfile");
      if (dir.empty() || dfile.empty() || dir == "-" || dfile == "-" || dfile == "missing") continue;
      if (!tables_.files.contains(dir + "/" + dfile)) tables_.files[dir + "/" + dfile] = response(dfile);
    }
  }

  ResponseFile response(const std::string& dfile) {
    ResponseFile file;
    if (dfile == "a.paz" || dfile == "bad" || dfile == "-dash") file.filters = {filter("paz")};
    if (dfile == "b.fir" || dfile == "c.fir") file.filters = {filter("fir")};
    if (dfile == "d.fap2") file.filters = {filter("fap2")};
    if (dfile == "e.fap") file.filters = {filter("fap")};
    if (dfile == "f.iir") file.filters = {filter("iir")};
    if (dfile == "g.odd") file.filters = {filter(random_.pick({"pazzle", "firm", "fapx", "pa", "other", "iirs"}))};
    if (dfile == "two") file.filters = {filter("paz"), filter("fir")};
    if (random_.percent(3)) file.filters.push_back(filter(random_.pick({"paz", "fir", "fap", "other"})));
    file.readable = dfile != "bad";
    return file;
  }

  std::string number() {
    return random_.pick({"0", "1", "-0.037", "0.123456789", "1e-10", "1234567", "0.5", "-2.5e+20", "40", "100"});
  }
  Numbers numbers(int required, int optional) {
    Numbers list;
    for (int n = random_.percent(50) ? required : required + optional; n > 0; --n) list.push_back(number());
    return list;
  }
  std::vector<Numbers> entries(int required, int optional, int most) {
    std::vector<Numbers> list;
    for (int n = random_.between(0, most); n > 0; --n) list.push_back(numbers(required, optional));
    return list;
  }

  Filter filter(const std::string& type) {
    if (type.starts_with("fap")) return {type, {}, entries(3, 2, 4), {}};
    if (type.starts_with("paz")) return {type, numbers(1, 1), entries(2, 2, 4), entries(2, 2, 3)};
    Filter fir = {type, {random_.pick({"40", "200", "1000.5"})}, entries(1, 1, 6), entries(1, 1, 2)};
    if (type == "fir" && random_.percent(60)) fir.head.push_back(random_.pick({"-1", "0", "2.5", "17", "-3"}));
    if (random_.percent(40) && !fir.first.empty()) fir.first.back() = fir.first.front();
    return fir;
  }

  Random& random_;
  const Extent& extent_;
  Tables& tables_;
  std::vector<std::string> networks_;
  int rows_ = 0;
  bool plain_types_ = false;  // no gain types of this station's stages that match others as patterns
};

}  // namespace

Tables random_tables(Random& random, const Extent& extent) {
  Tables tables;
  tables.rows["network"].push_back({{"net", "ZZ"}});
  TableMaker(random, extent, tables).make();
  return tables;
}

}  // namespace triglub_reference
