// The positions that a SmartIndex selects, without its borders. Programs use smartindex.h; this is its inside.
#ifndef TRIGLUB_RUN_SET_H
#define TRIGLUB_RUN_SET_H

#include <cstddef>
#include <initializer_list>
#include <map>
#include <vector>

namespace triglub {

// A set of positions, held as the runs they form. A value type.
//
// There are two forms, and one of them is empty. A list is quick to copy and to go through: whole sets are made as
// lists, copies among them. A tree is quick to change at one place: when more than a few single positions of a list
// have changed, a tree is planted of it, which stands until a whole set is made again. Planting goes through all runs,
// but so did what made the list; beside that, the change of a single position takes logarithmic time.
//
// Not synchronised; const calls change nothing, so they may run side by side.
class RunSet {
 public:
  // The positions from begin to before end.
  struct Run {
    unsigned long begin;
    unsigned long end;

    bool is_empty() const { return begin >= end; }
  };

  RunSet() = default;
  RunSet(const RunSet& other);
  RunSet& operator=(const RunSet& other);
  // The source is empty afterwards, unless it is the target.
  RunSet(RunSet&& other) noexcept;
  RunSet& operator=(RunSet&& other) noexcept;
  ~RunSet() = default;

  // Adds a run of positions. REQUIRES: it begins behind all positions that are there.
  void append(const Run& run);
  void set(unsigned long position, bool value);

  // Of the positions within `span`, keeps those that `other` has, or those that it has not. All others stay.
  void limit_to(const RunSet& other, const Run& span);
  void remove(const RunSet& other, const Run& span);

  bool has(unsigned long position) const;
  // The first run that ends behind the position; a run at the highest number there is when there is none.
  Run run_behind(unsigned long position) const;
  // The last run that begins before the position; the empty run at 0 when there is none.
  Run run_before(unsigned long position) const;

  // The number of runs. REQUIRES of the two behind it: there is one.
  std::size_t size() const { return list_.size() + tree_.size(); }
  Run front() const;
  Run back() const;

  // Calls visit(run) for all runs, ascending.
  template <typename Visit>
  void each(Visit visit) const {
    for (const Run& run : list_) visit(run);
    for (const auto& [begin, end] : tree_) visit(Run{begin, end});
  }

 private:
  using List = std::vector<Run>;
  using Tree = std::map<unsigned long, unsigned long>;  // where runs begin, and where they end

  // The runs within `span` give way to those of the pieces, ascending, that are not empty.
  using Pieces = std::initializer_list<Run>;
  void replace(const Run& span, Pieces pieces);
  void replace_in_list(const Run& span, Pieces pieces);
  void replace_in_tree(const Run& span, Pieces pieces);
  void plant_tree();
  void become_list();
  void become(List list);

  // Runs are not empty and do not touch each other; the list's ascend.
  List list_;
  Tree tree_;
  unsigned changes_ = 0;  // of single positions, since the list was made
};

}  // namespace triglub

#endif
