// Conversions that a program holds itself: any number of them, each with all that it remembers, each used by one thread
// at a time.
//
//     triglub::Conversion conversion;
//     try {
//       conversion.write(db, pf, subset, std::cout, triglub::flags_for(triglub::DetailLevel::response));
//     } catch (const triglub::FatalFailure& failure) {
//       ...                                                       // failure.what(); the process goes on
//     }
//
// The functions of db2stationxml.h do the same with the one conversion of the process, and end the process where these
// throw FatalFailure. Two conversions of one database in two threads need a session of the database each
// (platform/sessions.h); they can share a ResponseCache.
#ifndef TRIGLUB_CONVERSION_H
#define TRIGLUB_CONVERSION_H

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "elements.h"
#include "fatal_failure.h"
#include "platform/containers.h"
#include "platform/database.h"
#include "platform/export.h"
#include "platform/parfile.h"
#include "resp_helper.h"
#include "smartindex.h"

namespace triglub {

// How far down a document goes.
enum class DetailLevel : unsigned int { network = 0x08, station = 0x10, channel = 0x20, response = 0x40 };

// The flags of a conversion; verbosity as for db2stationxml, 0 to 3.
constexpr unsigned int flags_for(DetailLevel level, unsigned int verbosity = 0) {
  return static_cast<unsigned int>(level) | verbosity;
}

class ConversionState;

// Who writes a group line of a node in the writer's place.
using GroupLineHandler = std::function<void(const ElementDescription& line)>;

class TRIGLUB_API Conversion {
 public:
  // One that remembers nothing yet: as in a new process.
  Conversion();
  ~Conversion();
  Conversion(Conversion&& other) noexcept;
  Conversion& operator=(Conversion&& other) noexcept;

  // The responses to use, read once for many conversions; without, prepare() reads its own at the response level, once.
  void use_responses(std::shared_ptr<const ResponseCache> responses);
  // The parameter file `site` to use, which must outlive the conversion's last call; without, it is read whenever a
  // value is asked for, and one that cannot be read then gives empty texts.
  void use_site(Pf* site);
  // Puts the unit chain of the stages back to where a new conversion has it.
  void forget_units();

  // Each as the function of db2stationxml.h: db2stationxml, prepare_conversion, xml_create_node (twice),
  // xml_create_group_line, get_categories. They throw what those throw, and FatalFailure where those end the process;
  // after either the conversion can be used again.
  void write(Dbptr db, Pf* pf, rbtree* subset, std::ostream& out, unsigned int flags);
  Dbptr prepare(Dbptr db, Pf* pf, rbtree* subset, unsigned int flags);
  void write_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index);
  void write_node(std::ostream& out, Dbptr db, const ElementGroup& group, const SmartIndex& index,
                  const GroupLineHandler& handle_group_line);
  void write_group_line(std::ostream& out, Dbptr db, const ElementGroup& group, const ElementDescription& line,
                        const SmartIndex& index);
  std::vector<std::string> categories(Dbptr db, const ElementDescription& line, const SmartIndex& index);

 private:
  std::unique_ptr<ConversionState> state_;
};

}  // namespace triglub

#endif
