// The grey test and the dominant-colour count with its physical-size limit.
#include <gtest/gtest.h>

#include "SegEngine.h"

namespace {


bool GreyOf(COLORREF c) {
  auto dib = testimg::MakeDib24(2, 2, [c](int x, int y) { return x == 1 && y == 1 ? c : RGB(50, 50, 50); });
  SegEngine e;
  e.Load(dib);
  return e.IsGrayValued() == 1;
}

TEST(IsGrayValued, GreenMayDifferBySevenRedOnlyByThree) {
  EXPECT_TRUE(GreyOf(RGB(103, 107, 100)));   // blue 100: green +7, red +3
  EXPECT_TRUE(GreyOf(RGB(97, 93, 100)));     // green -7, red -3
  EXPECT_FALSE(GreyOf(RGB(100, 108, 100)));  // green +8
  EXPECT_FALSE(GreyOf(RGB(104, 100, 100)));  // red +4
  EXPECT_FALSE(GreyOf(RGB(107, 100, 100)));  // red +7: the green tolerance does not apply
  SegEngine none;
  EXPECT_EQ(none.IsGrayValued(), 0);
}

TEST(GetColorNumber, PictureWithoutInteriorPixelsHasNoColours) {
  auto dib = testimg::MakeDib24(40, 2, [](int, int) { return RGB(9, 9, 9); });
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, 400, 20);
  CDWordArray list;
  list.Add(5);
  e.m_arrColorList.Add(6);
  int n = -1;
  EXPECT_EQ(e.GetColorNumber(n, &list), 1);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(list.GetSize(), 0);
  EXPECT_EQ(e.m_arrColorList.GetSize(), 0);
}

// Each column has its own colour. An interior pixel sees three pixels of
// the column to its left, two of its own and three of the right one; the
// tie goes to the left column, met first. So the dominant colours are the
// colours of columns 0 .. W-3: 99 for W = 101, 100 for W = 102.
std::vector<unsigned char> Columns(int w) {
  return testimg::MakeDib24(w, 3, [](int x, int) { return RGB(x, 255 - x, 7); });
}

TEST(GetColorNumber, StopsAtAHundredDominantColours) {
  auto many = Columns(102);
  SegEngine e;
  e.Load(many);
  e.SetImageRealRect(0, 0, 102000, 3000);  // limit 4
  CDWordArray list;
  list.Add(5);
  int n = 77;
  EXPECT_EQ(e.GetColorNumber(n, &list), 0);
  EXPECT_EQ(n, 77);
  ASSERT_EQ(list.GetSize(), 1);

  auto fewer = Columns(101);
  SegEngine f;
  f.Load(fewer);
  f.SetImageRealRect(0, 0, 101000, 3000);
  EXPECT_EQ(f.GetColorNumber(n, &list), 1);
  EXPECT_EQ(n, 0);  // every colour was dominant once: none is kept
}

int KeptOfPlainPicture(int w, int h, LONG rectW, LONG rectH) {
  auto dib = testimg::MakeDib24(w, h, [](int, int) { return RGB(1, 2, 3); });
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, rectW, rectH);
  int n = -1;
  EXPECT_EQ(e.GetColorNumber(n, nullptr), 1);
  return n;
}

TEST(GetColorNumber, LimitScalesWithThePhysicalPixelSize) {
  // r = 1: the limit is 300 and must be exceeded.
  EXPECT_EQ(KeptOfPlainPicture(302, 3, 302, 3), 0);  // 300 interior pixels
  EXPECT_EQ(KeptOfPlainPicture(303, 3, 303, 3), 1);  // 301
  // r = 10 (from the height; the larger scale counts): 3 is held at 4.
  EXPECT_EQ(KeptOfPlainPicture(6, 3, 6, 30), 0);  // 4 interior pixels
  EXPECT_EQ(KeptOfPlainPicture(7, 3, 7, 30), 1);  // 5
  // r = 2 from the width: limit 75.
  EXPECT_EQ(KeptOfPlainPicture(77, 3, 154, 3), 0);
  EXPECT_EQ(KeptOfPlainPicture(78, 3, 156, 3), 1);
}

TEST(GetColorNumber, DefaultEmptyRectangleKeepsNoColour) {
  auto dib = testimg::MakeDib24(50, 50, [](int x, int) { return x < 25 ? RGB(200, 0, 0) : RGB(0, 0, 200); });
  SegEngine e;
  e.Load(dib);
  CDWordArray list;
  list.Add(1);
  int n = -1;
  EXPECT_EQ(e.GetColorNumber(n, &list), 1);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(list.GetSize(), 0);
}

TEST(GetColorNumber, ListsPackedColoursBrightestFirst) {
  auto dib = testimg::MakeDib24(20, 10, [](int x, int) { return x < 10 ? RGB(200, 10, 10) : RGB(10, 10, 250); });
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, 200, 100);  // r = 10, limit 4
  CDWordArray list;
  int n = 0;
  EXPECT_EQ(e.GetColorNumber(n, &list), 1);
  ASSERT_EQ(n, 2);
  ASSERT_EQ(list.GetSize(), 2);
  EXPECT_EQ(list[0], 0xFA0A0Au);  // blue 250: sum 270
  EXPECT_EQ(list[1], 0x0A0AC8u);  // red 200: sum 220
  ASSERT_EQ(e.m_arrColorList.GetSize(), 2);
  EXPECT_EQ(e.m_arrColorList[0], list[0]);
  EXPECT_EQ(e.m_arrColorList[1], list[1]);
}

TEST(GetColorNumber, RefusesWithoutAPicture) {
  SegEngine e;
  int n = 3;
  EXPECT_EQ(e.GetColorNumber(n, nullptr), 0);
  EXPECT_EQ(n, 3);
}

}  // namespace
