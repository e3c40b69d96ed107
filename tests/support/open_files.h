// A process that cannot open one more file, for as long as a test lasts.
#ifndef TRIGLUB_TESTS_SUPPORT_OPEN_FILES_H
#define TRIGLUB_TESTS_SUPPORT_OPEN_FILES_H

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace triglub_test {

class NoMoreOpenFiles {
 public:
  NoMoreOpenFiles() {
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before_), 0);
    rlimit none = before_;
    none.rlim_cur = 0;
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  ~NoMoreOpenFiles() { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before_), 0); }
  NoMoreOpenFiles(const NoMoreOpenFiles&) = delete;
  NoMoreOpenFiles& operator=(const NoMoreOpenFiles&) = delete;

 private:
  rlimit before_{};
};

}  // namespace triglub_test

#endif
