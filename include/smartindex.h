// The record index: which records of a view are selected.
//
//     SmartIndex all(db_nrecs(view), true);
//     SmartIndex some = pseudo_subset(view, "sitechan.chan =~ /BHZ/", all);
//     all.remove(some);
//     for (const std::string& sta : get_unique(view, "sta", some)) ...
#ifndef TRIGLUB_SMARTINDEX_H
#define TRIGLUB_SMARTINDEX_H

#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "platform/export.h"
#include "run_set.h"

// A set of record numbers of one view, seen as a flag a record, with its borders kept beside. Position i stands for
// record i. A value type: copies are independent of each other.
//
// Inside, the selected positions are held as runs. Records that belong together lie together in the views that are
// walked, so a set has few runs, and copying or narrowing one costs no more than it has, however many records the view
// has. Setting one flag after another, in any order, costs the logarithm of the number of runs each.
//
// The borders are the lowest and highest selected position, both size() when nothing is selected: exactly so after a
// constructor from flags, reset_borders, limit_to and remove; the (n, value) constructor and set() keep them
// incrementally and say themselves where they differ.
class TRIGLUB_API SmartIndex {
 public:
  // n flags, all `value`. value true: borders 0 and n - 1 (unsigned: for n = 0 the upper one wraps around); value
  // false: both n.
  SmartIndex(unsigned long n, bool value);
  explicit SmartIndex(std::vector<bool> flags);
  // n flags, true from `begin` to before `end` (cut at n), the borders exact.
  static SmartIndex of_range(unsigned long n, unsigned long begin, unsigned long end);

  SmartIndex(const SmartIndex& other);
  SmartIndex& operator=(const SmartIndex& other);
  // The source keeps its borders; its flags are gone.
  SmartIndex(SmartIndex&& other) noexcept;
  SmartIndex& operator=(SmartIndex&& other) noexcept;
  ~SmartIndex();

  unsigned long first() const;
  unsigned long last() const;
  unsigned long size() const;   // number of flags
  unsigned long count() const;  // number of true flags, over all positions

  // True when the handle's record number is neither negative nor beyond the flags, and selected.
  bool includes(Dbptr db) const;

  // Sets flag i and moves the borders. Clearing the first of exactly two selected positions leaves first() at size();
  // reset_borders() mends it. Throws std::range_error "SmartIndex::set value out of range" for i > size(). i == size()
  // is let through by that test: there is no such flag, but the borders move as if there were one.
  void set(unsigned long i, bool value);

  // The neighbouring selected position strictly between the borders, or first() from below them (last() from above);
  // size() when there is none. A step from inside the range never gives the border itself.
  unsigned long next(unsigned long i) const;
  unsigned long prev(unsigned long i) const;

  // Keeps what `other` selects as well, from the larger of the two lower borders on: what is selected below it stays.
  // Throws std::range_error "AandB: vectors are not the same size!" and changes nothing when the sizes differ.
  void limit_to(const SmartIndex& other);

  // Unselects what `other` selects. Flags that a smaller `other` does not have count as false.
  void remove(const SmartIndex& other);

  void reset_first();    // the lower border from the flags
  void reset_borders();  // both borders from the flags

  // True when the borders say all: what lies between them is selected, and nothing else.
  bool is_one_run() const;

  // The selected positions as runs, ascending: from first to before second.
  std::vector<std::pair<unsigned long, unsigned long>> runs() const;

  // "([0110],1,2)": the flags, the lower and the upper border.
  std::string as_string() const;

 private:
  unsigned long size_;
  triglub::RunSet runs_;  // what is selected
  unsigned long first_;
  unsigned long last_;
};

// Kept for programs that link it; does nothing.
TRIGLUB_API void test_SmartIndex();

// The distinct texts (trimmed, in ascending byte order) that a field takes over the selected records. `field` is a
// field name, bare or qualified; the record number of `db` does not matter. A value that cannot be read counts as the
// one read before it. Values of 1024 bytes and more are not supported.
// Throws std::runtime_error ("db field [NAME] not found") and dbquery_error (failed queries).
TRIGLUB_API std::vector<std::string> get_unique(Dbptr db, std::string field, SmartIndex index);

#endif
