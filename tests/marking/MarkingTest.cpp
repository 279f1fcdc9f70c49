// Marking regions and thin lines by click and by colour, and the background.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "output/HandRegions.h"
#include "core/ThinLineRecords.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kGrey = RGB(100, 100, 100);

// A thin line through the points, its box spanning them.
COutlineThinline* Line(const hand::Chain& points, COLORREF color) {
  COutlineThinline* line = new COutlineThinline;
  line->m_crColor = color;
  line->m_pVector = new COutlineVector;
  hand::SetChain(line->m_pVector->m_pPoints, line->m_pVector->m_nPoints, points);
  COutlineRegion* box = hand::Region(points, 0, 0);  // inclusive pixel box, one short at the far end
  line->m_pVector->m_rcBound.SetRect(box->m_rcBound.left, box->m_rcBound.top, box->m_rcBound.right + 1, box->m_rcBound.bottom + 1);
  delete box;
  return line;
}

// Flags of the regions (or lines) in list order, as a string of digits.
template <class List, class Flag>
std::string Flags(const List& list, Flag flag) {
  std::string s;
  for (const auto* item : list) s += static_cast<char>('0' + item->*flag);
  return s;
}

struct Marking : ::testing::Test {
  Marking() { hand::Load(e, 40, 40); }
  CPictrace e;
};

TEST_F(Marking, ClickTogglesTheRegionOnTopUpToThePictureEdges) {
  // A spans rows 0..19 of the whole width; B lies on it; D fills C's hole.
  e.m_listOutlineRegions = {hand::Region(hand::Rect(0, 0, 40, 20), 0, kRed),
                            hand::Region(hand::Rect(5, 5, 10, 10), 0, kBlue),
                            hand::Region(hand::Rect(25, 30, 30, 35), 0, kBlue),
                            hand::AddHole(hand::Region(hand::Rect(20, 25, 40, 40), 0, kRed), hand::Rect(25, 30, 30, 35))};
  struct Click { int x, y, hit; const char* after; } clicks[] = {
      {6, 6, 1, "0100"}, {6, 6, 1, "0000"}, {9, 9, 1, "0100"}, {10, 6, 1, "1100"}, {0, 0, 1, "0100"},
      {39, 19, 1, "1100"}, {39, 39, 1, "1101"}, {27, 32, 1, "1111"}, {20, 25, 1, "1110"}, {15, 30, 0, "1110"},
      {-1, 5, 0, "1110"}, {40, 5, 0, "1110"}, {5, -1, 0, "1110"}, {5, 40, 0, "1110"}};
  for (const Click& c : clicks) {
    EXPECT_EQ(e.MarkRegion(c.x, c.y, 0), c.hit) << c.x << "," << c.y;
    EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), c.after) << c.x << "," << c.y;
  }
  // The stored copy has flags of its own.
  e.CopyOutlines();
  EXPECT_EQ(e.MarkRegion(7, 7, 1), 1);
  EXPECT_EQ(e.MarkRegion(39, 0, 1), 1);
  EXPECT_EQ(Flags(e.m_listStoredRegions, &COutlineRegion::m_bMarked), "1100");
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bMarked), "0000");
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "1110");
}

TEST_F(Marking, ClickTogglesTheLaterLineNearAVertexWithinItsBox) {
  EXPECT_EQ(e.MarkLine(10, 10), 0);  // no lines
  e.m_listThinLines = {Line({{10, 10}, {20, 10}}, kRed), Line({{10, 10}, {10, 20}}, kBlue),
                       Line({{39, 39}, {36, 37}}, kRed)};
  struct Click { int x, y, hit; const char* after; } clicks[] = {
      {10, 10, 1, "010"}, {11, 11, 0, "010"},  // beside both boxes
      {13, 10, 1, "110"}, {14, 10, 0, "110"}, {17, 10, 1, "010"}, {10, 13, 1, "000"}, {10, 14, 0, "000"},
      {39, 39, 1, "001"}, {36, 37, 1, "000"}, {35, 37, 0, "000"},  // the box is not widened
      {40, 39, 0, "000"}, {10, 40, 0, "000"}, {-1, 10, 0, "000"}, {10, -1, 0, "000"}};
  for (const Click& c : clicks) {
    EXPECT_EQ(e.MarkLine(c.x, c.y), c.hit) << c.x << "," << c.y;
    EXPECT_EQ(Flags(e.m_listThinLines, &COutlineThinline::m_bSelected), c.after) << c.x << "," << c.y;
  }
}

