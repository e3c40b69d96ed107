// Random cases: small databases whose rows meet, miss, touch and double one another, and element trees over them.
#ifndef TRIGLUB_TESTS_REFERENCE_RANDOM_CASE_H
#define TRIGLUB_TESTS_REFERENCE_RANDOM_CASE_H

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

#include "reference/case.h"

namespace triglub_reference {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  // The choices are those of the bytes, which must outlive it: a byte for one of up to 256, two for one of more. When
  // they are used up, what may be or not is not, so that few bytes make a small case.
  explicit Random(std::string_view choices) : has_choices_(true), choices_(choices) {}

  int below(int end) { return static_cast<int>(next(end) % static_cast<std::uint64_t>(end)); }
  int between(int first, int last) { return first + below(last - first + 1); }
  bool percent(int chance) { return !is_used_up() && below(100) < chance; }
  template <typename List>
  const auto& one_of(const List& list) {
    return *(std::begin(list) + below(static_cast<int>(std::size(list))));
  }
  std::string pick(std::initializer_list<const char*> list) { return one_of(list); }

 private:
  bool is_used_up() const { return has_choices_ && choices_.empty(); }
  std::uint64_t next(int end) {
    if (choices_.empty()) return engine_();
    const std::uint64_t choice = next_byte();
    return end <= 256 ? choice : choice << 8 | next_byte();
  }
  std::uint64_t next_byte() {
    if (choices_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(choices_.front());
    choices_.remove_prefix(1);
    return byte;
  }

  std::mt19937_64 engine_;
  bool has_choices_ = false;
  std::string_view choices_;
};

// How large the tables are at most.
struct Extent {
  int stations;
  int stages;  // of a channel epoch
};

Tables random_tables(Random& random, const Extent& extent);

// A tree of any shape; `faults` are the chances in ten thousand, at each line, of something that ends the conversion.
Tree random_tree(Random& random, int faults);
// Networks, stations, channels, responses and stages, with random lines between them.
Tree random_document_tree(Random& random, int faults);
// A chain of groups around the depth limit, which at times leads back into itself.
Tree random_deep_tree(Random& random);

// A tree that shows every record of the master view by the load dates of its rows.
Tree ledger_tree();

// A case with one of these trees, a subset at times and flags of any kind, most often those of the response level.
Request random_request(Random& random);
// Tables under the ledger tree.
Request random_ledger_request(Random& random);
// A document tree at the response level.
Request random_response_request(Random& random);
// Any tree over a view of hundreds of records.
Request random_large_request(Random& random);
// A deep tree at any verbosity.
Request random_deep_request(Random& random);

}  // namespace triglub_reference

#endif
