// A file is written beside its place and moved there when it is whole; whatever ends the process takes it away.
#include "tool/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/elog.h"

namespace triglub::tool {

namespace {

// The unfinished file of this process, for the handlers that take it away when the process ends too early. A plain
// array, since a signal handler may not touch strings.
char unfinished[PATH_MAX];

void remove_unfinished() {
  if (unfinished[0] != '\0') unlink(unfinished);
}

void remove_and_die(int signal_number) {
  remove_unfinished();
  // The handler was reset when it was called: the signal now does what it does by itself.
  raise(signal_number);
}

void guard_unfinished(const std::string& path) {
  std::snprintf(unfinished, sizeof unfinished, "%s", path.c_str());
  std::atexit(remove_unfinished);
  struct sigaction action {};
  action.sa_handler = remove_and_die;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal_number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaction(signal_number, &action, nullptr);
}

[[noreturn]] void fail(const std::string& name) {
  elog_die(0, "%s: cannot be written: %s", name.c_str(), std::strerror(errno));
}

bool is_special(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

// The path behind symbolic links, so that replacing a file does not replace a link to it.
std::string resolved(const std::string& path) {
  char* real = realpath(path.c_str(), nullptr);
  if (real == nullptr) return path;
  std::string result = real;
  std::free(real);
  return result;
}

mode_t permissions_for(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// A file that nobody sees, and that is gone when it is closed.
int open_unnamed() {
  const char* folder = std::getenv("TMPDIR");
  std::string path = std::string(folder == nullptr ? "/tmp" : folder) + "/triglub.XXXXXX";
  const int descriptor = mkostemp(path.data(), O_CLOEXEC);
  if (descriptor >= 0) unlink(path.c_str());
  return descriptor;
}

}  // namespace

void write_parts(int descriptor, const std::string& name, std::vector<iovec> parts) {
  for (auto part = parts.begin(); part != parts.end();) {
    const auto count = std::min<std::ptrdiff_t>(parts.end() - part, IOV_MAX);
    const ssize_t result = ::writev(descriptor, &*part, static_cast<int>(count));
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) fail(name);
    auto written = static_cast<std::size_t>(result);
    for (; part != parts.end() && written >= part->iov_len; ++part) written -= part->iov_len;
    if (written > 0) *part = {static_cast<char*>(part->iov_base) + written, part->iov_len - written};
  }
}

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

Output::Output(int descriptor, std::string name, std::string temporary)
    : name_(std::move(name)),
      temporary_(std::move(temporary)),
      descriptor_(descriptor),
      buffer_(descriptor, name_),
      stream_(&buffer_) {}

std::unique_ptr<Output> Output::direct(int descriptor, const std::string& name, Hold hold) {
  if (hold == Hold::no) return std::unique_ptr<Output>(new Output(descriptor, name, ""));
  const int held = open_unnamed();
  if (held < 0) fail("a temporary file");
  auto output = std::unique_ptr<Output>(new Output(held, name, ""));
  output->held_for_ = descriptor;
  return output;
}

std::unique_ptr<Output> Output::open(const std::string& path, Hold hold) {
  // A reader that has seen enough ends the process without a word, as it does others; who started it may have that
  // signal ignored.
  std::signal(SIGPIPE, SIG_DFL);
  if (path.empty() || path == "-") return direct(STDOUT_FILENO, "standard output", hold);
  if (is_special(path)) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) fail(path);
    return direct(descriptor, path, hold);
  }
  const std::string target = resolved(path);
  std::string temporary = target + ".XXXXXX";
  const mode_t permissions = permissions_for(target);
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) fail(path);
  guard_unfinished(temporary);
  if (fchmod(descriptor, permissions) != 0) fail(path);
  return std::unique_ptr<Output>(new Output(descriptor, target, temporary));
}

Output::~Output() {
  if (descriptor_ < 0) return;
  if (descriptor_ != STDOUT_FILENO) close(descriptor_);
  remove_unfinished();
  unfinished[0] = '\0';
}

void Output::hand_on_held() {
  if (lseek(descriptor_, 0, SEEK_SET) != 0) fail(name_);
  std::vector<char> piece(DescriptorBuffer::kPiece);
  for (ssize_t count = 0; (count = read(descriptor_, piece.data(), piece.size())) != 0;) {
    if (count < 0) fail(name_);
    write_parts(held_for_, name_, {{piece.data(), static_cast<std::size_t>(count)}});
  }
  close(descriptor_);
  descriptor_ = held_for_;
}

void Output::commit() {
  buffer_.finish();
  if (held_for_ >= 0) hand_on_held();
  if (temporary_.empty()) {
    if (close(descriptor_) != 0) fail(name_);
    descriptor_ = -1;
    return;
  }
  // On disk before it takes the old file's place, so that a crash leaves one of the two whole.
  if (fsync(descriptor_) != 0 || close(descriptor_) != 0) fail(name_);
  descriptor_ = -1;
  if (std::rename(temporary_.c_str(), name_.c_str()) != 0) fail(name_);
  unfinished[0] = '\0';
}

}  // namespace triglub::tool
