// The error log: every message of the library and of the platform passes through here.
//
//     elog_init("triglub");
//     elog_complain(0, "cannot use row %d", 17);    // triglub: warning: cannot use row 17
//     elog_die(0, "no such database");              // triglub: fatal: no such database; exit status 1
//
// Texts go to standard error unless a sink is set. Texts of any length arrive whole. What standard error
// receives has its control characters and invalid UTF-8 made visible (\x1b), so that a data file cannot drive
// a terminal; a line end inside a text stays one, the lines after it indented by four blanks.
//
// Any thread may log, and set program name and sinks, at any time. Messages of several threads reach a sink of the
// process at the same time; a sink of a thread is called by that thread alone.
//
// The first argument of the four operations is kept for callers of the classic interface and not looked at.
#ifndef TRIGLUB_PLATFORM_ELOG_H
#define TRIGLUB_PLATFORM_ELOG_H

#include <string>
#include <string_view>

#include "platform/export.h"

enum class ElogLevel { debug, notify, complain, fatal };

// Receives each message: its level, its text (without program name and level word, not made printable, no line
// end added; valid only during the call) and the context given with the sink.
using ElogSink = void (*)(ElogLevel level, const char* text, void* context);

// Sets the program name that leads every message on standard error ("triglub" until set, and again for null). The
// name is copied.
TRIGLUB_API void elog_init(const char* program);

// Sends every later message to `sink` instead of standard error; a null sink restores standard error. A message that
// another thread is delivering at this moment may still reach the sink before.
TRIGLUB_API void elog_set_sink(ElogSink sink, void* context);

// Sends every later message of the calling thread to `sink`, whatever sink the process has, so that work done in a
// thread has a log of its own; a null sink gives the thread the process's back. Threads start without one.
TRIGLUB_API void elog_set_thread_sink(ElogSink sink, void* context);

// Writes one message the way standard error gets it, whatever sink is set: for a sink that passes messages on.
TRIGLUB_API void elog_to_stderr(ElogLevel level, const char* text);

// The text with control characters (line ends but) and invalid UTF-8 shown as \xNN, tabs as one blank, lines after
// the first indented, and without line ends at its end.
TRIGLUB_API std::string elog_printable(std::string_view text);

// "PROGRAM: fatal: TEXT", then ends the process with exit status 1 (through std::exit, so that exit handlers run).
// Never returns, also when the sink does.
[[noreturn]] TRIGLUB_API void elog_die(int reserved, const char* format, ...) __attribute__((format(printf, 2, 3)));

// "PROGRAM: warning: TEXT".
TRIGLUB_API void elog_complain(int reserved, const char* format, ...) __attribute__((format(printf, 2, 3)));

// "PROGRAM: TEXT".
TRIGLUB_API void elog_notify(int reserved, const char* format, ...) __attribute__((format(printf, 2, 3)));

// "PROGRAM: debug: TEXT".
TRIGLUB_API void elog_debug(int reserved, const char* format, ...) __attribute__((format(printf, 2, 3)));

#endif
