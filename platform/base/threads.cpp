// Helper threads are started for each piece of work and end with it: the work is worth far more than their start.
#include "base/threads.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/threads.h"

namespace triglub {

namespace {

std::atomic<std::size_t> threads = 1;

constexpr std::uint32_t kLeastChunk = 20000;  // records for which a thread is worth its start

}  // namespace

bool are_worth_threads(std::size_t records) { return threads > 1 && records >= 2 * std::size_t{kLeastChunk}; }

Chunks::Chunks(std::uint32_t begin, std::uint32_t end)
    : begin_(begin), count_(end - begin), size_(std::clamp<std::size_t>(count_ / kLeastChunk, 1, thread_count())) {}

std::uint32_t Chunks::begin(std::size_t chunk) const {
  return begin_ + static_cast<std::uint32_t>(std::uint64_t{count_} * chunk / size_);
}

std::size_t thread_count() { return threads; }

void set_threads(unsigned int count) { threads = std::max(count, 1U); }

void run_side_by_side(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next{0};
  const auto take_turns = [&] {
    for (std::size_t i = next++; i < count; i = next++) work(i);
  };
  const std::size_t wanted = std::min(count, thread_count());
  std::vector<std::thread> helpers;
  try {
    while (helpers.size() + 1 < wanted) helpers.emplace_back(take_turns);
  } catch (const std::system_error&) {
    // The system gives no more threads; those that run do the work.
  }
  take_turns();
  for (std::thread& helper : helpers) helper.join();
}

}  // namespace triglub
