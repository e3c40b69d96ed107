// Stable sort of a view's records by the values of some fields, compared by type.
//
// The plain form of it all is std::stable_sort of the record numbers with compare(): every way below gives the same
// order. Each key of a record is one 64-bit key word whose unsigned order is the value's: a text's rank among its
// column's texts, an integer with its sign bit flipped, a double with its sign bit or, when negative, all bits flipped.
//
//   records_in_order   A view that is in order already, as most are, costs one comparison of each record with the one
//                      before it and no sort. It also picks the first of equal records.
//   KeyWords           Otherwise all key words are worked out once, n of them and not n log n, record by record.
//   PackedRecords      The key words of codes and dates have few bits that differ. Where those of all keys and the
//                      record number fit into 64, a record is one number: the keys as distances from the least word of
//                      each, the first key highest, the record number lowest. Comparing two records is comparing two
//                      numbers that lie at hand, and as no two are equal, std::sort, which need not be stable, keeps
//                      equal records in their order. With no more key bits than record bits counting is faster still.
//   sort_by_key_words  What does not fit is sorted stably by the key words of each record.
#include "engine/operations/sort.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <limits>
#include <numeric>
#include <optional>

#include "base/threads.h"
#include "engine/operations/select.h"
#include "platform/elog.h"

namespace triglub {

namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

std::uint64_t ordered(std::int64_t value) { return static_cast<std::uint64_t>(value) ^ kSignBit; }

std::uint64_t ordered(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value);
  return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

class SortKey {
 public:
  SortKey(const View& view, const ViewField& field) : view_(&view), field_(field) {
    const Table& table = view.table_of(field);
    storage_ = view.schema_of(field).storage();
    if (storage_ != Storage::text) return;
    codes_ = table.text_codes(field.field);
    ranks_ = &table.text_ranks(field.field);
  }

  std::uint64_t word(std::uint32_t record) const {
    switch (storage_) {
      case Storage::text: {
        const std::uint32_t row = view_->row(field_.table, record);
        return (*ranks_)[codes_[row]];
      }
      case Storage::integer:
        return ordered(view_->integer(field_, record));
      case Storage::real:
        return ordered(view_->real(field_, record));
    }
    return 0;
  }

 private:
  const View* view_;
  ViewField field_;
  Storage storage_;
  TextCodes codes_{};
  const std::vector<std::uint32_t>* ranks_ = nullptr;
};

using SortKeys = std::vector<SortKey>;

// Negative, 0 or positive as record a comes before, with or after record b.
int compare(const SortKeys& keys, std::uint32_t a, std::uint32_t b) {
  for (const SortKey& key : keys) {
    const std::uint64_t left = key.word(a);
    const std::uint64_t right = key.word(b);
    if (left != right) return left < right ? -1 : 1;
  }
  return 0;
}

// The records of a view that is in order, of equal ones only the first when `is_unique`. Nothing when it is not in
// order.
std::optional<std::vector<std::uint32_t>> records_in_order(const SortKeys& keys, std::uint32_t records,
                                                           bool is_unique) {
  if (records == 0) return std::vector<std::uint32_t>();
  const Chunks chunks(1, records);  // the first has none before it
  std::vector<std::vector<std::uint32_t>> kept(chunks.size());
  std::atomic<bool> is_sorted{true};
  run_side_by_side(chunks.size(), [&](std::size_t i) {
    const std::uint32_t end = chunks.end(i);
    std::vector<std::uint32_t> own;
    own.reserve(end - chunks.begin(i));
    for (std::uint32_t r = chunks.begin(i); r < end && is_sorted; ++r) {
      const int order = compare(keys, r - 1, r);
      if (order > 0) is_sorted = false;
      if (order < 0 || !is_unique) own.push_back(r);
    }
    kept[i] = std::move(own);
  });
  if (!is_sorted) return std::nullopt;
  std::vector<std::uint32_t> order = {0};
  order.reserve(records);
  for (const auto& part : kept) order.insert(order.end(), part.begin(), part.end());
  return order;
}

// The key words of all records, record by record.
struct KeyWords {
  KeyWords(const SortKeys& keys, std::uint32_t records)
      : width(keys.size()), records(records), all(std::size_t{records} * width) {
    const Chunks chunks(0, records);
    run_side_by_side(chunks.size(), [&](std::size_t i) {
      const std::uint32_t end = chunks.end(i);
      for (std::uint32_t r = chunks.begin(i); r < end; ++r) {
        for (std::size_t k = 0; k < width; ++k) all[r * width + k] = keys[k].word(r);
      }
    });
  }

  std::size_t width;
  std::uint32_t records;
  std::vector<std::uint64_t> all;
};

// The key words of a record and its number in one 64-bit number, where they fit.
class PackedRecords {
 public:
  explicit PackedRecords(const KeyWords& words)
      : words_(words), record_bits_(static_cast<int>(std::bit_width(words.records))) {
    for (std::size_t k = 0; k < words.width; ++k) {
      const auto [least, most] = range_of(k);
      least_.push_back(least);
      key_bits_.push_back(static_cast<int>(std::bit_width(most - least)));
      all_key_bits_ += key_bits_.back();
    }
  }

