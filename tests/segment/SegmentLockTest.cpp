// Regression lock on the exact results of the pyramid segmentation: digests
// of the working picture after PyramidAlgo and after MeanShift(8), of the
// final regions (list order, sizes, float means bit for bit) and the block
// scale reached, on the bundled pictures and, where present, on the shared
// photographs resampled to one megapixel. The values were recorded from the
// engine before its merge loops were tuned for speed; any change to an
// order, a tie or a rounding shows up here.
//
// A second pass at sensitivity 30 restores the saved block regions and runs
// the pyramid loop, which the default threshold skips.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "SegEngine.h"
#include "cli/ImageResample.h"
#include "segment/BlockScale.h"

namespace {

// Block scale, region count, sum of region sizes, digest of the regions
// (sizes, mean bits and first pixels in list order), of the picture after
// PyramidAlgo, of the picture and colour list after MeanShift(8); then the
// region count, regions digest and picture digest of the second pass.
using Lock = std::array<std::uint64_t, 9>;

std::uint64_t RegionsHash(const SegEngine& e, std::uint64_t* pixelSum) {
  Fnv f;
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) {
    f.Add(r->m_nSize).Add(r->m_fRed).Add(r->m_fGreen).Add(r->m_fBlue).Add(r->m_pPixelHead->x).Add(r->m_pPixelHead->y);
    *pixelSum += r->m_nSize;
  }
  return f.h;
}

Fnv PictureHash(const SegEngine& e) {
  Fnv f;
  for (unsigned char c : e.WorkPixels()) f.Add(c);
  return f;
}

Lock Measure(std::vector<unsigned char>& dib) {
  Lock out{};
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, e.Width(), e.Height());
  e.PyramidAlgo();
  out[0] = std::uint64_t(s_nBlockScale);
  out[1] = std::uint64_t(e.RegionCount());
  out[3] = RegionsHash(e, &out[2]);
  out[4] = PictureHash(e).h;
  CDWordArray list;
  e.MeanShift(8, &list);
  Fnv f = PictureHash(e);
  for (INT_PTR i = 0; i < list.GetSize(); i++) f.Add(list[i]);
  out[5] = f.h;

  std::memcpy(e.m_pWorkBits, e.m_pDIBBits, e.m_bmiHeader.biSizeImage);
  e.SetSegmentationSensitivity(30);
  e.PyramidAlgo();
  std::uint64_t sum = 0;
  out[6] = std::uint64_t(e.RegionCount());
  out[7] = RegionsHash(e, &sum);
  out[8] = PictureHash(e).h;
  return out;
}

struct Case {
  const char* file;
  bool shared;  // a shared photograph, resampled to one megapixel
  Lock want;
};

const Case kCases[] = {
    {"astronaut.png", false, {17, 896, 262144u, 0x35083a51d0e5645cull, 0x15f852bb10771677ull, 0xebe65ccabfe4fdc3ull,
                              121, 0x4bb8f002144b3d3dull, 0x9849266b2d6902e1ull}},
    {"monkey_face.png", false, {11, 586, 78900u, 0x226aed0e51b1aa5cull, 0xff322a37755d9682ull, 0x49b18b9a21aaef67ull,
                                11, 0x96191b81c4a95390ull, 0x64ad3194f76dcc93ull}},
    {"flag_kr.png", false, {15, 183, 480000u, 0xd6be4c528c115531ull, 0x2687ded968b20840ull, 0x6b39482a9c06d73aull,
                            21, 0xd1f492708b7ba431ull, 0x5abd4450b6c52728ull}},
    {"photo_fig_large.png", true, {19, 897, 1000768u, 0xc4b7930171c4129bull, 0x61af6b0c0a2b3c51ull, 0xfdb62471a9413362ull,
                                   38, 0x55737dcfdbb11010ull, 0x95d975d7d9c54e92ull}},
    {"photo_paintbrushes.png", true, {32, 913, 999649u, 0xe9095999c7798facull, 0x78839c492c5dc743ull, 0x801ff5c55fdd5ed4ull,
                                      274, 0x8613dec51378142aull, 0x3f801cd64a9abbd7ull}},
};

class SegmentationLock : public ::testing::TestWithParam<Case> {};

TEST_P(SegmentationLock, SameResultsAsRecorded) {
  const Case& c = GetParam();
  std::vector<unsigned char> dib;
  if (c.shared) {
    const std::string path = testimg::SharedImagePath(c.file);
    if (!testimg::FileExists(path)) GTEST_SKIP() << path << " is absent";
    dib = pictrace::BoxResampleToPixels(testimg::LoadDib(path), 1e6);
  } else {
    dib = testimg::LoadDib(testimg::ExamplePath(c.file));
  }
  ASSERT_FALSE(dib.empty());
  EXPECT_EQ(Measure(dib), c.want);
}

INSTANTIATE_TEST_SUITE_P(Pictures, SegmentationLock, ::testing::ValuesIn(kCases), [](const auto& info) {
  return std::string(info.param.file).substr(0, std::string(info.param.file).find('.'));
});

}  // namespace
