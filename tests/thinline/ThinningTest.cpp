// Thinning of the work picture: the connectivity number, the sequential
// thinning with its neighbour-colour fill, the work picture and the flags.
#include <gtest/gtest.h>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "thinline/AsciiPicture.h"

using namespace thintest;

namespace {

int CrossOf(CPictrace& engine, std::initializer_list<int> p1to8) {
  int p[10] = {0};
  int i = 1;
  for (int v : p1to8) p[i++] = v;
  p[9] = p[1];
  return engine.Cross(p);
}

unsigned char* Bits(std::vector<unsigned char>& dib) { return dib.data() + 40; }

}  // namespace

TEST(Cross, CountsBackgroundToForegroundTransitions) {
  CPictrace engine;
  EXPECT_EQ(0, CrossOf(engine, {0, 0, 0, 0, 0, 0, 0, 0}));  // isolated
  EXPECT_EQ(0, CrossOf(engine, {1, 1, 1, 1, 1, 1, 1, 1}));  // interior
  EXPECT_EQ(1, CrossOf(engine, {1, 0, 0, 0, 0, 0, 0, 0}));  // end of a line
  EXPECT_EQ(1, CrossOf(engine, {0, 1, 0, 0, 0, 0, 0, 0}));  // diagonal end
  EXPECT_EQ(2, CrossOf(engine, {1, 0, 0, 0, 1, 0, 0, 0}));  // middle of a line
  EXPECT_EQ(1, CrossOf(engine, {1, 1, 1, 0, 0, 0, 0, 0}));  // corner of a blob
  EXPECT_EQ(4, CrossOf(engine, {0, 1, 0, 1, 0, 1, 0, 1}));  // four diagonal arms
  EXPECT_EQ(1, CrossOf(engine, {1, 0, 0, 0, 1, 0, 1, 0}));  // arms that touch diagonally
  EXPECT_EQ(3, CrossOf(engine, {1, 0, 0, 1, 0, 1, 0, 0}));  // three separate arms
}

TEST(ThinningAndFat, TwoPixelLineThinsToOnePixelAndRegionsGrowIn) {
  CPictrace engine;
  std::vector<std::string> rows = {
      "............", "............", ".##########.",
      ".##########.", "............", "............"};
  auto dib = DibFromText(rows);
  auto mask = MaskWhere(rows, '#');
  EXPECT_EQ(1, engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen));
  std::vector<std::string> expected = {
      "............", "............", "............",
      "..########..", "............", "............"};
  EXPECT_EQ(expected, TextFromDib(dib));
  // Removed pixels took a neighbour colour (mask 0); the skeleton keeps 1.
  EXPECT_EQ(MaskWhere(expected, '#'), mask);
}

TEST(ThinningAndFat, OnePixelLinesIsolatedPixelsAndBordersStay) {
  CPictrace engine;
  std::vector<std::string> thin = {
      "..........", "..#.....#.", "..#....#..", "..#...#...",
      "..#.......", "........#.", ".........."};
  auto dib = DibFromText(thin);
  auto mask = MaskWhere(thin, '#');
  EXPECT_EQ(1, engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen));
  EXPECT_EQ(thin, TextFromDib(dib));
  EXPECT_EQ(MaskWhere(thin, '#'), mask);

  // A thick line along the top edge: row 0 and the edge columns are never
  // visited, the row below them thins away.
  std::vector<std::string> edge = {"########", "########", "........", "........"};
  dib = DibFromText(edge);
  mask = MaskWhere(edge, '#');
  engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen);
  std::vector<std::string> expected = {"########", "#......#", "........", "........"};
  EXPECT_EQ(expected, TextFromDib(dib));
}

TEST(ThinningAndFat, RemovedPixelWithoutUsableNeighbourTakesFill) {
  // The red around the line is itself still to be thinned (mask 1), so it
  // votes to keep the pixel: every removed pixel gets the fill colour.
  CPictrace engine;
  std::vector<std::string> rows = {
      "RRRRRRRRRRRR", "RRRRRRRRRRRR", "R##########R",
      "R##########R", "RRRRRRRRRRRR", "RRRRRRRRRRRR"};
  auto dib = DibFromText(rows);
  std::vector<unsigned char> mask(rows.size() * rows[0].size(), 1);
  EXPECT_EQ(0, engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen));
  std::vector<std::string> expected = {
      "RRRRRRRRRRRR", "RRRRRRRRRRRR", "RGGGGGGGGGGR",
      "RG########GR", "RRRRRRRRRRRR", "RRRRRRRRRRRR"};
  EXPECT_EQ(expected, TextFromDib(dib));
  for (size_t i = 0; i < mask.size(); i++)
    EXPECT_EQ(expected[i / 12][i % 12] == 'G' ? 2 : 1, mask[i]) << "pixel " << i;
}

