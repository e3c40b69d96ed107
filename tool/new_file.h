// A file that appears under its name only when it is whole.
#ifndef TRIGLUB_TOOL_NEW_FILE_H
#define TRIGLUB_TOOL_NEW_FILE_H

#include <string>

namespace triglub::tool {

// Written without any name where the file system can do that, so that whatever ends the process leaves nothing; else
// beside its place, under a name that is taken away when the process ends (endings.h). One at a time in a process.
class NewFile {
 public:
  // A file that is to stand at `path`, which may be a link to where it does. It has the permissions of the file that it
  // replaces. Fatal when it cannot be made.
  explicit NewFile(const std::string& path);
  // Nothing is left unless put_in_place() was called.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  int descriptor() const { return descriptor_; }
  // What was written is on disk and stands at its place, where what was there before is replaced at once. Fatal when
  // that fails, with what was there before. The descriptor is closed.
  void put_in_place();

 private:
  void make_named();
  bool take_temporary_name();
  void copy_to_named();
  void take_name();

  std::string target_;
  std::string temporary_;  // empty: it has no name
  int descriptor_ = -1;
};

// A file that nobody sees, and that is gone when it is closed. -1, with errno, where there is none.
int open_scratch_file();

}  // namespace triglub::tool

#endif
