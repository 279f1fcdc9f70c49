// Marking regions and thin lines by click and by colour, and the background.
#include <gtest/gtest.h>

#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"
#include "core/ThinLineRecords.h"

namespace {

// Exposes the protected hit tests.
class Engine : public CPictrace {
 public:
  using CPictrace::IsPointInLine;
  using CPictrace::IsPointInRegion;
};

sPoint* Chain(std::vector<sPoint> points) {
  sPoint* p = new sPoint[points.size()];
  std::copy(points.begin(), points.end(), p);
  return p;
}

// A region covering the pixels [l, r) x [t, b), its outline on the
// pixel-corner grid.
COutlineRegion* Rect(int l, int t, int r, int b, COLORREF color) {
  COutlineRegion* pRegion = new COutlineRegion;
  pRegion->m_pPoints = Chain({{short(l), short(t)}, {short(r), short(t)}, {short(r), short(b)},
                              {short(l), short(b)}});
  pRegion->m_nPoints = 4;
  pRegion->m_rcBound = CRect(l, t, r - 1, b - 1);
  pRegion->m_crColor = color;
  pRegion->m_nPixels = (r - l) * (b - t);
  return pRegion;
}

void AddHole(COutlineRegion* pRegion, int l, int t, int r, int b) {
  CHole* pHole = new CHole;
  pHole->m_pPoints = Chain({{short(l), short(t)}, {short(l), short(b)}, {short(r), short(b)},
                            {short(r), short(t)}});
  pHole->m_nPoints = 4;
  pRegion->m_arrHoles.Add(pHole);
  pRegion->m_nPixels -= (r - l) * (b - t);
}

COutlineThinline* Line(std::vector<sPoint> points, COLORREF color) {
  COutlineThinline* pLine = new COutlineThinline;
  pLine->m_crColor = color;
  pLine->m_pVector = new COutlineVector;
  pLine->m_pVector->m_nPoints = static_cast<int>(points.size());
  pLine->m_pVector->m_pPoints = Chain(points);
  CRect rc(points[0].x, points[0].y, points[0].x, points[0].y);
  for (const sPoint& p : points) {
    rc.left = std::min<LONG>(rc.left, p.x);
    rc.top = std::min<LONG>(rc.top, p.y);
    rc.right = std::max<LONG>(rc.right, p.x);
    rc.bottom = std::max<LONG>(rc.bottom, p.y);
  }
  pLine->m_pVector->m_rcBound = rc;
  return pLine;
}

struct Marking : ::testing::Test {
  Engine engine;
  void SetUp() override {
    auto dib = testimg::MakeDib24(40, 40, [](int, int) { return RGB(255, 255, 255); });
    engine.SetDIBData(dib.data());
  }
};

const COLORREF kRed = RGB(255, 0, 0);
const COLORREF kBlue = RGB(0, 0, 255);
const COLORREF kGrey = RGB(100, 100, 100);

}  // namespace

TEST_F(Marking, ClickGoesToTheLaterOfOverlappingRegions) {
  COutlineRegion* pA = Rect(0, 0, 20, 20, kRed);
  COutlineRegion* pB = Rect(5, 5, 10, 10, kBlue);
  engine.m_listOutlineRegions = {pA, pB};
  EXPECT_EQ(1, engine.MarkRegion(6, 6, 0));
  EXPECT_EQ(1, pB->m_bSkip);
  EXPECT_EQ(0, pA->m_bSkip);
  EXPECT_EQ(1, engine.MarkRegion(6, 6, 0));  // a second click restores
  EXPECT_EQ(0, pB->m_bSkip);
  // Column 10 lies beyond B: it belongs to A only.
  EXPECT_EQ(1, engine.MarkRegion(10, 6, 0));
  EXPECT_EQ(1, pA->m_bSkip);
  EXPECT_EQ(0, pB->m_bSkip);
  // Outside the picture, or on nothing.
  EXPECT_EQ(0, engine.MarkRegion(-1, 6, 0));
  EXPECT_EQ(0, engine.MarkRegion(40, 6, 0));
  EXPECT_EQ(0, engine.MarkRegion(30, 30, 0));
}

TEST_F(Marking, ClickInAHoleGoesToTheRegionFillingIt) {
  COutlineRegion* pB = Rect(5, 5, 10, 10, kBlue);
  COutlineRegion* pA = Rect(0, 0, 20, 20, kRed);
  AddHole(pA, 5, 5, 10, 10);
  engine.m_listOutlineRegions = {pB, pA};
  EXPECT_EQ(1, engine.MarkRegion(7, 7, 0));
  EXPECT_EQ(1, pB->m_bSkip);
  EXPECT_EQ(0, pA->m_bSkip);
  sPoint inHole{7, 7}, onRing{2, 2};
  EXPECT_EQ(0, engine.IsPointInRegion(inHole, pA));
  EXPECT_EQ(1, engine.IsPointInRegion(onRing, pA));
}

