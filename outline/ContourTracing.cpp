// Boundary pieces of the components: every boundary is followed along the
// pixel cracks and cut at junction vertices; a boundary without a junction
// is kept as one closed piece.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "outline/ContourSteps.h"
#include "outline/CrossingRepair.h"
#include "outline/OutlineStage.h"
#include "core/OutlineRecords.h"

namespace {

struct Tracer {
  const int* labels;
  int W, H;
  sPoint* chain;  // work chain
  long capacity;  // room in chain; no single pass can cross more cracks
  std::list<COutlineVector*>* pieces;

  int Label(int x, int y) const { return labels[static_cast<size_t>(y) * W + x]; }

  // The component on the other side of the first step of a chain.
  int Neighbor(int x, int y, int d) const {
    if (x == 0 || x == W || y == 0 || y == H) return -1;
    switch (d) {
      case 0: return Label(x - 1, y);
      case 2: return Label(x, y);
      case 4: return Label(x, y - 1);
      default: return Label(x - 1, y - 1);
    }
  }

  void Emit(int region, int neighbor, long n) {
    COutlineVector* v = new COutlineVector;
    v->m_nRegion = region;
    v->m_nNeighbor = neighbor;
    v->m_nPoints = static_cast<int>(n);
    v->m_nRawPoints = static_cast<int>(n);
    v->m_ptStart = chain[0];
    v->m_ptEnd = chain[n - 1];
    v->m_pPoints = new sPoint[n];
    v->m_pRawPoints = new sPoint[n];
    std::memcpy(v->m_pPoints, chain, sizeof(sPoint) * static_cast<size_t>(n));
    std::memcpy(v->m_pRawPoints, chain, sizeof(sPoint) * static_cast<size_t>(n));
    pieces->push_back(v);
  }

  // One step; false if it would leave the grid or overrun the work chain,
  // which consistent labels never cause.
  bool Step(int label, int& x, int& y, int& d, long n) const {
    outline::NextStep(labels, W, H, label, x, y, d);
    return x >= 0 && y >= 0 && x <= W && y <= H && n < capacity;
  }

  bool Junction(int x, int y) const { return outline::ContourOrder(labels, W, H, x, y) >= 2; }

  void Trace(int i, sPoint s) {
    int x = s.x, y = s.y, d = 6;
    long n = 0;
    int nb = -1;
    chain[n++] = s;
    for (;;) {  // closed pass
      if (Junction(x, y)) break;
      if (!Step(i, x, y, d, n)) return;
      if (n == 1) nb = Neighbor(x, y, d);
      chain[n++] = sPoint{static_cast<short>(x), static_cast<short>(y)};
      if (x == s.x && y == s.y) {
        Emit(i, nb, n);
        return;
      }
    }
    // Split pass from junction J; a vertex the boundary passes through twice
    // is met twice before the pass ends.
    const int jx = x, jy = y;
    int counter = outline::IsDiagonalVertex(labels, W, H, jx, jy) ? 0 : 1;
    for (;;) {
      n = 0;
      chain[n++] = sPoint{static_cast<short>(x), static_cast<short>(y)};
      do {
        if (!Step(i, x, y, d, n)) return;
        if (n == 1) nb = Neighbor(x, y, d);
        chain[n++] = sPoint{static_cast<short>(x), static_cast<short>(y)};
      } while (!Junction(x, y));
      Emit(i, nb, n);
      if (x == jx && y == jy && ++counter == 2) return;
    }
  }
};

// First pixel of label i, by columns then rows over the box, whose left and
// upper neighbours are not i (column 0 and row 0 qualify by label alone).
bool FindStart(const int* L, int W, int H, const CRect& box, int i, sPoint& start) {
  int x0 = box.left < 0 ? 0 : box.left, x1 = box.right >= W ? W - 1 : box.right;
  int y0 = box.top < 0 ? 0 : box.top, y1 = box.bottom >= H ? H - 1 : box.bottom;
  for (int x = x0; x <= x1; x++) {
    for (int y = y0; y <= y1; y++) {
      const int* p = L + static_cast<size_t>(y) * W + x;
      if (*p != i) continue;
      if (x == 0 || y == 0 || (p[-1] != i && p[-W] != i)) {
        start = sPoint{static_cast<short>(x), static_cast<short>(y)};
        return true;
      }
    }
  }
  return false;
}

}  // namespace

