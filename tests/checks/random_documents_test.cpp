// Documents spoilt at random: whatever becomes of them, they are read to an end, and alike every time.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <regex>

#include "checks/good_document.h"
#include "document_checks.h"
#include "support/random_seed.h"

namespace triglub {
namespace {

using triglub_test::kGoodDocument;
using triglub_test::random_seed;

class Spoiler {
 public:
  explicit Spoiler(std::uint64_t seed) : random_(seed) {}

  std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  void change_byte(std::string& text) { text[below(text.size())] = static_cast<char>(below(256)); }
  void drop_bytes(std::string& text) { text.erase(below(text.size()), below(30) + 1); }
  void cut(std::string& text) { text.resize(below(text.size()) + 1); }

  // Takes an element out, or puts it in twice, with all that is in it.
  void drop_element(std::string& text) {
    const auto [begin, end] = element(text);
    if (end > begin && begin > kHead) text.erase(begin, end - begin);
  }
  void double_element(std::string& text) {
    const auto [begin, end] = element(text);
    if (end > begin && begin > kHead) text.insert(end, text.substr(begin, end - begin));
  }
  // Puts another value in the place of a number or a name.
  void change_value(std::string& text) {
    const std::size_t begin = text.find('>', below(text.size()));
    const std::size_t end = begin == std::string::npos ? begin : text.find('<', begin);
    if (end != std::string::npos) text.replace(begin + 1, end - begin - 1, kValues[below(std::size(kValues))]);
  }

  void spoil(std::string& text) {
    switch (below(8)) {
      case 0:
        return change_byte(text);
      case 1:
        return drop_bytes(text);
      case 2:
        return cut(text);
      case 3:
        return double_element(text);
      case 4:
        return drop_element(text);
      default:
        return change_value(text);
    }
  }
  void spoil_form(std::string& text) {
    switch (below(3)) {
      case 0:
        return double_element(text);
      case 1:
        return drop_element(text);
      default:
        return change_value(text);
    }
  }

 private:
  static constexpr std::size_t kHead = 200;  // the root stays
  static constexpr const char* kValues[] = {"",
                                            "0",
                                            "-1",
                                            "1e308",
                                            "-1e308",
                                            "1e-308",
                                            "5e-324",
                                            "NaN",
                                            "INF",
                                            "360",
                                            "1e9",
                                            "m/s",
                                            "&amp;",
                                            "&#0;",
                                            "&x;",
                                            "99999999999999999999",
                                            "ODD",
                                            "EVEN",
                                            "NONE",
                                            "DIGITAL",
                                            "DIGITAL (Z-TRANSFORM)",
                                            "ANALOG (HERTZ)",
                                            "0.1 0.2"};

  static std::pair<std::size_t, std::size_t> found_element(const std::string& text, std::size_t from) {
    const std::size_t begin = text.find('<', from);
    if (begin == std::string::npos) return {0, 0};
    const std::size_t name_end = text.find_first_of(" >/", begin + 1);
    if (name_end == std::string::npos || name_end == begin + 1) return {0, 0};
    const std::string closing = "</" + text.substr(begin + 1, name_end - begin - 1) + ">";
    const std::size_t end = text.find(closing, begin);
    return end == std::string::npos ? std::pair<std::size_t, std::size_t>{0, 0}
                                    : std::pair{begin, end + closing.size()};
  }
  std::pair<std::size_t, std::size_t> element(const std::string& text) {
    return found_element(text, below(text.size()));
  }

  std::mt19937_64 random_;
};

bool is_same(const DocumentFinding& a, const DocumentFinding& b) {
  return a.code == b.code && a.rank == b.rank && a.path == b.path && a.line == b.line && a.text == b.text;
}

void expect_sense(const std::string& text) {
  static const std::regex no_number(R"(\bnan\b)");
  const auto findings = check_document_text(text);
  const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
  for (const DocumentFinding& finding : findings) {
    EXPECT_GE(finding.line, 1) << finding.text;
    EXPECT_LE(finding.line, lines) << finding.text;
    EXPECT_FALSE(std::regex_search(finding.text, no_number)) << finding.text;
  }
  const auto again = check_document_text(text);
  EXPECT_TRUE(std::equal(findings.begin(), findings.end(), again.begin(), again.end(), is_same)) << text;
}

TEST(RandomDocuments, AreReadToAnEnd) {
  Spoiler spoiler(random_seed());
  for (int i = 0; i < 1500; ++i) {
    std::string text(kGoodDocument);
    for (std::size_t edits = spoiler.below(4) + 1; edits > 0 && text.size() > 1; --edits) spoiler.spoil(text);
    expect_sense(text);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(RandomDocuments, OfAnyContentAreReadToAnEnd) {
  Spoiler spoiler(random_seed());
  for (int i = 0; i < 1500; ++i) {
    std::string text(kGoodDocument);
    for (std::size_t edits = spoiler.below(30) + 1; edits > 0; --edits) spoiler.spoil_form(text);
    expect_sense(text);
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace triglub
