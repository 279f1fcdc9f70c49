// Background extraction after a segmentation: the frame-touching regions of
// the background colour traced again as a few large regions whose holes are
// where the objects lie, checked pixel by pixel on the regions handed out.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <tuple>
#include <vector>

#include "common/TestImages.h"
#include "pipeline/RegionRaster.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255), kRed = RGB(200, 0, 0), kBlue = RGB(0, 0, 180), kBlack = RGB(0, 0, 0);

bool In(int x, int y, int x0, int x1, int y0, int y1) { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }

// 80 x 60 clip art on white (y is the storage row): a red square, a blue
// square with a white window, a green notch in the right edge and a blue
// block in the top-left corner.
bool Object(int x, int y) {
  return In(x, y, 10, 29, 10, 29) || In(x, y, 40, 69, 20, 49) || In(x, y, 74, 79, 5, 14) || In(x, y, 0, 5, 54, 59);
}
COLORREF ClipArt(int x, int y) {
  if (In(x, y, 10, 29, 10, 29)) return kRed;
  if (In(x, y, 74, 79, 5, 14)) return RGB(0, 160, 0);
  return Object(x, y) && !In(x, y, 48, 61, 28, 41) ? kBlue : kWhite;
}

void Segment(CPictrace& e, int w, int h, int colours, const std::function<COLORREF(int, int)>& picture) {
  auto dib = testimg::MakeDib24(w, h, picture);
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  e.DoSegmentation(colours, nullptr, 1.0, 0, nullptr);
  ASSERT_EQ(e.m_arrColorList.GetSize(), colours);
}

// Pixel coverage of the background regions handed out as straight lines.
pipetest::Coverage Background(CPictrace& e, int* nRegions = nullptr, int* index = nullptr) {
  CPTRegions out;
  e.GetBackgroundRegions(&out, 0);
  if (nRegions) *nRegions = out.m_nRegions;
  if (index && out.m_nRegions) *index = out.m_pRegions[0].m_nColorIndex;
  return pipetest::RasterizeRegions(out, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight);
}

TEST(Background, CoversTheFrameTouchingRegionsOfTheBackgroundColour) {
  // Picture, expected background (x, storage row), regions and colour index.
  struct Case {
    int w, h, colours;
    std::function<COLORREF(int, int)> picture;
    std::function<bool(int, int)> background;
    int regions, index;
  } cases[] = {
      // The window is white but not background; the squares are holes.
      {80, 60, 4, ClipArt, [](int x, int y) { return !Object(x, y); }, 1, 1},
      // A bar splits the white: the larger part (35 columns) first.
      {60, 40, 2, [](int x, int) { return x >= 20 && x <= 24 ? kRed : kWhite; }, [](int x, int) { return x < 20 || x > 24; }, 2, 1},
      // A black frame: the side trace's foreground must not be black too.
      {40, 40, 3, [](int x, int y) { return In(x, y, 5, 14, 5, 14) ? kWhite : In(x, y, 20, 34, 20, 34) ? kBlue : kBlack; },
       [](int x, int y) { return !In(x, y, 5, 14, 5, 14) && !In(x, y, 20, 34, 20, 34); }, 1, 3},
      // Equal frame areas: the colour met first, on the left, wins.
      {20, 10, 2, [](int x, int) { return x < 10 ? kWhite : kBlack; }, [](int x, int) { return x < 10; }, 1, 1},
      {20, 10, 2, [](int x, int) { return x < 10 ? kBlack : kWhite; }, [](int x, int) { return x < 10; }, 1, 2}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.w << "x" << c.h << ", " << c.colours << " colours");
    CPictrace e;
    Segment(e, c.w, c.h, c.colours, c.picture);
    ASSERT_EQ(e.ExtractBackground(), 1);
    int regions = 0, index = 0, wrong = 0;
    pipetest::Coverage cov = Background(e, &regions, &index);
    EXPECT_EQ(std::make_pair(regions, index), std::make_pair(c.regions, c.index));
    for (int y = 0; y < c.h; y++)
      for (int x = 0; x < c.w; x++) wrong += cov.count[y * c.w + x] != c.background(x, c.h - 1 - y);
    EXPECT_EQ(wrong, 0);
    if (c.regions == 2) {
      EXPECT_EQ(std::make_pair(cov.owner[0], cov.owner[c.w - 1]), std::make_pair(1, 0));
    }
  }
}

