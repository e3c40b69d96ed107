#include <gtest/gtest.h>

#include "element_tree.h"
#include "fatal_failure.h"
#include "platform/parfile/pf_ptr.h"

namespace {

TEST(Edition, IsTheFirstUnlessTheFileNamesAnother) {
  EXPECT_EQ(triglub::edition_of(parsed("root_node x\n").get()), 1);
  EXPECT_EQ(triglub::edition_of(parsed("edition 1\n").get()), 1);
  EXPECT_EQ(triglub::edition_of(parsed("edition   2\n").get()), 2);
  EXPECT_EQ(triglub::edition_of(parsed("a &Arr{\nedition 2\n}\n").get()), 1);
}

TEST(Edition, ThatIsNotKnownIsRefused) {
  const struct {
    const char* text;
    const char* what;
  } cases[] = {
      {"\nedition 3\n", "parameter file:2: the edition '3' is not known; there are 1 and 2"},
      {"edition 2.0\n", "parameter file:1: the edition '2.0' is not known; there are 1 and 2"},
      {"edition\n", "parameter file:1: the edition '' is not known; there are 1 and 2"},
      {"edition &Tbl{\n2\n}\n", "parameter file:1: 'edition' must be a string, 1 or 2"},
      {"edition &Arr{\n}\n", "parameter file:1: 'edition' must be a string, 1 or 2"},
  };
  for (const auto& c : cases) {
    try {
      triglub::edition_of(parsed(c.text).get());
      ADD_FAILURE() << c.text;
    } catch (const triglub::FatalFailure& failure) {
      EXPECT_STREQ(failure.what(), c.what);
    }
  }
}

TEST(Edition, IsThatOfAFileMadeInMemory) {
  const PfPtr pf(pfnew());
  EXPECT_EQ(triglub::edition_of(pf.get()), 1);
  pfput_string(pf.get(), "edition", "2");
  EXPECT_EQ(triglub::edition_of(pf.get()), 2);
}

}  // namespace
