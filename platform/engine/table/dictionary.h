// The distinct texts of a column, each with a code.
#ifndef TRIGLUB_ENGINE_TABLE_DICTIONARY_H
#define TRIGLUB_ENGINE_TABLE_DICTIONARY_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace triglub {

// Codes count from 0 in the order in which texts come in. Texts stay where they are as long as the dictionary lives,
// and when it is moved. The const members are safe for concurrent use.
class Dictionary {
 public:
  Dictionary();

  // The code of a text, a new one if it is new. The bytes are copied.
  std::uint32_t intern(std::string_view text);
  // The code of a text that is there.
  std::optional<std::uint32_t> find(std::string_view text) const;
  std::string_view operator[](std::uint32_t code) const { return texts_[code]; }
  std::uint32_t size() const { return static_cast<std::uint32_t>(texts_.size()); }

  // By code: the place of each text in ascending byte order.
  std::vector<std::uint32_t> ranks() const;

 private:
  std::size_t slot_of(std::string_view text, std::uint32_t hash) const;
  std::string_view keep(std::string_view text);
  void grow();

  std::vector<std::string_view> texts_;
  std::vector<std::uint32_t> hashes_;  // by code: what growing need not work out again
  std::vector<std::uint32_t> slots_;   // open addressing; code + 1, 0 for a free slot
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t block_left_ = 0;
  char* block_at_ = nullptr;
};

}  // namespace triglub

#endif
