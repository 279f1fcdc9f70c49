#include "outline/RegionAssembly.h"

#include <cmath>
#include <cstring>
#include <memory>

#include "outline/DiscFit.h"
#include "outline/OutlineHitTest.h"
#include "outline/PieceSearch.h"

namespace outline {

namespace {

sPoint* CopyChain(const sPoint* src, int n) {
  if (n <= 0) return nullptr;
  sPoint* p = new sPoint[n];
  std::memcpy(p, src, sizeof(sPoint) * static_cast<size_t>(n));
  return p;
}

// Two growing vertex chains, reduced (a) and raw (b).
struct Chains {
  std::vector<sPoint> a, b;
  void Clear() {
    a.clear();
    b.clear();
  }
  // Appends the piece's points from index `from`, leaving off `dropLast`
  // points at the end.
  void Append(const COutlineVector* p, int from, int dropLast) {
    for (int k = from; k < p->m_nPoints - dropLast; k++) a.push_back(p->m_pPoints[k]);
    for (int k = from; k < p->m_nRawPoints - dropLast; k++) b.push_back(p->m_pRawPoints[k]);
  }
};

void BuildOuter(int i, int first, const std::vector<COutlineVector*>& P, CPieceIndex& search,
                Chains& ch) {
  const COutlineVector* f = P[first];
  ch.Clear();
  ch.Append(f, 0, 0);
  if (f->m_ptStart == f->m_ptEnd) return;
  // The search position starts at the beginning once and only moves
  // forward. A piece matching the last end in one coordinate only is not
  // appended but still counts as the piece examined last (kept as it is).
  int pos = 0;
  const COutlineVector* examined = f;
  const COutlineVector* last = f;
  for (;;) {
    if (examined->m_nRegion == i && examined->m_ptEnd == f->m_ptStart) return;
    int k = search.NextOfRegionOnLine(pos, i, last->m_ptEnd);
    if (k < 0) return;
    pos = k + 1;
    if (P[k]->m_ptStart == last->m_ptEnd) {
      ch.Append(P[k], 1, 0);
      last = P[k];
    }
    examined = P[k];
  }
}

CHole* MakeHole(const sPoint* a, int na, const sPoint* b, int nb) {
  CHole* h = new CHole;
  h->m_pPoints = CopyChain(a, na);
  h->m_nPoints = na;
  h->m_pRawPoints = CopyChain(b, nb);
  h->m_nRawPoints = nb;
  return h;
}

void BuildHoles(int i, COutlineRegion* R, const std::vector<COutlineVector*>& P,
                CPieceIndex& search, Chains& ch) {
  std::vector<std::unique_ptr<COutlineHitTest>> holeTests;
  std::unique_ptr<COutlineHitTest> outerTest;
  auto addHole = [&](CHole* h) {
    R->m_arrHoles.Add(h);
    holeTests.emplace_back(new COutlineHitTest(h->m_pPoints, h->m_nPoints));
  };

  // Closed pieces become holes at once. Consumed pieces stay consumed and no
  // piece changes its ends, so later rounds of the loop would find no
  // further closed piece: one sweep is the same as one per round.
  std::vector<int> closed;
  search.ClosedWithNeighbor(i, closed);
  for (int k : closed) {
    COutlineVector* p = P[k];
    p->m_nNeighbor = -1;
    addHole(MakeHole(p->m_pPoints, p->m_nPoints, p->m_pRawPoints, p->m_nRawPoints));
  }

  for (;;) {
    int k = search.FirstWithNeighbor(i);
    if (k < 0) return;
    COutlineVector* p = P[k];
    p->m_nNeighbor = -1;
    if (search.RegionStartsAt(i, p->m_ptEnd)) continue;  // part of the outer boundary
    ch.Clear();
    ch.Append(p, 0, 1);
    sPoint cur = p->m_ptEnd;
    if (p->m_ptEnd != p->m_ptStart) {
      // Chains on end to start, as FindAnotherOutline does.
      for (int n = search.NextInChain(i, cur); n >= 0; n = search.NextInChain(i, cur)) {
        COutlineVector* q = P[n];
        cur = q->m_ptEnd;
        ch.Append(q, 0, 1);
        q->m_nNeighbor = -1;
      }
    }
    if (cur != p->m_ptStart) continue;

    bool reject = false;
    for (const sPoint& v : ch.a) {
      for (const auto& t : holeTests)
        if (t->Contains(v)) {
          reject = true;
          break;
        }
      if (reject) break;
      if (!outerTest) outerTest.reset(new COutlineHitTest(R->m_pPoints, R->m_nPoints));
      if (!outerTest->Contains(v)) {
        reject = true;
        break;
      }
    }
    if (!reject)
      addHole(MakeHole(ch.a.data(), static_cast<int>(ch.a.size()), ch.b.data(),
                       static_cast<int>(ch.b.size())));
  }
}

// Twice too thin for the satin disc and elongated: the smallest of the
// satin width and the box's inclusive width and height, over the perimeter.
BYTE NarrowFlag(const COutlineRegion* R, const AssemblyContext& ctx) {
  if (HoldsDisc(R->m_pComponent, ctx.disc->data(), static_cast<int>(ctx.disc->size()), ctx.width,
                ctx.height, ctx.scratch))
    return 0;
  double perimeter = 0.0;
  for (int k = 0; k < R->m_nPoints; k++) {
    const sPoint& a = R->m_pPoints[k];
    const sPoint& b = R->m_pPoints[(k + 1) % R->m_nPoints];
    double dx = b.x - a.x, dy = b.y - a.y;
    perimeter += std::sqrt(dx * dx + dy * dy);
  }
  if (perimeter == 0.0) return 0;
  double satin = ctx.satinWidth < 1e9 ? ctx.satinWidth : 1e9;
  int m = static_cast<int>(satin);
  int w = R->m_rcBound.right - R->m_rcBound.left;
  int h = R->m_rcBound.bottom - R->m_rcBound.top;
  if (w < m) m = w;
  if (h < m) m = h;
  return (m / perimeter < 0.2) ? 1 : 0;
}

}  // namespace

void AssembleRegions(std::list<CConComponent*>& comps, const std::vector<COutlineVector*>& P,
                     const AssemblyContext& ctx, std::list<COutlineRegion*>& regions) {
  CPieceIndex search(P);
  Chains ch;
  for (int i = 0; !comps.empty(); i++) {
    std::unique_ptr<COutlineRegion> R(new COutlineRegion);
    R->m_pComponent = comps.front();
    comps.pop_front();
    R->m_crColor = R->m_pComponent->m_crColor;
    R->m_rcBound = R->m_pComponent->m_rcBound;
    R->m_nPixels = R->m_pComponent->m_nPoints;

    int first = search.FirstOfRegion(i);
    if (first < 0) continue;  // no piece: the region is dropped
    BuildOuter(i, first, P, search, ch);
    R->m_pPoints = CopyChain(ch.a.data(), static_cast<int>(ch.a.size()));
    R->m_nPoints = static_cast<int>(ch.a.size());
    R->m_pRawPoints = CopyChain(ch.b.data(), static_cast<int>(ch.b.size()));
    R->m_nRawPoints = static_cast<int>(ch.b.size());

    BuildHoles(i, R.get(), P, search, ch);
    R->m_bNarrow = NarrowFlag(R.get(), ctx);
    regions.push_back(R.release());
  }
}

}  // namespace outline
