// Parameter files: what is read can be looked up by every key, and written and read again it is the same.
#include <memory>
#include <string>

#include "platform/parfile.h"
#include "support/expect.h"

namespace {

using triglub_fuzz::expect;

struct FreePf {
  void operator()(Pf* pf) const { pffree(pf); }
};
using PfPointer = std::unique_ptr<Pf, FreePf>;

PfPointer parsed(std::string_view text) {
  Pf* pf = nullptr;
  const int status = pfparse(text, "input", &pf);
  expect((status == 0) == (pf != nullptr), "an object comes with status 0, and only then");
  return PfPointer(pf);
}

void look_up_list(Pf* pf, const std::string& key, Tbl* list) {
  for (long i = 0; i < maxtbl(list); ++i) {
    expect(gettbl(list, i) != nullptr && pf_line(pf, key.c_str(), i) > 0, "a list's line has its place", key);
  }
}

void look_up_all(Pf* pf, const std::string& table) {
  for (const std::string& name : pf_keys(pf, table.c_str())) {
    std::string key = table;
    key.append(table.empty() ? name : "{" + name + "}");
    expect(pf_key_line(pf, key.c_str()) > 0, "a key has its line", key);
    const char* text = pfget_string(pf, key.c_str());
    Tbl* list = pfget_tbl(pf, key.c_str());
    expect(text == nullptr || list == nullptr, "a key is of one kind", key);
    if (list != nullptr) look_up_list(pf, key, list);
    if (text == nullptr && list == nullptr) look_up_all(pf, key);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const PfPointer pf = parsed({reinterpret_cast<const char*>(data), size});
  if (pf == nullptr) return 0;
  look_up_all(pf.get(), "");
  const std::string written = pf2text(pf.get());
  const PfPointer again = parsed(written);
  expect(again != nullptr, "what is written can be read", written);
  expect(pf_equal(pf.get(), again.get()), "what is written reads back as the same", written);
  triglub_fuzz::expect_same(written, pf2text(again.get()), "the same is written the same");
  return 0;
}
