// Where the document goes: standard output, or a file that appears under its name only when it is whole.
#ifndef TRIGLUB_TOOL_OUTPUT_H
#define TRIGLUB_TOOL_OUTPUT_H

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "tool/new_file.h"

namespace triglub::tool {

// What every document begins with.
inline constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// Collects text and writes it in large pieces. Flushing the stream costs nothing, for the library ends every line with
// a flush; finish() writes what is left.
class DescriptorBuffer final : public std::streambuf {
 public:
  // Bytes that are collected: few enough to stay in the second-level cache of one processor, beside what they are made
  // of. Beyond it, processes that work side by side would fight for the cache they share.
  static constexpr std::size_t kPiece = std::size_t{1} << 18;

  // The descriptor stays the caller's; `name` is what a failure to write is reported under.
  DescriptorBuffer(int descriptor, std::string name);
  void finish();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return 0; }

 private:
  int descriptor_;
  std::string name_;
  std::unique_ptr<char[]> buffer_;
};

class Output {
 public:
  // Whether what cannot be taken back, as what goes to a pipe, waits in a file without a name until commit().
  enum class Hold : bool { no, until_commit };
  // Opens the output: `path` empty or "-" for standard output. Fatal when it cannot be opened. A regular file is
  // written apart from its final place, with the permissions of the file that it replaces; anything else is written
  // directly.
  static std::unique_ptr<Output> open(const std::string& path, Hold hold = Hold::no);
  // Nothing is left of what was written to a file unless commit() was called. The same holds when the process ends
  // before.
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  std::ostream& stream() { return stream_; }
  int descriptor() const { return descriptor_; }
  const std::string& name() const { return name_; }
  // Writes what is left. Fatal when that fails.
  void finish() { buffer_.finish(); }
  // finish(), and puts the file in its place. Fatal when that fails.
  void commit();

 private:
  Output(int descriptor, std::string name);
  static std::unique_ptr<Output> direct(int descriptor, const std::string& name, Hold hold);
  void hand_on_held();

  std::string name_;
  std::unique_ptr<NewFile> file_;  // null when written directly
  int descriptor_;                 // the file's, if there is one
  int held_for_ = -1;              // where what is held goes to
  DescriptorBuffer buffer_;
  std::ostream stream_;
};

}  // namespace triglub::tool

#endif
