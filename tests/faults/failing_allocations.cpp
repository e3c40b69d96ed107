// Stands in for the C library's allocation, and counts: to be loaded before it.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "faults/allocation_plan.h"

extern "C" {
// What the C library calls its own.
void* __libc_malloc(std::size_t size);                           // NOLINT: the library's name
void* __libc_calloc(std::size_t count, std::size_t size);        // NOLINT
void* __libc_realloc(void* memory, std::size_t size);            // NOLINT
void* __libc_memalign(std::size_t alignment, std::size_t size);  // NOLINT
}

namespace {

triglub_test::AllocationPlan* plan = nullptr;

// Before the program's own objects are made.
__attribute__((constructor)) void find_plan() {
  const char* path = std::getenv(triglub_test::kPlanVariable);
  const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* memory = mmap(nullptr, sizeof *plan, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (memory != MAP_FAILED) plan = static_cast<triglub_test::AllocationPlan*>(memory);
}

bool does_fail() {
  if (plan == nullptr) return false;
  const std::uint64_t number = ++plan->made;
  const bool is_met = plan->at != 0 && (number == plan->at || (number > plan->at && plan->do_later_ones_too));
  if (is_met) errno = ENOMEM;
  return is_met;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) { return does_fail() ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) { return does_fail() ? nullptr : __libc_calloc(count, size); }

void* realloc(void* memory, std::size_t size) { return does_fail() ? nullptr : __libc_realloc(memory, size); }

void* memalign(std::size_t alignment, std::size_t size) {
  return does_fail() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  void* made = memalign(alignment, size);
  if (made == nullptr) return ENOMEM;
  *memory = made;
  return 0;
}
}
