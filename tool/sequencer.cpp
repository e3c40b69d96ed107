// A mutex and a condition in shared memory: whoever waits sleeps until a turn is passed on.
#include "tool/sequencer.h"

#include <sys/mman.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "platform/elog.h"

namespace triglub::tool {

Sequencer& Sequencer::make() {
  void* memory = mmap(nullptr, sizeof(Sequencer), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) elog_die(0, "no memory to share with other processes: %s", std::strerror(errno));
  return *new (memory) Sequencer;
}

void Sequencer::release(Sequencer& sequencer) { munmap(&sequencer, sizeof(Sequencer)); }

Sequencer::Sequencer() {
  pthread_mutexattr_t mutex;
  pthread_mutexattr_init(&mutex);
  pthread_mutexattr_setpshared(&mutex, PTHREAD_PROCESS_SHARED);
  pthread_mutex_init(&mutex_, &mutex);
  pthread_mutexattr_destroy(&mutex);
  pthread_condattr_t condition;
  pthread_condattr_init(&condition);
  pthread_condattr_setpshared(&condition, PTHREAD_PROCESS_SHARED);
  pthread_cond_init(&changed_, &condition);
  pthread_condattr_destroy(&condition);
}

void Sequencer::wait_for(std::size_t piece) {
  pthread_mutex_lock(&mutex_);
  while (turn_ != piece) pthread_cond_wait(&changed_, &mutex_);
  pthread_mutex_unlock(&mutex_);
}

void Sequencer::pass_on() {
  pthread_mutex_lock(&mutex_);
  ++turn_;
  pthread_cond_broadcast(&changed_);
  pthread_mutex_unlock(&mutex_);
}

}  // namespace triglub::tool
