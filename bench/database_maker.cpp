#include "database_maker.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "flat_table.h"
#include "response_files.h"

namespace triglub_bench {

namespace {

using Day = std::chrono::sys_days;

constexpr double kLddate = 1700000000.0;
constexpr double kOpen = 9999999999.999;
constexpr int kInstruments = 100;
constexpr double kDigitizerGain = 419430.0;  // counts per volt
constexpr std::array<double, kModels> kSeismometerGains = {1500, 750, 2000, 1200, 400, 20000, 1196, 2400};  // V per m/s
constexpr std::array<std::string_view, 8> kPlaces = {"Quarry", "Old mill",   "Church hill", "Salt cavern",
                                                     "School", "Dam & lock", "North ridge", "Forest hut"};
struct Component {
  char letter;
  double hang;  // degrees clockwise from north
  double vang;  // degrees from up
};
constexpr Component kComponents[] = {{'E', 90.0, 90.0}, {'N', 0.0, 90.0}, {'Z', 0.0, 0.0}};
constexpr std::array<const char*, 2> kLocations = {"00", "10"};

// The library's own distributions differ between its makers, so the database would too.
class Dice {
 public:
  explicit Dice(unsigned long seed) : engine_(seed) {}
  long below(long n) { return static_cast<long>(engine_() % static_cast<std::uint64_t>(n)); }
  int model() { return static_cast<int>(below(kModels)); }

 private:
  std::mt19937_64 engine_;
};

// yyyyddd
long yearday(Day day) {
  const std::chrono::year year = std::chrono::year_month_day(day).year();
  return static_cast<int>(year) * 1000L + (day - Day(year / 1 / 1)).count() + 1;
}

double seconds(Day day) { return 86400.0 * static_cast<double>(day.time_since_epoch().count()); }

// Five letters in alphabetical order of the number.
std::string station_code(long number) {
  std::string code(5, 'A');
  for (std::size_t i = code.size(); i-- > 0; number /= 26) code[i] = static_cast<char>('A' + number % 26);
  return code;
}

std::string network_code(long number) { return "N" + std::to_string(1000 + number); }

// A time during which nothing of a station changes.
struct Epoch {
  Day begin;
  Day end;
  bool is_open;
  int inid;
  int digitizer;

  long offdate() const { return is_open ? -1 : yearday(end); }
  double endtime() const { return is_open ? kOpen : seconds(end); }
  int seismometer() const { return inid % kModels; }
  double gain() const { return kSeismometerGains.at(static_cast<std::size_t>(seismometer())); }
};

struct Stream {
  std::string chan;  // BHZ_00
  std::string fchan;
  const char* loc;
  const Band* band;
  Component component;
};

class Maker {
 public:
  Maker(const std::string& prefix, const DatabaseShape& shape);
  void run();

 private:
  void write_networks();
  void write_instruments();
  void write_station(long number);
  std::vector<Epoch> draw_epochs();
  std::vector<Stream> draw_streams();
  void write_codes(const std::string& sta, const std::string& network);
  void write_places(const std::string& sta, const std::vector<Epoch>& epochs);
  void write_place(const std::string& sta, const Epoch& first, const Epoch& last);
  void write_stream(const std::string& sta, const Stream& stream, const std::vector<Epoch>& epochs);
  void write_channel_epoch(const std::string& sta, const Stream& stream, const Epoch& epoch);
  void write_stages(const std::string& sta, const Stream& stream, const Epoch& epoch);
  FlatTable& begin_stage(const std::string& sta, const Stream& stream, const Epoch& epoch, int stageid, double gain);
  void end_stage(const std::string& dir, const std::string& dfile);
  int filters() const { return shape_.stages > 2 ? shape_.stages - 2 : 0; }

