// Connected components with the crossing repair and the masks, the merging
// of small regions, and the satin disc.
#include <gtest/gtest.h>

#include <string>

#include "outline/DiscFit.h"
#include "outline/OutlineKit.h"
#include "outline/SmallRegions.h"

namespace {

std::string WorkText(const OutlineEngine& e) {
  std::string s;
  for (int k = 0; k < e.m_bmiHeader.biWidth * e.m_bmiHeader.biHeight; k++)
    for (char c : std::string(".#rgby"))
      if (TextColor(c) == e.WorkPixel(k % e.m_bmiHeader.biWidth, k / e.m_bmiHeader.biWidth)) s += c;
  return s;
}

TEST(GetCompList, SeedsInRasterOrderPixelsBreadthFirstDownBeforeRight) {
  OutlineEngine e;
  e.LoadText({"rr.", "r.b", "..b"});
  Owned<CConComponent> l;
  ASSERT_EQ(e.GetCompList(l, nullptr), 1);
  V got;  // per component: seed, (pixels, blue of its colour), box corners
  for (CConComponent* c : l)
    got.insert(got.end(), {c->m_pPoints[0], Pt(c->m_nPoints, GetBValue(c->m_crColor)),
                           Pt(c->m_rcBound.left, c->m_rcBound.top), Pt(c->m_rcBound.right, c->m_rcBound.bottom)});
  EXPECT_EQ(got, (V{Pt(0, 0), Pt(3, 0), Pt(0, 0), Pt(1, 1), Pt(2, 0), Pt(1, 255), Pt(2, 0), Pt(2, 0),
                    Pt(1, 1), Pt(3, 255), Pt(0, 1), Pt(1, 2), Pt(2, 1), Pt(2, 255), Pt(2, 1), Pt(2, 2)}));
  EXPECT_EQ(Chain(l.front()->m_pPoints, 3), (V{Pt(0, 0), Pt(0, 1), Pt(1, 0)}));  // left, up, down, right
  Owned<CConComponent> keep{new CConComponent};
  EXPECT_EQ(OutlineEngine().GetCompList(keep, nullptr) + keep.size(), 1u);  // no picture: 0, the list stays
  EXPECT_EQ(OutlineEngine().RemoveSmallRegions(keep, 3.0, nullptr), 0);
}

// The component search, then one clean-up pass with the limit of 4 pixels.
// Mask 1 absorbs a pixel into the component seeded first without expanding
// or seeding from it; 2 and any nonzero host value exclude. A crossing
// (a label meeting itself only at a corner) is repaired by recolouring the
// right neighbour, or the left one for the mirror crossing (the two
// three-row pictures), and the list from before the repair comes back numbered.
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
    if (!c.maskAfter.empty()) {
      EXPECT_EQ(c.host.empty() ? std::vector<int>(c.mask.begin(), c.mask.end()) : c.host, c.maskAfter);
    }
    e.SetMASKData(nullptr);
  }
}

TEST(SmallRegions, LimitTable) {
  // minArea 100 / s^2 + 0.5, s the coarser scale, never below 4 nor infinite.
  int cases[][5] = {{0, 0, 100, 50, 4},     {100, 50, 100, 50, 300}, {1000, 100, 100, 50, 4},
                    {200, 50, 100, 50, 75}, {50, 100, 100, 50, 75},  {1, 1, 30000, 30000, 4}};
  for (auto& c : cases) EXPECT_EQ(outline::SmallRegionLimit(3.0, c[0], c[1], c[2], c[3]), c[4]) << c[0];
}

TEST(Disc, TableForSatinWidthSix) {
  // Step 1/6, room for 37 entries, 32 kept. Angle 0: (5.5, -0.5) -> (5, 0);
  // 1/6 repeats it; 9/6: cos * 6 - 0.5 = -0.08 truncates to 0.
  V t = outline::BuildDiscTable(6.0);
  ASSERT_EQ(t.size(), 32u);
  EXPECT_EQ(V({t[0], t[1], t[2], t[3], t[7], t[8], t[16], t[31]}),
            V({Pt(5, 0), Pt(5, 1), Pt(4, 2), Pt(4, 3), Pt(0, 5), Pt(-1, 5), Pt(-6, 0), Pt(5, -1)}));
  EXPECT_EQ(outline::BuildDiscTable(0.1).size() + 10 * outline::BuildDiscTable(1e12).size(), 10u);
}

}  // namespace
