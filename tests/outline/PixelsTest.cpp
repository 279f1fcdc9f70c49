// Connected components with the crossing repair and masks; small regions.
#include <gtest/gtest.h>

#include <string>

#include "outline/OutlineKit.h"
#include "outline/SmallRegions.h"

namespace {

std::string WorkText(const OutlineEngine& e) {  // the work picture as text rows, joined
  std::string s;
  for (int k = 0, w = e.m_bmiHeader.biWidth; k < w * e.m_bmiHeader.biHeight; k++)
    for (char c : std::string(".#rgby")) s += TextColor(c) == e.WorkPixel(k % w, k / w) ? std::string(1, c) : "";
  return s;
}

// The component search, then one clean-up pass with the limit of 4 pixels. Mask 1 absorbs a pixel into the
// component seeded first without expanding or seeding from it; 2 and any nonzero host value exclude. A crossing
// (a label meeting itself only at a corner) is repaired by recolouring the right neighbour, or the left one for
// the mirror crossing (the two three-row pictures), and the list from before the repair comes back numbered.
TEST(GetCompList, ComponentsAndCleanUpTable) {
  struct {
    std::vector<const char*> rows;
    std::vector<unsigned char> mask;
    std::vector<int> host, sizes;
    int removed;
    const char *repaired, *cleaned;
    std::vector<int> maskAfter;
  } cases[] = {
      {{"rrr", "rbr", "grr"}, {}, {}, {7, 1, 1}, 1, "rrrrrrgrr", "rrrrrrrrr", {}},
      {{"rrr", "rbr", "rrg"}, {}, {}, {7, 1, 1}, 1, "rrrrrrrrg", "rrrrrrrrr", {}},
      // Neighbours are tried left, up, down, right; painted pixels count.
      {{"r.", ".r"}, {}, {}, {1, 1, 1, 1}, 1, "r..r", ".rrr", {}},
      {{"bbbbbgrrrrr"}, {}, {}, {5, 1, 5}, 1, "bbbbbgrrrrr", "bbbbbbrrrrr", {}},
      {{"rgrb"}, {0, 1, 0, 0}, {}, {2, 1, 1}, 1, "rgrb", "rrbb", {0, 2, 0, 2}},
      {{"g"}, {1}, {}, {}, 0, "g", "g", {1}},
      {{"rrr"}, {2, 0, 2}, {}, {1}, 0, "rrr", "r.r", {2, 2, 2}},
      {{"rrrr"}, {}, {0, -1, 0, 0}, {1, 2}, 1, "rrrr", "rrrr", {-1, -1, -1, 0}},
      {{"bbbbrrrrr"}, {}, {}, {4, 5}, 1, "bbbbrrrrr", "rrrrrrrrr", {}},  // 4 goes, 5 stays
      // b takes green; g finds no other colour and keeps the last one seen;
      // y sees only excluded pixels and is painted green too. A search that
      // finds nothing excludes the last pixel it walked.
      {{"bg#y#......"}, {0, 0, 2, 0, 2, 0, 0, 0, 0, 0, 0}, {}, {1, 1, 1, 6}, 1, "bg#y#......", "gg#g#......",
       {0, 2, 2, 2, 2, 0, 0, 0, 0, 0, 0}},
      {{"b#ggggg"}, {0, 2, 0, 0, 0, 0, 0}, {}, {1, 5}, 0, "b#ggggg", ".#ggggg", {2, 2, 0, 0, 0, 0, 0}},
      // Only the host mask differs: its value goes to the last examined pixel.
      {{"rrrrrrr"}, {}, {0, 0, 5, 5, 5, 5, 5}, {2}, 1, "rrrrrrr", "rrrrrrr", {0, 5, 5, 5, 5, 5, 5}},
      {{"rrr"}, {}, {7, 0, 5}, {1}, 1, "rrr", "rrr", {7, 7, 5}},  // the left neighbour's value is met first
  };
  for (auto& c : cases) {
    OutlineEngine e;
    e.LoadText(c.rows);
    e.SetMASKData(c.host.empty() ? nullptr : c.host.data());
    unsigned char* mask = c.mask.empty() ? nullptr : c.mask.data();
    Owned<CConComponent> l;
    ASSERT_EQ(e.GetCompList(l, mask), 1);
    std::vector<int> sizes, numbers;
    for (CConComponent* p : l) sizes.push_back(p->m_nPoints), numbers.push_back(p->m_nIndex);
    SCOPED_TRACE(c.rows[0]);
    EXPECT_EQ(sizes, c.sizes);
    for (size_t k = 0; k < numbers.size(); k++) EXPECT_EQ(numbers[k], c.rows.size() == 3 ? int(k) : -1);
    EXPECT_EQ(WorkText(e), c.repaired);
    EXPECT_EQ(e.RemoveSmallRegions(l, 3.0, mask), c.removed);
    EXPECT_EQ(WorkText(e), c.cleaned);
    std::vector<int> maskAfter = c.host.empty() ? std::vector<int>(c.mask.begin(), c.mask.end()) : c.host;
    EXPECT_TRUE(c.maskAfter.empty() || maskAfter == c.maskAfter);
    e.SetMASKData(nullptr);
  }
  OutlineEngine e;  // no picture: 0, the list stays
  Owned<CConComponent> keep{new CConComponent};
  EXPECT_EQ(e.GetCompList(keep, nullptr) + keep.size() + e.RemoveSmallRegions(keep, 3.0, nullptr), 1u);
  int L[4] = {7, 3, 4, 7}, M[4] = {3, 7, 7, 4};  // the crossing tests: labels only, inside the array only
  EXPECT_EQ(V({Pt(e.BeCross24(L, 2, 2, 0, 0), e.BeCross13(M, 2, 2, 0, 1)), Pt(e.BeCross24(L, 2, 2, 1, 1), e.BeCross13(M, 2, 2, 1, 1))}),
            V({Pt(1, 1), Pt(0, 0)}));
}

TEST(SmallRegions, LimitTable) {
  // minArea 100 / s^2 + 0.5, s the coarser scale, never below 4 nor infinite.
  int cases[][5] = {{0, 0, 100, 50, 4},     {100, 50, 100, 50, 300}, {1000, 100, 100, 50, 4},
                    {200, 50, 100, 50, 75}, {50, 100, 100, 50, 75},  {1, 1, 30000, 30000, 4}};
  for (auto& c : cases) EXPECT_EQ(outline::SmallRegionLimit(3.0, c[0], c[1], c[2], c[3]), c[4]) << c[0];
}

}  // namespace
