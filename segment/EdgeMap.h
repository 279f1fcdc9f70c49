// The edge map of the block stage: per sample, the strongest normalised
// gradient g / (g + 400) over the colour planes.
#pragma once

// Raises edge[k] to the gradient strength of plane at k. The planes are
// filled with index y * W + x, but the walk runs a = 0..W-1 outer and
// b = 0..H-1 inner with k = a * H + b, taking k +- H and k +- 1 as the
// neighbours; the value used for pixel (x, y) is edge[x * H + y]. The
// pairing is deliberate and kept exactly, also for non-square pictures.
void AccumulateEdgeMap(const double* pPlane, int nWidth, int nHeight, double* pEdge);

// Pixels whose edge value exceeds this level are on a strong edge.
constexpr double kStrongEdge = 0.995;
