// The sessions of the process by number, as handles name them.
#ifndef TRIGLUB_ENGINE_SESSION_REGISTRY_H
#define TRIGLUB_ENGINE_SESSION_REGISTRY_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "engine/session/session.h"

namespace triglub {

// Any thread may add, find and remove at any time. Finding takes no lock: a conversion resolves millions of handles.
class Registry {
 public:
  Registry() = default;
  ~Registry();
  Registry(const Registry&) = delete;
  Registry& operator=(const Registry&) = delete;

  // The registry of the process.
  static Registry& instance();

  // Takes a session in; its number, from 0, which is not used again.
  std::int64_t add(std::unique_ptr<Session> session);
  // The session, as long as nobody removes it; null for a number of none.
  Session* find(std::int64_t number) const;
  // Ends a session. False for a number of none.
  bool remove(std::int64_t number);

 private:
  using Slot = std::atomic<Session*>;  // null: removed, or not given out yet

  // Block b holds 2^b slots, for the numbers from 2^b - 1. Blocks stay where they are, so that a reader is never in the
  // way of one who adds.
  static constexpr std::size_t kBlocks = 48;

  Slot* slot_of(std::int64_t number) const;

  std::array<std::atomic<Slot*>, kBlocks> blocks_{};
  std::mutex mutex_;  // of those who add
  std::int64_t next_ = 0;
};

}  // namespace triglub

#endif
