// A folder of files in memory, made once and filled anew for each input.
#ifndef TRIGLUB_FUZZ_SUPPORT_FOLDER_H
#define TRIGLUB_FUZZ_SUPPORT_FOLDER_H

#include <map>
#include <string>
#include <string_view>

namespace triglub_fuzz {

using Files = std::map<std::string, std::string>;  // texts by relative path

class Folder {
 public:
  // In the memory of the machine where it shows as a file system, else among the temporary files.
  Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  // The files are these, and no others.
  void fill(const Files& files);
  const std::string& path() const { return path_; }

 private:
  void write(const std::string& relative, std::string_view text) const;

  std::string path_;
  Files files_;
};

}  // namespace triglub_fuzz

#endif
