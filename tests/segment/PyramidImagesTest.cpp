// The whole pyramid segmentation and mean shift on the bundled clip art and
// photograph: flat region means, a consistent region graph, restoring the
// saved block regions, and determinism.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "SegEngine.h"
#include "segment/BlockScale.h"
#include "segment/EdgeMap.h"

namespace {

void LoadExample(SegEngine& e, const std::string& name, std::vector<unsigned char>& dib) {
  dib = testimg::LoadDib(testimg::ExamplePath(name));
  ASSERT_FALSE(dib.empty());
  e.Load(dib);
  e.SetImageRealRect(0, 0, e.Width(), e.Height());
}

std::set<COLORREF> ColoursOf(const SegEngine& e) {
  std::set<COLORREF> out;
  for (int y = 0; y < e.Height(); y++)
    for (int x = 0; x < e.Width(); x++) out.insert(testimg::PixelAt(e.m_pWorkBits, e.Width(), x, y));
  return out;
}

// The regions tile the picture, every pixel carries its region's truncated
// mean, sizes match the pixel lists, links come in pairs without
// duplicates, and each link's weak-edge count is the number of contacts
// across the border whose far pixel is not on a strong edge: merges must
// add the counts up exactly.
void ExpectConsistentGraph(SegEngine& e) {
  const int w = e.Width(), h = e.Height();
  std::vector<const CRegion*> owner(static_cast<size_t>(w) * h, nullptr);
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) {
    DWORD n = 0;
    COLORREF mean = RGB(static_cast<int>(r->m_fRed), static_cast<int>(r->m_fGreen), static_cast<int>(r->m_fBlue));
    for (const RegionPixel* p = r->m_pPixelHead; p; p = p->m_pNext, n++) {
      ASSERT_TRUE(p->x >= 0 && p->x < w && p->y >= 0 && p->y < h);
      const CRegion*& o = owner[static_cast<size_t>(p->y) * w + p->x];
      ASSERT_EQ(o, nullptr) << "pixel in two regions";
      o = r;
      ASSERT_EQ(testimg::PixelAt(e.m_pWorkBits, w, p->x, p->y), mean);
    }
    ASSERT_EQ(n, r->m_nSize);
  }
  for (const CRegion* o : owner) ASSERT_NE(o, nullptr);

  std::vector<double> edge(owner.size(), 0.0);
  for (double* plane : e.m_listWorkBuffers) AccumulateEdgeMap(plane, w, h, edge.data());
  const int dx[4] = {-1, 0, 0, 1}, dy[4] = {0, -1, 1, 0};
  for (const CRegion* r = e.m_pRegionHead; r; r = r->m_pNext) {
    std::map<const CRegion*, DWORD> weak;
    for (const RegionPixel* p = r->m_pPixelHead; p; p = p->m_pNext)
      for (int k = 0; k < 4; k++) {
        int qx = p->x + dx[k], qy = p->y + dy[k];
        if (qx < 0 || qx >= w || qy < 0 || qy >= h) continue;
        const CRegion* t = owner[static_cast<size_t>(qy) * w + qx];
        if (t == r) continue;
        weak[t] += edge[static_cast<size_t>(qx) * h + qy] <= kStrongEdge ? 1 : 0;
      }
    std::set<const CRegion*> seen;
    for (const CNodeNeighbor* l = r->m_pNeighbors; l; l = l->m_pNext) {
      ASSERT_TRUE(seen.insert(l->m_pRegion).second) << "duplicate link";
      ASSERT_NE(LinkTo(l->m_pRegion, const_cast<CRegion*>(r)), nullptr) << "one-way link";
      ASSERT_EQ(weak.count(l->m_pRegion), 1u) << "link without a border";
      ASSERT_EQ(l->m_nWeakEdges, weak[l->m_pRegion]);
    }
    ASSERT_EQ(seen.size(), weak.size()) << "border without a link";
  }
}

class PyramidOnExamples : public ::testing::TestWithParam<const char*> {};

