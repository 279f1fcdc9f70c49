#include "outline/ContourSteps.h"

#include <cstddef>

namespace outline {

namespace {

struct Around {
  int lr, ur, ul, ll;
};

Around Corners(const int* L, int W, int x, int y) {
  const int* row = L + static_cast<size_t>(y) * W;
  const int* up = row - W;
  return Around{row[x], up[x], up[x - 1], row[x - 1]};
}

int Label(const int* L, int W, int x, int y) { return L[static_cast<size_t>(y) * W + x]; }

}  // namespace

int ContourOrder(const int* L, int W, int H, int x, int y) {
  if (x < 0 || y < 0 || x > W || y > H) return 0;
  if (x == 0) {
    if (y == 0 || y == H) return 0;
    return Label(L, W, 0, y) != Label(L, W, 0, y - 1) ? 2 : 0;
  }
  if (x == W) {
    if (y == 0 || y == H) return 0;
    return Label(L, W, W - 1, y - 1) != Label(L, W, W - 1, y) ? 2 : 0;
  }
  if (y == 0) return Label(L, W, x, 0) != Label(L, W, x - 1, 0) ? 2 : 0;
  if (y == H) return Label(L, W, x, H - 1) != Label(L, W, x - 1, H - 1) ? 2 : 0;

  Around a = Corners(L, W, x, y);
  int sidePairs = (a.lr == a.ur) + (a.lr == a.ll) + (a.ur == a.ul) + (a.ul == a.ll);
  int diagPairs = (a.lr == a.ul) + (a.ur == a.ll);
  int pairs = sidePairs + diagPairs;
  if (pairs == 0) return 4;
  if (pairs == 1) return diagPairs == 1 ? 4 : 3;
  return 0;
}

bool IsDiagonalVertex(const int* L, int W, int H, int x, int y) {
  if (x <= 0 || y <= 0 || x >= W || y >= H) return false;
  Around a = Corners(L, W, x, y);
  int sidePairs = (a.lr == a.ur) + (a.lr == a.ll) + (a.ur == a.ul) + (a.ul == a.ll);
  int diagPairs = (a.lr == a.ul) + (a.ur == a.ll);
  return sidePairs == 0 && diagPairs == 1;
}

void NextStep(const int* L, int W, int H, int lab, int& x, int& y, int& d) {
  if (x == 0) {
    if (ContourOrder(L, W, H, x, y) == 2 && Label(L, W, 0, y) != lab)
      d = 0;
    else
      d = (y == H) ? 0 : 6;
  } else if (y == 0) {
    if (ContourOrder(L, W, H, x, y) == 2 && Label(L, W, x - 1, 0) != lab)
      d = (x == W) ? 4 : 6;
    else
      d = 4;
  } else if (x == W) {
    if (ContourOrder(L, W, H, x, y) == 2 && Label(L, W, W - 1, y) == lab)
      d = 4;
    else
      d = 2;  // y > 0 here, so the corner case of y = 0 cannot arise
  } else if (y == H) {
    if (ContourOrder(L, W, H, x, y) == 2 && Label(L, W, x - 1, H - 1) == lab && x != 0)
      d = 2;
    else
      d = 0;
  } else {
    const Around a = Corners(L, W, x, y);
    const int LR = a.lr, UR = a.ur, UL = a.ul, LL = a.ll;
    switch (d) {
      case 0:
        if (UL == lab && UL != LL && UR != UL)
          d = 2;
        else if (UL == lab && UR == UL && LR != UR && UR != LL)
          d = 0;
        else if (LR == lab && LR == UR && LR == UL && LR != LL)
          d = 6;
        break;
      case 2:
        if (LL == lab && LR == UR && UL == LL && UR != UL)
          d = 2;
        else if (LL == lab && UL != LL && LR != LL)
          d = 4;
        else if (LL == lab && LR != LL && UR == UL && UL == LL)
          d = 0;
        break;
      case 4: {
        // All three rules are tried; a later one overrides an earlier one.
        int nd = d;
        if (LR == lab && LR == LL && LR != UL && LR != UR) nd = 4;
        if (LR == lab && UL == LL && LR == LL && LR != UR) nd = 2;
        if (LR == lab && LR != UR && LR != LL) nd = 6;
        d = nd;
        break;
      }
      case 6:
        if (LR == lab && LR == UR && UR != UL && UL == LL)
          d = 6;
        else if (LR == lab && LR == UR && UR != UL && LR == LL)
          d = 4;
        else if (UR == lab && LR != UR && UR != UL)
          d = 0;
        break;
      default:
        break;
    }
  }
  switch (d) {
    case 0: x++; break;
    case 2: y--; break;
    case 4: x--; break;
    case 6: y++; break;
    default: break;
  }
}

}  // namespace outline