TEST_F(Marking, RegionsOfAColour) {
  const COLORREF kThreadA = RGB(200, 10, 10), kThreadB = RGB(10, 10, 200);
  for (COLORREF c : {kRed, kBlue, RGB(250, 0, 0)}) e.m_arrColorList.Add(c);
  // Nearest list entries 0, 2, 1, 2; then grey and colours 225, 226 and 225 from it
  // (all nearest to entry 2).
  for (COLORREF c : {kRed, RGB(240, 0, 0), kBlue, RGB(252, 0, 0), kGrey, RGB(115, 100, 100), RGB(115, 101, 100),
                     RGB(100, 100, 85)})
    e.m_listOutlineRegions.push_back(hand::Region(hand::Rect(0, 0, 2, 2), 0, c));
  // No thread colours yet: the regions within the radius (15) of the colour.
  e.MarkRegions(kGrey, 3, 0);
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "00003303");
  for (COLORREF c : {kThreadA, kThreadB, kThreadA}) e.m_arrNearestColors.Add(c);
  e.MarkRegions(kThreadA, 1, 0);  // every list colour whose thread colour matches
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "11011111");
  e.MarkRegions(kThreadB, 2, 0);
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "11211111");
  // Stored list: the first equal list colour, and only regions at distance 0.
  e.CopyOutlines();
  e.MarkRegions(kRed, 1, 1);
  e.MarkRegions(RGB(250, 0, 0), 1, 1);
  e.MarkRegions(RGB(101, 100, 100), 7, 1);  // not a list colour: the radius, distance 0 only
  e.MarkRegions(kGrey, 7, 1);
  EXPECT_EQ(Flags(e.m_listStoredRegions, &COutlineRegion::m_bMarked), "10007000");
}

TEST_F(Marking, LinesOfAColour) {
  e.m_arrLineColors.Add(kRed);
  e.m_arrLineColors.Add(kBlue);
  e.m_arrNearestLineColors.Add(RGB(1, 2, 3));
  e.m_arrNearestLineColors.Add(RGB(4, 5, 6));
  e.m_listThinLines = {Line({{1, 1}}, RGB(250, 0, 0)), Line({{1, 1}}, kBlue), Line({{1, 1}}, RGB(20, 0, 250))};
  e.MarkLines(RGB(4, 5, 6), 1);  // the lines nearest to blue
  EXPECT_EQ(Flags(e.m_listThinLines, &COutlineThinline::m_bSelected), "011");
  e.MarkLines(RGB(1, 2, 3), 2);
  EXPECT_EQ(Flags(e.m_listThinLines, &COutlineThinline::m_bSelected), "211");
  // Not a thread colour of the list: squared radius 225 around the colour.
  e.MarkLines(RGB(0, 0, 240), 0);  // 225 from blue, 500 from the third
  EXPECT_EQ(Flags(e.m_listThinLines, &COutlineThinline::m_bSelected), "201");
  e.MarkLines(RGB(0, 1, 240), 3);  // 226 from blue
  EXPECT_EQ(Flags(e.m_listThinLines, &COutlineThinline::m_bSelected), "201");
}

TEST_F(Marking, BackgroundIsTheColourWithTheMostFramePixels) {
  // Margins of 2 pixels: an inclusive box touches the frame with left or top
  // under 2, or right or bottom over 38.
  e.m_listOutlineRegions = {
      hand::Region(hand::Rect(0, 0, 40, 5), 0, kRed, 200),    hand::Region(hand::Rect(0, 5, 5, 40), 0, kBlue, 175),
      hand::Region(hand::Rect(35, 5, 40, 40), 0, kBlue, 175), hand::Region(hand::Rect(10, 10, 20, 20), 0, kBlue, 100),
      hand::Region(hand::Rect(2, 21, 5, 23), 0, kBlue, 9),     // left 2: inside the margin
      hand::Region(hand::Rect(1, 21, 5, 23), 0, kBlue, 9),     // left 1
      hand::Region(hand::Rect(21, 2, 23, 5), 0, kBlue, 9),     // top 2
      hand::Region(hand::Rect(21, 1, 23, 5), 0, kBlue, 9),     // top 1
      hand::Region(hand::Rect(30, 30, 39, 33), 0, kBlue, 9),   // right 38
      hand::Region(hand::Rect(30, 30, 40, 33), 0, kBlue, 9),   // right 39
      hand::Region(hand::Rect(30, 30, 33, 39), 0, kBlue, 9),   // bottom 38
      hand::Region(hand::Rect(30, 30, 33, 40), 0, kBlue, 9)};  // bottom 39
  e.MarkBackground();
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "011001010101");
  // Equal frame areas: the colour met first wins.
  for (COutlineRegion* r : e.m_listOutlineRegions) r->m_bSkip = 0;
  e.m_listOutlineRegions.front()->m_nPixels = 386;
  e.MarkBackground();
  EXPECT_EQ(Flags(e.m_listOutlineRegions, &COutlineRegion::m_bSkip), "100000000000");
}

}  // namespace