TEST_P(PyramidOnExamples, PaintsRegionMeansOverAConsistentGraph) {
  SegEngine e;
  std::vector<unsigned char> dib;
  LoadExample(e, GetParam(), dib);
  e.SetSegmentationSensitivity(50);  // threshold 50: the pyramid loop runs
  e.PyramidAlgo();
  ASSERT_NE(e.m_pRegionHead, nullptr);
  ASSERT_NE(e.m_pBlockRegions, nullptr);
  EXPECT_GE(s_nBlockScale, 5);
  EXPECT_LT(s_nBlockScale, 400);
  std::printf("%s: block scale %d, %d regions\n", GetParam(), s_nBlockScale, e.RegionCount());
  ExpectConsistentGraph(e);
}

TEST_P(PyramidOnExamples, MeanShiftLeavesOnlyListedColours) {
  SegEngine e;
  std::vector<unsigned char> dib;
  LoadExample(e, GetParam(), dib);
  e.PyramidAlgo();
  CDWordArray list;
  e.MeanShift(8, &list);
  std::set<COLORREF> listed;
  for (INT_PTR i = 0; i < list.GetSize(); i++) listed.insert(list[i]);
  std::set<COLORREF> painted = ColoursOf(e);
  std::printf("%s: radius %d, %d listed, %d painted\n", GetParam(), e.m_nColorRadius,
              static_cast<int>(listed.size()), static_cast<int>(painted.size()));
  EXPECT_GE(list.GetSize(), 1);
  for (COLORREF c : painted) EXPECT_EQ(listed.count(c), 1u) << std::hex << c;
}

// The second run restores the saved block regions instead of recomputing
// them and must paint the same picture.
TEST_P(PyramidOnExamples, RestoredBlockRegionsGiveTheSamePicture) {
  SegEngine e;
  std::vector<unsigned char> dib;
  LoadExample(e, GetParam(), dib);
  e.SetSegmentationSensitivity(50);
  e.PyramidAlgo();
  std::vector<unsigned char> first = e.WorkPixels();
  int regions = e.RegionCount();

  std::memcpy(e.m_pWorkBits, e.m_pDIBBits, e.m_bmiHeader.biSizeImage);
  ASSERT_NE(e.m_pBlockRegions, nullptr);
  e.PyramidAlgo();
  EXPECT_EQ(e.RegionCount(), regions);
  EXPECT_TRUE(e.WorkPixels() == first);
}

TEST_P(PyramidOnExamples, TwoRunsAreByteIdentical) {
  std::vector<unsigned char> pictures[2];
  for (auto& picture : pictures) {
    SegEngine e;
    std::vector<unsigned char> dib;
    LoadExample(e, GetParam(), dib);
    e.PyramidAlgo();
    CDWordArray list;
    e.MeanShift(6, &list);
    picture = e.WorkPixels();
  }
  EXPECT_TRUE(pictures[0] == pictures[1]);
  // A digest of the picture, to compare builds (normal, sanitizer) by eye.
  unsigned long long fnv = 14695981039346656037ull;
  for (unsigned char c : pictures[0]) fnv = (fnv ^ c) * 1099511628211ull;
  std::printf("%s: picture digest %016llx\n", GetParam(), fnv);
}

INSTANTIATE_TEST_SUITE_P(Examples, PyramidOnExamples, ::testing::Values("monkey_face.png", "astronaut.png"),
                         [](const auto& info) { return std::string(info.param).substr(0, std::string(info.param).find('.')); });

TEST(PyramidAlgo, SingleColourPictureStaysAsItIs) {
  auto dib = testimg::MakeDib24(9, 7, [](int, int) { return RGB(12, 34, 56); });
  SegEngine e;
  e.Load(dib);
  e.PyramidAlgo();
  ASSERT_EQ(e.RegionCount(), 1);
  EXPECT_EQ(e.m_pRegionHead->m_pNeighbors, nullptr);
  EXPECT_EQ(e.m_pRegionHead->m_nSize, 63u);
  EXPECT_EQ(testimg::PixelAt(e.m_pWorkBits, 9, 8, 6), RGB(12, 34, 56));
  EXPECT_EQ(e.m_listWorkBuffers.size(), 3u);
}

