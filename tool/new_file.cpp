// The file gets its name by a link; where something else has that name, by way of another and a move, for a link
// replaces nothing.
#include "tool/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "tool/endings.h"
#include "tool/link_target.h"
#include "tool/write_parts.h"

namespace triglub::tool {

namespace {

constexpr const char* kTemporaryName = ".triglub.";
constexpr int kMostNames = 10000;

// With its slash; empty for the current one.
std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// How a file without a name is spoken of when it is to get one.
std::string open_path(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

// -1 where there is no such file to be had, or no way to give it a name.
int open_unnamed(const std::string& folder) {
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (descriptor < 0 || access(open_path(descriptor).c_str(), F_OK) == 0) return descriptor;
  close(descriptor);
  return -1;
}

bool link_as(const std::string& open_path, const std::string& path) {
  return linkat(AT_FDCWD, open_path.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

mode_t permissions_for(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// A path that the system refuses to follow, as links in a circle, is nobody's to write to.
void check_path(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 && errno != ENOENT) die_of_writing(path);
}

}  // namespace

NewFile::NewFile(const std::string& path) : target_(link_target(path)) {
  check_path(path);
  const mode_t permissions = permissions_for(target_);
  descriptor_ = open_unnamed(folder_of(target_));
  if (descriptor_ < 0) make_named();
  if (fchmod(descriptor_, permissions) != 0) die_of_writing(target_);
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) close(descriptor_);
  remove_now();
}

void NewFile::make_named() {
  const HeldSignals held;
  temporary_ = folder_of(target_) + kTemporaryName + "XXXXXX";
  descriptor_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (descriptor_ < 0) die_of_writing(target_);
  remove_at_end(temporary_);
}

void NewFile::put_in_place() {
  // On disk before it takes the old file's place, so that a crash leaves one of the two whole.
  if (fsync(descriptor_) != 0) die_of_writing(target_);
  const HeldSignals held;
  take_name();
  set_fate(Fate::whole);
  close(descriptor_);  // nothing is left that could fail
  descriptor_ = -1;
}

void NewFile::take_name() {
  if (temporary_.empty() && link_as(open_path(descriptor_), target_)) return;
  if (temporary_.empty() && !take_temporary_name()) copy_to_named();
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) die_of_writing(target_);
  remove_at_end("");
}

// False where the file cannot have any name.
bool NewFile::take_temporary_name() {
  const std::string beginning = folder_of(target_) + kTemporaryName + std::to_string(getpid()) + ".";
  const std::string unnamed = open_path(descriptor_);
  for (int i = 0; i < kMostNames; ++i) {
    std::string name = beginning + std::to_string(i);
    if (link_as(unnamed, name)) {
      remove_at_end(name);  // before anything that could end the process
      temporary_ = std::move(name);
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

void NewFile::copy_to_named() {
  const int unnamed = descriptor_;
  make_named();
  write_file(descriptor_, target_, unnamed);
  struct stat status {};
  if (fstat(unnamed, &status) != 0 || fchmod(descriptor_, status.st_mode & 07777) != 0) die_of_writing(target_);
  if (fsync(descriptor_) != 0) die_of_writing(target_);
  close(unnamed);
}

int open_scratch_file() {
  const char* folder = std::getenv("TMPDIR");
  const std::string path = folder == nullptr ? "/tmp" : folder;
  const int unnamed = open(path.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (unnamed >= 0) return unnamed;
  const HeldSignals held;
  std::string name = path + "/triglub.XXXXXX";
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor >= 0 && unlink(name.c_str()) != 0) remove_at_end(name);  // which tries again
  return descriptor;
}

}  // namespace triglub::tool
