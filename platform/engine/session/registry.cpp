// A slot is written before its number is given out, and a block before its slots are reached through it.
#include "engine/session/registry.h"

#include <bit>
#include <utility>

namespace triglub {

constinit LastingRegistry process_registry;

Registry::~Registry() {
  for (std::int64_t number = 0; number < next_; ++number) remove(number);
  for (const auto& block : blocks_) delete[] block.load();
}

std::int64_t Registry::add(std::unique_ptr<Session> session) {
  const std::lock_guard lock(mutex_);
  const std::uint64_t place = static_cast<std::uint64_t>(next_) + 1;
  if (std::has_single_bit(place)) blocks_[static_cast<std::size_t>(std::countr_zero(place))] = new Slot[place]();
  slot_of(next_)->store(session.release(), std::memory_order_release);
  return next_++;  // not before its block is there: memory may have run out
}

bool Registry::remove(std::int64_t number) {
  Slot* slot = slot_of(number);
  const std::unique_ptr<Session> session(slot == nullptr ? nullptr : slot->exchange(nullptr));
  return session != nullptr;
}

}  // namespace triglub
