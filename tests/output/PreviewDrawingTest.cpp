// The region preview checked on raster pixels: fills, holes, the lightened and
// hatched flagged regions, colour order and scale.
#include <gtest/gtest.h>

#include "RasterDC.h"
#include "common/PixelChecks.h"
#include "output/HandRegions.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255);

// A 20 x 20 picture drawn 1:1. The square covers pixels 2..17 (chain corners
// 2 and 18, top-down y = 20 - y), its hole pixels 8..11.
struct Preview : ::testing::Test {
  Preview() : dc(20, 20) { hand::Load(e, 20, 20); }
  COutlineRegion* AddSquare(COLORREF color) {
    e.m_arrColorList.Add(color);
    e.m_listOutlineRegions.push_back(hand::AddHole(hand::Region(hand::Rect(2, 2, 18, 18), 0, color), hand::Rect(8, 8, 12, 12)));
    hand::Build(e, 0);
    return e.m_listOutlineRegions.back();
  }
  // Expects every pixel of the square away from its outline and hole to be
  // the fill or the NOTXOR of the 0xC8C8C8 hatch over it, both present.
  void ExpectFlagged(COLORREF fill) {
    int n[2] = {0, 0};
    for (int y = 3; y < 17; y++)
      for (int x = 3; x < 17; x++) {
        if (x >= 7 && x < 13 && y >= 7 && y < 13) continue;
        COLORREF c = dc.GetPixel(x, y);
        if (c == fill || c == (~(0xC8C8C8u ^ fill) & 0xFFFFFFu)) n[c == fill]++;
        else ADD_FAILURE() << x << "," << y << " " << std::hex << c;
      }
    EXPECT_TRUE(n[0] && n[1]);
  }
  CPictrace e;
  CRasterDC dc;
};

TEST_F(Preview, PlainRegionIsFilledAndItsHoleLeftUnpainted) {
  AddSquare(RGB(10, 20, 30));
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  for (int y = 0; y < 20; y++)
    for (int x = 0; x < 20; x++) {
      bool inside = x >= 2 && x < 18 && y >= 2 && y < 18 && !(x >= 8 && x < 12 && y >= 8 && y < 12);
      ASSERT_EQ(dc.GetPixel(x, y), inside ? RGB(10, 20, 30) : kWhite) << x << "," << y;
    }
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
  // Outline only: a stroke in the region colour and nothing filled.
  CRasterDC outline(20, 20);
  e.DrawPolygon(&outline, CRect(0, 0, 20, 20), 1, 0);
  int stroke = 0;
  for (int y = 0; y < 20; y++)
    for (int x = 0; x < 20; x++) {
      stroke += outline.GetPixel(x, y) == RGB(10, 20, 30);
      ASSERT_TRUE(outline.GetPixel(x, y) == RGB(10, 20, 30) || outline.GetPixel(x, y) == kWhite);
    }
  EXPECT_GT(stroke, 40);
  EXPECT_EQ(outline.GetPixel(5, 5), kWhite);
  // Curves: the Bezier point layout fills the same square (its corners stay sharp).
  hand::Build(e, 1);
  CRasterDC curves(20, 20);
  e.DrawPolygon(&curves, CRect(0, 0, 20, 20), 0, 0);
  testimg::ExpectPixels(curves, {{2, 2, RGB(10, 20, 30)}, {17, 17, RGB(10, 20, 30)}, {9, 9, kWhite}, {1, 9, kWhite}, {18, 9, kWhite}});
}

TEST_F(Preview, SkippedRegionIsLightenedHalfwayAndHatched) {
  AddSquare(RGB(200, 100, 1))->m_bSkip = 1;
  // Colour 1 is drawn after the flagged one and covers the hole exactly.
  e.m_arrColorList.Add(RGB(0, 0, 200));
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(8, 8, 12, 12), 1, RGB(0, 0, 200)));
  hand::Build(e, 0);
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  ExpectFlagged(RGB(228, 178, 128));
  EXPECT_EQ(dc.GetPixel(9, 9), RGB(0, 0, 200));  // copied again, not mixed
  EXPECT_EQ(dc.GetROP2(), R2_COPYPEN);
  e.m_listOutlineRegions.back()->m_bSkip = 1;  // the hatch's mix mode stays in place
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  EXPECT_EQ(dc.GetROP2(), R2_NOTXORPEN);
}

TEST_F(Preview, MarkedStoredRegionIsLightenedStronglyHatchedAndOutlined) {
  AddSquare(RGB(0, 0, 30));
  e.CopyOutlines();
  e.m_listStoredRegions.front()->m_bMarked = 1;
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 1);
  ExpectFlagged(RGB(229, 229, 232));
  // The black outline is stroked while NOTXOR is still on: black on white.
  int outline = 0;
  for (int i = 2; i < 18; i++) {
    outline += dc.GetPixel(18, i) == RGB(0, 0, 0);
    EXPECT_TRUE(dc.GetPixel(18, i) == RGB(0, 0, 0) || dc.GetPixel(18, i) == kWhite);
  }
  EXPECT_GT(outline, 0);
  EXPECT_EQ(dc.GetPixel(0, 0), kWhite);
}

TEST_F(Preview, ColourOrderEdgesAndScale) {
  e.m_arrColorList.Add(RGB(255, 0, 0));
  e.m_arrColorList.Add(RGB(0, 0, 255));
  // The colour-1 region comes first in the list but is painted last.
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 10, 20), 1, RGB(0, 0, 255)));
  e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 4, 20, 20), 0, RGB(255, 0, 0)));
  hand::Build(e, 0);
  CRasterDC big(60, 60);
  CPen* pen = big.GetCurrentPen();
  e.DrawPolygon(&dc, CRect(0, 0, 20, 20), 0, 0);
  e.DrawPolygon(&big, CRect(20, 10, 30, 30), 0, 0);  // half size across, shifted by (20, 10)
  EXPECT_EQ(big.GetCurrentPen(), pen);
  testimg::ExpectPixels(dc, {{0, 0, RGB(0, 0, 255)}, {9, 19, RGB(0, 0, 255)}, {10, 0, RGB(255, 0, 0)},
                             {19, 15, RGB(255, 0, 0)}, {19, 16, kWhite}});
  testimg::ExpectPixels(big, {{20, 10, RGB(0, 0, 255)}, {24, 29, RGB(0, 0, 255)}, {25, 10, RGB(255, 0, 0)},
                              {29, 25, RGB(255, 0, 0)}, {29, 26, kWhite}, {30, 10, kWhite}, {19, 10, kWhite}});
  // A picture one row high is drawn too.
  CPictrace row;
  hand::Load(row, 4, 1);
  row.m_arrColorList.Add(RGB(7, 8, 9));
  row.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 4, 1), 0, RGB(7, 8, 9)));
  hand::Build(row, 0);
  CRasterDC thin(4, 1);
  row.DrawPolygon(&thin, CRect(0, 0, 4, 1), 0, 0);
  testimg::ExpectPixels(thin, {{0, 0, RGB(7, 8, 9)}, {3, 0, RGB(7, 8, 9)}});
}

}  // namespace
