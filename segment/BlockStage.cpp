// The block stage: edge map, seed regions, and merging under a slowly rising
// scale with a size limit, ending with a saved copy of the regions.
#include <chrono>
#include <cmath>
#include <vector>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "core/Progress.h"
#include "segment/BlockScale.h"
#include "segment/EdgeMap.h"
#include "segment/GreedyMerge.h"
#include "segment/GrowthIndex.h"
#include "segment/MergeIndex.h"
#include "segment/RegionGraph.h"
#include "segment/SafeConvert.h"

thread_local int s_nBlockScale = 0;
thread_local std::uint64_t s_nBlockSizeLimit = 8;

namespace {
const int kFirstScale = 5;
const int kLastScale = 400;       // the stage never extends beyond this
const double kScaleStep = 0.2;
const int kRegionsToStop = 1000;  // more regions than this extend the stage
const int kBlockedPerSide = 10;   // ... as do more size skips than this times the longer side
const int kIndexedLinks = 64;     // links from which a growing region is indexed
}  // namespace

namespace {

// One channel of the working picture as doubles, sample k = y * W + x.
double* SamplePlane(const unsigned char* pBits, size_t stride, int w, int h, int channel) {
  double* plane = new double[static_cast<size_t>(w) * h];
  for (int y = 0; y < h; y++) {
    const unsigned char* row = pBits + static_cast<size_t>(y) * stride;
    for (int x = 0; x < w; x++) plane[static_cast<size_t>(y) * w + x] = row[3 * x + channel];
  }
  return plane;
}

}  // namespace

void CPictrace::SetTimeLimit(double dSeconds) {
  m_bStopped = 0;
  m_dStopTime = 0.0;
  if (dSeconds > 0.0)
    m_dStopTime = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count() + dSeconds;
}

int CPictrace::IsStopped() { return m_bStopped; }

int CPictrace::GetSeedRegionCount() { return m_nSeedRegions; }

bool CPictrace::TimeIsUp() {
  if (!m_bStopped && m_dStopTime > 0.0 &&
      std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count() >= m_dStopTime)
    m_bStopped = 1;
  return m_bStopped != 0;
}

std::uint64_t BlockSizeLimitAt(double s) {
  double v = std::pow(2.0, s) * 16;
  if (!(v < 18446744073709551616.0)) return 0;
  return static_cast<std::uint64_t>(v);
}

int CPictrace::GetBlockRegions() {
  if (!HasDIBData() || !m_pWorkBits) return 0;
  const int w = m_bmiHeader.biWidth, h = m_bmiHeader.biHeight;
  if (w <= 0 || h <= 0 || w > 32767 || h > 32767) return 0;

  while (!m_listWorkBuffers.empty()) {
    delete[] m_listWorkBuffers.front();
    m_listWorkBuffers.pop_front();
  }

  // Sample planes (blue only for a grey picture), kept in the work buffers.
  const size_t n = static_cast<size_t>(w) * h;
  const size_t stride = pictrace::HeaderStride(m_bmiHeader);
  const int planes = IsGrayValued() ? 1 : 3;
  for (int c = 0; c < planes; c++) m_listWorkBuffers.push_back(SamplePlane(m_pWorkBits, stride, w, h, c));
  double* edge = new double[n]();
  for (double* plane : m_listWorkBuffers) AccumulateEdgeMap(plane, w, h, edge);
  SetupGraph(m_pWorkBits, edge);
  delete[] edge;

  s_nBlockScale = kFirstScale;
  long long count0 = 0;
  for (CRegion* r = m_pRegionHead; r; r = r->m_pNext) count0++;
  long long count = count0;
  m_nSeedRegions = static_cast<int>(count0);
  double step = kScaleStep, s = 1.0;
  RegionPositions positions(m_pRegionHead);  // for the whole stage
  GrowthIndex run;
  const pictrace::Progress progress = JobProgress();
  const double stageWeight = progress.Span(PT_WEIGHT_BLOCK);
  unsigned checks = 0;  // the clock is read every 1024 merge steps
  while (s <= s_nBlockScale && s_nBlockScale < kLastScale) {
    if (TimeIsUp()) return 0;  // partial regions are not saved
    progress.ShowAt(stageWeight * (1.0 - static_cast<double>(count) / count0));
    const double d = s * s * std::sqrt(s);
    s_nBlockSizeLimit = BlockSizeLimitAt(s);
    if (positions.Live() * 2 < positions.Size()) {
      m_pRegionHead = RepackRegions(m_pRegionHead);
      positions = RegionPositions(m_pRegionHead);
    }
    RemovingDecrease(d);
    // Only the low 32 bits of the limit take part in the comparisons.
    const DWORD limit = static_cast<DWORD>(s_nBlockSizeLimit);
    // A region with many links that stays negative after growing is
    // likely to grow again: its links are indexed for the rest of the run.
    GrowSteps steps{[&](CRegion* a) {
                      if (run.Holds(a)) return run.Grow(m_pRegionHead, d);
                      CombineRegion(a);
                      RefreshOwnValues(a, d);
                      int links = 0;
                      for (const CNodeNeighbor* l = a->m_pNeighbors; l && links < kIndexedLinks; l = l->m_pNext) links++;
                      if (a->m_fDecrease < 0.0f && links >= kIndexedLinks) run.Build(a);
                    },
                    [&](CRegion* a) {
                      if (run.Holds(a)) {
                        RefreshOwnValues(a, d);
                        run.Clear();
                      }
                      RefreshLinksBack(a);
                    },
                    [&] { return m_bStopped || ((++checks & 1023) == 0 && TimeIsUp()); }};
    GreedyCounts done = MergeFirstFitIndexed(positions, m_pRegionHead, limit, steps);
    count -= static_cast<long long>(done.merges);
    if (std::fabs(s - s_nBlockScale) < 0.6) {
      const long long longer = w >= h ? w : h;
      if (done.blocked > static_cast<std::uint64_t>(kBlockedPerSide * longer) || count > kRegionsToStop) {
        step = kScaleStep;
        s_nBlockScale += 1;
      }
    }
    s += step;
  }
  CopyBlockRegions(1);
  return 1;
}
