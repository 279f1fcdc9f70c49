// The engine with its segmentation members opened for the tests, and small
// builders for hand-made region graphs.
#pragma once

#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "segment/RegionGraph.h"

class SegEngine : public CPictrace {
 public:
  using CPictrace::CombineDec;
  using CPictrace::CombineRegion;
  using CPictrace::CopyBlockRegions;
  using CPictrace::GetBlockRegions;
  using CPictrace::GetColorListFromRegion;
  using CPictrace::GetColorNumber;
  using CPictrace::InCentroid;
  using CPictrace::IsGrayValued;
  using CPictrace::MeanShift;
  using CPictrace::MeanShiftProcess;
  using CPictrace::PyramidAlgo;
  using CPictrace::RemovingDecrease;
  using CPictrace::SetupGraph;
  using CPictrace::UpdateRemovingDecrease;

  // Loads a packed DIB; fails the test when the engine refuses it.
  void Load(std::vector<unsigned char>& dib);
  int Width() const { return m_bmiHeader.biWidth; }
  int Height() const { return m_bmiHeader.biHeight; }
  // The working picture's rows, without row padding, for comparisons.
  std::vector<unsigned char> WorkPixels() const;

  // Appends a region of n pixels with the given mean; its pixels are
  // (x0 + k, y0) for k = 0..n-1 (callers keep them inside the picture when
  // a repaint is involved).
  CRegion* AddRegion(DWORD n, float red, float green, float blue, int x0 = 0, int y0 = 0);
  int RegionCount() const;
};

// Appends a link from -> to with the given weak-edge count and value.
CNodeNeighbor* AddLink(CRegion* from, CRegion* to, DWORD weak, float value = 0.0f);
// Links both ways with the same weak-edge count.
void Connect(CRegion* a, CRegion* b, DWORD weak);
// Link of owner to target, or null.
CNodeNeighbor* LinkTo(CRegion* owner, CRegion* target);
// Number of links of a region.
int LinkCount(const CRegion* r);
// Same regions in the same order: sizes, means, values, first pixels, and
// links (targets told by their first pixel) with their counts and values.
void ExpectSameGraph(const SegEngine& a, const SegEngine& b);
