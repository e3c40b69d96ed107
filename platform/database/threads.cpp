#include "database/threads.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/database.h"

namespace triglub {

namespace {

std::size_t threads = 1;

}  // namespace

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
