// Mean-shift clustering of the region means: a flat kernel weighted by the
// regions' pixel counts, with the radius searched until the number of modes
// reaches the wanted count.
#include <cstdint>
#include <vector>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "segment/Clustering.h"
#include "segment/ColorOrder.h"
#include "segment/RegionGraph.h"
#include "segment/SafeConvert.h"

namespace {

const int kStartRadius = 15;
const int kSmallestRadius = 2;
const double kConverged = 0.01;  // squared shift below which a climb stops

DWORD PackMode(double r, double g, double b) {
  return PackColor(TruncLowByte(r), TruncLowByte(g), TruncLowByte(b));
}

}  // namespace

namespace pictrace {
namespace segment {

int InCentroid(double r, double g, double b, double cr, double cg, double cb, double dRadius) {
  double d = (r - cr) * (r - cr) + (g - cg) * (g - cg) + (b - cb) * (b - cb);
  return dRadius * dRadius > d ? 1 : 0;
}

void MeanF(unsigned char* pVisited, const double* pR, const double* pG, const double* pB,
           const int* pWeight, int n, double dRadius, double& dCR, double& dCG, double& dCB) {
  for (;;) {
    double sumR = 0.0, sumG = 0.0, sumB = 0.0;
    std::int64_t weight = 0;
    for (int j = 0; j < n; j++) {
      if (pVisited[j] || !InCentroid(pR[j], pG[j], pB[j], dCR, dCG, dCB, dRadius)) continue;
      sumR += pWeight[j] * pR[j];
      sumG += pWeight[j] * pG[j];
      sumB += pWeight[j] * pB[j];
      weight += pWeight[j];
    }
    // A climb that starts at a sample always has it inside its first sphere;
    // an empty sphere (weights of zero) can only stay where it is.
    if (weight == 0) return;
    double w = static_cast<double>(weight);
    double mr = sumR / w, mg = sumG / w, mb = sumB / w;
    double shift = (mr - dCR) * (mr - dCR) + (mg - dCG) * (mg - dCG) + (mb - dCB) * (mb - dCB);
    if (shift < kConverged) {
      // The mode is the centre, not the last mean; its sphere absorbs the
      // samples that are still free.
      for (int j = 0; j < n; j++)
        if (!pVisited[j] && InCentroid(pR[j], pG[j], pB[j], dCR, dCG, dCB, dRadius)) pVisited[j] = 1;
      return;
    }
    dCR = mr;
    dCG = mg;
    dCB = mb;
  }
}

void MeanShiftProcess(const double* pR, const double* pG, const double* pB, const int* pWeight, int n,
                      double dRadius, double* pModeR, double* pModeG, double* pModeB, int& nModes) {
  std::vector<unsigned char> visited(static_cast<size_t>(n > 0 ? n : 0), 0);
  nModes = 0;
  for (int i = 0; i < n; i++) {
    if (visited[static_cast<size_t>(i)]) continue;
    double cr = pR[i], cg = pG[i], cb = pB[i];
    MeanF(visited.data(), pR, pG, pB, pWeight, n, dRadius, cr, cg, cb);
    pModeR[nModes] = cr;
    pModeG[nModes] = cg;
    pModeB[nModes] = cb;
    nModes++;
  }
}

Clustering ClusterColors(const CRegion* pHead, const ImageView& work, int nWanted) {
  Clustering result;
  int& radius = result.radius;
  radius = kStartRadius;
  if (nWanted < 1) nWanted = 1;

  std::vector<double> red, green, blue;
  std::vector<int> weight;
  for (const CRegion* r = pHead; r; r = r->m_pNext) {
    red.push_back(r->m_fRed);
    green.push_back(r->m_fGreen);
    blue.push_back(r->m_fBlue);
    weight.push_back(static_cast<int>(r->m_nSize));
  }
  const int n = static_cast<int>(red.size());
  std::vector<double> modeR(static_cast<size_t>(n)), modeG(static_cast<size_t>(n)), modeB(static_cast<size_t>(n));
  int nModes = 0;
  auto run = [&] {
    MeanShiftProcess(red.data(), green.data(), blue.data(), weight.data(), n, radius, modeR.data(),
                     modeG.data(), modeB.data(), nModes);
  };

  std::vector<bool> removed;
  if (n <= nWanted) {
    run();
    removed.assign(static_cast<size_t>(nModes), false);
  } else {
    // Grow until at most nWanted modes remain (which may overshoot), or
    // else shrink towards nWanted, never below the smallest radius; the
    // radius is left as reached.
    run();
    if (nModes > nWanted) {
      while (nModes > nWanted) {
        radius++;
        run();
      }
    } else {
      while (nModes < nWanted) {
        radius--;
        if (radius < kSmallestRadius) break;
        run();
      }
    }
    // Near-duplicate modes: a later one closer than the radius to any
    // earlier one (marked or not) is dropped from the list.
    removed.assign(static_cast<size_t>(nModes), false);
    const double limit = static_cast<double>(radius) * radius;
    for (int i = 0; i < nModes; i++)
      for (int j = i + 1; j < nModes; j++) {
        double dr = modeR[i] - modeR[j], dg = modeG[i] - modeG[j], db = modeB[i] - modeB[j];
        if (dr * dr + dg * dg + db * db < limit) removed[static_cast<size_t>(j)] = true;
      }
  }

  // Every region takes the mode nearest to its mean (the first of equal
  // distances); the list keeps the modes not dropped as near-duplicates.
  for (const CRegion* r = pHead; r; r = r->m_pNext) {
    int best = 0;
    double bestDist = 1e20;
    for (int m = 0; m < nModes; m++) {
      double dr = r->m_fRed - modeR[m], dg = r->m_fGreen - modeG[m], db = r->m_fBlue - modeB[m];
      double d = dr * dr + dg * dg + db * db;
      if (d < bestDist) {
        bestDist = d;
        best = m;
      }
    }
    const int b = TruncLowByte(modeB[best]), g = TruncLowByte(modeG[best]), rr = TruncLowByte(modeR[best]);
    PaintRegion(r, work.bits, work.stride, work.width, work.height, b, g, rr);
  }

  for (int m = 0; m < nModes; m++)
    if (!removed[static_cast<size_t>(m)]) result.colors.push_back(PackMode(modeR[m], modeG[m], modeB[m]));
  SortByBrightness(result.colors);
  return result;
}

}  // namespace segment
}  // namespace pictrace

