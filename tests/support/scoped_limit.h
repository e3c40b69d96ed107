// A limit for as long as a test lasts.
#ifndef TRIGLUB_TESTS_SUPPORT_SCOPED_LIMIT_H
#define TRIGLUB_TESTS_SUPPORT_SCOPED_LIMIT_H

#include <gtest/gtest.h>

#include "platform/limits.h"

namespace triglub {

class ScopedLimit {
 public:
  ScopedLimit(Limit which, std::uint64_t most) : which_(which), before_(limit(which)) {
    EXPECT_TRUE(set_limit(which, most));
  }
  ~ScopedLimit() { EXPECT_TRUE(set_limit(which_, before_)); }
  ScopedLimit(const ScopedLimit&) = delete;
  ScopedLimit& operator=(const ScopedLimit&) = delete;

 private:
  Limit which_;
  std::uint64_t before_;
};

}  // namespace triglub

#endif
