// Random expressions of the second edition.
#ifndef TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_EXPRESSION_H
#define TRIGLUB_TESTS_REFERENCE_EDITION2_RANDOM_EXPRESSION_H

#include <string>

#include "reference/random_case.h"

namespace triglub_reference::edition2 {

class ExpressionMaker {
 public:
  // With or without functions over the records of an element.
  ExpressionMaker(Random& random, bool over_records) : random_(random), over_records_(over_records) {}

  std::string number(int depth);
  std::string text(int depth);
  std::string any(int depth) { return random_.percent(50) ? number(depth) : text(depth); }

 private:
  std::string condition(int depth);
  std::string number_field();
  std::string text_field();
  std::string number_over_records(int depth);

  // Without functions over records, and without what can fail.
  ExpressionMaker inner() const {
    ExpressionMaker maker(random_, false);
    maker.may_fail_ = false;
    return maker;
  }

  Random& random_;
  bool over_records_;
  bool may_fail_ = true;
};

}  // namespace triglub_reference::edition2

#endif
