// Edge field, weights and system assembly of the noise reduction.
#include "segment/MumfordSystem.h"

namespace pictrace {

void MumfordRowLengths(int width, int height, int* lengths) {
  int k = 0;
  for (int x = 0; x < width; x++)
    for (int y = 0; y < height; y++)
      lengths[k++] = 1 + (x > 0) + (y > 0) + (y < height - 1) + (x < width - 1);
}

void MumfordEdgeField(const double* const* planes, int nPlanes, int width, int height,
                      double lambda, double* v) {
  const long long n = static_cast<long long>(width) * height;
  for (long long k = 0; k < n; k++) v[k] = 0.0;
  for (int c = 0; c < nPlanes; c++) {
    const double* u = planes[c];
    long long k = 0;
    for (int x = 0; x < width; x++)
      for (int y = 0; y < height; y++, k++) {
        double g = 0.0;
        double d;
        if (x > 0) { d = u[k] - u[k - height]; g += d * d; }
        if (y > 0) { d = u[k] - u[k - 1]; g += d * d; }
        if (y < height - 1) { d = u[k] - u[k + 1]; g += d * d; }
        if (x < width - 1) { d = u[k] - u[k + height]; g += d * d; }
        double e = g / (g + lambda + kMumfordEpsilon);
        if (e > v[k]) v[k] = e;
      }
  }
}

void MumfordWeights(const double* v, int n, double* q) {
  for (int k = 0; k < n; k++) {
    double w = 1.0 - v[k];
    q[k] = kMumfordAlpha * (w * w);
  }
}

namespace {

// One walk over the rows in entry order for both kinds of fill, so that the
// structure and every refill put the same entry into the same slot.
template <class Put>
void WalkRows(const double* q, int width, int height, Put put) {
  int k = 0;
  for (int x = 0; x < width; x++)
    for (int y = 0; y < height; y++, k++) {
      double d = kMumfordBeta;
      if (x > 0) d += q[k - height];
      if (y > 0) d += q[k - 1];
      if (y < height - 1) d += q[k + 1];
      if (x < width - 1) d += q[k + height];
      int slot = 0;
      if (x > 0) put(k, slot++, k - height, -q[k - height]);
      if (y > 0) put(k, slot++, k - 1, -q[k - 1]);
      put(k, slot++, k, d);
      if (y < height - 1) put(k, slot++, k + 1, -q[k + 1]);
      if (x < width - 1) put(k, slot++, k + height, -q[k + height]);
    }
}

}  // namespace

void MumfordFillMatrix(SparseRowMatrix& a, const double* q, int width, int height, bool bFirst) {
  if (bFirst) {
    WalkRows(q, width, height,
             [&a](int row, int slot, int col, double value) { a.SetEntry(row, slot, col, value); });
  } else {
    double* p = a.Values();
    WalkRows(q, width, height, [&p](int, int, int, double value) { *p++ = value; });
  }
}

unsigned char MumfordClampByte(double value) {
  if (value > 255) return 255;
  if (value > 0) return static_cast<unsigned char>(static_cast<int>(value));
  return 0;
}

}  // namespace pictrace
