// The texts of the parameter file `site`, which says who makes and who sends the documents.
#ifndef TRIGLUB_SRC_TREE_SITE_TEXTS_H
#define TRIGLUB_SRC_TREE_SITE_TEXTS_H

#include <memory>
#include <string>

#include "platform/parfile.h"

namespace triglub {

class SiteTexts {
 public:
  struct Answer {
    const char* text = nullptr;  // null when there is none; belongs to the object
    std::string place;           // of the text, "site.pf:9"
    std::string fault;           // where there is no text
  };

  // The string at a key. The file is looked for when it is first asked for, and read once.
  Answer find(const std::string& key);

 private:
  void read();

  std::unique_ptr<Pf, decltype(&pffree)> pf_{nullptr, &pffree};
  bool is_read_ = false;
  std::string fault_;  // why the file is not there
};

}  // namespace triglub

#endif
