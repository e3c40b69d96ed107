// Where the document goes: standard output, or a file that appears under its name only when it is whole.
#ifndef TRIGLUB_TOOL_OUTPUT_H
#define TRIGLUB_TOOL_OUTPUT_H

#include <sys/uio.h>

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "tool/repeated_texts.h"

namespace triglub::tool {

// Collects text and writes it in large pieces. Flushing the stream costs nothing, for the library ends every line with
// a flush; finish() writes what is left. A failed write is a fatal report: nothing that follows it could be of use.
// While it is not time to write, a long text that repeats is held once, so that what waits is a fraction of the
// document and stays in the processor's cache.
class DescriptorBuffer : public std::streambuf {
 public:
  static constexpr std::size_t PIECE = std::size_t{1} << 20;

  // `name` is what a failure is reported under. The descriptor stays the caller's. REQUIRES: capacity >= PIECE.
  DescriptorBuffer(int descriptor, std::string name, std::size_t capacity = PIECE);
  void finish();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return 0; }
  // Called before each write.
  virtual void prepare_to_write() {}
  // Whether a full piece is written now. If not, more is collected, until the capacity is full or finish() is called.
  virtual bool is_time_to_write() { return true; }

 private:
  // A text that stands before the collected byte `at`.
  struct Reference {
    std::size_t at;
    const std::string* text;
  };

  std::size_t used() const { return static_cast<std::size_t>(pptr() - pbase()); }
  bool refer_to(std::string_view text);
  void make_room(std::size_t length);
  std::vector<iovec> collected() const;
  void write_all(std::vector<iovec> parts);

  int descriptor_;
  std::string name_;
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;
  RepeatedTexts repeated_;
  std::vector<Reference> references_;  // since the last write
};

class Output {
 public:
  // Opens the output: `path` empty for standard output. Fatal when it cannot be opened. A regular file is written
  // beside its final place, with the permissions of the file that it replaces; anything else is written directly.
  static std::unique_ptr<Output> open(const std::string& path);
  // Removes what was written unless commit() was called. The same happens when the process exits before.
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
  Output(int descriptor, std::string name, std::string temporary);

  std::string name_;
  std::string temporary_;  // empty when written directly
  int descriptor_;
  DescriptorBuffer buffer_;
  std::ostream stream_;
};

}  // namespace triglub::tool

#endif
