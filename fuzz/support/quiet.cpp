// What the library says of an input is made printable and goes nowhere: millions of refusals are not worth reading.
#include "platform/elog.h"
#include "support/expect.h"

namespace {

void look_at(ElogLevel /*level*/, const char* text, void* /*context*/) {
  for (const char c : elog_printable(text)) {
    triglub_fuzz::expect(c == '\n' || static_cast<unsigned char>(c) >= ' ', "a message is printable", text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  elog_set_sink(look_at, nullptr);
  setenv("SOURCE_DATE_EPOCH", "1700000000", 1);  // so that now() is the same at each replay
  return 0;
}
