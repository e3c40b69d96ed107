// Makes CSS3.0 databases of any size, the same for the same shape and seed.
//
//     make_database("/tmp/made/made", {.channel_epochs = 100000, .networks = 200});
//
// A station stands at one to three places, has the three components of one or two bands under two location codes, and
// one to three epochs of each channel; it moves only when an epoch begins. Each epoch has its sensor, an instrument, a
// calibration and the stages of its response: a seismometer, a digitizer and FIR filters. That makes about nine channel
// epochs a station. In the order of station codes the networks take turns, so that no network's records lie together.
#ifndef TRIGLUB_BENCH_DATABASE_MAKER_H
#define TRIGLUB_BENCH_DATABASE_MAKER_H

#include <string>

namespace triglub_bench {

struct DatabaseShape {
  long channel_epochs = 10000;  // exactly; the last station is cut short
  long networks = 200;          // 1 to 9000; those beyond the number of stations are named and have none
  int stages = 3;               // of a channel epoch, 0 to 12
  unsigned long seed = 1;
};

// Writes PREFIX.site and the other tables, and the response files to the folder `resp` beside them. Folders are made.
// Throws std::invalid_argument for a shape out of range, std::runtime_error when a file cannot be written.
void make_database(const std::string& prefix, const DatabaseShape& shape);

}  // namespace triglub_bench

#endif
