// Seed regions of near-identical colour and their adjacency links.
#include <cstdint>
#include <vector>

#include "Pictrace.h"
#include "core/ColorDistance.h"
#include "core/ImageView.h"
#include "segment/EdgeMap.h"
#include "segment/RegionGraph.h"

namespace {

const int kOffsetX[4] = {-1, 0, 0, 1};
const int kOffsetY[4] = {0, -1, 1, 0};

// Squared colour distance to the seed below which a neighbour joins: tight
// on strong edges, so that a region does not leak across a contour.
const int kJoinLimit = 10;
const int kJoinLimitOnEdge = 1;

const unsigned char kOnEdge = 1;
const unsigned char kWeak = 2;

struct QueuedPixel {
  short x;
  short y;
};

}  // namespace

int CPictrace::SetupGraph(unsigned char* pBits, double* pEdge) {
  if (!HasDIBData()) return 0;
  const int w = m_bmiHeader.biWidth, h = m_bmiHeader.biHeight;
  if (!pBits || !pEdge || w <= 0 || h <= 0 || w > 32767 || h > 32767) return 0;

  DeleteRegionList(m_pRegionHead);
  m_pRegionHead = nullptr;

  const size_t n = static_cast<size_t>(w) * h;
  const size_t stride = pictrace::Stride24(w);

  // The edge map is indexed x * H + y; both walks below go in pixel order,
  // so its two tests are taken once per pixel into a map indexed y * W + x:
  // kOnEdge for a value above the strong level, kWeak for one at or below.
  std::vector<unsigned char> edgeTest(n);
  for (int x = 0; x < w; x++)
    for (int y = 0; y < h; y++) {
      const double e = pEdge[static_cast<size_t>(x) * h + y];
      edgeTest[static_cast<size_t>(y) * w + x] =
          static_cast<unsigned char>((e > kStrongEdge ? kOnEdge : 0) | (e <= kStrongEdge ? kWeak : 0));
    }

  std::vector<std::int32_t> label(n, -1);
  std::vector<QueuedPixel> queue(n);
  std::vector<CRegion*> regions;
  CRegion* last = nullptr;

  for (int y = 0; y < h; y++) {
    for (int x = 0; x < w; x++) {
      if (label[static_cast<size_t>(y) * w + x] != -1) continue;
      const std::int32_t r = static_cast<std::int32_t>(regions.size());
      CRegion* region = new CRegion;
      AppendRegion(m_pRegionHead, last, region);
      regions.push_back(region);

      region->m_pPixelHead = region->m_pPixelTail = new RegionPixel{static_cast<short>(x), static_cast<short>(y), nullptr};
      label[static_cast<size_t>(y) * w + x] = r;
      const unsigned char* seed = pBits + static_cast<size_t>(y) * stride + 3 * static_cast<size_t>(x);
      const int b0 = seed[0], g0 = seed[1], r0 = seed[2];
      std::uint64_t sumB = b0, sumG = g0, sumR = r0;
      std::uint32_t count = 1;

      // Breadth-first growth; distances are taken to the seed, never to
      // the running mean.
      size_t head = 0, tail = 0;
      queue[tail++] = QueuedPixel{static_cast<short>(x), static_cast<short>(y)};
      while (head < tail) {
        QueuedPixel p = queue[head++];
        for (int o = 0; o < 4; o++) {
          int qx = p.x + kOffsetX[o], qy = p.y + kOffsetY[o];
          if (qx < 0 || qx >= w || qy < 0 || qy >= h) continue;
          std::int32_t& ql = label[static_cast<size_t>(qy) * w + qx];
          if (ql != -1) continue;
          const unsigned char* q = pBits + static_cast<size_t>(qy) * stride + 3 * static_cast<size_t>(qx);
          int dist = pictrace::SquaredDistance(r0, g0, b0, q[2], q[1], q[0]);
          int limit = (edgeTest[static_cast<size_t>(qy) * w + qx] & kOnEdge) ? kJoinLimitOnEdge : kJoinLimit;
          if (dist >= limit) continue;
          ql = r;
          queue[tail++] = QueuedPixel{static_cast<short>(qx), static_cast<short>(qy)};
          RegionPixel* px = new RegionPixel{static_cast<short>(qx), static_cast<short>(qy), nullptr};
          region->m_pPixelTail->m_pNext = px;
          region->m_pPixelTail = px;
          sumB += q[0];
          sumG += q[1];
          sumR += q[2];
          count++;
        }
      }
      region->m_nSize = count;
      region->m_fRed = static_cast<float>(static_cast<double>(sumR) / count);
      region->m_fGreen = static_cast<float>(static_cast<double>(sumG) / count);
      region->m_fBlue = static_cast<float>(static_cast<double>(sumB) / count);
    }
  }

  std::vector<QueuedPixel>().swap(queue);  // not needed for the links

  // Links, in pixel order. The last link made to each target is remembered
  // per region, so that finding an existing link costs nothing.
  std::vector<std::int32_t> linkedBy(regions.size(), -1);
  std::vector<CNodeNeighbor*> linkTo(regions.size(), nullptr);
  for (size_t r = 0; r < regions.size(); r++) {
    CRegion* region = regions[r];
    CNodeNeighbor* tail = nullptr;
    for (RegionPixel* p = region->m_pPixelHead; p; p = p->m_pNext) {
      for (int o = 0; o < 4; o++) {
        int qx = p->x + kOffsetX[o], qy = p->y + kOffsetY[o];
        if (qx < 0 || qx >= w || qy < 0 || qy >= h) continue;
        std::int32_t t = label[static_cast<size_t>(qy) * w + qx];
        if (t == static_cast<std::int32_t>(r)) continue;
        DWORD weak = (edgeTest[static_cast<size_t>(qy) * w + qx] & kWeak) ? 1 : 0;
        if (linkedBy[static_cast<size_t>(t)] == static_cast<std::int32_t>(r)) {
          linkTo[static_cast<size_t>(t)]->m_nWeakEdges += weak;
          continue;
        }
        CNodeNeighbor* link = new CNodeNeighbor{regions[static_cast<size_t>(t)], 0.0f, weak, nullptr};
        if (tail)
          tail->m_pNext = link;
        else
          region->m_pNeighbors = link;
        tail = link;
        linkedBy[static_cast<size_t>(t)] = static_cast<std::int32_t>(r);
        linkTo[static_cast<size_t>(t)] = link;
      }
    }
  }
  return 1;
}
