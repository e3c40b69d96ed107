// All that a conversion remembers from one record, node, document to the next. The writers are handed it; nothing of
// the library that they use remembers anything else.
//
// The conversion of the process (process_state.h) is one of these whose variables are the exported ones, so that a
// program that sets or reads those sees and changes it. One thread uses a state at a time.
#ifndef TRIGLUB_SRC_STATE_CONVERSION_STATE_H
#define TRIGLUB_SRC_STATE_CONVERSION_STATE_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "elements.h"
#include "platform/parfile.h"
#include "resp_helper.h"
#include "state/filter_texts.h"
#include "state/stage_memory.h"

namespace triglub {

// What stands for a date format that no parameter file has given yet.
inline constexpr const char* kNoDateFormat = "Uninitialized. Initialize with date_formats_init.";

// The variables that programs see of the conversion of the process.
struct ConversionVariables {
  unsigned int verbosity = 0;  // 0 to 3
  unsigned int depth = 0;      // of the node being written: 0 outside, the root at 1
  std::string date_with_ms_format = kNoDateFormat;
  std::string date_format = kNoDateFormat;
  std::map<std::string, GroupType> keywords;  // as INTERPRETERS
};

class ConversionState {
 public:
  // With variables of its own.
  ConversionState();
  // With those of somebody else, which must outlive it.
  ConversionState(unsigned int& verbosity, unsigned int& depth, std::string& date_with_ms_format,
                  std::string& date_format, std::map<std::string, GroupType>& keywords);
  ConversionState(const ConversionState&) = delete;
  ConversionState& operator=(const ConversionState&) = delete;
  ~ConversionState();

  bool is_verbose() const { return verbosity != 0; }
  // True when each function is told of as well.
  bool traces_calls() const { return verbosity > 2; }
  // True when the document is cut at groups with that tag: they and everything below them are left out.
  bool is_cut(const std::string& tag) const { return tag == final_element_name; }
  // 0x08 "Station", 0x10 "Channel", 0x20 "Stage": the tag at which the document is cut; any other value: not cut.
  void cut_at(unsigned int level);
  // Stages are written from these responses from now on. The cache must outlive that.
  void use_responses(const ResponseCache& cache);
  // As date_formats_init.
  void read_date_formats(Pf* pf);

 private:
  std::unique_ptr<ConversionVariables> own_;  // null when they are somebody else's

 public:
  unsigned int& verbosity;
  unsigned int& depth;
  std::string& date_with_ms_format;
  std::string& date_format;
  std::map<std::string, GroupType>& keywords;  // grows by every unknown keyword met, as deg_lat

  // The tag of the groups at which the document is cut; the empty text cuts nothing.
  std::string final_element_name;
  // The parameter file of the latest call, from which groups are built. Not owned; null before the first call.
  Pf* parameters = nullptr;
  int edition = 1;  // of that file
  // The parameter file `site`, read for all of this conversion. Not owned; null: it is read whenever it is asked for.
  Pf* site = nullptr;
  // Whether the latest channel written had no sample rate, or one of "0". A channel without samples has no response to
  // describe. Kept beyond the channel and the conversion: only a channel sets it.
  bool samplerate_is_zero = false;
  // Null texts by the position of the field alone, so fields of different tables share an entry: within the one master
  // view a position says all, and documents made so far rely on the first answer of a process standing.
  std::map<std::int64_t, std::string> null_texts;

  StageMemory stages;
  // The responses that stages are written from; null until they are set. The cache may be the program's own.
  const ResponseCache* responses = nullptr;
  // The cache read for this conversion, or handed to it: the first one stays for good.
  std::shared_ptr<const ResponseCache> kept_responses;
  FilterTexts filter_texts;  // of those responses
};

// The debug log's lines of a conversion that is to tell what it does.
void trace_call(const ConversionState& state, const std::string& function);

}  // namespace triglub

#endif
