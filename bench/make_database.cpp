// Writes a CSS3.0 database of any size, the same for the same arguments:
//
//     make_database PREFIX CHANNEL_EPOCHS [NETWORKS [STAGES [INTERLEAVE]]]
//
// Each station has three channels of up to three epochs. Station codes of different networks interleave in alphabetical
// order. STAGES counts the response stages of an epoch: a seismometer, a digitizer and FIR filters (default 3).
// Response files are PREFIX's folder's resp/*, eight of each kind, the FIR filters with 60 to 200 coefficients.
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

constexpr int EPOCHS = 3;
constexpr int CHANNELS = 3;
constexpr int KINDS = 8;
constexpr double FIRST = 946684800.0;  // 2000-01-01
constexpr double EPOCH_DAYS = 1000.0;
constexpr double OPEN = 9999999999.999;

struct Tables {
  FILE *site, *sitechan, *sensor, *instrument, *network, *affiliation, *snetsta, *schanloc, *calibration, *stage;
};

FILE* open_file(const std::string& path) {
  FILE* file = std::fopen(path.c_str(), "w");
  if (file == nullptr) {
    std::perror(path.c_str());
    std::exit(1);
  }
  return file;
}

// The first day of an epoch as yyyyddd: epochs are 1000 days long and start on 2000001.
long day_of(int epoch) {
  static const long DAYS[] = {2000001, 2002270, 2005174};
  return DAYS[epoch];
}

double time_of(int epoch) { return FIRST + epoch * EPOCH_DAYS * 86400.0; }

// Five letters in alphabetical order of the number.
std::string code_of(long number) {
  std::string code(5, 'A');
  for (std::size_t i = code.size(); i-- > 0; number /= 26) code[i] = static_cast<char>('A' + number % 26);
  return code;
}

std::string network_of(long number) { return "N" + std::to_string(100 + number); }

void write_responses(const std::string& folder) {
  mkdir(folder.c_str(), 0777);
  std::mt19937_64 random(1);
  std::normal_distribution<double> noise(0.0, 1.0);
  for (int kind = 0; kind < KINDS; ++kind) {
    FILE* paz = open_file(folder + "/paz." + std::to_string(kind));
    std::fprintf(paz, "theoretical 1 instrument paz generated\n%.8g 1\n4\n", 5.7e4 + kind);
    std::fprintf(paz, "-0.037 0.037\n-0.037 -0.037\n-251.3 0\n-131.%d 467.3\n2\n0 0\n0 0\n", kind);
    std::fclose(paz);
    FILE* fir = open_file(folder + "/fir." + std::to_string(kind));
    const int count = 60 + 20 * kind;
    std::fprintf(fir, "theoretical 1 instrument fir generated\n%d\n%d\n", 40 * (kind + 1), count);
    for (int i = 0; i < count; ++i)
      std::fprintf(fir, "%.10e\n", noise(random) * std::exp(-0.05 * std::abs(i - count / 2)));
    std::fprintf(fir, "0\n");
    std::fclose(fir);
  }
}

void write_stage(FILE* file, const char* sta, const char* chan, int epoch, double end, int stage) {
  const int kind = (stage * 3 + epoch) % KINDS;
  const char* iunits = stage == 1 ? "m/s" : stage == 2 ? "V" : "counts";
  const char* ounits = stage == 1 ? "V" : "counts";
  const std::string dfile = stage == 2 ? "-" : (stage == 1 ? "paz." : "fir.") + std::to_string(kind);
  std::fprintf(
      file,
      "%-6s %-8s %17.5f %17.5f %8d %-16s %16.8g %-16s %-16s %10.6f %-20s %8d %8d %11.7f %11.7f %-64s %-32s %17.5f\n",
      sta, chan, time_of(epoch), end, stage, "-",
      stage == 1   ? 1500.0
      : stage == 2 ? 419430.0
                   : 1.0,
      iunits, ounits, 1.0,
      stage == 1   ? "paz"
      : stage == 2 ? "digitizer"
                   : "fir",
      -1,
      stage == 1   ? -1
      : stage == 2 ? 1
                   : 2,
      stage == 1   ? -1.0
      : stage == 2 ? 200.0
                   : 100.0,
      -1.0, stage == 2 ? "-" : "resp", dfile.c_str(), 1.7e9);
}

