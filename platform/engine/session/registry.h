// The sessions of the process by number, as handles name them.
#ifndef TRIGLUB_ENGINE_SESSION_REGISTRY_H
#define TRIGLUB_ENGINE_SESSION_REGISTRY_H

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "engine/session/session.h"

namespace triglub {

// Any thread may add, find and remove at any time. Finding takes no lock: a conversion resolves millions of handles.
class Registry {
 public:
  constexpr Registry() = default;
  ~Registry();
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  // Takes a session in; its number, from 0, which is not used again.
  std::int64_t add(std::unique_ptr<Session> session);
  // The session, as long as nobody removes it; null for an unknown number.
  Session* find(std::int64_t number) const {
    const Slot* slot = slot_of(number);
    return slot == nullptr ? nullptr : slot->load(std::memory_order_acquire);
  }
  // Ends a session. False for an unknown number.
  bool remove(std::int64_t number);

 private:
  using Slot = std::atomic<Session*>;  // null: removed, or not given out yet

  // Block b holds 2^b slots, for the numbers from 2^b - 1. Blocks never move, so that finding and adding do not
  // disturb each other.
  static constexpr std::size_t kBlocks = 48;

  // Null where there is no block yet.
  Slot* slot_of(std::int64_t number) const {
    const std::uint64_t place = static_cast<std::uint64_t>(number) + 1;
    const auto block = static_cast<std::size_t>(std::bit_width(place)) - 1;
    if (number < 0 || block >= kBlocks) return nullptr;
    Slot* slots = blocks_[block].load(std::memory_order_acquire);
    return slots == nullptr ? nullptr : slots + (place - (std::uint64_t{1} << block));
  }

  std::array<std::atomic<Slot*>, kBlocks> blocks_{};
  std::mutex mutex_;  // taken by add
  std::int64_t next_ = 0;
};

// A registry that is never destroyed: threads may still be at work when the process ends.
union LastingRegistry {
  constexpr LastingRegistry() : registry() {}
  ~LastingRegistry() {}
  Registry registry;
};

// The registry of the process.
extern LastingRegistry process_registry;
inline Registry& the_registry() { return process_registry.registry; }

}  // namespace triglub

#endif
