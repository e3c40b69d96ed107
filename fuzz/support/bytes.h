// The bytes of an input, taken from the front: choices first, texts with them. When they are used up every choice is
// the first and every text is empty, so that an input of any length means something.
#ifndef TRIGLUB_FUZZ_SUPPORT_BYTES_H
#define TRIGLUB_FUZZ_SUPPORT_BYTES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace triglub_fuzz {

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}

  bool at_end() const { return rest_.empty(); }
  std::string_view rest() const { return rest_; }

  std::uint8_t byte() { return rest_.empty() ? 0 : static_cast<std::uint8_t>(take(1)[0]); }
  // A number from 0 to before `end`, which is at most 256.
  std::size_t below(std::size_t end) { return byte() % end; }
  bool one_in(std::size_t chances) { return below(chances) == chances - 1; }
  // At most so many bytes.
  std::string_view take(std::size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  // Up to a byte that ends it, which is taken with it; the rest when there is none.
  std::string_view take_until(char end) {
    const std::string_view taken = take(std::min(rest_.find(end), rest_.size()));
    take(1);
    return taken;
  }
  template <typename List>
  const auto& one_of(const List& list) {
    return list[below(std::size(list))];
  }

 private:
  std::string_view rest_;
};

}  // namespace triglub_fuzz

#endif