  bool fit() const { return all_key_bits_ + record_bits_ <= std::numeric_limits<std::uint64_t>::digits; }

  // REQUIRES: fit().
  void sort(std::vector<std::uint32_t>* order) const {
    if (all_key_bits_ <= record_bits_) return sort_by_counting(order);  // many records of few kinds
    std::vector<std::uint64_t> packed;
    packed.reserve(words_.records);
    for (std::uint32_t r = 0; r < words_.records; ++r) packed.push_back(packed_keys(r) << record_bits_ | r);
    std::sort(packed.begin(), packed.end());
    const std::uint64_t mask = (std::uint64_t{1} << record_bits_) - 1;
    std::transform(packed.begin(), packed.end(), order->begin(),
                   [mask](std::uint64_t record) { return static_cast<std::uint32_t>(record & mask); });
  }

 private:
  std::pair<std::uint64_t, std::uint64_t> range_of(std::size_t k) const {
    std::pair<std::uint64_t, std::uint64_t> range = {words_.all[k], words_.all[k]};
    for (std::size_t i = k; i < words_.all.size(); i += words_.width) {
      range.first = std::min(range.first, words_.all[i]);
      range.second = std::max(range.second, words_.all[i]);
    }
    return range;
  }

  std::uint64_t packed_keys(std::uint32_t r) const {
    std::uint64_t packed = 0;
    for (std::size_t k = 0; k < words_.width; ++k) {
      packed = packed << key_bits_[k] | (words_.all[r * words_.width + k] - least_[k]);
    }
    return packed;
  }

  void sort_by_counting(std::vector<std::uint32_t>* order) const {
    std::vector<std::uint32_t> next((std::size_t{1} << all_key_bits_) + 1, 0);  // by keys: the place of the next record
    for (std::uint32_t r = 0; r < words_.records; ++r) ++next[packed_keys(r) + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    for (std::uint32_t r = 0; r < words_.records; ++r) (*order)[next[packed_keys(r)]++] = r;
  }

  const KeyWords& words_;
  int record_bits_;
  std::vector<std::uint64_t> least_;  // by key
  std::vector<int> key_bits_;         // by key
  int all_key_bits_ = 0;
};

void sort_by_key_words(const KeyWords& words, std::vector<std::uint32_t>* order) {
  std::stable_sort(order->begin(), order->end(), [&](std::uint32_t a, std::uint32_t b) {
    const auto left = words.all.begin() + static_cast<std::ptrdiff_t>(a * words.width);
    const auto right = words.all.begin() + static_cast<std::ptrdiff_t>(b * words.width);
    const auto end = left + static_cast<std::ptrdiff_t>(words.width);
    return std::lexicographical_compare(left, end, right, right + static_cast<std::ptrdiff_t>(words.width));
  });
}

std::vector<std::uint32_t> sorted_records(const SortKeys& keys, std::uint32_t records) {
  std::vector<std::uint32_t> order(records);
  std::iota(order.begin(), order.end(), 0);
  const KeyWords words(keys, records);
  const PackedRecords packed(words);
  if (packed.fit()) {
    packed.sort(&order);
  } else {
    sort_by_key_words(words, &order);
  }
  return order;
}

void keep_first_of_runs(const SortKeys& keys, std::vector<std::uint32_t>* order) {
  const auto same = [&](std::uint32_t a, std::uint32_t b) { return compare(keys, a, b) == 0; };
  order->erase(std::unique(order->begin(), order->end(), same), order->end());
}

std::vector<std::uint32_t> records_by(const SortKeys& keys, std::uint32_t records, bool is_unique) {
  if (auto order = records_in_order(keys, records, is_unique)) return std::move(*order);
  std::vector<std::uint32_t> order = sorted_records(keys, records);
  if (is_unique) keep_first_of_runs(keys, &order);
  return order;
}

std::string operation_text(const std::vector<std::string>& keys, EqualRecords equal) {
  std::string text = equal == EqualRecords::first ? "dbsort -u" : "dbsort";
  for (const std::string& key : keys) text.append(" ").append(key);
  return text;
}

// Nothing, after a complaint, when the view lacks one of the fields.
std::optional<SortKeys> sort_keys(const View& view, const std::vector<std::string>& names) {
  SortKeys keys;
  for (const std::string& name : names) {
    const int field = view.find_field(name);
    if (field < 0) {
      elog_complain(0, "dbsort: the view has no field '%s'", name.c_str());
      return std::nullopt;
    }
    keys.emplace_back(view, view.fields()[static_cast<std::size_t>(field)]);
  }
  return keys;
}

}  // namespace

std::unique_ptr<const View> sort_view(const View& view, const std::vector<std::string>& keys, EqualRecords equal) {
  const auto fields = sort_keys(view, keys);
  if (!fields) return nullptr;
  const std::vector<std::uint32_t> order = records_by(*fields, view.record_count(), equal == EqualRecords::first);
  return select_records(view, order, operation_text(keys, equal));
}

}  // namespace triglub
