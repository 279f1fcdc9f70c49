// The retry rule of the segmentation driver, fed with hand-chosen colour
// counts in place of clustering passes.
#include <gtest/gtest.h>

#include <vector>

#include "engine/ColorCountRetry.h"

using pictrace::ColorCountRetry;

namespace {

// Runs the rule over the counts the passes would find (the first entry is
// the first pass) and returns the targets of every pass that ran.
std::vector<int> Targets(int wanted, const std::vector<int>& counts, bool noRetry = false) {
  ColorCountRetry r(wanted);
  std::vector<int> targets{r.Target()};
  size_t i = 0;
  bool more = r.AfterFirstPass(counts[i++], noRetry);
  while (more) {
    targets.push_back(r.Target());
    if (i >= counts.size()) {
      ADD_FAILURE() << "more passes than counts";
      break;
    }
    more = r.AfterRetry(counts[i++]);
  }
  return targets;
}

}  // namespace

TEST(ColorCountRetry, HitOnTheFirstPassRunsNoRetry) {
  EXPECT_EQ(Targets(8, {8}), (std::vector<int>{8}));
}

TEST(ColorCountRetry, UpwardSearchTurnsDownOnceAfterOvershooting) {
  // Counts 6, 7, 9: targets 8, 9, 10, then 9 after the turn.
  EXPECT_EQ(Targets(8, {6, 7, 9, 9, 9, 9}), (std::vector<int>{8, 9, 10, 9, 8, 7}));
  // The turn happens once: an undershoot while going down stops the search.
  EXPECT_EQ(Targets(8, {6, 9, 7}), (std::vector<int>{8, 9, 8}));
}

TEST(ColorCountRetry, AtMostFiveRetriesAndTheLastPassStands) {
  EXPECT_EQ(Targets(8, {1, 2, 3, 4, 5, 6}), (std::vector<int>{8, 9, 10, 11, 12, 13}));
  EXPECT_EQ(Targets(8, {6, 8}), (std::vector<int>{8, 9}));  // a hit stops early
}

TEST(ColorCountRetry, NoRetryRunsOnePass) {
  EXPECT_EQ(Targets(8, {3}, true), (std::vector<int>{8}));
}

TEST(ColorCountRetry, TargetsStayBetweenTwoAndFortyNine) {
  // nColors = 2 overshooting gives target 1: no retry.
  EXPECT_EQ(Targets(2, {3}), (std::vector<int>{2}));
  // 49 short of the count gives target 50: no retry.
  EXPECT_EQ(Targets(49, {40}), (std::vector<int>{49}));
  // Going down from 3 reaches 2, then 1 ends the search.
  EXPECT_EQ(Targets(3, {5, 5, 5}), (std::vector<int>{3, 2}));
}
