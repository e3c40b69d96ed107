// The random offset repeats with the seed of the test.
#include "faults/sample.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>

#include "support/random_seed.h"

namespace triglub_test {

namespace {

// 0: not given.
std::uint64_t given_stride() {
  const char* given = std::getenv("FAULTS_ALL");
  return given == nullptr ? 0 : std::strtoull(given, nullptr, 10);
}

}  // namespace

bool are_all_tried() { return given_stride() != 0; }

std::vector<std::uint64_t> sample(std::uint64_t last, std::uint64_t few) {
  const std::uint64_t stride = are_all_tried() ? given_stride() : std::max<std::uint64_t>(last / few, 1);
  std::mt19937_64 random(random_seed());
  const std::uint64_t first = 1 + random() % stride;
  std::vector<std::uint64_t> points;
  for (std::uint64_t point = first; point <= last; point += stride) points.push_back(point);
  std::cout << points.size() << " points of " << last << ": from " << first << " on, every " << stride << std::endl;
  return points;
}

}  // namespace triglub_test
