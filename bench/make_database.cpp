// Writes a CSS3.0 database of any size, the same for the same arguments; database_maker.h tells what is in it.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>

#include "database_maker.h"

namespace {

constexpr int kWrongUsage = 2;
constexpr const char* kUsage =
    "usage: make_database PREFIX CHANNEL_EPOCHS [NETWORKS [STAGES [SEED]]]\n"
    "  NETWORKS  take turns in the order of station codes (default 200); 1 makes one huge network\n"
    "  STAGES    of a response: a seismometer, a digitizer and FIR filters (default 3)\n";

// Reads argument i, if there is one, into *value; false when it is no number.
template <typename Number>
bool read_argument(int argc, char** argv, int i, Number* value) {
  if (i >= argc) return true;
  const char* end = argv[i] + std::strlen(argv[i]);
  const auto read = std::from_chars(argv[i], end, *value);
  return read.ec == std::errc() && read.ptr == end;
}

}  // namespace

int main(int argc, char** argv) {
  triglub_bench::DatabaseShape shape;
  if (argc < 3 || argc > 6 || !read_argument(argc, argv, 2, &shape.channel_epochs) ||
      !read_argument(argc, argv, 3, &shape.networks) || !read_argument(argc, argv, 4, &shape.stages) ||
      !read_argument(argc, argv, 5, &shape.seed)) {
    std::fputs(kUsage, stderr);
    return kWrongUsage;
  }
  try {
    triglub_bench::make_database(argv[1], shape);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "make_database: %s\n", e.what());
    return 1;
  }
  return 0;
}
