// Mean shift over region means, worked by hand: the radius search in both
// directions with its stopping rules, size weights, near-duplicate modes.
#include <gtest/gtest.h>

#include <algorithm>

#include "SegEngine.h"

namespace {

struct Means { DWORD size; float r, g, b; };
// P1 and P2 lie just outside the sphere of P0 but inside each other's; their
// mode M = (113.685, 100, 100) ends up 13.7 from P0's mode.
const std::vector<Means> kNear = {{2, 100, 100, 100}, {2, 113.685f, 106.38f, 100}, {2, 113.685f, 93.62f, 100}};

TEST(MeanShift, HandWorkedModes) {
  SegEngine sphere;  // the radius sphere is open
  EXPECT_TRUE(!sphere.InCentroid(15, 0, 0, 0, 0, 0, 15) && sphere.InCentroid(0, 0, -14.999, 0, 0, 0, 15));
  EXPECT_TRUE(!sphere.InCentroid(3, 4, 0, 0, 0, 0, 5) && sphere.InCentroid(3, 4, 0, 0, 0, 0, 5.0001));
  const struct {
    std::vector<Means> regions;
    int wanted;
    std::vector<DWORD> list;
    int radius;
    std::vector<COLORREF> rows;  // the pixel (0, row) afterwards
  } cases[] = {
      // Three close means and a far one, three wanted: every radius from 15
      // down to 2 gives two modes; the radius stops at 1.
      {{{1, 10, 10, 10}, {1, 10.5f, 10, 10}, {1, 11, 10, 10}, {1, 200, 200, 200}}, 3,
       {RGB(200, 200, 200), RGB(10, 10, 10)}, 1, {RGB(10, 10, 10), RGB(10, 10, 10), RGB(10, 10, 10), RGB(200, 200, 200)}},
      // An equilateral triangle of side just over 100: up to radius 100 every
      // mean is its own mode, at 101 all fall into one. The search for two
      // overshoots to one and does not shrink again.
      {{{1, 0, 0, 0}, {1, 100, 0, 0}, {1, 50, 86.61f, 0}}, 2, {RGB(50, 28, 0)}, 101, {RGB(50, 28, 0)}},
      {{{1, 0, 0, 0}, {1000, 10, 0, 0}}, 1, {RGB(9, 0, 0)}, 15, {RGB(9, 0, 0)}},  // weighted: 10 * 1000 / 1001
      // Near modes are kept when there are no more regions than wanted,
      // otherwise dropped from the list but still painted.
      {kNear, 5, {RGB(113, 100, 100), RGB(100, 100, 100)}, 15, {RGB(100, 100, 100), RGB(113, 100, 100)}},
      {kNear, 2, {RGB(100, 100, 100)}, 15, {RGB(100, 100, 100), RGB(113, 100, 100), RGB(113, 100, 100)}},
      // Fewer than one wanted acts as one: P1 and P2, 15.1 from P0, join it at 16.
      {kNear, 0, {RGB(109, 100, 100)}, 16, {RGB(109, 100, 100), RGB(109, 100, 100), RGB(109, 100, 100)}},
      {{}, 3, {0xDEAD}, 15, {}},  // no regions: nothing changes
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << "case " << (&c - cases));
    SegEngine e;
    e.Load(testimg::MakeDib24(12, 4, [](int, int) { return RGB(0, 0, 0); }));
    int row = 0;  // region i paints up to 11 pixels (x, i)
    for (const Means& m : c.regions) e.AddRegion(std::min<DWORD>(m.size, 11), m.r, m.g, m.b, 0, row++)->m_nSize = m.size;
    CDWordArray list;
    list.Add(0xDEAD);
    e.m_arrColorList.Add(0xDEAD);
    e.MeanShift(c.wanted, &list);
    EXPECT_EQ(std::vector<DWORD>(list.GetData(), list.GetData() + list.GetSize()), c.list);
    EXPECT_TRUE(e.m_arrColorList.GetSize() == list.GetSize() && e.m_nColorRadius == c.radius) << e.m_nColorRadius;
    for (size_t y = 0; y < c.rows.size(); y++) EXPECT_EQ(e.Pixel(0, int(y)), c.rows[y]) << y;
    EXPECT_EQ(e.Pixel(11, 3), RGB(0, 0, 0));  // no region holds it
  }
}

}  // namespace
