// Turns the thinned skeleton into thin lines: per line colour, short spurs
// are pruned, the skeleton is split at junctions into chains linked as a
// tree, and each chain is stored smoothed as one COutlineThinline.
#include <cstring>
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "core/ChainSimplify.h"
#include "core/OutlineRecords.h"
#include "thinline/ChainTracer.h"
#include "thinline/LineLength.h"
#include "thinline/LineStage.h"
#include "thinline/PixelAccess.h"
#include "core/ThinLineRecords.h"

using namespace pictrace;
using namespace pictrace::thinline;

namespace {

struct ChainTables {
  CArray<short*, short*> points;
  CArray<int, int> counts;
  CArray<int, int> ids;
  CArray<int, int> parents;
  CArray<int, int> flags;

  TraceTables Refs() { return TraceTables{points, counts, ids, parents, flags}; }

  void Clear() {
    for (INT_PTR i = 0; i < points.GetSize(); i++) delete[] points[i];
    points.RemoveAll();
    counts.RemoveAll();
    ids.RemoveAll();
    parents.RemoveAll();
    flags.RemoveAll();
  }
  ~ChainTables() { Clear(); }
};

// Skeleton pixels whose number of same-coloured skeleton neighbours is not
// exactly two: end points, isolated pixels and junctions.
std::vector<unsigned char> BuildNodeMap(const unsigned char* pMask, const unsigned char* pBits,
                                        int width, int height) {
  const long stride = Stride24(width);
  std::vector<unsigned char> nodes(static_cast<size_t>(width) * height, 0);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      if (pMask[static_cast<size_t>(y) * width + x] != 1) continue;
      const COLORREF c = ReadPixel(pBits, stride, x, y);
      int n = 0;
      for (int k = 0; k < 8; k++) {
        const int nx = x + kDirX[k];
        const int ny = y + kDirY[k];
        if (Inside(nx, ny, width, height) && pMask[static_cast<size_t>(ny) * width + nx] == 1 &&
            ReadPixel(pBits, stride, nx, ny) == c)
          n++;
      }
      if (n != 2) nodes[static_cast<size_t>(y) * width + x] = 1;
    }
  }
  return nodes;
}

// Calls tracer at every skeleton pixel of the colour (only at nodes when
// pNodes is given), in scan order, counting one id per call.
void ScanAndTrace(ChainTracer& tracer, const unsigned char* pMask, const unsigned char* pNodes,
                  const unsigned char* pBits, int width, int height, DWORD color, int& counter) {
  const long stride = Stride24(width);
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      const size_t i = static_cast<size_t>(y) * width + x;
      if (pMask[i] != 1 || (pNodes && !pNodes[i])) continue;
      if (ReadPixel(pBits, stride, x, y) != color) continue;
      tracer.Trace(x, y, -1, 1, 0, 0, 0);
      counter++;
    }
  }
}

sPoint* ToPoints(const short* pXY, int n) {
  sPoint* p = new sPoint[n];
  for (int i = 0; i < n; i++) {
    p[i].x = pXY[2 * i];
    p[i].y = pXY[2 * i + 1];
  }
  return p;
}

CRect BoundsOf(const sPoint* p, int n) {
  CRect rc(p[0].x, p[0].y, p[0].x, p[0].y);
  for (int i = 1; i < n; i++) {
    if (p[i].x < rc.left) rc.left = p[i].x;
    if (p[i].y < rc.top) rc.top = p[i].y;
    if (p[i].x > rc.right) rc.right = p[i].x;
    if (p[i].y > rc.bottom) rc.bottom = p[i].y;
  }
  return rc;
}

}  // namespace

int CPictrace::TraceLine(unsigned char* pMask, unsigned char* pBits, int x, int y, DWORD color,
                         int nBufSize, CArray<short*, short*>& arrPoints,
                         CArray<int, int>& arrCounts, CArray<int, int>& arrIDs, int& nCounter,
                         CArray<int, int>& arrParents, int nParent, CArray<int, int>& arrFlags,
                         int nFlag, double dMinLength, int bHasStart, int xStart, int yStart) {
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  if (!pMask || !pBits || width <= 0 || height <= 0) return 1;
  ChainTracer tracer(pMask, pBits, width, height, color, nBufSize / 2, dMinLength,
                     TraceTables{arrPoints, arrCounts, arrIDs, arrParents, arrFlags}, nCounter);
  tracer.Trace(x, y, nParent, nFlag, bHasStart, xStart, yStart);
  return 1;
}

