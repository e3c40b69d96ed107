// A disk that is full after any number of pages.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <filesystem>
#include <iostream>
#include <string>

#include "faults/conversion.h"

namespace {

using triglub_test::Kind;
using triglub_test::Target;
using triglub_test::TrackedConversion;

// A disk of its own on a new folder.
class SmallDisk {
 public:
  SmallDisk() {
    std::string folder = (std::filesystem::temp_directory_path() / "triglub_disk_XXXXXX").string();
    folder_ = mkdtemp(folder.data());
    is_mounted_ = mount("triglub_test", folder_.c_str(), "tmpfs", 0, "size=1m") == 0;
  }
  ~SmallDisk() {
    if (is_mounted_) umount2(folder_.c_str(), MNT_DETACH);
    std::filesystem::remove(folder_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool is_mounted() const { return is_mounted_; }
  const std::string& folder() const { return folder_; }
  // `files`: the most of them, the folder included.
  void resize(int pages, int files) const {
    const std::string options = "size=" + std::to_string(pages * 4096) + ",nr_inodes=" + std::to_string(files);
    EXPECT_EQ(mount("triglub_test", folder_.c_str(), "tmpfs", MS_REMOUNT, options.c_str()), 0) << options;
  }

 private:
  std::string folder_;
  bool is_mounted_ = false;
};

TEST(FullDisk, LeavesWhatWasThereBefore) {
  for (const Kind& kind : triglub_test::all_kinds()) {
    if (kind.target != Target::new_file && kind.target != Target::old_file) continue;
    SCOPED_TRACE(kind.text());
    const SmallDisk disk;
    if (!disk.is_mounted()) GTEST_SKIP() << "no file system can be mounted here";
    TrackedConversion conversion(kind, disk.folder());
    for (int pages = 1; pages <= 6; ++pages) {
      for (const int files : {1, 2, 3, 10}) {
        disk.resize(20, 10);
        const auto start = conversion.start();
        if (kind.target == Target::old_file && files == 1) continue;
        disk.resize(pages, files);
        EXPECT_EQ(conversion.fault_of(triglub_test::run(start)), "") << pages << " pages, " << files << " files";
      }
    }
    std::cout << "table: full disk | " << kind.text() << " | " << conversion.tally() << std::endl;
  }
}

}  // namespace
