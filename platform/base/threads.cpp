#include "base/threads.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/database.h"

namespace triglub {

namespace {

std::size_t threads = 1;

constexpr std::uint32_t LEAST_PART = 20000;  // records for which a thread is worth its start

}  // namespace

bool are_worth_threads(std::size_t records) { return threads > 1 && records >= 2 * std::size_t{LEAST_PART}; }

Parts::Parts(std::uint32_t begin, std::uint32_t end)
    : begin_(begin), count_(end - begin), size_(std::clamp<std::size_t>(count_ / LEAST_PART, 1, thread_count())) {}

std::uint32_t Parts::begin(std::size_t part) const {
  return begin_ + static_cast<std::uint32_t>(std::uint64_t{count_} * part / size_);
}

std::size_t thread_count() { return threads; }

void set_threads(unsigned int count) { threads = std::max(count, 1U); }

void run_side_by_side(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next{0};
  const auto take_turns = [&] {
    for (std::size_t i = next++; i < count; i = next++) work(i);
  };
  std::vector<std::thread> helpers;
  try {
    while (helpers.size() + 1 < std::min(count, threads)) helpers.emplace_back(take_turns);
  } catch (const std::system_error&) {
    // No more threads are to be had; those there are do the work.
  }
  take_turns();
  for (std::thread& helper : helpers) helper.join();
}

}  // namespace triglub
