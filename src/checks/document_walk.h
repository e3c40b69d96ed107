// A document from its root down to channels, each of which is looked at when it is whole, and forgotten.
#ifndef TRIGLUB_CHECKS_DOCUMENT_WALK_H
#define TRIGLUB_CHECKS_DOCUMENT_WALK_H

#include <optional>
#include <string>
#include <vector>

#include "checks/channel.h"
#include "checks/place.h"
#include "checks/span_checks.h"
#include "checks/xml_stream.h"

namespace triglub::checks {

class DocumentWalk : public XmlEvents {
 public:
  explicit DocumentWalk(Reporter* reporter) : reporter_(reporter) {}

  bool start(std::string_view name_space, Element element) override;
  void text(std::string_view text) override;
  void end() override;
  void finish() override;

 private:
  // A network or a station that is open.
  struct Surrounding {
    std::string code;
    Place place;
    Span span;
    EpochBook children;
  };

  bool open_root(std::string_view name_space, Element element);
  bool is_looked_at(std::string_view name_space, std::string_view name) const;
  bool has_room(const Element& element);
  void open(Element element);
  void open_network(const Element& network);
  void open_station(const Element& station);
  void close(Element element);
  void close_network(const Element& network);
  void close_station(const Element& station);
  void close_channel(const Element& channel);
  void check_channel(const Element& element, const Place& place, const Span& span);
  void check_stages_missing(const Channel& channel, const Place& place);
  bool is_at(std::size_t depth, std::string_view name, const Element& element) const;

  Reporter* reporter_;
  std::vector<Element> open_;   // from the root
  std::uint64_t skipped_ = 0;   // how deep we are in an element that nobody looks at
  std::uint64_t elements_ = 0;  // how many are held for the channel or station
  EpochBook networks_;
  std::optional<Surrounding> network_;
  std::optional<Surrounding> station_;
  bool has_stages_ = false;                 // the document, as far as it has been read
  std::vector<DocumentFinding> held_back_;  // what is told once it has
};

}  // namespace triglub::checks

#endif
