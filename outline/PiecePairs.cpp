#include "outline/PiecePairs.h"

#include <algorithm>
#include <tuple>

namespace outline {

namespace {

struct Key {
  int region, neighbor;
  short sx, sy, ex, ey;
  int index;
  auto Tie() const { return std::tie(region, neighbor, sx, sy, ex, ey); }
};

}  // namespace

std::vector<int> ClassifyPieces(const std::vector<COutlineVector*>& pieces) {
  const int n = static_cast<int>(pieces.size());
  std::vector<int> status(n, kPieceKept);
  // Pieces sorted by (region, neighbour, start, end, index): the j that pair
  // with i are one equal range, and in it only the indices above i count.
  // Each kept i writes to those j in the same order as the comparison of
  // every pair would, so the statuses come out identical.
  std::vector<Key> keys(n);
  for (int k = 0; k < n; k++) {
    const COutlineVector* p = pieces[k];
    keys[k] = Key{p->m_nRegion, p->m_nNeighbor, p->m_ptStart.x, p->m_ptStart.y,
                  p->m_ptEnd.x,  p->m_ptEnd.y,   k};
  }
  auto less = [](const Key& a, const Key& b) {
    return a.Tie() < b.Tie() || (a.Tie() == b.Tie() && a.index < b.index);
  };
  std::sort(keys.begin(), keys.end(), less);

  auto laterOf = [&](const Key& probe, int i) {
    Key lo = probe;
    lo.index = i + 1;
    auto first = std::lower_bound(keys.begin(), keys.end(), lo, less);
    auto last = first;
    while (last != keys.end() && last->Tie() == probe.Tie()) ++last;
    return std::make_pair(first, last);
  };

  for (int i = 0; i < n; i++) {
    if (status[i] != kPieceKept) continue;
    const COutlineVector* p = pieces[i];
    Key same{p->m_nRegion, p->m_nNeighbor, p->m_ptStart.x, p->m_ptStart.y,
             p->m_ptEnd.x, p->m_ptEnd.y, 0};
    auto dup = laterOf(same, i);
    for (auto it = dup.first; it != dup.second; ++it) status[it->index] = kPieceDuplicate;
    Key twin{p->m_nNeighbor, p->m_nRegion, p->m_ptEnd.x, p->m_ptEnd.y,
             p->m_ptStart.x, p->m_ptStart.y, 0};
    if (twin.region == twin.neighbor) continue;  // a twin's region differs from its neighbour
    auto tw = laterOf(twin, i);
    for (auto it = tw.first; it != tw.second; ++it) status[it->index] = i;
  }
  return status;
}

}  // namespace outline
