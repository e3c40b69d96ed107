// Which points of a run faults are tried at.
#ifndef TRIGLUB_TESTS_FAULTS_SAMPLE_H
#define TRIGLUB_TESTS_FAULTS_SAMPLE_H

#include <cstdint>
#include <vector>

namespace triglub_test {

// Some `few` of the points 1 to `last`, at equal distances from a random one on, which is printed; where the
// environment has FAULTS_ALL=N every Nth, with 1 all of them.
std::vector<std::uint64_t> sample(std::uint64_t last, std::uint64_t few);

// Whether the environment has FAULTS_ALL.
bool are_all_tried();

}  // namespace triglub_test

#endif
