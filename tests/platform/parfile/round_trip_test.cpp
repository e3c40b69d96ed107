#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/parfile/pf_ptr.h"
#include "support/random_seed.h"

namespace {

TEST(WrittenParameters, LookLikeThis) {
  const PfPtr pf(pfnew());
  pfput_string(pf.get(), "root_node", "document");
  pfput_string(pf.get(), "document{name}", "FDSNStationXML");
  pfput_tbl(pf.get(), "document{elements}", {"Source - text  Example network", "n - GROUP"});
  pfput_string(pf.get(), "document{empty}", "");
  pfput_arr(pf.get(), "none");
  EXPECT_EQ(pf2text(pf.get()), R"(root_node document
document &Arr{
    name FDSNStationXML
    elements &Tbl{
        Source - text  Example network
        n - GROUP
    }
    empty
}
none &Arr{
}
)");
}

TEST(WrittenParameters, OfNothingAreEmpty) {
  EXPECT_EQ(pf2text(nullptr), "");
  EXPECT_EQ(pf2text(PfPtr(pfnew()).get()), "");
}

// Texts of pieces that mean something to the reader, most of which some place refuses.
class RandomParameters {
 public:
  explicit RandomParameters(std::uint64_t seed) : random_(seed) {}

  PfPtr object() {
    PfPtr pf(pfnew());
    for (unsigned i = below(30); i > 0; --i) put(pf.get());
    return pf;
  }

  // Whether a text is well-formed is left to the reader.
  std::string text() {
    std::string text;
    for (unsigned i = below(40); i > 0; --i) text += piece() + piece() + (below(4) == 0 ? " " : "\n");
    return text;
  }

  unsigned taken() const { return taken_; }

 private:
  void put(Pf* pf) {
    const std::string key = this->key();
    int status = -1;
    switch (below(3)) {
      case 0:
        status = pfput_string(pf, key.c_str(), words());
        break;
      case 1:
        status = pfput_tbl(pf, key.c_str(), lines());
        break;
      default:
        status = pfput_arr(pf, key.c_str());
    }
    if (status == 0) ++taken_;
  }

  std::string key() {
    std::string key = name();
    for (unsigned i = below(4); i > 0; --i) key.append("{").append(name()).append("}");
    return key;
  }

  std::string name() { return below(3) == 0 ? piece() : std::string(1, static_cast<char>('a' + below(4))); }

  std::vector<std::string> lines() {
    std::vector<std::string> lines;
    for (unsigned i = below(4); i > 0; --i) lines.push_back(words());
    return lines;
  }

  std::string words() {
    std::string words;
    for (unsigned i = below(4); i > 0; --i) words += piece();
    return words;
  }

  std::string piece() {
    static const std::vector<std::string> PIECES = {"a",
                                                    "b",
                                                    "key",
                                                    "#",
                                                    "# c",
                                                    "{",
                                                    "}",
                                                    "&Arr{",
                                                    "&Tbl{",
                                                    "a &Arr{",
                                                    "b &Tbl{",
                                                    "&",
                                                    " ",
                                                    "\t",
                                                    "\xC3\xA9",
                                                    "}}",
                                                    "value",
                                                    "two words",
                                                    "\xEF\xBB\xBF",
                                                    "\v",
                                                    "x:y.z-w",
                                                    "c &Arr{\nd 1\n}\n",
                                                    "\r",
                                                    "\n",
                                                    "\xE9",
                                                    "}\n",
                                                    "\"",
                                                    "e &Tbl{\n one\n}\n"};
    return PIECES[below(static_cast<unsigned>(PIECES.size()))];
  }

  unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  std::mt19937 random_;
  unsigned taken_ = 0;
};

TEST(WrittenParameters, ReadBackAsTheSameObject) {
  RandomParameters random(triglub_test::random_seed());
  for (int i = 0; i < 3000; ++i) {
    const PfPtr built = random.object();
    const std::string text = pf2text(built.get());
    const PfPtr read = parsed(text);
    ASSERT_NE(read, nullptr) << text;
    ASSERT_TRUE(pf_equal(built.get(), read.get())) << text;
    ASSERT_EQ(pf2text(read.get()), text);
  }
  EXPECT_GT(random.taken(), 3000u);
}

TEST(WrittenParameters, OfAnythingThatCouldBeReadReadBackAsTheSame) {
  RandomParameters random(triglub_test::random_seed());
  const Complaints refusals;
  unsigned well_formed = 0;
  for (int i = 0; i < 20000; ++i) {
    const std::string text = random.text();
    const PfPtr pf = parsed(text);
    if (pf == nullptr) continue;
    ++well_formed;
    const std::string written = pf2text(pf.get());
    const PfPtr read = parsed(written);
    ASSERT_NE(read, nullptr) << text;
    ASSERT_TRUE(pf_equal(pf.get(), read.get())) << text;
    ASSERT_EQ(pf2text(read.get()), written);
  }
  EXPECT_GT(well_formed, 100u);
  EXPECT_EQ(refusals.texts().size() + well_formed, 20000u);
}

}  // namespace
