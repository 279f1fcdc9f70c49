// Painting the image into a raster device context: the unscaled and the
// stretched path, the template and the saved copy.
#include <gtest/gtest.h>

#include "RasterDC.h"
#include "common/TestImages.h"
#include "engine/EngineTestSupport.h"

namespace {

const COLORREF kWhite = RGB(255, 255, 255);

// Storage row 0 is the bottom row of the picture.
COLORREF Quadrants(int x, int row) {
  static const COLORREF colours[2][2] = {{RGB(255, 0, 0), RGB(0, 255, 0)},
                                         {RGB(0, 0, 255), RGB(10, 20, 30)}};
  return colours[row][x];
}

TEST(ImagePaintTest, SameSizeDestinationCopiesTopRowFirst) {
  auto dib = testimg::MakeDib24(3, 2, [](int x, int row) { return RGB(40 * x, 100 * row, 7); });
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  CRasterDC dc(5, 4);
  RECT dest{1, 1, 4, 3};
  EXPECT_NE(engine.DrawDIB(&dc, &dest, FALSE), 0);
  EXPECT_EQ(dc.GetStretchBltMode(), COLORONCOLOR);
  for (int y = 0; y < 4; y++)
    for (int x = 0; x < 5; x++) {
      bool inside = x >= 1 && x < 4 && y >= 1 && y < 3;
      // Device row 1 shows the top picture row, which is storage row 1.
      COLORREF want = inside ? RGB(40 * (x - 1), 100 * (2 - y), 7) : kWhite;
      EXPECT_EQ(dc.GetPixel(x, y), want) << x << "," << y;
    }
}

TEST(ImagePaintTest, OtherSizeStretchesNearestNeighbour) {
  auto dib = testimg::MakeDib24(2, 2, Quadrants);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  CRasterDC dc(4, 4);
  RECT dest{0, 0, 4, 4};
  EXPECT_NE(engine.DrawDIB(&dc, &dest, FALSE), 0);
  EXPECT_EQ(dc.GetStretchBltMode(), COLORONCOLOR);
  for (int y = 0; y < 4; y++)
    for (int x = 0; x < 4; x++) EXPECT_EQ(dc.GetPixel(x, y), Quadrants(x / 2, 1 - y / 2)) << x << "," << y;
}

TEST(ImagePaintTest, PaletteImagePaintsThroughItsRewrittenHeader) {
  const std::vector<COLORREF> table = {RGB(200, 10, 10), RGB(10, 200, 10), RGB(10, 10, 200), RGB(0, 0, 0)};
  auto index = [](int x, int row) { return (x + 2 * row) % 4; };
  auto dib = enginetest::MakePaletteDib(3, 2, 4, table, 4, index);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);

  CRasterDC same(3, 2);
  RECT dest{0, 0, 3, 2};
  EXPECT_NE(engine.DrawDIB(&same, &dest, FALSE), 0);
  CRasterDC doubled(6, 4);
  RECT big{0, 0, 6, 4};
  EXPECT_NE(engine.DrawDIB(&doubled, &big, FALSE), 0);
  for (int y = 0; y < 2; y++)
    for (int x = 0; x < 3; x++) {
      COLORREF want = table[index(x, 1 - y)];
      EXPECT_EQ(same.GetPixel(x, y), want) << x << "," << y;
      EXPECT_EQ(doubled.GetPixel(2 * x + 1, 2 * y + 1), want) << x << "," << y;
    }
}

TEST(ImagePaintTest, PaintsTheTemplateOrTheSavedCopy) {
  auto dib = testimg::MakeDib24(2, 2, Quadrants);
  CPictrace engine;
  ASSERT_EQ(engine.SetDIBData(dib.data()), 1);
  RECT dest{0, 0, 2, 2};

  CRasterDC none(2, 2);
  EXPECT_EQ(engine.DrawDIB(&none, &dest, TRUE), 0);  // nothing saved yet
  EXPECT_EQ(none.GetPixel(0, 0), kWhite);

  engine.CopyBMPData_DataToOriginal();
  // The segmentation paints into the template; the preview shows it.
  engine.m_pWorkBits[0] = 0x11;
  engine.m_pWorkBits[1] = 0x22;
  engine.m_pWorkBits[2] = 0x33;
  CRasterDC work(2, 2);
  EXPECT_NE(engine.DrawDIB(&work, &dest, FALSE), 0);
  EXPECT_EQ(work.GetPixel(0, 1), RGB(0x33, 0x22, 0x11));
  CRasterDC original(2, 2);
  EXPECT_NE(engine.DrawDIB(&original, &dest, TRUE), 0);
  EXPECT_EQ(original.GetPixel(0, 1), Quadrants(0, 0));
}

TEST(ImagePaintTest, SavedCopyOfALargerImageIsReadWithinItsOwnRows) {
  // The source rectangle comes from the current image (2 x 2) while the
  // saved copy is 4 x 4: the lower-left 2 x 2 of the copy is shown.
  CPictrace engine;
  auto big = testimg::MakeDib24(4, 4, [](int x, int row) { return RGB(x * 50, row * 50, 1); });
  ASSERT_EQ(engine.SetDIBData(big.data()), 1);
  engine.CopyBMPData_DataToOriginal();
  auto small = testimg::MakeDib24(2, 2, Quadrants);
  ASSERT_EQ(engine.SetDIBData(small.data()), 1);
  CRasterDC dc(2, 2);
  RECT dest{0, 0, 2, 2};
  EXPECT_NE(engine.DrawDIB(&dc, &dest, TRUE), 0);
  for (int y = 0; y < 2; y++)
    for (int x = 0; x < 2; x++) EXPECT_EQ(dc.GetPixel(x, y), RGB(x * 50, (1 - y) * 50, 1)) << x << "," << y;
}

TEST(ImagePaintTest, NothingIsPaintedWithoutAnImage) {
  CPictrace engine;
  CRasterDC dc(2, 2);
  RECT dest{0, 0, 2, 2};
  EXPECT_EQ(engine.DrawDIB(&dc, &dest, FALSE), 0);
  EXPECT_EQ(dc.GetPixel(1, 1), kWhite);
}

}  // namespace
