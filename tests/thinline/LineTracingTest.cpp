// Tracing of hand-made skeletons into linked thin lines.
#include <gtest/gtest.h>

#include <cmath>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "thinline/AsciiPicture.h"
#include "thinline/LineLength.h"
#include "core/ThinLineRecords.h"

using namespace thintest;

namespace {

// An engine with a blank picture of the skeleton's size, black as its one
// line colour, and an output rectangle scale times the picture.
struct Tracing {
  CPictrace engine;
  std::vector<unsigned char> dib;
  std::vector<unsigned char> mask;

  Tracing(const std::vector<std::string>& rows, int scale) {
    const int w = static_cast<int>(rows[0].size());
    const int h = static_cast<int>(rows.size());
    LoadBlank(engine, w, h);
    engine.SetImageRealRect(0, 0, w * scale, h * scale);
    engine.m_arrLineColors.Add(kBlack);
    dib = DibFromText(rows);
    mask = MaskWhere(rows, '#');
  }
  void Run() { engine.DoTraceThinningLine(mask.data(), dib.data(), 0.5); }
  std::vector<COutlineThinline*> Lines() {
    return {engine.m_listThinLines.begin(), engine.m_listThinLines.end()};
  }
};

std::vector<std::pair<int, int>> RawPoints(const COutlineThinline* pLine) {
  std::vector<std::pair<int, int>> points;
  for (int i = 0; i < pLine->m_pVector->m_nPoints; i++)
    points.emplace_back(pLine->m_pVector->m_pPoints[i].x, pLine->m_pVector->m_pPoints[i].y);
  return points;
}

typedef std::vector<std::pair<int, int>> Points;

}  // namespace

TEST(MinimumLineLength, FollowsTheOutputScale) {
  EXPECT_DOUBLE_EQ(std::sqrt(300.0), pictrace::thinline::MinimumLineLength(CRect(0, 0, 40, 30), 40, 30));
  EXPECT_DOUBLE_EQ(std::sqrt(300.0) / 4, pictrace::thinline::MinimumLineLength(CRect(0, 0, 160, 30), 40, 30));
  EXPECT_DOUBLE_EQ(std::sqrt(300.0) / 3, pictrace::thinline::MinimumLineLength(CRect(5, 5, 45, 95), 40, 30));
  EXPECT_EQ(2.0, pictrace::thinline::MinimumLineLength(CRect(0, 0, 4000, 3000), 40, 30));
  EXPECT_TRUE(std::isinf(pictrace::thinline::MinimumLineLength(CRect(0, 0, 0, 0), 40, 30)));
}

TEST(DoTraceThinningLine, JunctionGivesThreeLinkedChains) {
  // A junction at (7,7) with one arm to the left and two diagonal arms.
  std::vector<std::string> rows = {
      "................", "................", "............#...",
      "...........#....", "..........#.....", ".........#......",
      "........#.......", ".#######........", "........#.......",
      ".........#......", "..........#.....", "...........#....",
      "............#...", "................"};
  Tracing t(rows, 4);  // minimum length sqrt(300) / 4 = 4.33
  t.Run();
  auto lines = t.Lines();
  ASSERT_EQ(3u, lines.size());
  // Traced from the first end point in scan order, up at (12,2).
  EXPECT_EQ((Points{{12, 2}, {11, 3}, {10, 4}, {9, 5}, {8, 6}, {7, 7}}), RawPoints(lines[0]));
  EXPECT_EQ((Points{{7, 7}, {6, 7}, {5, 7}, {4, 7}, {3, 7}, {2, 7}, {1, 7}}), RawPoints(lines[1]));
  EXPECT_EQ((Points{{7, 7}, {8, 8}, {9, 9}, {10, 10}, {11, 11}, {12, 12}}), RawPoints(lines[2]));
  for (int i = 0; i < 3; i++) EXPECT_EQ(i, lines[i]->m_nLineID);
  EXPECT_EQ(-1, lines[0]->m_nParent);
  EXPECT_EQ(1, lines[0]->m_nFirstChild);
  EXPECT_EQ(-1, lines[0]->m_nNextSibling);
  EXPECT_EQ(1, lines[0]->m_bLaterBranch);
  EXPECT_EQ(0, lines[1]->m_nParent);
  EXPECT_EQ(2, lines[1]->m_nNextSibling);
  EXPECT_EQ(0, lines[1]->m_bLaterBranch);
  EXPECT_EQ(1, lines[2]->m_nParent);  // a later branch hangs from the one before it
  EXPECT_EQ(1, lines[2]->m_bLaterBranch);
  EXPECT_EQ(-1, lines[2]->m_nFirstChild);
  EXPECT_EQ(CRect(7, 7, 12, 12), lines[2]->m_rcBound);
  EXPECT_EQ(CRect(7, 7, 12, 12), lines[2]->m_pVector->m_rcBound);
  EXPECT_EQ(kBlack, lines[2]->m_crColor);
  EXPECT_EQ(0, lines[2]->m_nColorIndex);
  EXPECT_EQ(6, lines[2]->m_nRawPoints);
  // Straight chains smooth to their end points.
  ASSERT_EQ(2, lines[1]->m_nSmoothPoints);
  EXPECT_EQ(7, lines[1]->m_pSmoothPoints[0].x);
  EXPECT_EQ(1, lines[1]->m_pSmoothPoints[1].x);
  // The whole skeleton was consumed.
  EXPECT_EQ(std::vector<unsigned char>(t.mask.size(), 0), t.mask);
}