namespace outline {

int TracePieces(const OutlineInput& in, std::list<COutlineVector*>& listPieces,
                std::list<CConComponent*>& listComp, double dParam) {
  if (!Usable(in)) return 0;
  const int W = in.image.width, H = in.image.height;
  const size_t n = static_cast<size_t>(W) * H;
  std::unique_ptr<int[]> labels(new int[n]);
  std::fill(labels.get(), labels.get() + n, -1);

  int i = 0;
  for (CConComponent* comp : listComp) {
    comp->m_nIndex = i;
    for (int k = 0; k < comp->m_nPoints; k++) {
      const sPoint& p = comp->m_pPoints[k];
      if (p.x >= 0 && p.y >= 0 && p.x < W && p.y < H) labels[static_cast<size_t>(p.y) * W + p.x] = i;
    }
    i++;
  }
  // The start vertices found before the repair are all replaced by the ones
  // found after it, so only the latter are searched.
  RepairCrossings(labels.get(), W, H, nullptr, 0);

  // Every crack of the grid is crossed at most once by one pass.
  const long cracks = static_cast<long>(W + 1) * H + static_cast<long>(H + 1) * W + 2;
  std::unique_ptr<sPoint[]> chain(new sPoint[cracks]);
  Tracer tracer{labels.get(), W, H, chain.get(), cracks, &listPieces};

  i = 0;
  for (CConComponent* comp : listComp) {
    sPoint start;
    if (FindStart(labels.get(), W, H, comp->m_rcBound, i, start))
      tracer.Trace(i, start);
    else
      comp->m_nPoints = 0;
    i++;
  }

  // Components without a start vertex leave the list; the rest keep their order.
  for (size_t k = listComp.size(); k > 0; k--) {
    CConComponent* comp = listComp.front();
    listComp.pop_front();
    if (comp->m_nPoints == 0)
      delete comp;
    else
      listComp.push_back(comp);
  }

  SmoothPieces(listPieces, dParam);
  return 1;
}

}  // namespace outline

int CPictrace::GetOutlineList(std::list<COutlineVector*>& listPieces,
                              std::list<CConComponent*>& listComp, double dParam) {
  return outline::TracePieces(outline::InputOf(*this), listPieces, listComp, dParam);
}

int CPictrace::contour_order(int* pLabels, int x, int y) {
  if (!pLabels) return 0;
  return outline::ContourOrder(pLabels, m_bmiHeader.biWidth, m_bmiHeader.biHeight, x, y);
}

void CPictrace::find_next_step(int* pLabels, int nLabel, int& x, int& y, int& nDir) {
  if (!pLabels) return;
  outline::NextStep(pLabels, m_bmiHeader.biWidth, m_bmiHeader.biHeight, nLabel, x, y, nDir);
}

int CPictrace::FindAnotherOutline(COutlineVector** ppPieces, int nPieces, sPoint& ptCur,
                                  sPoint* pChainA, int& nChainA, sPoint* pChainB, int& nChainB,
                                  int nRegion) {
  // Follows the pieces end to start; a loop instead of the recursion, which
  // would run as deep as the chain is long.
  for (;;) {
    COutlineVector* next = nullptr;
    for (int k = 0; k < nPieces && !next; k++)
      if (ppPieces[k]->m_nNeighbor == nRegion && ppPieces[k]->m_ptStart == ptCur) next = ppPieces[k];
    if (!next) return 0;
    ptCur = next->m_ptEnd;
    for (int k = 0; k + 1 < next->m_nPoints; k++) pChainA[nChainA++] = next->m_pPoints[k];
    for (int k = 0; k + 1 < next->m_nRawPoints; k++) pChainB[nChainB++] = next->m_pRawPoints[k];
    next->m_nNeighbor = -1;
  }
}
