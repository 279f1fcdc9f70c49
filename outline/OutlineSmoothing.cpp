// Reduction of the traced staircases: duplicate pieces go, reverse twins get
// the very same vertices as their partner, and every kept piece loses its
// repeated and collinear vertices and is simplified within a tolerance.
#include <cstring>
#include <vector>

#include "Pictrace.h"
#include "core/ChainSimplify.h"
#include "core/OutlineRecords.h"
#include "outline/OutlineStage.h"
#include "outline/PiecePairs.h"

namespace {

sPoint* Reversed(const sPoint* src, int n) {
  if (!src || n <= 0) return nullptr;
  sPoint* out = new sPoint[n];
  for (int k = 0; k < n; k++) out[k] = src[n - 1 - k];
  return out;
}

}  // namespace

namespace outline {

void SmoothPieces(std::list<COutlineVector*>& listPieces, double dParam) {
  std::vector<COutlineVector*> pieces(listPieces.begin(), listPieces.end());
  listPieces.clear();
  std::vector<int> status = ClassifyPieces(pieces);
  const float tolerance = static_cast<float>(dParam);

  for (size_t k = 0; k < pieces.size(); k++) {
    if (status[k] != kPieceKept) continue;
    COutlineVector* p = pieces[k];
    int n = p->m_nPoints;
    pictrace::RemoveExtraPoints(p->m_pPoints, n);
    sPoint* exact = new sPoint[n > 0 ? n : 1];
    if (n > 0) std::memcpy(exact, p->m_pPoints, sizeof(sPoint) * static_cast<size_t>(n));
    delete[] p->m_pPoints;
    p->m_pPoints = exact;
    pictrace::SmoothChain(p->m_pPoints, n, tolerance);
    p->m_nPoints = n;
  }

  for (size_t k = 0; k < pieces.size(); k++) {
    COutlineVector* p = pieces[k];
    if (status[k] == kPieceDuplicate) {
      delete p;
      continue;
    }
    if (status[k] >= 0) {
      // The twin takes its partner's vertices backwards, so that both sides
      // of one boundary meet without gaps or overlaps.
      const COutlineVector* q = pieces[status[k]];
      delete[] p->m_pPoints;
      delete[] p->m_pRawPoints;
      p->m_pPoints = Reversed(q->m_pPoints, q->m_nPoints);
      p->m_nPoints = q->m_nPoints;
      p->m_pRawPoints = Reversed(q->m_pRawPoints, q->m_nRawPoints);
      p->m_nRawPoints = q->m_nRawPoints;
    }
    listPieces.push_back(p);
  }
}

}  // namespace outline

void CPictrace::SmoothOutlineVector(std::list<COutlineVector*>& listPieces, double dParam) {
  outline::SmoothPieces(listPieces, dParam);
}

int CPictrace::RemoveExtraPoint(sPoint* pPoints, int& nPoints) {
  return pictrace::RemoveExtraPoints(pPoints, nPoints);
}

int CPictrace::SmoothOutline(sPoint* pPoints, int& nPoints, float fTolerance) {
  return pictrace::SmoothChain(pPoints, nPoints, fTolerance);
}
