// Standard output and devices are written to directly, files by way of a new one.
#include "tool/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "tool/endings.h"
#include "tool/write_parts.h"

namespace triglub::tool {

namespace {

bool is_special(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

}  // namespace

DescriptorBuffer::DescriptorBuffer(int descriptor, std::string name)
    : descriptor_(descriptor), name_(std::move(name)), buffer_(std::make_unique_for_overwrite<char[]>(kPiece)) {
  setp(buffer_.get(), buffer_.get() + kPiece);
}

void DescriptorBuffer::finish() {
  if (pptr() == pbase()) return;
  write_parts(descriptor_, name_, {{pbase(), static_cast<std::size_t>(pptr() - pbase())}});
  setp(buffer_.get(), buffer_.get() + kPiece);
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c) {
  finish();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return sputc(traits_type::to_char_type(c));
}

std::streamsize DescriptorBuffer::xsputn(const char* text, std::streamsize length) {
  if (length > epptr() - pptr()) finish();
  if (length > epptr() - pptr()) {
    write_parts(descriptor_, name_, {{const_cast<char*>(text), static_cast<std::size_t>(length)}});
    return length;
  }
  std::memcpy(pptr(), text, static_cast<std::size_t>(length));
  pbump(static_cast<int>(length));
  return length;
}

Output::Output(int descriptor, std::string name)
    : name_(std::move(name)), descriptor_(descriptor), buffer_(descriptor, name_), stream_(&buffer_) {}

std::unique_ptr<Output> Output::direct(int descriptor, const std::string& name, Hold hold) {
  if (hold == Hold::no) {
    set_fate(Fate::in_part);
    return std::unique_ptr<Output>(new Output(descriptor, name));
  }
  const int held = open_scratch_file();
  if (held < 0) die_of_writing("a temporary file");
  auto output = std::unique_ptr<Output>(new Output(held, name));
  output->held_for_ = descriptor;
  return output;
}

std::unique_ptr<Output> Output::open(const std::string& path, Hold hold) {
  if (path.empty() || path == "-") return direct(STDOUT_FILENO, "standard output", hold);
  if (is_special(path)) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) die_of_writing(path);
    return direct(descriptor, path, hold);
  }
  auto file = std::make_unique<NewFile>(path);
  auto output = std::unique_ptr<Output>(new Output(file->descriptor(), path));
  output->file_ = std::move(file);
  return output;
}

Output::~Output() {
  if (file_ == nullptr && descriptor_ > STDERR_FILENO) close(descriptor_);
}

void Output::hand_on_held() {
  set_fate(Fate::in_part);
  write_file(held_for_, name_, descriptor_);
  close(descriptor_);
  descriptor_ = held_for_;
}

void Output::commit() {
  buffer_.finish();
  if (file_ != nullptr) return file_->put_in_place();
  if (held_for_ >= 0) hand_on_held();
  if (close(std::exchange(descriptor_, -1)) != 0) die_of_writing(name_);
  set_fate(Fate::whole);
}

}  // namespace triglub::tool
