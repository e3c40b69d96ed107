// A slot is written before its number is given out, and a block before its slots are reached through it.
#include "engine/session/registry.h"

#include <bit>
#include <utility>

namespace triglub {

Registry::~Registry() {
  for (std::int64_t number = 0; number < next_; ++number) remove(number);
  for (const auto& block : blocks_) delete[] block.load();
}

Registry& Registry::instance() {
  // Never destroyed: threads may still be at work when the process ends.
  static auto* registry = new Registry;
  return *registry;
}

Registry::Slot* Registry::slot_of(std::int64_t number) const {
  if (number < 0) return nullptr;
  const std::uint64_t place = static_cast<std::uint64_t>(number) + 1;
  const auto block = static_cast<std::size_t>(std::bit_width(place)) - 1;
  if (block >= kBlocks) return nullptr;
  Slot* slots = blocks_[block].load(std::memory_order_acquire);
  return slots == nullptr ? nullptr : slots + (place - std::bit_floor(place));
}

std::int64_t Registry::add(std::unique_ptr<Session> session) {
  const std::lock_guard lock(mutex_);
  const std::int64_t number = next_++;
  const std::uint64_t place = static_cast<std::uint64_t>(number) + 1;
  if (std::has_single_bit(place)) blocks_[static_cast<std::size_t>(std::countr_zero(place))] = new Slot[place]();
  slot_of(number)->store(session.release(), std::memory_order_release);
  return number;
}

Session* Registry::find(std::int64_t number) const {
  const Slot* slot = slot_of(number);
  return slot == nullptr ? nullptr : slot->load(std::memory_order_acquire);
}

bool Registry::remove(std::int64_t number) {
  Slot* slot = slot_of(number);
  const std::unique_ptr<Session> session(slot == nullptr ? nullptr : slot->exchange(nullptr));
  return session != nullptr;
}

}  // namespace triglub
