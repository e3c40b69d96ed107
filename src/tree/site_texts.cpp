// A fault of the file is told at every line that asks for it.
#include "tree/site_texts.h"

#include "tree/fault_list.h"

namespace triglub {

namespace {

std::vector<std::string> string_keys(Pf* pf) {
  std::vector<std::string> keys = pf_keys(pf, "");
  std::erase_if(keys, [pf](const std::string& key) { return pfget_string(pf, key.c_str()) == nullptr; });
  return keys;
}

}  // namespace

SiteTexts::Answer SiteTexts::find(const std::string& key) {
  if (!is_read_) read();
  if (pf_ == nullptr) return {nullptr, "", "the key '" + key + "': the parameter file site " + fault_};
  const char* text = pfget_string(pf_.get(), key.c_str());
  const std::string path = pf_path(pf_.get());
  if (text != nullptr) return {text, place_text(path, pf_key_line(pf_.get(), key.c_str())), ""};
  return {nullptr, "", path + " has no key '" + key + "'" + did_you_mean(key, string_keys(pf_.get()))};
}

void SiteTexts::read() {
  is_read_ = true;
  Pf* pf = nullptr;
  const int status = pfread("site", &pf);
  pf_.reset(pf);
  fault_ = status == -1 ? "is not found" : status == -2 ? "cannot be read" : "is malformed";
}

}  // namespace triglub