TEST_F(Marking, StoredListTogglesTheMarkedFlag) {
  COutlineRegion* pA = Rect(0, 0, 20, 20, kRed);
  engine.m_listStoredRegions = {pA};
  EXPECT_EQ(0, engine.MarkRegion(3, 3, 0));  // the current list is empty
  EXPECT_EQ(1, engine.MarkRegion(3, 3, 1));
  EXPECT_EQ(1, pA->m_bMarked);
  EXPECT_EQ(0, pA->m_bSkip);
}

TEST_F(Marking, PointInLineTestsVerticesWithinTheBox) {
  COutlineThinline* pLine = Line({{10, 10}, {20, 20}}, kRed);
  sPoint near{13, 13}, far{14, 10}, besideBox{8, 10}, nearEnd{17, 18};
  EXPECT_EQ(1, engine.IsPointInLine(near, pLine));
  EXPECT_EQ(0, engine.IsPointInLine(far, pLine));
  EXPECT_EQ(0, engine.IsPointInLine(besideBox, pLine));  // the box is not widened
  EXPECT_EQ(1, engine.IsPointInLine(nearEnd, pLine));
  delete pLine;
}

TEST_F(Marking, MarkLineTogglesTheLaterLine) {
  EXPECT_EQ(0, engine.MarkLine(10, 10));  // no lines
  COutlineThinline* p1 = Line({{10, 10}, {20, 10}}, kRed);
  COutlineThinline* p2 = Line({{10, 10}, {10, 20}}, kBlue);
  engine.m_listThinLines = {p1, p2};
  EXPECT_EQ(1, engine.MarkLine(10, 10));  // on both: the later one
  EXPECT_EQ(0, p1->m_bSelected);
  EXPECT_EQ(1, p2->m_bSelected);
  EXPECT_EQ(0, engine.MarkLine(11, 11));  // beside both boxes
  EXPECT_EQ(1, engine.MarkLine(19, 10));
  EXPECT_EQ(1, p1->m_bSelected);
  EXPECT_EQ(0, engine.MarkLine(30, 30));
  EXPECT_EQ(0, engine.MarkLine(10, 40));
}

TEST_F(Marking, MarkRegionsByAColourOutsideTheList) {
  engine.m_arrColorList.Add(kRed);
  engine.m_arrColorList.Add(kBlue);
  COutlineRegion* pExact = Rect(0, 0, 2, 2, kGrey);
  COutlineRegion* pAt225 = Rect(0, 0, 2, 2, RGB(115, 100, 100));
  COutlineRegion* pAt226 = Rect(0, 0, 2, 2, RGB(115, 101, 100));
  engine.m_listOutlineRegions = {pExact, pAt225, pAt226};
  engine.MarkRegions(kGrey, 1, 0);
  EXPECT_EQ(1, pExact->m_bSkip);
  EXPECT_EQ(1, pAt225->m_bSkip);
  EXPECT_EQ(0, pAt226->m_bSkip);

  // On the stored list only the exact colour is marked.
  COutlineRegion* pStoredExact = Rect(0, 0, 2, 2, kGrey);
  COutlineRegion* pStoredNear = Rect(0, 0, 2, 2, RGB(103, 100, 100));
  engine.m_listStoredRegions = {pStoredExact, pStoredNear};
  engine.MarkRegions(kGrey, 7, 1);
  EXPECT_EQ(7, pStoredExact->m_bMarked);
  EXPECT_EQ(0, pStoredNear->m_bMarked);
}

TEST_F(Marking, MarkRegionsByAListColour) {
  const COLORREF kThreadA = RGB(200, 10, 10), kThreadB = RGB(10, 10, 200);
  engine.m_arrColorList.Add(kRed);
  engine.m_arrColorList.Add(kBlue);
  engine.m_arrColorList.Add(RGB(250, 0, 0));
  engine.m_arrNearestColors.Add(kThreadA);
  engine.m_arrNearestColors.Add(kThreadB);
  engine.m_arrNearestColors.Add(kThreadA);
  COutlineRegion* pRed = Rect(0, 0, 2, 2, kRed);
  COutlineRegion* pNearRed = Rect(0, 0, 2, 2, RGB(240, 0, 0));  // nearest: entry 2
  COutlineRegion* pBlue = Rect(0, 0, 2, 2, kBlue);
  engine.m_listOutlineRegions = {pRed, pNearRed, pBlue};
  // Current list: every list colour whose thread colour matches.
  engine.MarkRegions(kThreadA, 1, 0);
  EXPECT_EQ(1, pRed->m_bSkip);
  EXPECT_EQ(1, pNearRed->m_bSkip);
  EXPECT_EQ(0, pBlue->m_bSkip);

  // Stored list: the first equal list colour, and only regions at distance 0.
  COutlineRegion* pStoredRed = Rect(0, 0, 2, 2, kRed);
  COutlineRegion* pStoredNear = Rect(0, 0, 2, 2, RGB(254, 0, 0));  // nearest: entry 0
  engine.m_listStoredRegions = {pStoredRed, pStoredNear};
  engine.MarkRegions(kRed, 1, 1);
  EXPECT_EQ(1, pStoredRed->m_bMarked);
  EXPECT_EQ(0, pStoredNear->m_bMarked);
}

