// The filter, decimation and gain of response stages.
#ifndef TRIGLUB_SRC_DOCUMENT_STAGE_WRITER_H
#define TRIGLUB_SRC_DOCUMENT_STAGE_WRITER_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace triglub {

// One thread at a time.
class StageWriter {
 public:
  virtual ~StageWriter() = default;
  // Appends the elements of a record's stage, at that depth; nothing for a record without one.
  virtual void append(std::uint32_t record, std::size_t depth, std::string* text) = 0;
};

}  // namespace triglub

#endif
