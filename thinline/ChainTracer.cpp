#include "thinline/ChainTracer.h"

#include <cstring>
#include <memory>

#include "thinline/PixelAccess.h"

namespace pictrace {
namespace thinline {

ChainTracer::ChainTracer(unsigned char* pMask, const unsigned char* pBits, int width, int height,
                         DWORD color, int capacity, double minLength, TraceTables tables,
                         int& counter)
    : m_pMask(pMask),
      m_pBits(pBits),
      m_nWidth(width),
      m_nHeight(height),
      m_nStride(Stride24(width)),
      m_color(color),
      m_dMinLength(minLength),
      m_tables(tables),
      m_nCounter(counter),
      m_chain(2 * static_cast<size_t>(capacity < 2 ? 2 : capacity)),
      m_nPoints(0) {}

bool ChainTracer::IsHit(int x, int y) const {
  return m_pMask[static_cast<size_t>(y) * m_nWidth + x] == 1 &&
         ReadPixel(m_pBits, m_nStride, x, y) == m_color;
}

int ChainTracer::FindBranches(int x, int y, int* dirs) const {
  int n = 0;
  bool previousHit = false;  // direction 7 follows a miss
  bool hit7 = false;
  for (int k = 7; k >= 0; k--) {
    const int nx = x + kDirX[k];
    const int ny = y + kDirY[k];
    if (!Inside(nx, ny, m_nWidth, m_nHeight)) continue;  // leaves the scan state as it is
    const bool hit = IsHit(nx, ny);
    // Directions 0 and 7 touch on the ring, so a run may wrap round.
    if (hit && !previousHit && !(k == 0 && hit7)) dirs[n++] = k;
    if (k == 7) hit7 = hit;
    previousHit = hit;
  }
  return n;
}

void ChainTracer::Save(int id, int parent, int flag) {
  std::unique_ptr<short[]> points(new short[2 * static_cast<size_t>(m_nPoints)]);
  std::memcpy(points.get(), m_chain.data(), sizeof(short) * 2 * static_cast<size_t>(m_nPoints));
  m_tables.points.Add(points.get());
  points.release();
  m_tables.counts.Add(m_nPoints);
  m_tables.ids.Add(id);
  m_tables.parents.Add(parent);
  m_tables.flags.Add(flag);
}

void ChainTracer::Follow(int x, int y, int parent, int flag, int bHasStart, int xStart,
                         int yStart) {
  const int id = m_nCounter;
  const int capacity = static_cast<int>(m_chain.size() / 2);
  m_nPoints = 0;
  if (bHasStart) {
    m_chain[0] = static_cast<short>(xStart);
    m_chain[1] = static_cast<short>(yStart);
    m_nPoints = 1;
  }
  for (;;) {
    m_pMask[static_cast<size_t>(y) * m_nWidth + x] = 0;
    int dirs[4] = {0, 0, 0, 0};
    int nDirs = 0;
    // The buffer holds every skeleton pixel; a full one can only come from
    // a caller's wrong size, and then the chain simply ends here.
    if (m_nPoints < capacity) {
      m_chain[2 * m_nPoints] = static_cast<short>(x);
      m_chain[2 * m_nPoints + 1] = static_cast<short>(y);
      m_nPoints++;
      nDirs = FindBranches(x, y, dirs);
    }
    if (nDirs == 0) {
      // Only chain ends are held to the minimum length.
      if (m_nPoints < m_dMinLength)
        m_nCounter--;
      else
        Save(id, parent, flag);
      return;
    }
    if (nDirs == 1) {
      x += kDirX[dirs[0]];
      y += kDirY[dirs[0]];
      continue;
    }
    Save(id, parent, flag);
    Junction j;
    j.x = x;
    j.y = y;
    std::memcpy(j.dirs, dirs, sizeof(dirs));
    j.nDirs = nDirs;
    j.next = 0;
    j.link = id;
    j.pending = 0;
    j.hasPending = false;
    m_stack.push_back(j);
    return;
  }
}

void ChainTracer::Trace(int x, int y, int parent, int flag, int bHasStart, int xStart,
                        int yStart) {
  if (!Inside(x, y, m_nWidth, m_nHeight)) return;
  m_stack.clear();
  Follow(x, y, parent, flag, bHasStart, xStart, yStart);
  while (!m_stack.empty()) {
    Junction& j = m_stack.back();
    // The branch traced last has finished with all its own branches: the
    // next branch hangs from it, even if it was dropped as too short.
    if (j.hasPending) {
      j.link = j.pending;
      j.hasPending = false;
    }
    if (j.next >= j.nDirs) {
      m_stack.pop_back();
      continue;
    }
    const int b = j.next++;
    const int bx = j.x + kDirX[j.dirs[b]];
    const int by = j.y + kDirY[j.dirs[b]];
    if (m_pMask[static_cast<size_t>(by) * m_nWidth + bx] != 1) continue;
    m_nCounter++;
    j.pending = m_nCounter;
    j.hasPending = true;
    const int link = j.link;
    const int jx = j.x;
    const int jy = j.y;
    Follow(bx, by, link, b > 0 ? 1 : 0, 1, jx, jy);  // may grow the stack: j is not used after
  }
}

}  // namespace thinline
}  // namespace pictrace
