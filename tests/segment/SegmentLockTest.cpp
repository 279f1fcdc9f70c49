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

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "SegEngine.h"
#include "cli/ImageResample.h"
#include "segment/BlockScale.h"

namespace {

struct Fnv {
  std::uint64_t h = 14695981039346656037ull;
  void Bytes(const void* p, size_t n) {
    for (size_t i = 0; i < n; i++) h = (h ^ static_cast<const unsigned char*>(p)[i]) * 1099511628211ull;
  }
  template <typename T>
  void Value(const T& v) {
    Bytes(&v, sizeof v);
  }
};

struct Lock {
  int blockScale;
  int regions;
  std::uint64_t pixelSum;     // sum of region sizes
  std::uint64_t regionsHash;  // sizes, mean bits and first pixels in list order
  std::uint64_t pyramidHash;  // working picture after PyramidAlgo
  std::uint64_t shiftHash;    // working picture and colour list after MeanShift(8)
  int lowRegions;
  std::uint64_t lowRegionsHash;
  std::uint64_t lowPyramidHash;
  auto Tied() const {
    return std::tie(blockScale, regions, pixelSum, regionsHash, pyramidHash, shiftHash, lowRegions, lowRegionsHash,
                    lowPyramidHash);
  }
  bool operator==(const Lock& o) const { return Tied() == o.Tied(); }
};

// On a mismatch the measured values are printed as a table row.
void PrintTo(const Lock& l, std::ostream* os) {
  char s[320];
  std::snprintf(s, sizeof s,
                "{%d, %d, %" PRIu64 "u, 0x%016" PRIx64 "ull, 0x%016" PRIx64 "ull, 0x%016" PRIx64 "ull, %d, 0x%016" PRIx64
                "ull, 0x%016" PRIx64 "ull}",
                l.blockScale, l.regions, l.pixelSum, l.regionsHash, l.pyramidHash, l.shiftHash, l.lowRegions,
                l.lowRegionsHash, l.lowPyramidHash);
  *os << s;
}

std::uint64_t PictureHash(const SegEngine& e) {
  std::vector<unsigned char> px = e.WorkPixels();
  Fnv f;
  f.Bytes(px.data(), px.size());
  return f.h;
}

std::uint64_t RegionsHash(const SegEngine& e, std::uint64_t* pixelSum) {
  Fnv f;
  std::uint64_t sum = 0;
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) {
    f.Value(r->m_nSize);
    f.Value(r->m_fRed);
    f.Value(r->m_fGreen);
    f.Value(r->m_fBlue);
    f.Value(r->m_pPixelHead->x);
    f.Value(r->m_pPixelHead->y);
    sum += r->m_nSize;
  }
  if (pixelSum) *pixelSum = sum;
  return f.h;
}

Lock Measure(std::vector<unsigned char>& dib) {
  Lock out{};
  SegEngine e;
  e.Load(dib);
  e.SetImageRealRect(0, 0, e.Width(), e.Height());
  e.PyramidAlgo();
  out.blockScale = s_nBlockScale;
  out.regions = e.RegionCount();
  out.regionsHash = RegionsHash(e, &out.pixelSum);
  out.pyramidHash = PictureHash(e);
  CDWordArray list;
  e.MeanShift(8, &list);
  Fnv f;
  f.h = PictureHash(e);
  for (INT_PTR i = 0; i < list.GetSize(); i++) f.Value(list[i]);
  out.shiftHash = f.h;

  std::memcpy(e.m_pWorkBits, e.m_pDIBBits, e.m_bmiHeader.biSizeImage);
  e.SetSegmentationSensitivity(30);
  e.PyramidAlgo();
  out.lowRegions = e.RegionCount();
  out.lowRegionsHash = RegionsHash(e, nullptr);
  out.lowPyramidHash = PictureHash(e);
  return out;
}

struct Case {
  const char* file;
  bool shared;  // a shared photograph, resampled to one megapixel
  Lock want;
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.file; }

const Case kCases[] = {
    {"astronaut.png", false,
     {17, 896, 262144u, 0x35083a51d0e5645cull, 0x15f852bb10771677ull, 0xebe65ccabfe4fdc3ull, 121,
      0x4bb8f002144b3d3dull, 0x9849266b2d6902e1ull}},
    {"monkey_face.png", false,
     {11, 586, 78900u, 0x226aed0e51b1aa5cull, 0xff322a37755d9682ull, 0x49b18b9a21aaef67ull, 11, 0x96191b81c4a95390ull,
      0x64ad3194f76dcc93ull}},
    {"flag_kr.png", false,
     {15, 183, 480000u, 0xd6be4c528c115531ull, 0x2687ded968b20840ull, 0x6b39482a9c06d73aull, 21, 0xd1f492708b7ba431ull,
      0x5abd4450b6c52728ull}},
    {"photo_fig_large.png", true,
     {19, 897, 1000768u, 0xc4b7930171c4129bull, 0x61af6b0c0a2b3c51ull, 0xfdb62471a9413362ull, 38,
      0x55737dcfdbb11010ull, 0x95d975d7d9c54e92ull}},
    {"photo_paintbrushes.png", true,
     {32, 913, 999649u, 0xe9095999c7798facull, 0x78839c492c5dc743ull, 0x801ff5c55fdd5ed4ull, 274,
      0x8613dec51378142aull, 0x3f801cd64a9abbd7ull}},
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
  std::string name = info.param.file;
  return name.substr(0, name.find('.'));
});

}  // namespace
