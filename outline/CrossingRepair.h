// Removal of diagonal-only contacts in a label array: wherever two pixels of
// one label touch only at a corner, a side neighbour takes their label, so
// that 4-connectivity joins them.
#pragma once

namespace outline {

// True when pixel (col, row) has the label of (col+1, row+1) and differs
// from both (col+1, row) and (col, row+1). Out-of-range positions are false.
inline bool IsCross24(const int* labels, int height, int width, int row, int col) {
  if (row < 0 || col < 0 || row + 1 >= height || col + 1 >= width) return false;
  const int* p = labels + static_cast<long>(row) * width + col;
  int v = p[0];
  return v == p[width + 1] && v != p[1] && v != p[width];
}

// The mirror test: label of (col-1, row+1), differing from (col-1, row) and
// (col, row+1).
inline bool IsCross13(const int* labels, int height, int width, int row, int col) {
  if (row < 0 || col < 1 || row + 1 >= height || col >= width) return false;
  const int* p = labels + static_cast<long>(row) * width + col;
  int v = p[0];
  return v == p[width - 1] && v != p[-1] && v != p[width];
}

// Repairs crossings one at a time in the order of the plain procedure: each
// pass takes the first IsCross24 hit in raster order (rows 0..H-2, columns
// 0..W-2) and copies pixel (col, row) into (col+1, row); only when none is
// left does it take the first IsCross13 hit (columns 1..W-1) and copy
// (col, row) into (col-1, row). When bits is not null the three colour bytes
// are copied too (row y at y * stride). Returns the number of repairs.
int RepairCrossings(int* labels, int width, int height, unsigned char* bits, int stride);

}  // namespace outline
