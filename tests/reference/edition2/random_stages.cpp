#include "reference/edition2/random_stages.h"

#include <string>
#include <utility>

#include "reference/edition2/random_files.h"

namespace triglub_reference::edition2 {

namespace {

constexpr int kMostStages = 5;
constexpr int kMostChannels = 3;

// Of one channel.
class ChainMaker {
 public:
  ChainMaker(Random& random, Row row, Tables& tables) : random_(random), row_(std::move(row)), tables_(tables) {}

  std::vector<Row> make() {
    row_["ounits"] = random_.pick({"V", "nm/s", "counts"});
    std::vector<Row> rows;
    int number = random_.percent(1) ? -1 : 0;
    for (int n = random_.between(1, kMostStages); n > 0; --n) {
      const bool is_behind_a_gap = random_.percent(12);
      number += is_behind_a_gap ? random_.between(2, 3) : 1;
      row_["stageid"] = std::to_string(number);
      link(is_behind_a_gap && random_.percent(75));
      rows.push_back(row_);
    }
    return rows;
  }

 private:
  // The stage behind another; one that fits takes what the other gives.
  void link(bool fits) {
    set_gain();
    set_units(fits);
    set_rate(fits);
    row_["leadfac"] = random_.pick({"-1.0000000", "-1.0000000", "0.0000000", "0.1234567", "-0.5"});
    row_["dir"] = row_["dfile"] = "-";
    if (random_.percent(50)) name_file();
  }

  void set_gain() {
    row_["gnom"] = random_.pick({"1500", "1", "4.19e+05", "0.000125", "0.1", "-2.5", "123456789.5", "1.2345678"});
    if (random_.percent(1)) row_["gnom"] = random_.pick({"0", "-1", "1.7e+308"});
    row_["gcalib"] = random_.pick({"-1.000000", "1.000000", "1.0005", "0.999321", "", "0.3", "2", "1.23456789"});
    if (random_.below(200) < 1) row_["gcalib"] = "0";
  }

  void set_units(bool fits) {
    row_["iunits"] = random_.pick({"V", "V", "counts", "COUNTS", "m/s", "-", "-", "v", "<V>"});
    if (fits) row_["iunits"] = row_["ounits"] == "counts" ? "COUNTS" : row_["ounits"];
    if (random_.percent(2)) row_["iunits"] = "unknown";
    row_["ounits"] = random_.pick({"V", "V", "counts", "COUNTS", "m/s", "-", "-", "-"});
  }

  void set_rate(bool fits) {
    row_["decifac"] = fits ? "1" : random_.pick({"1", "2", "-1", "10", "", "3", "4"});
    if (!fits || random_.percent(10)) row_["samprate"] = rate();
    if (random_.percent(1)) row_["samprate"] = random_.pick({"0", "-20", "1e+308"});
    if (random_.percent(1)) row_["decifac"] = "0";
  }

  std::string rate() {
    return random_.pick({"40.0000000", "-1.0000000", "-1.0000000", "33.3333333", "20", "1", "12.3456783", "0.1",
                         "33.3333667", "33.3333666", "123.456789"});
  }

  void name_file() {
    row_["dir"] = random_.pick({"resp", "resp", "-"});
    row_["dfile"] = random_.pick({"a", "b", "c", "d", "e", "f"});
    if (random_.percent(1)) row_["dfile"] = "missing";
    const std::string name = (row_["dir"] == "-" ? "" : row_["dir"] + "/") + row_["dfile"];
    if (row_["dfile"] != "missing" && !tables_.files.contains(name)) tables_.files[name] = random_file(random_);
  }

  Random& random_;
  Row row_;
  Tables& tables_;
};

Row calibration(Random& random, Row row) {
  row["units"] = random.pick({"V", "V", "nm/s", "counts", "-", "<V>"});
  row["samprate"] = random.pick({"40", "-1", "0.1"});
  row["calper"] =
      random.pick({"1", "20.000000", "0.3", "14.285714", "0.0123456", "0.000001", "99999.5", "123.4567891"});
  row["fc"] = random.pick({"-1.000000", "-1.000000", "-1.000000", "0", "0.05", "1234567"});
  if (random.percent(2)) row["calper"] = random.pick({"-1.000000", "0", "-2", "1e-310"});
  return row;
}

}  // namespace

std::vector<Row> random_chain(Random& random, Row row, Tables& tables) {
  return ChainMaker(random, std::move(row), tables).make();
}

Tables random_chains(Random& random) {
  Tables tables;
  tables.rows["snetsta"] = {{{"snet", "KR"}, {"fsta", "AAK"}, {"sta", "AAK"}}};
  tables.rows["site"] = {{{"sta", "AAK"}, {"ondate", "2000001"}, {"lat", "42.6375"}, {"lon", "74.4942"}}};
  for (int n = random.between(1, kMostChannels); n > 0; --n) {
    const Row key = {{"sta", "AAK"}, {"chan", "BH" + std::to_string(n)}};
    Row times = key;
    times["time"] = "946684800.00000";
    tables.rows["sitechan"].push_back(key);
    tables.rows["sitechan"].back()["ondate"] = "2000001";
    if (random.percent(95)) tables.rows["calibration"].push_back(calibration(random, times));
    for (const Row& row : random_chain(random, times, tables)) tables.rows["stage"].push_back(row);
  }
  return tables;
}

}  // namespace triglub_reference::edition2
