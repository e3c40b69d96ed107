// Parameter-file objects that release themselves, and what the log said about them.
#ifndef TRIGLUB_TESTS_PARFILE_PF_PTR_H
#define TRIGLUB_TESTS_PARFILE_PF_PTR_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/containers.h"
#include "platform/elog.h"
#include "platform/parfile.h"

struct FreePf {
  void operator()(Pf* pf) const { pffree(pf); }
};
using PfPtr = std::unique_ptr<Pf, FreePf>;

// The object that a text holds; null when it is malformed.
inline PfPtr parsed(std::string_view text) {
  Pf* pf = nullptr;
  pfparse(text, "test.pf", &pf);
  return PfPtr(pf);
}

// The string at a key, "(null)" when there is none.
inline std::string string_at(const PfPtr& pf, const std::string& key) {
  const char* text = pfget_string(pf.get(), key.c_str());
  return text == nullptr ? "(null)" : text;
}

// The lines at a key, "(null)" alone when there is no list.
inline std::vector<std::string> lines_at(const PfPtr& pf, const std::string& key) {
  Tbl* list = pfget_tbl(pf.get(), key.c_str());
  if (list == nullptr) return {"(null)"};
  std::vector<std::string> lines;
  for (long i = 0; i < maxtbl(list); ++i) lines.emplace_back(static_cast<char*>(gettbl(list, i)));
  return lines;
}

// Collects the complaints made while it lives.
class Complaints {
 public:
  Complaints() { elog_set_sink(collect, this); }
  ~Complaints() { elog_set_sink(nullptr, nullptr); }
  Complaints(const Complaints&) = delete;
  Complaints& operator=(const Complaints&) = delete;

  const std::vector<std::string>& texts() const { return texts_; }

 private:
  static void collect(ElogLevel level, const char* text, void* self) {
    const char* word = level == ElogLevel::complain ? "" : "(not a complaint) ";
    static_cast<Complaints*>(self)->texts_.push_back(std::string(word) + text);
  }

  std::vector<std::string> texts_;
};

#endif