TEST(ThinningAndFat, UserExcludedPixelsAreLeftAndVoteToKeep) {
  CPictrace engine;
  LoadBlank(engine, 12, 6);
  std::vector<std::string> rows = {
      "............", "............", ".##########.",
      ".##########.", "............", "............"};
  // Everything around the line is excluded by the host.
  std::vector<int> hostMask(72, 0);
  for (size_t i = 0; i < hostMask.size(); i++)
    if (rows[i / 12][i % 12] != '#') hostMask[i] = -1;
  engine.SetMASKData(hostMask.data());
  auto dib = DibFromText(rows);
  auto mask = MaskWhere(rows, '#');
  EXPECT_EQ(0, engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen));
  std::vector<std::string> expected = {
      "............", "............", ".GGGGGGGGGG.",
      ".G########G.", "............", "............"};
  EXPECT_EQ(expected, TextFromDib(dib));
  EXPECT_EQ(2, mask[0]);       // excluded
  EXPECT_EQ(2, mask[2 * 12 + 1]);  // removed without a colour
  EXPECT_EQ(1, mask[3 * 12 + 2]);  // skeleton
  engine.SetMASKData(nullptr);
}

TEST(GetNeighborColor, VotesAndTies) {
  CPictrace engine;
  // Directions from the centre (1,1): 0 (2,1), 1 (2,2), 2 (1,2), 3 (0,2),
  // 4 (0,1), 5 (0,0), 6 (1,0), 7 (2,0).
  struct Case {
    std::vector<std::string> rows;
    std::vector<unsigned char> mask;  // empty: all 0
    DWORD color;
    unsigned char centreMask;
  } cases[] = {
      // Equal votes: the colour met first in the direction order.
      {{"###", "###", "B#R"}, {}, kRed, 0},
      {{"###", "###", "R#B"}, {}, kBlue, 0},
      // A later direction of the same colour adds to the earlier one.
      {{"B##", "###", "B#R"}, {}, kBlue, 0},
      // Neighbours still to be thinned vote to keep the pixel.
      {{"###", "##R", "B#R"}, {0, 0, 0, 0, 0, 1, 0, 0, 1}, 0xFFFFFF, 2},
      // Nothing but the line itself around.
      {{"###", "###", "###"}, {}, 0xFFFFFF, 2},
      // A tie between a colour and keeping goes to the colour.
      {{"###", "##R", "B##"}, {0, 0, 0, 0, 0, 0, 1, 0, 0}, kRed, 0},
  };
  for (Case& c : cases) {
    auto dib = DibFromText(c.rows);
    std::vector<unsigned char> mask = c.mask.empty() ? std::vector<unsigned char>(9, 0) : c.mask;
    mask[4] = 1;
    EXPECT_EQ(c.color, engine.GetNeighborColor(Bits(dib), mask.data(), 12, 1, 1, 3, 3))
        << c.rows[0] << "/" << c.rows[1] << "/" << c.rows[2];
    EXPECT_EQ(c.centreMask, mask[4]);
  }
}

namespace {

COutlineRegion* RegionOf(const std::vector<std::string>& rows, char c, int flag) {
  COutlineRegion* pRegion = new COutlineRegion;
  pRegion->m_crColor = ColorOf(c);
  pRegion->m_bMarked = flag;
  pRegion->m_pComponent = new CConComponent;
  std::vector<sPoint> points;
  for (size_t y = 0; y < rows.size(); y++)
    for (size_t x = 0; x < rows[y].size(); x++)
      if (rows[y][x] == c) points.push_back({static_cast<short>(x), static_cast<short>(y)});
  pRegion->m_pComponent->m_nPoints = static_cast<int>(points.size());
  pRegion->m_pComponent->m_pPoints = new sPoint[points.size()];
  std::copy(points.begin(), points.end(), pRegion->m_pComponent->m_pPoints);
  pRegion->m_nPixels = static_cast<int>(points.size());
  return pRegion;
}

}  // namespace

