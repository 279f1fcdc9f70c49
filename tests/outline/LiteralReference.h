// The plain procedures, written the slow way the text describes them: a
// reference for the indexed versions of the engine.
#pragma once

#include <vector>

#include "core/OutlineRecords.h"
#include "outline/PieceSearch.h"

namespace literal {

// Crossing repair that scans again from the first pixel after every repair.
int RepairCrossings(int* labels, int width, int height, unsigned char* bits, int stride);

// The exchange sort comparing every pair; returns the final positions.
std::vector<int> ExchangeSortOrder(const std::vector<int>& keys);

// Piece statuses by comparing every pair i < j.
std::vector<int> ClassifyPieces(const std::vector<COutlineVector*>& pieces);

// Every search scans the whole piece array from its beginning.
class LinearPieceSearch : public outline::CPieceSearch {
 public:
  explicit LinearPieceSearch(const std::vector<COutlineVector*>& pieces) : m_p(pieces) {}
  int FirstOfRegion(int region) override;
  int NextOfRegionOnLine(int from, int region, sPoint pt) override;
  bool RegionStartsAt(int region, sPoint pt) override;
  int FirstWithNeighbor(int neighbor) override;
  void ClosedWithNeighbor(int neighbor, std::vector<int>& out) override;
  int NextInChain(int neighbor, sPoint pt) override;

 private:
  const std::vector<COutlineVector*>& m_p;
};

}  // namespace literal
