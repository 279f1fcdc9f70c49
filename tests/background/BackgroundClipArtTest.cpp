// Background extraction after the full segmentation of a real clip-art
// picture with a white background.
#include <gtest/gtest.h>

#include "background/BackgroundEngine.h"

TEST(BackgroundClipArt, FlagBackgroundIsTheFrameRegionsTheMarkingSkips) {
  auto dib = testimg::LoadDib(testimg::ExamplePath("flag_kr.png"));
  ASSERT_FALSE(dib.empty());
  BackgroundEngine e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  e.SetImageRealRect(0, 0, w, h);
  CDWordArray colors;
  e.DoSegmentation(4, &colors, 1.0, 0, nullptr);
  ASSERT_TRUE(e.HasOutlines());

  ASSERT_EQ(e.ExtractBackground(), 1);
  const COLORREF bg = e.m_listBackgroundRegions.front()->m_crColor;
  EXPECT_GT(GetRValue(bg), 200);
  EXPECT_GT(GetGValue(bg), 200);
  EXPECT_GT(GetBValue(bg), 200);

  // The marking skips exactly the regions whose pixels the background covers.
  e.MarkBackground();
  std::list<COutlineRegion*> skipped;
  for (COutlineRegion* r : e.m_listOutlineRegions)
    if (r->m_bSkip) skipped.push_back(r);
  PixelSet expected = ComponentPixels(skipped);
  PixelSet got = ComponentPixels(e.m_listBackgroundRegions);
  EXPECT_EQ(got.size(), expected.size());
  EXPECT_TRUE(got == expected);
  EXPECT_EQ(got.count({0, 0}), 1u);
  EXPECT_EQ(got.count({w / 2, h / 2}), 0u);  // the emblem in the middle

  // A few large regions whose holes hold the emblem and the bars.
  EXPECT_LE(e.m_listBackgroundRegions.size(), 2u);
  EXPECT_GE(e.m_listBackgroundRegions.front()->m_arrHoles.GetSize(), 5);
  EXPECT_GT(static_cast<int>(got.size()), w * h / 2);

  CPTRegions out;
  e.GetBackgroundRegions(&out, 0);
  EXPECT_EQ(out.m_nRegions, static_cast<int>(e.m_listBackgroundRegions.size()));
}
