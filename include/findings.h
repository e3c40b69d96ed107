// What a conversion has to tell about the tables: what it left out, what contradicts itself, what it took for granted.
#ifndef TRIGLUB_FINDINGS_H
#define TRIGLUB_FINDINGS_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/export.h"

namespace triglub {

// A note is worth knowing; a warning says that the document is not all that the tables are.
enum class Rank : std::uint8_t { note, warning };

// One kind of finding: how often it was made, and where first.
struct Finding {
  Rank rank = Rank::note;
  std::string what;
  std::uint64_t count = 0;
  std::vector<std::string> places;  // the first few
};

// A value type; one thread at a time.
class TRIGLUB_API Findings {
 public:
  static constexpr std::size_t kPlacesKept = 5;

  void add(Rank rank, const std::string& what, const std::string& place);
  // Adds what another found, as if it had been found here, afterwards.
  void add(const Findings& other);

  bool empty() const { return findings_.empty(); }
  bool has(Rank rank) const;
  // Warnings first; each rank in the order of the texts.
  std::vector<Finding> all() const;
  // Each as one line of the log: "WHAT: COUNT (PLACE, PLACE, ...)", warnings by elog_complain, notes by elog_notify.
  void report() const;

 private:
  struct Places {
    std::uint64_t count = 0;
    std::vector<std::string> first;
  };
  std::map<std::pair<Rank, std::string>, Places> findings_;
};

}  // namespace triglub

#endif
