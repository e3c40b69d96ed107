// Helper threads are started for each piece of work and end with it: the work is worth far more than their start.
#include "base/threads.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
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

namespace {

// Calls of a piece of work, which several threads take one after another.
class SharedCalls {
 public:
  SharedCalls(std::size_t count, const std::function<void(std::size_t)>& work) : count_(count), work_(work) {}

  void take_turns() noexcept {
    try {
      for (std::size_t i = next_++; i < count_; i = next_++) work_(i);
    } catch (...) {
      next_ = count_;
      if (!has_failed_.test_and_set()) failure_ = std::current_exception();
    }
  }

  // REQUIRES: no thread takes turns any more.
  void rethrow() const {
    if (failure_ != nullptr) std::rethrow_exception(failure_);
  }

 private:
  std::size_t count_;
  const std::function<void(std::size_t)>& work_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic_flag has_failed_;
  std::exception_ptr failure_;
};

// As many as the system gives, which may be none: for want of threads or of memory.
std::vector<std::thread> helpers_for(SharedCalls& calls, std::size_t wanted) {
  std::vector<std::thread> helpers;
  helpers.reserve(wanted);
  try {
    while (helpers.size() < wanted) helpers.emplace_back([&calls] { calls.take_turns(); });
  } catch (const std::system_error&) {
  } catch (const std::bad_alloc&) {
  }
  return helpers;
}

}  // namespace

void run_side_by_side(std::size_t count, const std::function<void(std::size_t)>& work) {
  if (count == 0) return;
  SharedCalls calls(count, work);
  std::vector<std::thread> helpers = helpers_for(calls, std::min(count, thread_count()) - 1);
  calls.take_turns();
  for (std::thread& helper : helpers) helper.join();
  calls.rethrow();
}

}  // namespace triglub