TEST(Background, LeavesTheEngineAsItWas) {
  // The host's mask rings a 2 x 2 island inside the red square. The ring's
  // pixels are red and white, so the segmentation's small-region clean-up
  // keeps repainting the island; the side trace sees one foreground colour
  // around it and writes the ring's mask value into the island instead.
  std::vector<int> mask(80 * 60, 0);
  for (int y = 18; y <= 21; y++)
    for (int x = 18; x <= 21; x++) mask[y * 80 + x] = In(x, y, 19, 20, 19, 20) ? 0 : 5;
  CPictrace e;
  e.SetMASKData(mask.data());
  Segment(e, 80, 60, 4, [](int x, int y) { return In(x, y, 18, 18, 18, 21) ? kWhite : ClipArt(x, y); });
  const std::vector<int> maskBefore = mask;
  const std::list<COutlineRegion*> regions = e.m_listOutlineRegions;
  const size_t size = 40 + e.m_bmiHeader.biSizeImage;
  const std::vector<unsigned char> work(e.m_pWorkDIB, e.m_pWorkDIB + size);
  e.m_listWorkBuffers.push_back(new double[2]);
  const std::list<double*> buffers = e.m_listWorkBuffers;
  const std::vector<DWORD> colours(e.m_arrColorList.GetData(), e.m_arrColorList.GetData() + 4);
  const auto before = std::make_tuple(e.m_pWorkDIB, e.m_pWorkBits, 42.0f, 40, 0, size_t{1});
  e.m_fProgressPos = 42.0f;
  e.m_nProgressShown = 40;

  ASSERT_EQ(e.ExtractBackground(), 1);
  CPTRegions out;
  e.GetBackgroundRegions(&out, 1);
  ASSERT_EQ(out.m_nRegions, 1);
  EXPECT_EQ(out.m_pRegions[0].m_pPolygons[0].m_pLines[0].m_nType, 1);  // curves on request
  EXPECT_EQ(mask, maskBefore);
  EXPECT_EQ(e.m_listOutlineRegions, regions);
  EXPECT_EQ(std::memcmp(e.m_pWorkDIB, work.data(), size), 0);
  EXPECT_EQ(e.m_listWorkBuffers, buffers);
  EXPECT_EQ(std::vector<DWORD>(e.m_arrColorList.GetData(), e.m_arrColorList.GetData() + e.m_arrColorList.GetSize()), colours);
  EXPECT_EQ(std::make_tuple(e.m_pWorkDIB, e.m_pWorkBits, e.m_fProgressPos, e.m_nProgressShown, e.m_nOutputLineType,
                            e.m_listBackgroundRegions.size()), before);
  e.SetMASKData(nullptr);
}

TEST(Background, NothingToExtractGivesAnEmptyResult) {
  CPictrace e;
  int regions = -1;
  EXPECT_EQ(e.ExtractBackground(), 0);  // no image
  Background(e, &regions);
  EXPECT_EQ(regions, 0);
  e.GetBackgroundRegions(nullptr, 0);
  auto clip = testimg::MakeDib24(80, 60, ClipArt);
  ASSERT_EQ(e.SetDIBData(clip.data()), 1);
  EXPECT_EQ(e.ExtractBackground(), 0);  // not segmented
  // A host mask that leaves out a border: the regions' boxes end just
  // outside the frame margins (x under 4 or over 76, y under 3 or over 57).
  std::vector<int> mask(80 * 60, 0);
  for (int y = 0; y < 60; y++)
    for (int x = 0; x < 80; x++) mask[y * 80 + x] = (x < 4 || y < 3 || x > 76 || y > 57) ? -1 : 0;
  e.SetMASKData(mask.data());
  Segment(e, 80, 60, 4, ClipArt);
  ASSERT_TRUE(e.HasOutlines());
  EXPECT_EQ(e.ExtractBackground(), 0);
  EXPECT_TRUE(e.m_listBackgroundRegions.empty());
  Background(e, &regions);
  EXPECT_EQ(regions, 0);
  // A new extraction replaces an earlier result.
  e.SetMASKData(nullptr);
  Segment(e, 80, 60, 4, ClipArt);
  ASSERT_EQ(e.ExtractBackground(), 1);
  e.ResetPictrace();
  EXPECT_EQ(e.ExtractBackground(), 0);
  EXPECT_TRUE(e.m_listBackgroundRegions.empty());
}

}  // namespace
