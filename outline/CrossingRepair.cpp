#include "outline/CrossingRepair.h"

#include <cstring>
#include <functional>
#include <queue>
#include <vector>

namespace outline {

namespace {

// Search state of one of the two tests. Positions are linear indices
// row * width + col. Invariant: every position before `next` that is not in
// `dirty` is known not to be a hit. A repair changes one pixel, which can
// only change the outcome of the four positions whose test reads it; those
// before `next` are put into `dirty`. So the first hit in raster order is
// the smallest dirty hit, or else the first hit from `next` on: exactly the
// hit the plain procedure finds by scanning again from the first pixel.
struct Scan {
  long next = 0;
  std::priority_queue<long, std::vector<long>, std::greater<long>> dirty;

  void Touch(long pos) {
    if (pos >= 0 && pos < next) dirty.push(pos);
  }

  template <class Test>
  bool Find(long end, int width, Test test, long& hit) {
    while (!dirty.empty()) {
      long q = dirty.top();
      dirty.pop();
      if (q >= next) continue;  // the forward scan will reach it
      if (test(static_cast<int>(q / width), static_cast<int>(q % width))) {
        hit = q;
        return true;
      }
    }
    for (; next < end; next++) {
      if (test(static_cast<int>(next / width), static_cast<int>(next % width))) {
        hit = next;
        return true;
      }
    }
    return false;
  }
};

}  // namespace

int RepairCrossings(int* labels, int width, int height, unsigned char* bits, int stride) {
  if (width < 2 || height < 2) return 0;
  const long end = static_cast<long>(height - 1) * width;
  Scan s24, s13;
  int repairs = 0;

  auto test24 = [&](int row, int col) { return IsCross24(labels, height, width, row, col); };
  auto test13 = [&](int row, int col) { return IsCross13(labels, height, width, row, col); };
  auto copy = [&](int row, int from, int to) {
    long w = width;
    labels[row * w + to] = labels[row * w + from];
    if (bits) {
      unsigned char* r = bits + static_cast<size_t>(row) * stride;
      std::memcpy(r + 3 * to, r + 3 * from, 3);
    }
    // Positions whose tests read pixel (to, row).
    long a = to, b = row;
    if (a >= 1 && b >= 1) s24.Touch((b - 1) * w + a - 1);
    if (b >= 1) s24.Touch((b - 1) * w + a);
    if (a >= 1) s24.Touch(b * w + a - 1);
    s24.Touch(b * w + a);
    s13.Touch(b * w + a);
    if (b >= 1 && a + 1 < w) s13.Touch((b - 1) * w + a + 1);
    if (a + 1 < w) s13.Touch(b * w + a + 1);
    if (b >= 1) s13.Touch((b - 1) * w + a);
    repairs++;
  };

  for (;;) {
    long hit;
    if (s24.Find(end, width, test24, hit)) {
      int row = static_cast<int>(hit / width), col = static_cast<int>(hit % width);
      copy(row, col, col + 1);
      continue;
    }
    if (s13.Find(end, width, test13, hit)) {
      int row = static_cast<int>(hit / width), col = static_cast<int>(hit % width);
      copy(row, col, col - 1);
      continue;
    }
    return repairs;
  }
}

}  // namespace outline