int CPictrace::InCentroid(double r, double g, double b, double cr, double cg, double cb, double dRadius) {
  return pictrace::segment::InCentroid(r, g, b, cr, cg, cb, dRadius);
}

void CPictrace::MeanF(unsigned char* pVisited, double* pR, double* pG, double* pB, int* pWeight, int n,
                      double dRadius, double& dCR, double& dCG, double& dCB) {
  pictrace::segment::MeanF(pVisited, pR, pG, pB, pWeight, n, dRadius, dCR, dCG, dCB);
}

void CPictrace::MeanShiftProcess(double* pR, double* pG, double* pB, int* pWeight, int n, double dRadius,
                                 double* pModeR, double* pModeG, double* pModeB, int& nModes) {
  pictrace::segment::MeanShiftProcess(pR, pG, pB, pWeight, n, dRadius, pModeR, pModeG, pModeB, nModes);
}

void CPictrace::MeanShift(int nWanted, CDWordArray* pList) {
  if (!HasDIBData() || !m_pWorkBits || !m_pRegionHead || m_bmiHeader.biHeight <= 0) return;
  m_arrColorList.RemoveAll();
  pictrace::segment::Clustering result =
      pictrace::segment::ClusterColors(m_pRegionHead, pictrace::HeaderView(m_bmiHeader, m_pWorkBits), nWanted);
  m_nColorRadius = result.radius;
  // Without a list to fill, the engine's own list stays empty.
  if (pList) PublishColors(result.colors, pList, m_arrColorList);
}