TEST(MakeThinningTmpBitmap, NeedsPictureAndStoredRegions) {
  CPictrace engine;
  unsigned char sentinel = 0;
  unsigned char* pMask = &sentinel;
  EXPECT_EQ(nullptr, engine.MakeThinningTmpBitmap(&pMask));  // no picture
  LoadBlank(engine, 5, 4);
  EXPECT_EQ(nullptr, engine.MakeThinningTmpBitmap(&pMask));  // no stored region
  EXPECT_EQ(&sentinel, pMask);
}

TEST(MakeThinningTmpBitmap, PaintsRegionsAndHonoursTheOnlyThinningFlag) {
  CPictrace engine;
  std::vector<std::string> rows = {
      "BBBBBBBBBBBBB", "BBBBBBBBBBBBB", "B##########BB",
      "B##########BB", "BBBBBBBBBBBBB", "BBBBBBBBBBBB."};
  LoadBlank(engine, 13, 6);
  engine.m_listStoredRegions.push_back(RegionOf(rows, '#', 1));  // only-thinning flag set
  engine.m_listStoredRegions.push_back(RegionOf(rows, 'B', 1));

  unsigned char* pMask = nullptr;
  unsigned char* pDIB = engine.MakeThinningTmpBitmap(&pMask);
  ASSERT_NE(nullptr, pDIB);
  ASSERT_NE(nullptr, pMask);
  BITMAPINFOHEADER h;
  std::memcpy(&h, pDIB, 40);
  EXPECT_EQ(13, h.biWidth);
  EXPECT_EQ(6, h.biHeight);
  EXPECT_EQ(24, h.biBitCount);
  EXPECT_EQ(static_cast<DWORD>(BI_RGB), h.biCompression);
  EXPECT_EQ(40u * 6, h.biSizeImage);  // 13 pixels take 39 bytes, padded to 40
  EXPECT_EQ(0u, h.biClrUsed);
  std::vector<unsigned char> dib(pDIB, pDIB + 40 + h.biSizeImage);
  EXPECT_EQ(rows, TextFromDib(dib));  // the uncovered pixel stays white
  EXPECT_EQ(std::vector<unsigned char>(78, 0), std::vector<unsigned char>(pMask, pMask + 78));

  // Flagged: painted, not thinned.
  EXPECT_EQ(1, engine.ThinningAndFat(pDIB, pMask, kBlack, kGreen));
  EXPECT_EQ(0, std::memcmp(dib.data(), pDIB, dib.size()));
  delete[] pDIB;
  delete[] pMask;

  // Save the flags, clear the line's, and the line is thinned into blue.
  CWordArray saved;
  engine.StoreRegionsOnlyThinningFlag(&saved);
  ASSERT_EQ(2, saved.GetSize());
  EXPECT_EQ(1, saved[0]);
  CWordArray cleared;
  cleared.Add(0);
  engine.SetRegionsOnlyThinningFlag(&cleared);  // the second region keeps its flag
  EXPECT_EQ(0, engine.m_listStoredRegions.front()->m_bMarked);
  EXPECT_EQ(1, engine.m_listStoredRegions.back()->m_bMarked);
  pDIB = engine.MakeThinningTmpBitmap(&pMask);
  EXPECT_EQ(MaskWhere(rows, '#'), std::vector<unsigned char>(pMask, pMask + 78));
  EXPECT_EQ(1, engine.ThinningAndFat(pDIB, pMask, kBlack, kGreen));
  std::memcpy(dib.data(), pDIB, dib.size());
  std::vector<std::string> thinned = {
      "BBBBBBBBBBBBB", "BBBBBBBBBBBBB", "BBBBBBBBBBBBB",
      "BB########BBB", "BBBBBBBBBBBBB", "BBBBBBBBBBBB."};
  EXPECT_EQ(thinned, TextFromDib(dib));
  delete[] pDIB;
  delete[] pMask;

  engine.SetRegionsOnlyThinningFlag(&saved);
  EXPECT_EQ(1, engine.m_listStoredRegions.front()->m_bMarked);
}
