// The response files that stages name, each read once.
#ifndef TRIGLUB_SRC_STAGES_RESPONSE_FILES_H
#define TRIGLUB_SRC_STAGES_RESPONSE_FILES_H

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "platform/columns.h"
#include "platform/database.h"
#include "platform/response.h"

namespace triglub {

// A response file of one filter, or why there is none.
struct ResponseFile {
  std::unique_ptr<Response, decltype(&free_response)> response{nullptr, &free_response};
  const ResponseGroup* filter = nullptr;  // null with a fault
  std::string fault;                      // "resp/x.fir:12: expected 31 numerators, found 7"
};

// Files that were read do not change: threads may share them. Reading is for one thread.
class ResponseFiles {
 public:
  // `stage`: the table.
  explicit ResponseFiles(Dbptr stage);

  // The file that a row names, read if it was not read yet; null for a row that names none.
  const ResponseFile* read(std::uint32_t row);
  // The same, of those that were read.
  const ResponseFile* find(std::uint32_t row) const;

 private:
  bool is_named(std::uint32_t row) const;
  std::uint64_t key_of(std::uint32_t row) const;
  std::string path_of(std::uint32_t row) const;

  TextColumn folders_;
  TextColumn names_;
  std::string base_;
  std::unordered_map<std::uint64_t, ResponseFile> files_;
};

}  // namespace triglub

#endif
