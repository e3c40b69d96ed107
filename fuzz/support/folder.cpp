#include "support/folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "support/expect.h"

namespace triglub_fuzz {

namespace {

std::string parent_folder() {
  constexpr const char* kMemory = "/dev/shm";
  return access(kMemory, W_OK) == 0 ? kMemory : std::filesystem::temp_directory_path().string();
}

}  // namespace

Folder::Folder() : path_(parent_folder() + "/triglub_fuzz_XXXXXX") {
  expect(mkdtemp(path_.data()) != nullptr, "a folder can be made", path_);
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void Folder::fill(const Files& files) {
  for (const auto& [relative, text] : files_) {
    if (!files.contains(relative)) unlink((path_ + "/" + relative).c_str());
  }
  for (const auto& [relative, text] : files) write(relative, text);
  files_ = files;
}

void Folder::write(const std::string& relative, std::string_view text) const {
  const auto known = files_.find(relative);
  if (known != files_.end() && known->second == text) return;
  const std::string path = path_ + "/" + relative;
  if (relative.find('/') != std::string::npos) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  }
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  expect(file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
         "a file can be written", path);
  close(file);
}

}  // namespace triglub_fuzz
