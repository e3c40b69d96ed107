// The response files of a made database: seismometers as poles and zeros, and the FIR filters of decimation chains.
#ifndef TRIGLUB_BENCH_RESPONSE_FILES_H
#define TRIGLUB_BENCH_RESPONSE_FILES_H

#include <string>

namespace triglub_bench {

inline constexpr int kModels = 8;  // of seismometers, and of digitizers
inline constexpr int kDecimation = 2;

// The kinds of streams that a digitizer gives, by the first two letters of the channel code.
struct Band {
  const char* letters;
  double sample_rate;  // samples per second
};
inline constexpr Band kBands[] = {{"BH", 40.0}, {"HH", 100.0}, {"LH", 1.0}};

// Names of files within the folder of responses; stages of a chain count from 0.
std::string seismometer_file(int model);
std::string filter_file(const Band& band, int model, int stage);

// The rate that enters stage `stage` of a chain of `length` filters, each of which halves it.
double input_rate(const Band& band, int stage, int length);

// Writes all of them, chains of `length` filters of 60 to 200 coefficients. Throws std::runtime_error when a file
// cannot be written.
void write_response_files(const std::string& folder, int length);

}  // namespace triglub_bench

#endif
