#include "outline/PieceSearch.h"

#include <algorithm>
#include <tuple>

namespace outline {

CPieceIndex::CPieceIndex(const std::vector<COutlineVector*>& pieces) : m_pieces(pieces) {
  const int n = static_cast<int>(pieces.size());
  for (int k = 0; k < n; k++) {
    const COutlineVector* p = pieces[k];
    m_byRegion.push_back(Entry{p->m_nRegion, 0, 0, k});
    m_byRegionStart.push_back(Entry{p->m_nRegion, p->m_ptStart.x, p->m_ptStart.y, k});
    m_byNeighbor.push_back(Entry{p->m_nNeighbor, 0, 0, k});
    m_byNeighborStart.push_back(Entry{p->m_nNeighbor, p->m_ptStart.x, p->m_ptStart.y, k});
  }
  // Entries are built in index order, so a stable sort by key keeps the
  // indices ascending within a group.
  auto key = [](const Entry& a, const Entry& b) { return a.key < b.key; };
  auto keyStart = [](const Entry& a, const Entry& b) {
    return std::tie(a.key, a.x, a.y) < std::tie(b.key, b.x, b.y);
  };
  std::stable_sort(m_byRegion.begin(), m_byRegion.end(), key);
  std::stable_sort(m_byRegionStart.begin(), m_byRegionStart.end(), keyStart);
  std::stable_sort(m_byNeighbor.begin(), m_byNeighbor.end(), key);
  std::stable_sort(m_byNeighborStart.begin(), m_byNeighborStart.end(), keyStart);
  m_neighborCursor.resize(m_byNeighbor.size());
  m_chainCursor.resize(m_byNeighborStart.size());
  for (size_t k = 0; k < m_neighborCursor.size(); k++) m_neighborCursor[k] = k;
  for (size_t k = 0; k < m_chainCursor.size(); k++) m_chainCursor[k] = k;
}

int CPieceIndex::ScanNeighbor(int neighbor, const sPoint* start) const {
  for (size_t k = 0; k < m_pieces.size(); k++)
    if (m_pieces[k]->m_nNeighbor == neighbor && (!start || m_pieces[k]->m_ptStart == *start))
      return static_cast<int>(k);
  return -1;
}

bool CPieceIndex::Live(int index, int neighbor) const {
  return m_pieces[index]->m_nNeighbor == neighbor;
}

int CPieceIndex::FirstOfRegion(int region) {
  auto it = std::lower_bound(m_byRegion.begin(), m_byRegion.end(), region,
                             [](const Entry& e, int r) { return e.key < r; });
  return (it != m_byRegion.end() && it->key == region) ? it->index : -1;
}

int CPieceIndex::NextOfRegionOnLine(int from, int region, sPoint pt) {
  auto it = std::lower_bound(m_byRegion.begin(), m_byRegion.end(), Entry{region, 0, 0, from},
                             [](const Entry& a, const Entry& b) {
                               return std::tie(a.key, a.index) < std::tie(b.key, b.index);
                             });
  for (; it != m_byRegion.end() && it->key == region; ++it) {
    const sPoint& s = m_pieces[it->index]->m_ptStart;
    if (s.x == pt.x || s.y == pt.y) return it->index;
  }
  return -1;
}

bool CPieceIndex::RegionStartsAt(int region, sPoint pt) {
  Entry probe{region, pt.x, pt.y, 0};
  auto keyStart = [](const Entry& a, const Entry& b) {
    return std::tie(a.key, a.x, a.y) < std::tie(b.key, b.x, b.y);
  };
  return std::binary_search(m_byRegionStart.begin(), m_byRegionStart.end(), probe, keyStart);
}

int CPieceIndex::FirstWithNeighbor(int neighbor) {
  if (neighbor == -1) return ScanNeighbor(neighbor, nullptr);
  auto it = std::lower_bound(m_byNeighbor.begin(), m_byNeighbor.end(), neighbor,
                             [](const Entry& e, int r) { return e.key < r; });
  if (it == m_byNeighbor.end() || it->key != neighbor) return -1;
  size_t g = static_cast<size_t>(it - m_byNeighbor.begin());
  size_t& c = m_neighborCursor[g];
  while (c < m_byNeighbor.size() && m_byNeighbor[c].key == neighbor &&
         !Live(m_byNeighbor[c].index, neighbor))
    c++;
  if (c < m_byNeighbor.size() && m_byNeighbor[c].key == neighbor) return m_byNeighbor[c].index;
  return -1;
}

void CPieceIndex::ClosedWithNeighbor(int neighbor, std::vector<int>& out) {
  out.clear();
  if (neighbor == -1) {
    for (size_t k = 0; k < m_pieces.size(); k++)
      if (m_pieces[k]->m_nNeighbor == -1 && m_pieces[k]->m_ptStart == m_pieces[k]->m_ptEnd)
        out.push_back(static_cast<int>(k));
    return;
  }
  auto it = std::lower_bound(m_byNeighbor.begin(), m_byNeighbor.end(), neighbor,
                             [](const Entry& e, int r) { return e.key < r; });
  for (; it != m_byNeighbor.end() && it->key == neighbor; ++it) {
    const COutlineVector* p = m_pieces[it->index];
    if (Live(it->index, neighbor) && p->m_ptStart == p->m_ptEnd) out.push_back(it->index);
  }
}

int CPieceIndex::NextInChain(int neighbor, sPoint pt) {
  if (neighbor == -1) return ScanNeighbor(neighbor, &pt);
  Entry probe{neighbor, pt.x, pt.y, 0};
  auto keyStart = [](const Entry& a, const Entry& b) {
    return std::tie(a.key, a.x, a.y) < std::tie(b.key, b.x, b.y);
  };
  auto it = std::lower_bound(m_byNeighborStart.begin(), m_byNeighborStart.end(), probe, keyStart);
  if (it == m_byNeighborStart.end() || keyStart(probe, *it)) return -1;
  size_t g = static_cast<size_t>(it - m_byNeighborStart.begin());
  size_t& c = m_chainCursor[g];
  auto same = [&](size_t k) {
    return k < m_byNeighborStart.size() && !keyStart(probe, m_byNeighborStart[k]);
  };
  while (same(c) && !Live(m_byNeighborStart[c].index, neighbor)) c++;
  return same(c) ? m_byNeighborStart[c].index : -1;
}

}  // namespace outline
