// Begin and end of networks, stations and channels.
#ifndef TRIGLUB_CHECKS_SPAN_CHECKS_H
#define TRIGLUB_CHECKS_SPAN_CHECKS_H

#include <map>
#include <string>
#include <vector>

#include "checks/element.h"
#include "checks/instant.h"
#include "checks/place.h"

namespace triglub::checks {

// The span of an element, after findings about its dates. A date that cannot be read is no limit.
Span check_dates(const Element& element, const Place& place);
// A station or channel also needs a begin.
void check_begin(const Element& element, const Place& place);
// `outer_name`: what is around it, as "station".
void check_within(const Span& inner, const Span& outer, const std::string& outer_name, int line, const Place& place);

// The spans of the children of one element, by their codes.
class EpochBook {
 public:
  void add(const std::string& code, const Span& span, int line, const Place& place);
  // Tells which ones of a code overlap, and forgets all.
  void close();

 private:
  struct Epoch {
    Span span;
    int line;
    Place place;
  };
  static void tell_overlaps(std::vector<Epoch>& epochs);

  std::map<std::string, std::vector<Epoch>> epochs_;
};

}  // namespace triglub::checks

#endif
