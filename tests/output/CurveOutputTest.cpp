// Curve output: raw staircase chains through the fitter into Bezier lines.
#include <gtest/gtest.h>

#include <cmath>

#include "output/CurveDistance.h"
#include "output/OutputFixtures.h"

using namespace outtest;

namespace {

// The raw chain of a digital disc of radius r around (cx, cy): unit steps on
// the pixel-corner grid around the pixels whose centres lie inside.
std::vector<std::pair<int, int>> DiscStaircase(int cx, int cy, int r) {
  auto inside = [&](int x, int y) {
    double dx = x + 0.5 - cx, dy = y + 0.5 - cy;
    return dx * dx + dy * dy < r * r;
  };
  // Walk the boundary with the inside on the left, starting at the lowest
  // row's leftmost pixel corner.
  int sx = cx, sy = cy - r;
  while (!inside(sx, sy)) sy++;
  while (inside(sx - 1, sy)) sx--;
  std::vector<std::pair<int, int>> chain{{sx, sy}};
  int x = sx, y = sy, dir = 0;  // 0 +x, 1 +y, 2 -x, 3 -y
  const int ddx[4] = {1, 0, -1, 0}, ddy[4] = {0, 1, 0, -1};
  do {
    // Pixel to the left and right of the next step in direction d.
    auto leftPix = [&](int d) {
      int px = d == 0 ? x : d == 1 ? x - 1 : d == 2 ? x - 1 : x;
      int py = d == 0 ? y : d == 1 ? y : d == 2 ? y - 1 : y - 1;
      return inside(px, py);
    };
    auto rightPix = [&](int d) {
      int px = d == 0 ? x : d == 1 ? x : d == 2 ? x - 1 : x - 1;
      int py = d == 0 ? y - 1 : d == 1 ? y : d == 2 ? y : y - 1;
      return inside(px, py);
    };
    for (int turn : {3, 0, 1, 2}) {  // prefer right turns, keep the inside left
      int d = (dir + turn) % 4;
      if (leftPix(d) && !rightPix(d)) {
        dir = d;
        break;
      }
    }
    x += ddx[dir];
    y += ddy[dir];
    chain.push_back({x, y});
  } while ((x != sx || y != sy) && chain.size() < 10000);
  return chain;
}

}  // namespace

TEST(CurveOutput, DiscStaircaseBecomesClosedBezierChainWithinTolerance) {
  OutputEngine e(40, 40);
  e.m_dCurveTolerance = 1.0;
  e.m_arrColorList.Add(RGB(1, 2, 3));
  std::vector<std::pair<int, int>> chain = DiscStaircase(20, 20, 12);
  ASSERT_GT(chain.size(), 40u);
  ASSERT_EQ(chain.front(), chain.back());
  COutlineRegion* r = MakeRegion(chain, 0, 0);
  e.m_listOutlineRegions.push_back(r);
  e.CreateOutputPolygon(1);

  const CPTPolygon* p = r->m_pPolygon;
  ASSERT_NE(p, nullptr);
  ASSERT_GT(p->m_nLines, 0);
  EXPECT_LT(p->m_nLines, static_cast<int>(chain.size()) / 4);  // a real reduction
  for (int i = 0; i < p->m_nLines; i++) {
    EXPECT_EQ(p->m_pLines[i].m_nType, 1);
    const CPTPoint& next = p->m_pLines[(i + 1) % p->m_nLines].m_ptStart;
    EXPECT_FLOAT_EQ(p->m_pLines[i].m_ptEnd.x, next.x);
    EXPECT_FLOAT_EQ(p->m_pLines[i].m_ptEnd.y, next.y);
  }
  // Starts near the chain's first point (the fit smooths the staircase), with
  // y flipped to the top-down frame.
  EXPECT_LE(std::hypot(p->m_pLines[0].m_ptStart.x - chain[0].first,
                       p->m_pLines[0].m_ptStart.y - (40 - chain[0].second)),
            1.0);
  for (const auto& pt : chain)
    EXPECT_LE(DistanceToPolygon(*p, pt.first, 40 - pt.second), 1.0 + 1e-3)
        << pt.first << "," << pt.second;
}

TEST(CurveOutput, HolesAreFittedAndShortChainsGiveNoLines) {
  OutputEngine e(40, 40);
  e.m_arrColorList.Add(RGB(1, 2, 3));
  COutlineRegion* r = MakeRegion(RectChain(0, 0, 40, 40), 0, 0);
  AddHole(r, RectChain(10, 10, 20, 20));
  AddHole(r, {{5, 5}});
  e.m_listOutlineRegions.push_back(r);
  e.CreateOutputPolygon(1);
  ASSERT_NE(r->m_arrHoles[0]->m_pPolygon, nullptr);
  EXPECT_GT(r->m_arrHoles[0]->m_pPolygon->m_nLines, 0);
  EXPECT_EQ(r->m_arrHoles[0]->m_pPolygon->m_pLines[0].m_nType, 1);
  ASSERT_NE(r->m_arrHoles[1]->m_pPolygon, nullptr);
  EXPECT_EQ(r->m_arrHoles[1]->m_pPolygon->m_nLines, 0);
}