TEST(DoTraceThinningLine, ShortSpurIsPrunedAndErased) {
  std::vector<std::string> rows = {
      "................", "................", "............#...",
      "...........#....", "..........#.....", ".........#......",
      "........#.......", ".#######........", "........#.......",
      ".........#......", "................"};
  Tracing t(rows, 4);
  t.Run();
  auto lines = t.Lines();
  ASSERT_EQ(1u, lines.size());
  EXPECT_EQ(12, lines[0]->m_nRawPoints);  // up arm and left arm in one chain
  EXPECT_EQ(-1, lines[0]->m_nParent);
  EXPECT_EQ(-1, lines[0]->m_nFirstChild);
}

TEST(DoTraceThinningLine, RingIsTracedFromItsFirstPixel) {
  // Every pixel has exactly two neighbours: no node, so only the loop pass
  // finds it.
  std::vector<std::string> rows = {
      "..........", "..........", "..........", "....####..", "...#....#.",
      "...#....#.", "...#....#.", "...#....#.", "....####..", ".........."};
  Tracing t(rows, 2);
  t.Run();
  auto lines = t.Lines();
  // The first pixel has two ways on: it is saved on its own, and the first
  // way found runs round the ring.
  ASSERT_EQ(2u, lines.size());
  EXPECT_EQ((Points{{4, 3}}), RawPoints(lines[0]));
  EXPECT_EQ(1, lines[0]->m_nFirstChild);
  Points ring = RawPoints(lines[1]);
  ASSERT_EQ(16u, ring.size());
  EXPECT_EQ(std::make_pair(4, 3), ring[0]);
  EXPECT_EQ(std::make_pair(3, 4), ring[1]);  // down the left side first
  EXPECT_EQ(std::make_pair(7, 8), ring[8]);
  EXPECT_EQ(std::make_pair(5, 3), ring[15]);
  EXPECT_EQ(0, lines[1]->m_nParent);
  EXPECT_EQ(0, lines[1]->m_bLaterBranch);
  // A one-point chain has an output form without lines.
  ASSERT_NE(nullptr, lines[0]->m_pPolygonLine);
  EXPECT_EQ(0, lines[0]->m_pPolygonLine->m_nLines);
}

TEST(DoTraceThinningLine, MinimumLengthAtOneUnitPerPixel) {
  // Lines of 17 and 18 pixels against sqrt(300) = 17.32.
  std::vector<std::string> rows = {
      "....................", ".#################..", "....................",
      ".##################.", "...................."};
  Tracing t(rows, 1);
  t.Run();
  auto lines = t.Lines();
  ASSERT_EQ(1u, lines.size());
  EXPECT_EQ(18, lines[0]->m_nRawPoints);
  EXPECT_EQ(3, lines[0]->m_pVector->m_pPoints[0].y);
}

TEST(DoTraceThinningLine, ZeroRectangleDropsEveryEndingChain) {
  std::vector<std::string> rows = {"..........", ".########.", ".........."};
  Tracing t(rows, 0);
  t.Run();
  EXPECT_TRUE(t.engine.m_listThinLines.empty());
}

TEST(DoTraceThinningLine, NoLineColoursGivesNoLines) {
  std::vector<std::string> rows = {"..........", ".########.", ".........."};
  Tracing t(rows, 8);
  t.Run();
  ASSERT_EQ(1u, t.engine.m_listThinLines.size());
  t.engine.m_arrLineColors.RemoveAll();
  t.mask = MaskWhere(rows, '#');
  t.Run();  // the old lines go, nothing new comes
  EXPECT_TRUE(t.engine.m_listThinLines.empty());
  EXPECT_EQ(MaskWhere(rows, '#'), t.mask);
}

