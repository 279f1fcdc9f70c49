// The colour a pixel takes when thinning removes it: a vote among its eight
// neighbours, in the direction order that starts at (1, 0) and turns
// towards y + 1.
#include "Pictrace.h"
#include "thinline/PixelAccess.h"
#include "thinline/ThinningMask.h"

using namespace pictrace::thinline;

namespace {

// No pixel reads as this value, so a direction outside the picture never
// matches another direction's colour.
const DWORD kNoColor = 0xFFFFFFFFu;
const int kKeepVote = 8;

}  // namespace

DWORD CPictrace::GetNeighborColor(unsigned char* pBits, unsigned char* pMask, DWORD stride, int x,
                                  int y, int width, int height) {
  if (!pBits || !pMask || !Inside(x, y, width, height)) return 0xFFFFFF;
  const long rowBytes = static_cast<long>(stride);
  const int* pHostMask = HostMaskFor(*this, width, height);
  const COLORREF centre = ReadPixel(pBits, rowBytes, x, y);

  // Thinning asks only about interior pixels, whose neighbours all lie
  // inside; for a pixel on the edge the missing neighbours read as no colour.
  DWORD colors[8];
  for (int k = 0; k < 8; k++) {
    const int nx = x + kDirX[k];
    const int ny = y + kDirY[k];
    colors[k] = Inside(nx, ny, width, height) ? ReadPixel(pBits, rowBytes, nx, ny) : kNoColor;
  }

  signed char votes[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0};
  for (int k = 0; k < 8; k++) {
    const int nx = x + kDirX[k];
    const int ny = y + kDirY[k];
    if (!Inside(nx, ny, width, height)) continue;
    const size_t n = static_cast<size_t>(ny) * width + nx;
    if (pHostMask && pHostMask[n] == -1) {
      votes[kKeepVote]++;
    } else if (colors[k] == centre) {
      // part of the same line: no vote
    } else if (pMask[n] == 1) {
      votes[kKeepVote]++;  // a line pixel of another colour still to be thinned
    } else {
      // Later directions of the same colour strengthen this one; they are
      // counted as they read, without the tests above.
      for (int j = k; j < 8; j++)
        if (colors[j] == colors[k]) votes[k]++;
    }
  }

  int best = 0;
  for (int k = 1; k <= kKeepVote; k++)
    if (votes[k] > votes[best]) best = k;

  unsigned char& self = pMask[static_cast<size_t>(y) * width + x];
  if (votes[best] == 0 || best == kKeepVote) {
    self = 2;
    return 0xFFFFFF;
  }
  self = 0;
  return colors[best];
}
