// How the process ends before its work is done: with a message, and without an unfinished file left behind.
//
// What has become of the document is state of the process, for a signal handler knows nothing else. Set by one thread
// at a time; whatever thread a signal comes to may read it.
#ifndef TRIGLUB_TOOL_ENDINGS_H
#define TRIGLUB_TOOL_ENDINGS_H

#include <csignal>
#include <string>

namespace triglub::tool {

// What there is of the document when the process ends now; untold where the work is no document.
enum class Fate { nothing_written, in_part, whole, untold };

// From now on memory that runs out ends the process by a message and exit status 1. Safe to be called before all else,
// also before the static objects of libraries are made.
void prepare_for_no_memory();

// From now on a signal that ends the process says so before; an exception that nobody takes is told, exit status 1; and
// a file that grows too large is a failure to write, not a signal. What the caller has blocked or ignored is as usual
// again, but for signals to end that it has ignored: so does who wants a command to outlive its terminal.
void prepare_endings();

// For a process made for a part of the work: signals end it without a word, which its parent has.
void end_silently();

// What a message of an ending says of the document.
void set_fate(Fate fate);

// Takes this file away when the process ends too early, however it does, SIGKILL but; empty for none. REQUIRES: signals
// are held while a file is made and named here, and while it is moved.
void remove_at_end(const std::string& path);
// Takes it away now; tells it where that cannot be.
void remove_now();

// While it is set, an exit destroys no objects of the program: other threads use them. Its status is that of a failure.
void end_without_destruction(bool is_set);

// Holds all signals that can be held from this thread, as long as the object lives.
class HeldSignals {
 public:
  HeldSignals();
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

 private:
  sigset_t before_;
};

}  // namespace triglub::tool

#endif
