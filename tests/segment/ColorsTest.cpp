// The grey test, the dominant-colour count, colour lists read from outline
// regions, hue/chroma/value points, thread colours and the host's copies.
#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include "SegEngine.h"
#include "core/OutlineRecords.h"

namespace {

using Picture = std::vector<unsigned char>;  // a packed DIB
std::vector<DWORD> Of(const CDWordArray& a) { return std::vector<DWORD>(a.GetData(), a.GetData() + a.GetSize()); }
Picture Plain(int w, int h) { return testimg::MakeDib24(w, h, [](int, int) { return RGB(1, 2, 3); }); }

TEST(IsGrayValued, GreenMayDifferBySevenRedOnlyByThree) {  // from blue 100, in the last pixel
  const std::pair<COLORREF, int> cases[] = {{RGB(103, 107, 100), 1}, {RGB(97, 93, 100), 1}, {RGB(100, 108, 100), 0},
                                            {RGB(104, 100, 100), 0}, {RGB(96, 100, 100), 0}, {RGB(107, 100, 100), 0}};
  for (const auto& c : cases) {
    SegEngine e;
    e.Load(testimg::MakeDib24(3, 2, [&](int x, int y) { return x == 2 && y == 1 ? c.first : RGB(50, 50, 50); }));
    EXPECT_EQ(e.IsGrayValued(), c.second) << std::hex << c.first;
  }
  EXPECT_EQ(SegEngine().IsGrayValued(), 0);
}

// GetColorNumber with stale lists: the count, or -1 when it refuses.
int Count(Picture dib, LONG rectW, LONG rectH, CDWordArray* list = nullptr) {
  SegEngine e;
  if (!dib.empty()) e.Load(dib);
  if (rectW) e.SetImageRealRect(0, 0, rectW, rectH);
  e.m_arrColorList.Add(6);
  int n = -1;
  if (!e.GetColorNumber(n, list)) return n == -1 ? -1 : -2;
  return !list || (Of(e.m_arrColorList) == Of(*list) && list->GetSize() == n) ? n : -3;
}

TEST(GetColorNumber, CountsColoursAboveTheSizeLimit) {
  // An interior pixel of a picture of columns sees three pixels of the left
  // column, two of its own and three of the right one; the tie goes left,
  // so columns 0 .. w-3 are dominant: 99 for w = 101, too many for 102.
  auto columns = [](int w) { return testimg::MakeDib24(w, 3, [](int x, int) { return RGB(x, 255 - x, 7); }); };
  CDWordArray list;
  list.Add(5);
  EXPECT_EQ(Count({}, 0, 0), -1);
  EXPECT_EQ(Count(columns(102), 102000, 3000, &list), -1);
  EXPECT_EQ(list.GetSize(), 1);
  EXPECT_EQ(Count(Plain(40, 2), 400, 20, &list), 0);        // no interior pixels
  EXPECT_EQ(Count(columns(101), 101000, 3000, &list), 0);  // each colour dominant once: none kept
  // The limit 300 / r^2 (at least 4), r the larger physical scale, must be
  // exceeded; an empty rectangle keeps nothing. {w, rect w, rect h, kept}:
  const std::array<int, 4> cases[] = {{302, 302, 3, 0}, {303, 303, 3, 1}, {6, 6, 30, 0}, {7, 7, 30, 1},
                                      {77, 154, 3, 0},  {78, 156, 3, 1},  {50, 0, 0, 0}};
  for (const auto& c : cases) EXPECT_EQ(Count(Plain(c[0], 3), c[1], c[2]), c[3]) << c[0] << " " << c[1];
  // The first neighbour's colour (storage row 0's) loses to that of the five others.
  ASSERT_EQ(Count(testimg::MakeDib24(12, 3, [](int, int row) { return row == 0 ? RGB(1, 2, 3) : RGB(9, 8, 7); }), 120, 30, &list), 1);
  EXPECT_EQ(Of(list), (std::vector<DWORD>{RGB(9, 8, 7)}));
  auto two = [](int x, int) { return x < 10 ? RGB(200, 10, 10) : RGB(10, 10, 250); };
  ASSERT_EQ(Count(testimg::MakeDib24(20, 10, two), 200, 100, &list), 2);
  EXPECT_EQ(Of(list), (std::vector<DWORD>{0xFA0A0A, 0x0A0AC8}));  // packed, brightest first
}

void Add(std::list<COutlineRegion*>& to, COLORREF color, int index = -1, int marked = 0) {
  to.push_back(new COutlineRegion);
  to.back()->m_crColor = color;
  to.back()->m_nColorIndex = index;
  to.back()->m_bMarked = marked;
}

// B is within the radius of A, D only within that of B, and B's drop does
// not spare it. Of 60 colours 30 apart the 50 brightest are listed; a
// 101st distinct colour ends the walk, its region not put back.
TEST(RegionColors, DropsNearDuplicatesKeepsFiftyStopsAtAHundredAndOne) {
  SegEngine e;
  e.Load(Plain(4, 4));
  CDWordArray list;
  int n = -7;
  auto Regions = [&] { return std::vector<COutlineRegion*>(e.m_listOutlineRegions.begin(), e.m_listOutlineRegions.end()); };
  COLORREF a = RGB(100, 100, 100), b = RGB(110, 100, 100), d = RGB(122, 100, 100), c = RGB(200, 0, 0);
  for (COLORREF x : {c, a, b, a, d}) Add(e.m_listOutlineRegions, x);
  std::vector<COutlineRegion*> order = Regions();
  e.GetColorListFromRegion(n, &list);
  EXPECT_TRUE(n == 2 && Of(list) == (std::vector<DWORD>{a, c}) && Of(e.m_arrColorList) == Of(list));  // sums 300, 200
  EXPECT_EQ(Regions(), order);
  e.m_nColorRadius = 11;  // keeps D (22 from A, 12 from B) but not B
  e.GetColorListFromRegion(n, &list);
  EXPECT_EQ(n, 3);
  for (COutlineRegion* r : e.m_listOutlineRegions) delete r;
  e.m_listOutlineRegions.clear();
  for (int i = 0; i < 60; i++) Add(e.m_listOutlineRegions, RGB(30 * (i % 8), 30 * (i / 8), 0));
  e.GetColorListFromRegion(n, &list);
  ASSERT_EQ(n, 50);
  auto sum = [](DWORD x) { return GetRValue(x) + GetGValue(x) + GetBValue(x); };
  for (int i = 1; i < 50; i++) EXPECT_GE(sum(list[i - 1]), sum(list[i]));
  EXPECT_EQ(sum(list[49]), 120);  // sums 0, 30, 60, 90 hold the ten dropped
  for (int i = 0; i < 41; i++) Add(e.m_listOutlineRegions, RGB(i, 1, 0));
  std::vector<COutlineRegion*> regions = Regions();
  regions.pop_back();
  e.GetColorListFromRegion(n, &list);
  EXPECT_TRUE(n == 50 && list.GetSize() == 50 && Regions() == regions);
}

// Colour 0: two unmarked regions: listed, then counted once. Colour 1: a
// marked region counts, the unmarked one after it lists. Colour 2: marked
// only: counted, not listed. Colour 3: no region.
TEST(RegionColors, LineColoursListUnmarkedAndCountMarkedRegions) {
  SegEngine e;
  for (DWORD c : {1, 2, 3, 4}) e.m_arrStoredColorList.Add(c);
  const int regions[][2] = {{0, 0}, {1, 1}, {0, 0}, {2, 1}, {1, 0}, {2, 1}};  // colour, marked
  for (const auto& r : regions) Add(e.m_listStoredRegions, 0, r[0], r[1]);
  e.m_arrLineColors.Add(99);
  EXPECT_EQ(e.SetLineColorList(), 3);
  EXPECT_EQ(Of(e.m_arrLineColors), (std::vector<DWORD>{1, 2}));
}

TEST(ConvRGB2HSV, WorkedValues) {
  const std::array<int, 6> cases[] = {
      // Red first: hue (0 - 255) * 60 / 255 = -60; 255 cos(-60) is a hair above 127.5 with pi as 3.1415926535.
      {255, 0, 255, 128, -221, 255}, {255, 0, 0, 255, 0, 255}, {0, 255, 0, -127, 221, 255}, {7, 7, 7, 0, 0, 7},
      {255, 0, 10, 255, -9, 255} /* -600 / 255 truncates to -2 degrees */, {0, 0, 255, -128, -221, 255},
      {10, 200, 255, -123, -212, 255}, {200, 10, 255, -123, -212, 255}, {-5, 300, 0, -127, 221, 255},
      {2147483647, -2147483647 - 1, 255, 128, -221, 255}};  // clamped to bytes
  for (const auto& c : cases) {
    std::array<int, 3> p{};
    SegEngine().ConvRGB2HSV(c[0], c[1], c[2], p[0], p[1], p[2]);
    EXPECT_EQ(p, (std::array<int, 3>{c[3], c[4], c[5]})) << c[0] << " " << c[1] << " " << c[2];
  }
}

// Threads 0 = (0, 60, 200) and 1 = (0, 0, 255): for (0, 100, 255) thread 0
// is nearer in RGB (4625 against 10000), thread 1 in hue/chroma/value (0).
// Modes 0 and 1 measure in hue/chroma/value, others in RGB; odd modes skip
// used threads (entry 0 when all are used) and mark the one taken.
const DWORD kT0 = RGB(0, 60, 200), kT1 = RGB(0, 0, 255), kGrey = RGB(100, 100, 100);

TEST(ThreadColors, NearestByModeListsLookupsAndCopies) {
  SegEngine e;
  e.m_pThreadColors = new DWORD[2]{kT0, kT1};
  e.m_nThreadColorCount = 2;
  const struct {
    int mode;
    std::vector<int> used, after;  // empty: no flags
    DWORD want;
  } cases[] = {{0, {}, {}, kT1},         {2, {}, {}, kT0},         {7, {}, {}, kT0},         {1, {}, {}, kT1},
               {3, {}, {}, kT0},         {1, {0, 1}, {1, 1}, kT0}, {3, {1, 0}, {1, 1}, kT1}, {1, {1, 1}, {1, 1}, kT0},
               {5, {1, 0}, {1, 0}, kT0}, {0, {0, 0}, {0, 0}, kT1}, {2, {0, 0}, {0, 0}, kT0}};
  for (const auto& c : cases) {
    std::vector<int> used = c.used;
    DWORD colour = RGB(0, 100, 255);
    e.GetNearestThreadColor(colour, c.mode, used.empty() ? nullptr : used.data());
    EXPECT_TRUE(colour == c.want && used == c.after) << "case " << (&c - cases);
  }
  e.m_pThreadColors[0] = RGB(0, 0, 10), e.m_pThreadColors[1] = RGB(0, 10, 0);
  DWORD c = 0, d = RGB(1, 2, 3);
  e.GetNearestThreadColor(c, 2, nullptr);  // equal distances: the first thread
  e.m_nThreadColorCount = 0;               // no table: the colour stays
  e.GetNearestThreadColor(d, 0, nullptr);
  EXPECT_TRUE(c == RGB(0, 0, 10) && d == RGB(1, 2, 3));

  // Lists: both colours are nearest to grey; mode 3 gives the second the
  // other thread, unless there are more colours than threads (then mode 2;
  // mode 1 falls back to mode 0). Listed colours are then looked up, others
  // matched, and the host gets copies of the lists.
  e.m_pThreadColors[0] = kGrey, e.m_pThreadColors[1] = 0;
  e.m_nThreadColorCount = 2;
  for (DWORD c : {RGB(90, 90, 90), RGB(95, 95, 95)}) e.m_arrColorList.Add(c);
  e.SetNearestThreadColorList(3);
  EXPECT_EQ(Of(e.m_arrNearestColors), (std::vector<DWORD>{kGrey, 0}));
  e.m_arrColorList.Add(RGB(99, 99, 99));
  e.SetNearestThreadColorList(3);
  EXPECT_EQ(Of(e.m_arrNearestColors), (std::vector<DWORD>{kGrey, kGrey, kGrey}));
  for (DWORD c : {RGB(5, 5, 5), RGB(1, 1, 1)}) e.m_arrLineColors.Add(c);
  e.SetNearestThreadLineColorList(1);
  EXPECT_EQ(Of(e.m_arrNearestLineColors), (std::vector<DWORD>{0, kGrey}));
  e.m_pThreadColors[1] = kT1;
  e.m_arrColorList.RemoveAll();
  for (DWORD c : {RGB(99, 99, 99), RGB(60, 60, 230), RGB(0, 0, 250)}) e.m_arrColorList.Add(c);
  e.SetNearestThreadColorList(1);
  EXPECT_EQ(Of(e.m_arrNearestColors), (std::vector<DWORD>{kGrey, kT1, kT1}));

  e.m_pThreadColors[0] = kT0;
  e.m_nThreadColorMode = 2;  // lookups: listed colours, or a match in the engine's mode
  DWORD listed = RGB(60, 60, 230), line = RGB(1, 1, 1), other = RGB(0, 100, 255);
  e.GetNearestThreadColorFromList(listed);
  e.GetNearestThreadLineColorFromList(line);
  e.GetNearestThreadColorFromList(other);
  EXPECT_TRUE(listed == kT1 && line == kGrey && other == kT0) << listed << " " << line << " " << other;
  e.m_arrStoredColorList.Add(4);
  const std::tuple<bool, int, const CDWordArray*> copies[] = {  // line list?, type, expected copy
      {0, 0, &e.m_arrColorList},  {0, 1, &e.m_arrNearestColors},     {0, 2, &e.m_arrStoredColorList},
      {0, 9, &e.m_arrColorList},  {1, 0, &e.m_arrLineColors},        {1, 1, &e.m_arrNearestLineColors},
      {1, -4, &e.m_arrNearestLineColors}};
  for (const auto& c : copies) {
    short n = -1;
    DWORD* colors = nullptr;
    std::get<0>(c) ? e.GetLineColorList(&n, &colors, std::get<1>(c))
                   : e.GetColorList(&n, &colors, static_cast<unsigned char>(std::get<1>(c)));
    EXPECT_EQ(std::vector<DWORD>(colors, colors + n), Of(*std::get<2>(c))) << std::get<0>(c) << " " << std::get<1>(c);
    delete[] colors;
  }
}

}  // namespace
