// The command shows what people can act on; traces are for those who ask.
#include "tool/messages.h"

#include <cstring>
#include <exception>

#include "dbhelper.h"
#include "fatal_failure.h"

namespace triglub::tool {

namespace {

bool is_verbose = false;

}  // namespace

void show_messages(unsigned int verbosity) {
  is_verbose = verbosity > 0;
  elog_set_sink(show_message, nullptr);
}

void show_message(ElogLevel level, const char* text, void* /*context*/) {
  const bool is_trace = level == ElogLevel::debug;
  const bool is_stage = level == ElogLevel::complain && std::strncmp(text, "Problem with Response: ", 23) == 0;
  if (is_verbose || !(is_trace || is_stage)) elog_to_stderr(level, text);
}

void die_of_exception(const std::string& source) {
  try {
    throw;
  } catch (const FatalFailure& failure) {
    elog_die(0, "%s", failure.what());
  } catch (const dbquery_error&) {
    // Its text tells no more than that; the engine has told the cause.
    elog_die(0, "%s: the tables cannot be joined; nothing is written", source.c_str());
  } catch (const std::exception& e) {
    elog_die(0, "%s: %s", source.c_str(), e.what());
  }
}

}  // namespace triglub::tool