TEST_F(Marking, MarkLinesByColour) {
  engine.m_arrLineColors.Add(kRed);
  engine.m_arrLineColors.Add(kBlue);
  engine.m_arrNearestLineColors.Add(RGB(1, 2, 3));
  engine.m_arrNearestLineColors.Add(RGB(4, 5, 6));
  COutlineThinline* pRed = Line({{1, 1}}, RGB(250, 0, 0));
  COutlineThinline* pBlue = Line({{1, 1}}, kBlue);
  engine.m_listThinLines = {pRed, pBlue};
  engine.MarkLines(RGB(4, 5, 6), 1);
  EXPECT_EQ(0, pRed->m_bSelected);
  EXPECT_EQ(1, pBlue->m_bSelected);
  // Not a thread colour of the list: the radius around the colour.
  engine.MarkLines(RGB(255, 0, 10), 1);  // distance 25 + 100 from the red line
  EXPECT_EQ(1, pRed->m_bSelected);
  engine.MarkLines(RGB(0, 0, 240), 0);  // 225 from blue
  EXPECT_EQ(0, pBlue->m_bSelected);
  engine.MarkLines(RGB(0, 1, 240), 1);  // 226
  EXPECT_EQ(0, pBlue->m_bSelected);
}

TEST_F(Marking, MarkBackgroundTakesTheLargestFrameColour) {
  // Frame margin: 2 pixels of a 40 x 40 picture.
  COutlineRegion* pRedTop = Rect(0, 0, 40, 5, kRed);        // 200 pixels
  COutlineRegion* pBlueLeft = Rect(0, 5, 5, 40, kBlue);     // 175
  COutlineRegion* pBlueRight = Rect(35, 5, 40, 40, kBlue);  // 175
  COutlineRegion* pBlueInside = Rect(10, 10, 20, 20, kBlue);
  COutlineRegion* pRedInside = Rect(20, 20, 30, 30, kRed);
  engine.m_listOutlineRegions = {pRedTop, pBlueLeft, pBlueRight, pBlueInside, pRedInside};
  engine.MarkBackground();
  EXPECT_EQ(0, pRedTop->m_bSkip);
  EXPECT_EQ(1, pBlueLeft->m_bSkip);
  EXPECT_EQ(1, pBlueRight->m_bSkip);
  EXPECT_EQ(0, pBlueInside->m_bSkip);  // wholly inside the frame
  EXPECT_EQ(0, pRedInside->m_bSkip);

  // Equal areas: the colour met first.
  pBlueLeft->m_bSkip = pBlueRight->m_bSkip = 0;
  pRedTop->m_nPixels = 350;
  engine.MarkBackground();
  EXPECT_EQ(1, pRedTop->m_bSkip);
  EXPECT_EQ(0, pBlueLeft->m_bSkip);
}

TEST_F(Marking, MarkBackgroundFrameTestUsesTheMargins) {
  // 40 pixels: margins 2.0; left < 2, right > 38, top < 2, bottom > 38.
  COutlineRegion* pLeft = Rect(1, 10, 5, 20, kRed);     // left 1 < 2
  COutlineRegion* pNotLeft = Rect(2, 10, 5, 20, kRed);  // left 2
  COutlineRegion* pBottom = Rect(10, 30, 20, 40, kRed); // bottom 39 > 38
  COutlineRegion* pNotBottom = Rect(10, 30, 20, 39, kRed);  // bottom 38
  engine.m_listOutlineRegions = {pLeft, pNotLeft, pBottom, pNotBottom};
  engine.MarkBackground();
  EXPECT_EQ(1, pLeft->m_bSkip);
  EXPECT_EQ(0, pNotLeft->m_bSkip);
  EXPECT_EQ(1, pBottom->m_bSkip);
  EXPECT_EQ(0, pNotBottom->m_bSkip);
}