void write_epoch(const Tables& t, const char* sta, const char* chan, int channel, int epoch, bool last, long id,
                 int stages) {
  const long offdate = last ? -1 : day_of(epoch + 1);
  const double end = last ? OPEN : time_of(epoch + 1);
  std::fprintf(t.sitechan, "%-6s %-8s %8ld %8ld %8ld %-4s %9.4f %6.1f %6.1f %-50s %17.5f\n", sta, chan, day_of(epoch),
               id, offdate, "n", 0.0, channel == 0 ? 90.0 : 0.0, channel == 2 ? 0.0 : 90.0, "-", 1.7e9);
  std::fprintf(t.sensor, "%-6s %-8s %17.5f %17.5f %8ld %8ld %8ld %16.6f %16.6f %6.2f %-1s %17.5f\n", sta, chan,
               time_of(epoch), end, 1 + id % 100, id, day_of(epoch), 1.0, 1.0, 0.0, "y", 1.7e9);
  std::fprintf(t.calibration, "%-6s %-8s %17.5f %17.5f %-16s %-16s %11.7f %16.8g %16.6f %16.6f %8d %17.5f\n", sta, chan,
               time_of(epoch), end, "-", "m/s", 100.0, 1e9 / (1500.0 * 419430.0), 1.0, 1.0, -1, 1.7e9);
  for (int stage = 1; stage <= stages; ++stage) write_stage(t.stage, sta, chan, epoch, end, stage);
}

void write_station(const Tables& t, long number, long networks) {
  const std::string sta = code_of(number);
  const std::string net = network_of(number % networks);
  std::fprintf(t.site, "%-6s %8ld %8d %9.4f %9.4f %9.4f %-50s %-4s %-6s %9.4f %9.4f %17.5f\n", sta.c_str(), day_of(0),
               -1, static_cast<double>(number % 170) - 85.0, static_cast<double>(number % 359) - 179.0, 0.5,
               "A made place", "ss", sta.c_str(), 0.0, 0.0, 1.7e9);
  std::fprintf(t.snetsta, "%-8s %-6s %-6s %-15s %17.5f\n", net.c_str(), sta.c_str(), sta.c_str(), "made", 1.7e9);
  std::fprintf(t.affiliation, "%-8s %-6s %17.5f\n", net.c_str(), sta.c_str(), 1.7e9);
}

void write_common(const Tables& t, long networks) {
  for (long n = 0; n < networks; ++n) {
    std::fprintf(t.network, "%-8s %-80s %-4s %-15s %8d %17.5f\n", network_of(n).c_str(), "A made network", "-", "made",
                 -1, 1.7e9);
  }
  for (int i = 1; i <= 100; ++i) {
    std::fprintf(t.instrument, "%8d %-50s %-6s %-1s %-1s %11.7f %16.6f %16.6f %-64s %-32s %-6s %17.5f\n", i,
                 ("Seismometer " + std::to_string(i)).c_str(), "-", "b", "d", 100.0, 1.0, 1.0, "-", "-", "-", 1.7e9);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: make_database PREFIX CHANNEL_EPOCHS [NETWORKS [STAGES]]\n");
    return 2;
  }
  const std::string prefix = argv[1];
  const long epochs = std::atol(argv[2]);
  const long networks = argc > 3 ? std::atol(argv[3]) : 200;
  const int stages = argc > 4 ? std::atoi(argv[4]) : 3;
  Tables t{};
  const auto open_table = [&](const char* name) { return open_file(prefix + "." + name); };
  t = {open_table("site"),        open_table("sitechan"),    open_table("sensor"),  open_table("instrument"),
       open_table("network"),     open_table("affiliation"), open_table("snetsta"), open_table("schanloc"),
       open_table("calibration"), open_table("stage")};
  write_responses(prefix.substr(0, prefix.rfind('/') + 1) + "resp");
  write_common(t, networks);
  static const char* CODES[CHANNELS] = {"BHE", "BHN", "BHZ"};
  long id = 0;
  for (long station = 0; id < epochs; ++station) {
    write_station(t, station, networks);
    const std::string sta = code_of(station);
    for (int channel = 0; channel < CHANNELS && id < epochs; ++channel) {
      const std::string chan = std::string(CODES[channel]) + "_00";
      std::fprintf(t.schanloc, "%-6s %-8s %-8s %-8s %-15s %17.5f\n", sta.c_str(), chan.c_str(), CODES[channel], "00",
                   "made", 1.7e9);
      for (int epoch = 0; epoch < EPOCHS && id < epochs; ++epoch) {
        write_epoch(t, sta.c_str(), chan.c_str(), channel, epoch, epoch + 1 == EPOCHS || id + 1 == epochs, id + 1,
                    stages);
        ++id;
      }
    }
  }
  for (FILE* file : {t.site, t.sitechan, t.sensor, t.instrument, t.network, t.affiliation, t.snetsta, t.schanloc,
                     t.calibration, t.stage}) {
    if (std::fclose(file) != 0) return 1;
  }
  return 0;
}
