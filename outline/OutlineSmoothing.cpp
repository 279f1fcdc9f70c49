// Reduction of the traced staircases: duplicate pieces go, reverse twins get
// the very same vertices as their partner, and every kept piece loses its
// repeated and collinear vertices and is simplified within a tolerance.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "outline/OutlineStage.h"
#include "outline/PiecePairs.h"

namespace {

typedef std::int64_t i64;

sPoint* Reversed(const sPoint* src, int n) {
  if (!src || n <= 0) return nullptr;
  sPoint* out = new sPoint[n];
  for (int k = 0; k < n; k++) out[k] = src[n - 1 - k];
  return out;
}

i64 Dist2(const sPoint& a, const sPoint& b) {
  i64 dx = a.x - b.x, dy = a.y - b.y;
  return dx * dx + dy * dy;
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
    RemoveExtraPoints(p->m_pPoints, n);
    sPoint* exact = new sPoint[n > 0 ? n : 1];
    if (n > 0) std::memcpy(exact, p->m_pPoints, sizeof(sPoint) * static_cast<size_t>(n));
    delete[] p->m_pPoints;
    p->m_pPoints = exact;
    SmoothChain(p->m_pPoints, n, tolerance);
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

int RemoveExtraPoints(sPoint* pPoints, int& nPoints) {
  const int n = nPoints;
  if (n < 3 || !pPoints) return 1;
  const sPoint last = pPoints[n - 1];

  // Without the last point, and without points repeating the one kept before.
  std::vector<sPoint> dedup;
  dedup.reserve(n);
  for (int k = 0; k < n - 1; k++)
    if (dedup.empty() || pPoints[k] != dedup.back()) dedup.push_back(pPoints[k]);

  // Drop a point that lies on the straight line from the last kept point to
  // its follower and is passed through in the same direction.
  const int m = static_cast<int>(dedup.size());
  int out = 0;
  pPoints[out++] = dedup[0];
  sPoint prev = dedup[0];
  for (int c = 1; c < m; c++) {
    const sPoint cur = dedup[c];
    const sPoint next = (c + 1 < m) ? dedup[c + 1] : dedup[0];
    i64 ax = prev.x - cur.x, ay = prev.y - cur.y;
    i64 bx = next.x - cur.x, by = next.y - cur.y;
    i64 cross = ax * by - ay * bx;
    i64 dot = (cur.x - prev.x) * static_cast<i64>(next.x - cur.x) +
              (cur.y - prev.y) * static_cast<i64>(next.y - cur.y);
    if (cross == 0 && dot > 0) continue;
    pPoints[out++] = cur;
    prev = cur;
  }
  pPoints[out++] = last;
  nPoints = out;
  return 1;
}

int SmoothChain(sPoint* pPoints, int& nPoints, float fTolerance) {
  const int n = nPoints;
  if (n < 3 || !pPoints) return 1;
  const double t = fTolerance;
  const i64 kBound2 = 1000 * 1000;  // segments stay within 1000 pixels

  // Output is written in place behind the read position: output index
  // never passes the index of the point it copies.
  int out = 1;  // point 0 stays
  int a = 0;
  int j = 2;
  for (; j < n; j++) {
    const sPoint& pa = pPoints[a];
    const sPoint& pj = pPoints[j];
    const i64 cx = pj.x - pa.x, cy = pj.y - pa.y;
    const i64 chord2 = cx * cx + cy * cy;
    if (chord2 == 0) break;  // the walk ends at a zero-length chord
    bool ok = Dist2(pPoints[j - 1], pj) <= kBound2;
    if (ok) {
      const double len = std::sqrt(static_cast<double>(chord2));
      for (int m = a + 1; m < j; m++) {
        const sPoint& pm = pPoints[m];
        i64 mx = pm.x - pa.x, my = pm.y - pa.y;
        i64 cross = mx * cy - my * cx;
        double dist = static_cast<double>(cross < 0 ? -cross : cross) / len;
        if (!(dist < t) || Dist2(pm, pa) > kBound2) {
          ok = false;
          break;
        }
      }
    }
    if (!ok) {
      pPoints[out++] = pPoints[j - 1];
      a = j - 1;
    }
  }
  pPoints[out++] = pPoints[j - 1];
  nPoints = out;
  return 1;
}

}  // namespace outline

void CPictrace::SmoothOutlineVector(std::list<COutlineVector*>& listPieces, double dParam) {
  outline::SmoothPieces(listPieces, dParam);
}

int CPictrace::RemoveExtraPoint(sPoint* pPoints, int& nPoints) {
  return outline::RemoveExtraPoints(pPoints, nPoints);
}

int CPictrace::SmoothOutline(sPoint* pPoints, int& nPoints, float fTolerance) {
  return outline::SmoothChain(pPoints, nPoints, fTolerance);
}
