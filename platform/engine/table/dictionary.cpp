// Open addressing with linear probing; the bytes of the texts are copied into blocks that never move.
#include "engine/table/dictionary.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>

namespace triglub {

namespace {

constexpr std::size_t kFirstSlots = 16;  // a power of two, as every later number of slots is
constexpr std::size_t kBlockBytes = 4096;

std::uint32_t hash_of(std::string_view text) {
  const std::size_t hash = std::hash<std::string_view>{}(text);
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

}  // namespace

Dictionary::Dictionary() : slots_(kFirstSlots, 0) {}

// The slot of a text, or the free one where it belongs.
std::size_t Dictionary::slot_of(std::string_view text, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot] != 0) {
    const std::uint32_t code = slots_[slot] - 1;
    if (hashes_[code] == hash && texts_[code] == text) break;
    slot = (slot + 1) & mask;
  }
  return slot;
}

std::string_view Dictionary::keep(std::string_view text) {
  if (text.size() > block_left_) {
    const std::size_t bytes = std::max(kBlockBytes, text.size());
    blocks_.push_back(std::make_unique<char[]>(bytes));
    block_at_ = blocks_.back().get();
    block_left_ = bytes;
  }
  char* kept = block_at_;
  if (!text.empty()) std::memcpy(kept, text.data(), text.size());
  block_at_ += text.size();
  block_left_ -= text.size();
  return {kept, text.size()};
}

void Dictionary::grow() {
  slots_.assign(slots_.size() * 2, 0);
  const std::size_t mask = slots_.size() - 1;
  for (std::uint32_t code = 0; code < size(); ++code) {
    std::size_t slot = hashes_[code] & mask;
    while (slots_[slot] != 0) slot = (slot + 1) & mask;  // the texts are all different
    slots_[slot] = code + 1;
  }
}

std::uint32_t Dictionary::intern(std::string_view text) {
  const std::uint32_t hash = hash_of(text);
  const std::size_t slot = slot_of(text, hash);
  if (slots_[slot] != 0) return slots_[slot] - 1;
  texts_.push_back(keep(text));
  hashes_.push_back(hash);
  const std::uint32_t code = size() - 1;
  slots_[slot] = code + 1;
  if (texts_.size() * 2 > slots_.size()) grow();
  return code;
}

std::optional<std::uint32_t> Dictionary::find(std::string_view text) const {
  const std::uint32_t entry = slots_[slot_of(text, hash_of(text))];
  if (entry == 0) return std::nullopt;
  return entry - 1;
}

std::vector<std::uint32_t> Dictionary::ranks() const {
  std::vector<std::uint32_t> order(texts_.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [this](auto a, auto b) { return texts_[a] < texts_[b]; });
  std::vector<std::uint32_t> ranks(order.size());
  for (std::uint32_t place = 0; place < order.size(); ++place) ranks[order[place]] = place;
  return ranks;
}

}  // namespace triglub
