#include "findings.h"

#include <gmock/gmock.h>

#include <string>

#include "support/collected_log.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using triglub_test::CollectedLog;

std::vector<std::string> report_of(const Findings& findings) {
  const CollectedLog log;
  findings.report();
  return log.lines();
}

TEST(Findings, NothingIsReportedWhereNothingWasFound) {
  const Findings findings;
  EXPECT_TRUE(findings.empty());
  EXPECT_FALSE(findings.has(Rank::note));
  EXPECT_FALSE(findings.has(Rank::warning));
  EXPECT_THAT(findings.all(), IsEmpty());
  EXPECT_THAT(report_of(findings), IsEmpty());
}

TEST(Findings, WarningsComeFirstEachRankByText) {
  Findings findings;
  findings.add(Rank::note, "b", "1");
  findings.add(Rank::warning, "d", "2");
  findings.add(Rank::note, "a", "3");
  findings.add(Rank::warning, "c", "4");
  EXPECT_THAT(report_of(findings), ElementsAre("warning: c: 1 (4)", "warning: d: 1 (2)", "notify: note: a: 1 (3)",
                                               "notify: note: b: 1 (1)"));
}

TEST(Findings, OneTextOfTwoRanksIsTwoFindings) {
  Findings findings;
  findings.add(Rank::note, "a", "1");
  findings.add(Rank::warning, "a", "2");
  EXPECT_THAT(report_of(findings), ElementsAre("warning: a: 1 (2)", "notify: note: a: 1 (1)"));
}

TEST(Findings, AllAreCountedAndTheFirstFivePlacesNamed) {
  Findings findings;
  for (int i = 1; i <= 5; ++i) findings.add(Rank::warning, "five", "p" + std::to_string(i));
  for (int i = 1; i <= 6; ++i) findings.add(Rank::warning, "six", "p" + std::to_string(i));
  EXPECT_THAT(report_of(findings),
              ElementsAre("warning: five: 5 (p1, p2, p3, p4, p5)", "warning: six: 6 (p1, p2, p3, p4, p5, ...)"));
}

TEST(Findings, WithoutAPlaceThereIsTheNumberAlone) {
  Findings findings;
  findings.add(Rank::note, "a", "");
  findings.add(Rank::note, "a", "");
  EXPECT_THAT(report_of(findings), ElementsAre("notify: note: a: 2"));
}

TEST(Findings, AnothersComeBehindOnesOwn) {
  Findings first;
  for (int i = 0; i < 3; ++i) first.add(Rank::warning, "a", "x" + std::to_string(i));
  Findings second;
  for (int i = 0; i < 4; ++i) second.add(Rank::warning, "a", "y" + std::to_string(i));
  second.add(Rank::note, "b", "z");
  first.add(second);
  EXPECT_THAT(report_of(first), ElementsAre("warning: a: 7 (x0, x1, x2, y0, y1, ...)", "notify: note: b: 1 (z)"));
  EXPECT_TRUE(first.has(Rank::note));
}

TEST(Findings, InPartsAreTheSameAsInOne) {
  Findings whole;
  Findings parts;
  for (int part = 0; part < 4; ++part) {
    Findings of_part;
    for (int i = 0; i < 2; ++i) {
      whole.add(Rank::warning, "a", std::to_string(part * 10 + i));
      of_part.add(Rank::warning, "a", std::to_string(part * 10 + i));
    }
    parts.add(of_part);
  }
  EXPECT_EQ(report_of(parts), report_of(whole));
}

TEST(Findings, AddedToThemselvesAreTwice) {
  Findings findings;
  findings.add(Rank::warning, "a", "x");
  findings.add(findings);
  EXPECT_THAT(report_of(findings), ElementsAre("warning: a: 2 (x, x)"));
}

}  // namespace
}  // namespace triglub
