// The segmentation driver: few-colour short cut, pyramid segmentation, colour
// clustering with outline extraction (retried towards the wanted colour
// count), then region order, colour indices and output polygons.
#include <vector>

#include "Pictrace.h"
#include "core/ColorDistance.h"
#include "core/ImageView.h"
#include "core/Progress.h"
#include "engine/ColorCountRetry.h"

namespace {

// Snaps every pixel of the working copy to the nearest palette colour,
// reading the input image. An exact match keeps the input pixel; otherwise
// the first of equally near colours wins. With no colours, nothing changes.
void SnapToPalette(const unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight,
                   int nStride, const std::vector<DWORD>& palette) {
  if (palette.empty()) return;
  for (int y = 0; y < nHeight; y++) {
    for (int x = 0; x < nWidth; x++) {
      const unsigned char* s = pSrc + static_cast<size_t>(y) * nStride + 3 * x;
      unsigned char* t = pDst + static_cast<size_t>(y) * nStride + 3 * x;
      double dBest = 1e20;
      DWORD best = 0;
      bool bExact = false;
      for (DWORD c : palette) {
        int d = pictrace::SquaredDistance(s, c);
        if (d == 0) {
          bExact = true;
          break;
        }
        if (d < dBest) {
          dBest = d;
          best = c;
        }
      }
      if (bExact) {
        t[0] = s[0];
        t[1] = s[1];
        t[2] = s[2];
      } else {
        t[0] = static_cast<unsigned char>((best >> 16) & 0xFF);
        t[1] = static_cast<unsigned char>((best >> 8) & 0xFF);
        t[2] = static_cast<unsigned char>(best & 0xFF);
      }
    }
  }
}

}  // namespace

void CPictrace::DoSegmentation(int nColors, CDWordArray* pColors, double dParam, int bNoRetry,
                               unsigned char** ppMask) {
  if (!HasDIBData() || !m_pWorkBits || m_bmiHeader.biHeight <= 0) return;
  // The stages fill the host's array beside m_arrColorList; a host that
  // passes none gets the same run with a scratch array.
  CDWordArray scratchColors;
  if (!pColors) pColors = &scratchColors;

  m_dSegmentParam = dParam;
  const int nWidth = m_bmiHeader.biWidth;
  const int nHeight = m_bmiHeader.biHeight;
  const int nStride = static_cast<int>(pictrace::HeaderStride(m_bmiHeader));
  m_nColorRadius = 15;

  int nCount = 0;
  if (GetColorNumber(nCount, pColors) && nCount <= nColors) {
    std::vector<DWORD> palette;
    for (int i = 0; i < nCount && i < m_arrColorList.GetSize(); i++)
      palette.push_back(m_arrColorList[i]);
    SnapToPalette(m_pDIBBits, m_pWorkBits, nWidth, nHeight, nStride, palette);
    m_arrColorList.RemoveAll();
    pColors->RemoveAll();
    for (DWORD c : palette) {
      m_arrColorList.Add(c);
      pColors->Add(c);
    }
  }

  PyramidAlgo();
  if (m_bStopped) return;  // out of time: the later stages are left out

  // The cartoon mask takes part in the first pass only; the result of the
  // last pass stands even when an earlier one came closer.
  pictrace::ColorCountRetry retry(nColors);
  MeanShift(retry.Target(), pColors);
  GetOutline4Cartoon2(dParam, ppMask);
  GetColorListFromRegion(nCount, pColors);
  bool bRetry = retry.AfterFirstPass(nCount, bNoRetry != 0);
  while (bRetry) {
    MeanShift(retry.Target(), pColors);
    GetOutline4Cartoon2(dParam, nullptr);
    GetColorListFromRegion(nCount, pColors);
    bRetry = retry.AfterRetry(nCount);
  }

  JobProgress().EndStage(PT_WEIGHT_CLUSTER);

  SortRegionSeq(m_listOutlineRegions);
  SetOutlineColorIndex(m_listOutlineRegions);
  CreateOutputPolygon(m_nOutputLineType);
  // Every stage that changes the colour list fills both arrays alike; a run
  // whose stages found nothing to do must not leave the host's copy stale.
  if (pColors != &m_arrColorList) pColors->Copy(m_arrColorList);
}
