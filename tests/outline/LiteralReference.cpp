#include "outline/LiteralReference.h"

#include <cstring>
#include <utility>

#include "outline/CrossingRepair.h"

namespace literal {

int RepairCrossings(int* L, int W, int H, unsigned char* bits, int stride) {
  int repairs = 0;
  for (;;) {
    bool done = false;
    for (int row = 0; row <= H - 2 && !done; row++)
      for (int col = 0; col <= W - 2 && !done; col++)
        if (outline::IsCross24(L, H, W, row, col)) {
          L[row * W + col + 1] = L[row * W + col];
          if (bits) std::memcpy(bits + row * stride + 3 * (col + 1), bits + row * stride + 3 * col, 3);
          done = true;
        }
    for (int row = 0; row <= H - 2 && !done; row++)
      for (int col = 1; col <= W - 1 && !done; col++)
        if (outline::IsCross13(L, H, W, row, col)) {
          L[row * W + col - 1] = L[row * W + col];
          if (bits) std::memcpy(bits + row * stride + 3 * (col - 1), bits + row * stride + 3 * col, 3);
          done = true;
        }
    if (!done) return repairs;
    repairs++;
  }
}

std::vector<int> ExchangeSortOrder(const std::vector<int>& keysIn) {
  std::vector<int> keys = keysIn, order(keys.size());
  for (size_t k = 0; k < order.size(); k++) order[k] = static_cast<int>(k);
  for (size_t i = 0; i + 1 < keys.size(); i++)
    for (size_t j = i + 1; j < keys.size(); j++)
      if (keys[i] < keys[j]) {
        std::swap(keys[i], keys[j]);
        std::swap(order[i], order[j]);
      }
  return order;
}

std::vector<int> ClassifyPieces(const std::vector<COutlineVector*>& p) {
  const size_t n = p.size();
  std::vector<int> status(n, -1);
  for (size_t i = 0; i < n; i++) {
    if (status[i] != -1) continue;
    for (size_t j = i + 1; j < n; j++) {
      const COutlineVector& a = *p[i];
      const COutlineVector& b = *p[j];
      if (a.m_nNeighbor == b.m_nNeighbor && a.m_nRegion == b.m_nRegion && a.m_ptEnd == b.m_ptEnd &&
          a.m_ptStart == b.m_ptStart)
        status[j] = -2;
      else if (a.m_nNeighbor == b.m_nRegion && a.m_nRegion == b.m_nNeighbor &&
               b.m_nRegion != b.m_nNeighbor && a.m_ptEnd == b.m_ptStart && a.m_ptStart == b.m_ptEnd)
        status[j] = static_cast<int>(i);
    }
  }
  return status;
}

int LinearPieceSearch::FirstOfRegion(int region) {
  for (size_t k = 0; k < m_p.size(); k++)
    if (m_p[k]->m_nRegion == region) return static_cast<int>(k);
  return -1;
}

int LinearPieceSearch::NextOfRegionOnLine(int from, int region, sPoint pt) {
  for (size_t k = from; k < m_p.size(); k++)
    if (m_p[k]->m_nRegion == region && (m_p[k]->m_ptStart.x == pt.x || m_p[k]->m_ptStart.y == pt.y))
      return static_cast<int>(k);
  return -1;
}

bool LinearPieceSearch::RegionStartsAt(int region, sPoint pt) {
  for (const COutlineVector* v : m_p)
    if (v->m_nRegion == region && v->m_ptStart == pt) return true;
  return false;
}

int LinearPieceSearch::FirstWithNeighbor(int neighbor) {
  for (size_t k = 0; k < m_p.size(); k++)
    if (m_p[k]->m_nNeighbor == neighbor) return static_cast<int>(k);
  return -1;
}

void LinearPieceSearch::ClosedWithNeighbor(int neighbor, std::vector<int>& out) {
  out.clear();
  for (size_t k = 0; k < m_p.size(); k++)
    if (m_p[k]->m_nNeighbor == neighbor && m_p[k]->m_ptStart == m_p[k]->m_ptEnd)
      out.push_back(static_cast<int>(k));
}

int LinearPieceSearch::NextInChain(int neighbor, sPoint pt) {
  for (size_t k = 0; k < m_p.size(); k++)
    if (m_p[k]->m_nNeighbor == neighbor && m_p[k]->m_ptStart == pt) return static_cast<int>(k);
  return -1;
}

}  // namespace literal
