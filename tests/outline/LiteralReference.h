// The plain procedures, written the slow way: every scan starts again from the beginning and every pair is
// compared. The reference for the indexed and restart-point versions of the engine.
#pragma once

#include <cstring>
#include <utility>
#include <vector>

#include "core/OutlineRecords.h"

namespace literal {

// Pixel i has the label of its diagonal neighbour i + W + dx, not of those between.
inline bool Cross(const int* L, int W, int i, int dx) { return L[i] == L[i + W + dx] && L[i] != L[i + dx] && L[i] != L[i + W]; }

// Crossing repair that scans again from the first pixel after every repair: first down-right crossings
// (recolouring the right neighbour), then down-left ones (the left neighbour).
inline int RepairCrossings(int* L, int W, int H, unsigned char* bits, int stride) {
  for (int repairs = 0;; repairs++) {
    int from = -1, to = -1;
    for (int i = 0; i < (H - 1) * W && from < 0; i++)
      if (i % W < W - 1 && Cross(L, W, i, 1)) from = i, to = i + 1;
    for (int i = 0; i < (H - 1) * W && from < 0; i++)
      if (i % W > 0 && Cross(L, W, i, -1)) from = i, to = i - 1;
    if (from < 0) return repairs;
    L[to] = L[from];
    if (bits) std::memcpy(bits + (to / W) * stride + 3 * (to % W), bits + (from / W) * stride + 3 * (from % W), 3);
  }
}

// The exchange sort comparing every pair; returns the final positions.
inline std::vector<int> ExchangeSortOrder(std::vector<int> keys) {
  std::vector<int> order(keys.size());
  for (size_t k = 0; k < order.size(); k++) order[k] = static_cast<int>(k);
  for (size_t i = 0; i + 1 < keys.size(); i++)
    for (size_t j = i + 1; j < keys.size(); j++)
      if (keys[i] < keys[j]) std::swap(keys[i], keys[j]), std::swap(order[i], order[j]);
  return order;
}

// Piece statuses by comparing every pair i < j.
inline std::vector<int> ClassifyPieces(const std::vector<COutlineVector*>& p) {
  std::vector<int> status(p.size(), -1);
  for (size_t i = 0; i < p.size(); i++)
    for (size_t j = i + 1; j < p.size() && status[i] == -1; j++) {
      const COutlineVector &a = *p[i], &b = *p[j];
      if (a.m_nNeighbor == b.m_nNeighbor && a.m_nRegion == b.m_nRegion && a.m_ptEnd == b.m_ptEnd && a.m_ptStart == b.m_ptStart)
        status[j] = -2;
      else if (a.m_nNeighbor == b.m_nRegion && a.m_nRegion == b.m_nNeighbor &&
               b.m_nRegion != b.m_nNeighbor && a.m_ptEnd == b.m_ptStart && a.m_ptStart == b.m_ptEnd)
        status[j] = static_cast<int>(i);
    }
  return status;
}

// The region assembly's searches, each a scan of the whole piece array.
struct LinearPieceSearch {
  const std::vector<COutlineVector*>& p;
  template <class Pred>
  int First(size_t from, Pred pred) const {
    while (from < p.size() && !pred(*p[from])) from++;
    return from < p.size() ? static_cast<int>(from) : -1;
  }
  int FirstOfRegion(int r) const { return First(0, [&](auto& v) { return v.m_nRegion == r; }); }
  int NextOfRegionOnLine(int from, int r, sPoint pt) const {
    return First(from, [&](auto& v) { return v.m_nRegion == r && (v.m_ptStart.x == pt.x || v.m_ptStart.y == pt.y); });
  }
  bool RegionStartsAt(int r, sPoint pt) const { return First(0, [&](auto& v) { return v.m_nRegion == r && v.m_ptStart == pt; }) >= 0; }
  int FirstWithNeighbor(int n) const { return First(0, [&](auto& v) { return v.m_nNeighbor == n; }); }
  int NextInChain(int n, sPoint pt) const { return First(0, [&](auto& v) { return v.m_nNeighbor == n && v.m_ptStart == pt; }); }
  void ClosedWithNeighbor(int n, std::vector<int>& out) const {
    out.clear();
    for (size_t k = 0; k < p.size(); k++)
      if (p[k]->m_nNeighbor == n && p[k]->m_ptStart == p[k]->m_ptEnd) out.push_back(static_cast<int>(k));
  }
};

}  // namespace literal