namespace pictrace {
namespace thinline {

ThinLineList TraceLines(const LineTraceInput& in) {
  ThinLineList lines;
  const int width = in.picture.width;
  const int height = in.picture.height;
  unsigned char* pMask = in.mask;
  const unsigned char* pBits = in.picture.bits;
  if (!pMask || in.picture.Empty() || !in.colors) return lines;

  const size_t pixels = static_cast<size_t>(width) * height;
  long skeleton = 0;
  for (size_t i = 0; i < pixels; i++)
    if (pMask[i] == 1) skeleton++;
  const int nBufSize = static_cast<int>(2 * skeleton);
  std::vector<unsigned char> nodes = BuildNodeMap(pMask, pBits, width, height);
  const double minLength = in.minLength;

  int running = 0;  // line id over all colours
  for (INT_PTR ci = 0; ci < in.colors->GetSize(); ci++) {
    const DWORD color = (*in.colors)[ci];
    ChainTables t;
    int counter = 0;
    // One chain holds at most every skeleton pixel and its junction pixel.
    ChainTracer tracer(pMask, pBits, width, height, color, nBufSize / 2 + 1, minLength, t.Refs(),
                       counter);

    // Pruning: chains that end too short stay erased; the rest come back.
    ScanAndTrace(tracer, pMask, nodes.data(), pBits, width, height, color, counter);
    for (INT_PTR j = 0; j < t.points.GetSize(); j++)
      for (int k = 0; k < t.counts[j]; k++)
        pMask[static_cast<size_t>(t.points[j][2 * k + 1]) * width + t.points[j][2 * k]] = 1;
    t.Clear();

    counter = 0;
    ScanAndTrace(tracer, pMask, nodes.data(), pBits, width, height, color, counter);
    // What is left has no node: closed loops.
    ScanAndTrace(tracer, pMask, nullptr, pBits, width, height, color, counter);

    const int n = static_cast<int>(t.points.GetSize());
    int maxId = -1;
    for (int j = 0; j < n; j++)
      if (t.ids[j] > maxId) maxId = t.ids[j];
    std::vector<int> position(static_cast<size_t>(maxId + 1), -1);
    for (int j = 0; j < n; j++)
      if (t.ids[j] >= 0) position[t.ids[j]] = j;
    std::vector<int> nextSibling(n, -1);
    std::vector<int> firstChild(n, -1);
    for (int j = 0; j < n; j++) {
      const int p = t.parents[j];
      if (p < 0 || p > maxId || position[p] < 0) continue;
      if (t.flags[j] != 0)
        nextSibling[position[p]] = t.ids[j];
      else
        firstChild[position[p]] = t.ids[j];
    }

    const int base = running;
    auto global = [base](int id) { return id >= 0 ? base + id : -1; };
    for (int j = 0; j < n; j++) {
      const int count = t.counts[j];
      if (count < 1) continue;  // freed with the tables
      std::unique_ptr<COutlineThinline> pLine(new COutlineThinline);
      COutlineVector* pVector = new COutlineVector;
      pLine->m_pVector = pVector;
      pVector->m_pPoints = ToPoints(t.points[j], count);
      pVector->m_nPoints = count;
      pVector->m_rcBound = BoundsOf(pVector->m_pPoints, count);
      pVector->m_nLineID = running;
      pVector->m_crColor = color;
      pVector->m_nReserved = 0;
      pLine->m_nLineID = running++;
      pLine->m_nColorIndex = static_cast<int>(ci);
      pLine->m_crColor = color;
      pLine->m_nRawPoints = count;
      pLine->m_rcBound = pVector->m_rcBound;
      pLine->m_nParent = global(t.parents[j]);
      pLine->m_nNextSibling = global(nextSibling[j]);
      pLine->m_nFirstChild = global(firstChild[j]);
      pLine->m_bLaterBranch = t.flags[j];
      int nSmooth = count;
      pLine->m_pSmoothPoints = ToPoints(t.points[j], count);
      SmoothChain(pLine->m_pSmoothPoints, nSmooth, in.smooth);
      pLine->m_nSmoothPoints = nSmooth;
      lines.Items().push_back(pLine.get());
      pLine.release();
    }
  }
  return lines;
}

}  // namespace thinline
}  // namespace pictrace

void CPictrace::DoTraceThinningLine(unsigned char* pMask, unsigned char* pDIB, double dSmooth) {
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  // The mask and picture must be the ones made for the loaded picture.
  if (!pMask || !pDIB || !HasDIBData() || width <= 0 || height <= 0) return;
  const BITMAPINFOHEADER h = ReadHeader(pDIB);
  if (h.biWidth != width || h.biHeight != height || h.biBitCount != 24) return;

  ThinLineList().Swap(m_listThinLines);  // the old lines are freed first
  LineTraceInput in;
  in.mask = pMask;
  in.picture = ViewOf(h, pDIB + 40);
  in.colors = &m_arrLineColors;
  in.minLength = MinimumLineLength(m_rcImageReal, width, height);
  in.smooth = static_cast<float>(dSmooth);
  TraceLines(in).Swap(m_listThinLines);
  CreateOutputThinLine();
}