  DatabaseShape shape_;
  Dice dice_;
  long written_ = 0;  // channel epochs
  FlatTable site_, sitechan_, sensor_, instrument_, network_, affiliation_, snetsta_, schanloc_, calibration_, stage_;
};

Maker::Maker(const std::string& prefix, const DatabaseShape& shape)
    : shape_(shape),
      dice_(shape.seed),
      site_(prefix + ".site"),
      sitechan_(prefix + ".sitechan"),
      sensor_(prefix + ".sensor"),
      instrument_(prefix + ".instrument"),
      network_(prefix + ".network"),
      affiliation_(prefix + ".affiliation"),
      snetsta_(prefix + ".snetsta"),
      schanloc_(prefix + ".schanloc"),
      calibration_(prefix + ".calibration"),
      stage_(prefix + ".stage") {}

void Maker::run() {
  write_networks();
  write_instruments();
  for (long number = 0; written_ < shape_.channel_epochs; ++number) write_station(number);
  for (FlatTable* table : {&site_, &sitechan_, &sensor_, &instrument_, &network_, &affiliation_, &snetsta_, &schanloc_,
                           &calibration_, &stage_}) {
    table->close();
  }
}

void Maker::write_networks() {
  for (long n = 0; n < shape_.networks; ++n) {
    network_.text(network_code(n), 8).text("Made network " + std::to_string(n), 80).text("-", 4).text("made", 15);
    network_.integer(-1, 8).real(kLddate, 17, 5).end_row();
  }
}

void Maker::write_instruments() {
  for (int i = 1; i <= kInstruments; ++i) {
    instrument_.integer(i, 8).text("Seismometer " + std::to_string(i), 50).text("-", 6).text("b", 1).text("d", 1);
    instrument_.real(100.0, 11, 7).real(1.0, 16, 6).real(1.0, 16, 6).text("-", 64).text("-", 32).text("-", 6);
    instrument_.real(kLddate, 17, 5).end_row();
  }
}

void Maker::write_station(long number) {
  const std::string sta = station_code(number);
  write_codes(sta, network_code(number % shape_.networks));
  const std::vector<Epoch> epochs = draw_epochs();
  write_places(sta, epochs);
  for (const Stream& stream : draw_streams()) {
    if (written_ < shape_.channel_epochs) write_stream(sta, stream, epochs);
  }
}

std::vector<Epoch> Maker::draw_epochs() {
  const long count = 1 + dice_.below(3);
  const bool is_closed = dice_.below(4) == 0;
  Day begin = Day(std::chrono::year(1990) / 1 / 1) + std::chrono::days(dice_.below(7000));
  std::vector<Epoch> epochs;
  for (long i = 1; i <= count; ++i) {
    const Day end = begin + std::chrono::days(200 + dice_.below(1800));
    const int inid = static_cast<int>(1 + dice_.below(kInstruments));
    epochs.push_back({begin, end, i == count && !is_closed, inid, dice_.model()});
    begin = end;
  }
  return epochs;
}

// In the order of channel codes.
std::vector<Stream> Maker::draw_streams() {
  const auto first = static_cast<std::size_t>(dice_.below(std::ssize(kBands)));
  const std::size_t count = 1 + static_cast<std::size_t>(dice_.below(2));
  std::vector<Stream> streams;
  for (std::size_t i = first; i < first + count && i < std::size(kBands); ++i) {
    for (const Component& component : kComponents) {
      const std::string fchan = std::string(kBands[i].letters) + component.letter;
      const char* loc = kLocations.at(i - first);
      streams.push_back({fchan + "_" + loc, fchan, loc, &kBands[i], component});
    }
  }
  return streams;
}

void Maker::write_codes(const std::string& sta, const std::string& network) {
  snetsta_.text(network, 8).text(sta, 6).text(sta, 6).text("made", 15).real(kLddate, 17, 5).end_row();
  affiliation_.text(network, 8).text(sta, 6).real(kLddate, 17, 5).end_row();
}

// A place for each epoch or for two or three of them.
void Maker::write_places(const std::string& sta, const std::vector<Epoch>& epochs) {
  for (std::size_t first = 0; first < epochs.size();) {
    std::size_t last = first;
    while (last + 1 < epochs.size() && dice_.below(2) == 0) ++last;
    write_place(sta, epochs[first], epochs[last]);
    first = last + 1;
  }
}

void Maker::write_place(const std::string& sta, const Epoch& first, const Epoch& last) {
  const std::string name =
      std::string(kPlaces.at(static_cast<std::size_t>(dice_.below(kPlaces.size())))) + " of " + sta;
  site_.text(sta, 6).integer(yearday(first.begin), 8).integer(last.offdate(), 8);
  site_.real(static_cast<double>(dice_.below(1800000) - 900000) / 1e4, 9, 4);
  site_.real(static_cast<double>(dice_.below(3600000) - 1800000) / 1e4, 9, 4);
  site_.real(static_cast<double>(dice_.below(40000)) / 1e4, 9, 4);
  site_.text(name, 50).text("ss", 4).text(sta, 6).real(0.0, 9, 4).real(0.0, 9, 4).real(kLddate, 17, 5).end_row();
}

void Maker::write_stream(const std::string& sta, const Stream& stream, const std::vector<Epoch>& epochs) {
  schanloc_.text(sta, 6).text(stream.chan, 8).text(stream.fchan, 8).text(stream.loc, 8).text("made", 15);
  schanloc_.real(kLddate, 17, 5).end_row();
  for (const Epoch& epoch : epochs) {
    if (written_ < shape_.channel_epochs) write_channel_epoch(sta, stream, epoch);
  }
}

void Maker::write_channel_epoch(const std::string& sta, const Stream& stream, const Epoch& epoch) {
  const long chanid = ++written_;
  sitechan_.text(sta, 6).text(stream.chan, 8).integer(yearday(epoch.begin), 8).integer(chanid, 8);
  sitechan_.integer(epoch.offdate(), 8).text("n", 4).real(static_cast<double>(chanid % 100) / 1e3, 9, 4);
  sitechan_.real(stream.component.hang, 6, 1).real(stream.component.vang, 6, 1).text("-", 50);
  sitechan_.real(kLddate, 17, 5).end_row();
  sensor_.text(sta, 6).text(stream.chan, 8).real(seconds(epoch.begin), 17, 5).real(epoch.endtime(), 17, 5);
  sensor_.integer(epoch.inid, 8).integer(chanid, 8).integer(yearday(epoch.begin), 8).real(1.0, 16, 6);
  sensor_.real(1.0, 16, 6).real(0.0, 6, 2).text("y", 1).real(kLddate, 17, 5).end_row();
  calibration_.text(sta, 6).text(stream.chan, 8).real(seconds(epoch.begin), 17, 5).real(epoch.endtime(), 17, 5);
  calibration_.text("-", 16).text("m/s", 16).real(stream.band->sample_rate, 11, 7);
  calibration_.real(1e9 / (epoch.gain() * kDigitizerGain), 16, 8).real(1.0, 16, 6).real(1.0, 16, 6).integer(-1, 8);
  calibration_.real(kLddate, 17, 5).end_row();
  write_stages(sta, stream, epoch);
}

void Maker::write_stages(const std::string& sta, const Stream& stream, const Epoch& epoch) {
  if (shape_.stages > 0) {
    begin_stage(sta, stream, epoch, 1, epoch.gain()).text("m/s", 16).text("V", 16).real(1.0, 10, 6).text("paz", 20);
    stage_.integer(-1, 8).integer(-1, 8).real(-1.0, 11, 4);
    end_stage("resp", seismometer_file(epoch.seismometer()));
  }
  if (shape_.stages > 1) {
    begin_stage(sta, stream, epoch, 2, kDigitizerGain).text("V", 16).text("counts", 16).real(1.0, 10, 6);
    stage_.text("digitizer", 20).integer(-1, 8).integer(1, 8).real(input_rate(*stream.band, 0, filters()), 11, 4);
    end_stage("-", "-");
  }
  for (int filter = 0; filter < filters(); ++filter) {
    begin_stage(sta, stream, epoch, 3 + filter, 1.0).text("counts", 16).text("counts", 16).real(1.0, 10, 6);
    stage_.text("fir", 20).integer(-1, 8).integer(kDecimation, 8);
    stage_.real(input_rate(*stream.band, filter + 1, filters()), 11, 4);
    end_stage("resp", filter_file(*stream.band, epoch.digitizer, filter));
  }
}

FlatTable& Maker::begin_stage(const std::string& sta, const Stream& stream, const Epoch& epoch, int stageid,
                              double gain) {
  stage_.text(sta, 6).text(stream.chan, 8).real(seconds(epoch.begin), 17, 5).real(epoch.endtime(), 17, 5);
  return stage_.integer(stageid, 8).text("-", 16).real(gain, 16, 4);
}

void Maker::end_stage(const std::string& dir, const std::string& dfile) {
  stage_.real(-1.0, 11, 7).text(dir, 64).text(dfile, 32).real(kLddate, 17, 5).end_row();
}

void check(const DatabaseShape& shape) {
  if (shape.channel_epochs < 0) throw std::invalid_argument("the number of channel epochs is negative");
  if (shape.networks < 1 || shape.networks > 9000) throw std::invalid_argument("expected 1 to 9000 networks");
  if (shape.stages < 0 || shape.stages > 12) throw std::invalid_argument("expected 0 to 12 stages");
}

}  // namespace

void make_database(const std::string& prefix, const DatabaseShape& shape) {
  check(shape);
  const std::string folder = std::filesystem::path(prefix).parent_path().string();
  write_response_files((folder.empty() ? "." : folder) + "/resp", shape.stages > 2 ? shape.stages - 2 : 0);
  Maker(prefix, shape).run();
}

}  // namespace triglub_bench