TEST(PyramidAlgo, GreyPictureUsesOnePlane) {
  auto dib = testimg::MakeDib24(9, 7, [](int x, int) { return RGB(x * 20, x * 20, x * 20); });
  SegEngine e;
  e.Load(dib);
  e.PyramidAlgo();
  EXPECT_EQ(e.m_listWorkBuffers.size(), 1u);
}

TEST(PyramidAlgo, WithoutAPictureNothingHappens) {
  SegEngine e;
  e.PyramidAlgo();
  EXPECT_EQ(e.m_pRegionHead, nullptr);
  EXPECT_EQ(e.m_pBlockRegions, nullptr);
}

// Saved regions of a picture of another size are not painted into this one.
TEST(PyramidAlgo, IgnoresSavedRegionsOfAnotherPictureSize) {
  auto big = testimg::MakeDib24(20, 20, [](int x, int) { return x < 10 ? RGB(0, 0, 0) : RGB(200, 200, 200); });
  auto small = testimg::MakeDib24(5, 4, [](int, int) { return RGB(9, 9, 9); });
  SegEngine e;
  e.Load(big);
  e.PyramidAlgo();
  ASSERT_NE(e.m_pBlockRegions, nullptr);
  e.Load(small);
  e.PyramidAlgo();
  ASSERT_EQ(e.RegionCount(), 1);
  EXPECT_EQ(e.m_pRegionHead->m_nSize, 20u);
  EXPECT_EQ(testimg::PixelAt(e.m_pWorkBits, 5, 4, 3), RGB(9, 9, 9));
}

}  // namespace

namespace {

// Saving and restoring gives back the same graph: regions, pixel order,
// links with their counts and values.
TEST(CopyBlockRegions, RestoresTheSavedGraph) {
  std::vector<unsigned char> dib;
  SegEngine a, b;
  LoadExample(a, "monkey_face.png", dib);
  b.Load(dib);
  ASSERT_EQ(a.GetBlockRegions(), 1);
  ASSERT_EQ(b.GetBlockRegions(), 1);
  ASSERT_EQ(a.CopyBlockRegions(0), 1);
  ExpectSameGraph(a, b);
  for (const CRegion *ra = a.m_pRegionHead, *rb = b.m_pRegionHead; ra && rb; ra = ra->m_pNext, rb = rb->m_pNext) {
    const RegionPixel* pb = rb->m_pPixelHead;
    for (const RegionPixel* pa = ra->m_pPixelHead; pa; pa = pa->m_pNext, pb = pb->m_pNext) {
      ASSERT_NE(pb, nullptr);
      ASSERT_EQ(pa->x, pb->x);
      ASSERT_EQ(pa->y, pb->y);
    }
    ASSERT_EQ(pb, nullptr);
    ASSERT_EQ(ra->m_pPixelTail->m_pNext, nullptr);
    if (ra->m_pNext) {
      ASSERT_EQ(ra->m_pNext->m_pPrev, ra);
    }
  }
}

}  // namespace

namespace {

// At the default threshold of 10 the pyramid loop does not run: the result
// is the block stage's.
TEST(PyramidAlgo, DefaultThresholdKeepsTheBlockRegions) {
  std::vector<unsigned char> dib;
  SegEngine e;
  LoadExample(e, "monkey_face.png", dib);
  ASSERT_EQ(e.m_nSegmentThreshold, 10);
  e.PyramidAlgo();
  int saved = 0;
  const CRegion* r = e.m_pRegionHead;
  for (const CRegionSnapshot* s = e.m_pBlockRegions; s; s = s->m_pNext, r = r->m_pNext, saved++) {
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->m_nSize, s->m_nSize);
    EXPECT_EQ(r->m_fRed, s->m_fRed);
  }
  EXPECT_EQ(r, nullptr);
  EXPECT_EQ(saved, e.RegionCount());
}

}  // namespace
