// The number of threads for a part of a test.
#ifndef TRIGLUB_TESTS_DATABASE_SET_THREADS_H
#define TRIGLUB_TESTS_DATABASE_SET_THREADS_H

#include "platform/database.h"

namespace triglub_test {

// Sets the number of threads for as long as it lives.
class SetThreads {
 public:
  explicit SetThreads(unsigned int count) { triglub::set_threads(count); }
  ~SetThreads() { triglub::set_threads(1); }
  SetThreads(const SetThreads&) = delete;
  SetThreads& operator=(const SetThreads&) = delete;
};

}  // namespace triglub_test

#endif
