// Hue/chroma/value points, nearest thread colours in the four modes, the
// nearest-colour lists and the copies handed to the host.
#include <gtest/gtest.h>

#include "SegEngine.h"

namespace {

struct Hcv {
  int x, y, v;
  bool operator==(const Hcv& o) const { return x == o.x && y == o.y && v == o.v; }
};
std::ostream& operator<<(std::ostream& os, const Hcv& p) { return os << "(" << p.x << ", " << p.y << ", " << p.v << ")"; }

Hcv Conv(int r, int g, int b) {
  SegEngine e;
  Hcv p{};
  e.ConvRGB2HSV(r, g, b, p.x, p.y, p.v);
  return p;
}

TEST(ConvRGB2HSV, WorkedValues) {
  // Red is tested first: hue (0 - 255) * 60 / 255 = -60; 255 cos(-60) is a
  // hair above 127.5 with pi taken as 3.1415926535, so it rounds to 128.
  EXPECT_EQ(Conv(255, 0, 255), (Hcv{128, -221, 255}));
  EXPECT_EQ(Conv(255, 0, 0), (Hcv{255, 0, 255}));
  // hue 120: the short pi leaves 255 cos a hair above -127.5, so -127.
  EXPECT_EQ(Conv(0, 255, 0), (Hcv{-127, 221, 255}));
  EXPECT_EQ(Conv(7, 7, 7), (Hcv{0, 0, 7}));
  // -600 / 255 truncates to -2 degrees (not -3): y = 255 sin(-2) = -8.9.
  EXPECT_EQ(Conv(255, 0, 10), (Hcv{255, -9, 255}));
}

TEST(ConvRGB2HSV, ClampsChannelsOutsideAByte) {
  EXPECT_EQ(Conv(2147483647, -2147483647 - 1, 255), Conv(255, 0, 255));
  EXPECT_EQ(Conv(-5, 300, 0), Conv(0, 255, 0));
}

TEST(ConvRGB2HSV, BlueMaximumIsAlwaysHue240) {
  EXPECT_EQ(Conv(0, 0, 255), (Hcv{-128, -221, 255}));
  // delta 245 at 240 degrees, whatever red and green are.
  EXPECT_EQ(Conv(10, 200, 255), (Hcv{-123, -212, 255}));
  EXPECT_EQ(Conv(200, 10, 255), (Hcv{-123, -212, 255}));
}

// Threads: 0 = (0, 60, 200), 1 = (0, 0, 255). For (0, 100, 255) thread 0 is
// nearer in RGB (4625 against 10000), thread 1 in hue/chroma/value (0).
class ThreadMatch : public ::testing::Test {
 protected:
  void SetUp() override {
    e.m_pThreadColors = new DWORD[2]{RGB(0, 60, 200), RGB(0, 0, 255)};
    e.m_nThreadColorCount = 2;
  }
  DWORD Match(int mode, int* used = nullptr) {
    DWORD c = RGB(0, 100, 255);
    e.GetNearestThreadColor(c, mode, used);
    return c;
  }
  SegEngine e;
};

TEST_F(ThreadMatch, ModesZeroAndTwo) {
  EXPECT_EQ(Match(0), RGB(0, 0, 255));
  EXPECT_EQ(Match(2), RGB(0, 60, 200));
  EXPECT_EQ(Match(7), RGB(0, 60, 200));  // any other mode: RGB distance
}

TEST_F(ThreadMatch, OddModesSkipAndMarkUsedThreads) {
  int used[2] = {0, 1};
  EXPECT_EQ(Match(1, used), RGB(0, 60, 200));
  EXPECT_EQ(used[0], 1);
  int used3[2] = {1, 0};
  EXPECT_EQ(Match(3, used3), RGB(0, 0, 255));
  EXPECT_EQ(used3[1], 1);
  // Every thread used: entry 0 is returned and marked again.
  int all[2] = {1, 1};
  EXPECT_EQ(Match(1, all), RGB(0, 60, 200));
  EXPECT_EQ(all[0], 1);
  // Without flags an odd mode matches like its even partner.
  EXPECT_EQ(Match(1), RGB(0, 0, 255));
  EXPECT_EQ(Match(3), RGB(0, 60, 200));
  // Mode 5 measures in RGB and skips nothing, but still marks.
  int five[2] = {1, 0};
  EXPECT_EQ(Match(5, five), RGB(0, 60, 200));
  EXPECT_EQ(five[0], 1);
}

TEST_F(ThreadMatch, EqualDistancesKeepTheFirstThread) {
  e.m_pThreadColors[0] = RGB(10, 0, 0);
  e.m_pThreadColors[1] = RGB(0, 10, 0);
  DWORD c = RGB(0, 0, 0);
  e.GetNearestThreadColor(c, 2, nullptr);
  EXPECT_EQ(c, RGB(10, 0, 0));
}

TEST(ThreadMatchWithoutTable, LeavesTheColourUnchanged) {
  SegEngine e;
  DWORD c = RGB(1, 2, 3);
  e.GetNearestThreadColor(c, 0, nullptr);
  EXPECT_EQ(c, RGB(1, 2, 3));
  e.m_pThreadColors = new DWORD[1]{RGB(9, 9, 9)};
  e.m_nThreadColorCount = 0;  // a table without entries is no table
  e.GetNearestThreadColor(c, 0, nullptr);
  EXPECT_EQ(c, RGB(1, 2, 3));
}

// Both list colours are nearest to thread 0. With a thread for each, mode 3
// gives the second colour the other thread; with more colours than
// threads it silently falls back to mode 2.
TEST(SetNearestThreadColorList, UsesEachThreadOnceOnlyWhenThereAreEnough) {
  SegEngine e;
  e.m_pThreadColors = new DWORD[2]{RGB(100, 100, 100), RGB(0, 0, 0)};
  e.m_nThreadColorCount = 2;
  e.m_arrColorList.Add(RGB(90, 90, 90));
  e.m_arrColorList.Add(RGB(95, 95, 95));
  e.SetNearestThreadColorList(3);
  ASSERT_EQ(e.m_arrNearestColors.GetSize(), 2);
  EXPECT_EQ(e.m_arrNearestColors[0], RGB(100, 100, 100));
  EXPECT_EQ(e.m_arrNearestColors[1], RGB(0, 0, 0));

  e.m_arrColorList.Add(RGB(99, 99, 99));
  e.SetNearestThreadColorList(3);
  ASSERT_EQ(e.m_arrNearestColors.GetSize(), 3);
  for (int i = 0; i < 3; i++) EXPECT_EQ(e.m_arrNearestColors[i], RGB(100, 100, 100));

  // Used once each, the third colour would get thread 0 (all used); the
  // fall-back to mode 0 gives it its nearest, thread 1.
  e.m_pThreadColors[1] = RGB(0, 0, 255);
  e.m_arrColorList.RemoveAll();
  e.m_arrColorList.Add(RGB(99, 99, 99));
  e.m_arrColorList.Add(RGB(60, 60, 230));
  e.m_arrColorList.Add(RGB(0, 0, 250));
  e.SetNearestThreadColorList(1);  // three colours, two threads: mode 0
  ASSERT_EQ(e.m_arrNearestColors.GetSize(), 3);
  EXPECT_EQ(e.m_arrNearestColors[0], RGB(100, 100, 100));
  EXPECT_EQ(e.m_arrNearestColors[1], RGB(0, 0, 255));
  EXPECT_EQ(e.m_arrNearestColors[2], RGB(0, 0, 255));
  e.m_pThreadColors[1] = RGB(0, 0, 0);

  e.m_arrLineColors.Add(RGB(5, 5, 5));
  e.m_arrLineColors.Add(RGB(1, 1, 1));
  e.SetNearestThreadLineColorList(1);
  ASSERT_EQ(e.m_arrNearestLineColors.GetSize(), 2);
  EXPECT_EQ(e.m_arrNearestLineColors[0], RGB(0, 0, 0));
  EXPECT_EQ(e.m_arrNearestLineColors[1], RGB(100, 100, 100));
}

TEST(GetNearestThreadColorFromList, LooksUpListedColoursAndMatchesOthers) {
  SegEngine e;
  e.m_pThreadColors = new DWORD[2]{RGB(0, 60, 200), RGB(0, 0, 255)};
  e.m_nThreadColorCount = 2;
  e.m_nThreadColorMode = 2;
  e.m_arrColorList.Add(RGB(1, 1, 1));
  e.m_arrNearestColors.Add(RGB(42, 42, 42));  // a lookup, not a match
  DWORD c = RGB(1, 1, 1);
  e.GetNearestThreadColorFromList(c);
  EXPECT_EQ(c, RGB(42, 42, 42));
  c = RGB(0, 100, 255);
  e.GetNearestThreadColorFromList(c);
  EXPECT_EQ(c, RGB(0, 60, 200));  // mode 2
  e.m_nThreadColorMode = 0;
  c = RGB(0, 100, 255);
  e.GetNearestThreadLineColorFromList(c);
  EXPECT_EQ(c, RGB(0, 0, 255));
  e.m_arrLineColors.Add(RGB(3, 3, 3));
  e.m_arrNearestLineColors.Add(RGB(43, 43, 43));
  c = RGB(3, 3, 3);
  e.GetNearestThreadLineColorFromList(c);
  EXPECT_EQ(c, RGB(43, 43, 43));
}

TEST(GetColorList, CopiesTheChosenListForTheHost) {
  SegEngine e;
  e.m_arrColorList.Add(1);
  e.m_arrColorList.Add(2);
  e.m_arrNearestColors.Add(3);
  e.m_arrStoredColorList.Add(4);
  e.m_arrStoredColorList.Add(5);
  e.m_arrStoredColorList.Add(6);
  e.m_arrLineColors.Add(7);
  e.m_arrNearestLineColors.Add(8);
  e.m_arrNearestLineColors.Add(9);
  struct Case {
    int type;
    std::vector<DWORD> expected;
  };
  for (const Case& c : {Case{0, {1, 2}}, Case{1, {3}}, Case{2, {4, 5, 6}}, Case{9, {1, 2}}}) {
    short n = -1;
    DWORD* colors = nullptr;
    e.GetColorList(&n, &colors, static_cast<unsigned char>(c.type));
    ASSERT_EQ(n, static_cast<short>(c.expected.size()));
    EXPECT_EQ(std::vector<DWORD>(colors, colors + n), c.expected) << "type " << c.type;
    delete[] colors;
  }
  for (const Case& c : {Case{0, {7}}, Case{1, {8, 9}}, Case{-4, {8, 9}}}) {
    short n = -1;
    DWORD* colors = nullptr;
    e.GetLineColorList(&n, &colors, c.type);
    ASSERT_EQ(n, static_cast<short>(c.expected.size()));
    EXPECT_EQ(std::vector<DWORD>(colors, colors + n), c.expected) << "line type " << c.type;
    delete[] colors;
  }
}

}  // namespace
