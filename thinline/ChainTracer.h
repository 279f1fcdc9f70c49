// Follows one-pixel skeleton chains of one colour from a start pixel,
// splitting them at junctions into a tree of chains.
//
// The natural form is recursive (each branch of a junction is followed in
// turn); a long skeleton has junctions nested thousands deep, so the
// pending branches are kept on an explicit stack instead, visited in the
// same order with the same effects as the recursion would have.
#pragma once

#include <vector>

#include "AfxWin.h"

namespace pictrace {
namespace thinline {

// The per-colour tables the saved chains go into, one entry per chain in
// the order chains are saved.
struct TraceTables {
  CArray<short*, short*>& points;  // x, y pairs; owned by the caller once saved
  CArray<int, int>& counts;
  CArray<int, int>& ids;
  CArray<int, int>& parents;
  CArray<int, int>& flags;
};

class ChainTracer {
 public:
  // capacity: the most points one chain can hold (every skeleton pixel
  // plus the junction it starts from fits).
  ChainTracer(unsigned char* pMask, const unsigned char* pBits, int width, int height,
              DWORD color, int capacity, double minLength, TraceTables tables, int& counter);

  // Traces the chain that starts at (x, y) and, depth first, every branch
  // that leaves its end junction. With bHasStart the chain begins with the
  // junction pixel (xStart, yStart) it leaves from.
  void Trace(int x, int y, int parent, int flag, int bHasStart, int xStart, int yStart);

 private:
  struct Junction {
    int x, y;
    int dirs[4];   // first direction of each run of neighbours, in scan order
    int nDirs;
    int next;      // the next branch to look at
    int link;      // parent id for the next traced branch
    int pending;   // id of the branch being traced; becomes link when done
    bool hasPending;
  };

  // Follows one chain to its end or to a junction; a junction is saved and
  // pushed so that its branches are traced next.
  void Follow(int x, int y, int parent, int flag, int bHasStart, int xStart, int yStart);
  // Directions that start a branch from (x, y), as runs of touching hits.
  int FindBranches(int x, int y, int* dirs) const;
  bool IsHit(int x, int y) const;
  void Save(int id, int parent, int flag);

  unsigned char* m_pMask;
  const unsigned char* m_pBits;
  int m_nWidth;
  int m_nHeight;
  long m_nStride;
  DWORD m_color;
  double m_dMinLength;
  TraceTables m_tables;
  int& m_nCounter;
  std::vector<short> m_chain;  // the chain being followed, x and y pairs
  int m_nPoints;
  std::vector<Junction> m_stack;
};

}  // namespace thinline
}  // namespace pictrace