TEST(DoTraceThinningLine, IdsRunOverColoursAndLinksStayWithinOne) {
  std::vector<std::string> rows = {
      "............", ".#####......", "............", ".RRRRR......",
      "......R.....", ".......RRRR.", "......R.....", ".....R......", "............"};
  Tracing t(rows, 8);  // minimum length 2
  t.engine.m_arrLineColors.Add(kRed);
  t.mask = std::vector<unsigned char>(t.mask.size(), 0);
  for (size_t i = 0; i < t.mask.size(); i++)
    if (rows[i / 12][i % 12] != '.') t.mask[i] = 1;
  t.Run();
  auto lines = t.Lines();
  ASSERT_EQ(4u, lines.size());
  EXPECT_EQ(0, lines[0]->m_nColorIndex);
  EXPECT_EQ(-1, lines[0]->m_nFirstChild);
  // Red: traced from (1,3) to the junction at (6,4), then two branches.
  EXPECT_EQ(1, lines[1]->m_nLineID);
  EXPECT_EQ(1, lines[1]->m_nColorIndex);
  EXPECT_EQ(2, lines[1]->m_nFirstChild);
  EXPECT_EQ(1, lines[2]->m_nParent);
  EXPECT_EQ(3, lines[2]->m_nNextSibling);
  EXPECT_EQ(2, lines[3]->m_nParent);
  EXPECT_EQ(kRed, lines[3]->m_crColor);
}

TEST(TraceLine, BranchAfterADroppedOneHangsFromItsOwnId) {
  // Into the junction (8,8) from the north-west; out to the north-east (one
  // pixel: too short), south-west and south-east.
  std::vector<std::string> rows = {
      ".............", ".............", ".............", ".............",
      "....#........", ".....#.......", "......#......", ".......#.#...",
      "........#....", ".......#.#...", "......#...#..", ".....#.....#.",
      "....#.......#", "............."};
  Tracing t(rows, 1);
  CArray<short*, short*> points;
  CArray<int, int> counts, ids, parents, flags;
  int counter = 0;
  EXPECT_EQ(1, t.engine.TraceLine(t.mask.data(), t.dib.data() + 40, 4, 4, kBlack, 64, points,
                                  counts, ids, counter, parents, -1, flags, 1, 3.5, 0, 0, 0));
  ASSERT_EQ(3, ids.GetSize());
  EXPECT_EQ(0, ids[0]);
  EXPECT_EQ(1, ids[1]);
  EXPECT_EQ(2, ids[2]);
  EXPECT_EQ(-1, parents[0]);
  EXPECT_EQ(1, parents[1]);  // the dropped branch's id, which is its own
  EXPECT_EQ(1, parents[2]);
  EXPECT_EQ(1, flags[1]);
  EXPECT_EQ(1, flags[2]);
  EXPECT_EQ(2, counter);
  EXPECT_EQ(5, counts[0]);
  EXPECT_EQ(5, counts[1]);
  EXPECT_EQ(8, points[1][0]);  // both branches begin at the junction
  EXPECT_EQ(8, points[1][1]);
  EXPECT_EQ(7, points[1][2]);  // then south-west
  EXPECT_EQ(9, points[1][3]);
  EXPECT_EQ(9, points[2][2]);  // and south-east
  EXPECT_EQ(0, t.mask[7 * 13 + 9]);  // the dropped pixel stays cleared
  for (INT_PTR i = 0; i < points.GetSize(); i++) delete[] points[i];
}

TEST(DoTraceThinningLine, DeeplyNestedJunctionsOfAGrid) {
  // Lines every fourth row and column: every crossing is a junction, and the
  // depth-first walk runs from junction to junction across the whole grid,
  // about 185000 junctions deep: far beyond what a recursive walk could
  // hold on the call stack.
  const int size = 1000;
  std::vector<std::string> rows(size, std::string(size, '.'));
  long skeleton = 0;
  for (int y = 2; y < size - 2; y++)
    for (int x = 2; x < size - 2; x++)
      if (y % 4 == 2 || x % 4 == 2) {
        rows[y][x] = '#';
        skeleton++;
      }
  Tracing t(rows, 9);  // minimum length 2: nothing is pruned
  t.Run();
  ASSERT_FALSE(t.engine.m_listThinLines.empty());
  // Every skeleton pixel is in exactly one chain, not counting the junction
  // pixel a branch starts from.
  long traced = 0;
  for (const COutlineThinline* pLine : t.engine.m_listThinLines)
    traced += pLine->m_nRawPoints - (pLine->m_nParent >= 0 ? 1 : 0);
  EXPECT_EQ(skeleton, traced);
  EXPECT_EQ(std::vector<unsigned char>(t.mask.size(), 0), t.mask);
}
