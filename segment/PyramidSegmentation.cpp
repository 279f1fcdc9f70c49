// The pyramid stage: block regions (computed or restored), merging under a
// rising scale without size limit, and the repaint with region means.
#include <cmath>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "core/Progress.h"
#include "segment/BlockScale.h"
#include "segment/GreedyMerge.h"
#include "segment/MergeIndex.h"
#include "segment/RegionGraph.h"
#include "segment/SafeConvert.h"

namespace {

const double kPyramidStep = 0.03;
const int kThresholdOffset = 20;  // the scale runs up to the threshold minus this

// Saved block regions fit the picture when they cover exactly its pixels;
// a snapshot of another picture's size must not be painted into this one.
bool SnapshotFits(const CRegionSnapshot* s, int w, int h) {
  std::uint64_t total = 0;
  for (; s; s = s->m_pNext) {
    total += s->m_nSize;
    for (DWORD i = 0; i < s->m_nSize; i++) {
      short x = s->m_pPixels[2 * i], y = s->m_pPixels[2 * i + 1];
      if (x < 0 || x >= w || y < 0 || y >= h) return false;
    }
  }
  return total == static_cast<std::uint64_t>(w) * static_cast<std::uint64_t>(h);
}

}  // namespace

void CPictrace::PyramidAlgo() {
  if (!HasDIBData() || !m_pWorkBits) return;
  const int w = m_bmiHeader.biWidth, h = m_bmiHeader.biHeight;
  if (m_pBlockRegions && !SnapshotFits(m_pBlockRegions, w, h)) ClearStoredRegions();
  if (m_pBlockRegions)
    CopyBlockRegions(0);
  else if (!GetBlockRegions())
    return;

  pictrace::Progress progress = JobProgress();
  progress.EndStage(PT_WEIGHT_BLOCK);

  // With the default threshold of 10 this loop does not run: only low
  // sensitivities, whose threshold minus 20 reaches the block scale, merge
  // further.
  RegionPositions positions(m_pRegionHead);  // for the whole stage
  const double stageWeight = progress.Span(PT_WEIGHT_PYRAMID);
  const double lastScale = static_cast<double>(m_nSegmentThreshold) - kThresholdOffset;
  for (double t = s_nBlockScale; t <= lastScale; t += kPyramidStep) {
    progress.ShowAt(stageWeight * t / m_nSegmentThreshold);
    const double d = t * t * std::sqrt(t);
    RemovingDecrease(d);
    if (positions.Live() * 2 < positions.Size()) positions = RegionPositions(m_pRegionHead);
    MergeGlobalMinIndexed(positions, m_pRegionHead, [&](CRegion* a) {
      CombineRegion(a);
      a->m_fDecrease = 0.0f;
      UpdateRemovingDecrease(a, d);
    });
  }

  // Every pixel takes its region's mean, truncated.
  const size_t stride = pictrace::Stride24(w);
  for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) {
    const int b = TruncLowByte(r->m_fBlue), g = TruncLowByte(r->m_fGreen), red = TruncLowByte(r->m_fRed);
    PaintRegion(r, m_pWorkBits, stride, w, h, b, g, red);
  }

  progress.EndStage(PT_WEIGHT_PYRAMID);
}
