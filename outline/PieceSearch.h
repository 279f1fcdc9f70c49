// The searches over the piece array that the region assembly makes,
// answered from sorted indexes with the results of scanning the whole array
// from its beginning for each of them.
#pragma once

#include <vector>

#include "core/OutlineRecords.h"

namespace outline {

// A piece is live for a neighbour value while its m_nNeighbor still holds
// that value; consuming a piece sets m_nNeighbor to -1. Every answer is the
// piece of lowest index that qualifies, or -1.
//
// Sorted indexes over the pieces' regions, neighbours and start vertices.
// Regions and start vertices never change; neighbours only ever become -1,
// so the first live entry of a group only moves forward and a cursor per
// group skips the consumed ones for good. The value -1 itself gains pieces
// as they are consumed; searches for it scan the array.
class CPieceIndex {
 public:
  explicit CPieceIndex(const std::vector<COutlineVector*>& pieces);
  // First piece of the region.
  int FirstOfRegion(int region);
  // First piece at index >= from of the region whose start has the x or the
  // y of pt.
  int NextOfRegionOnLine(int from, int region, sPoint pt);
  // Whether some piece of the region starts at pt.
  bool RegionStartsAt(int region, sPoint pt);
  // First live piece with the neighbour.
  int FirstWithNeighbor(int neighbor);
  // Every live piece with the neighbour whose start equals its end, in order.
  void ClosedWithNeighbor(int neighbor, std::vector<int>& out);
  // First live piece with the neighbour that starts at pt.
  int NextInChain(int neighbor, sPoint pt);

 private:
  struct Entry {
    int key;     // region or neighbour
    short x, y;  // start vertex, where the index uses it
    int index;   // position in the piece array
  };
  bool Live(int index, int neighbor) const;
  int ScanNeighbor(int neighbor, const sPoint* start) const;

  const std::vector<COutlineVector*>& m_pieces;
  std::vector<Entry> m_byRegion;      // (region, index)
  std::vector<Entry> m_byRegionStart; // (region, start, index)
  std::vector<Entry> m_byNeighbor;    // (neighbour, index)
  std::vector<Entry> m_byNeighborStart;  // (neighbour, start, index)
  std::vector<size_t> m_neighborCursor;  // per group start: first entry not yet consumed
  std::vector<size_t> m_chainCursor;
};

}  // namespace outline
