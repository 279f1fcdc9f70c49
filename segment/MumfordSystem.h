// The pieces of the edge-preserving smoothing solve, on planes of doubles in
// column-major sample order (index x * height + y): the edge field, the
// diffusion weights, the sparse system and the write-back to bytes.
#pragma once

#include "core/ImageView.h"
#include "core/Progress.h"
#include "segment/SparseSolve.h"

namespace pictrace {

const double kMumfordAlpha = 3.0;    // weight of the smoothing term
const double kMumfordBeta = 0.1;     // weight of the data term
const double kMumfordEpsilon = 1e-5; // keeps the edge response finite for lambda 0
const int kMumfordRounds = 5;        // alternations of edge field and solve
const int kMumfordSolverSteps = 200;
const double kMumfordSolverAccuracy = 0.1;

// Row lengths of the system: 1 + the number of in-image 4-neighbours of
// each sample.
void MumfordRowLengths(int width, int height, int* lengths);

// v[k] = the largest over the planes of g / (g + lambda + epsilon), g being
// the sum of the squared differences to the in-image 4-neighbours.
void MumfordEdgeField(const double* const* planes, int nPlanes, int width, int height,
                      double lambda, double* v);

// q[k] = alpha * (1 - v[k])^2.
void MumfordWeights(const double* v, int n, double* q);

// Fills every row k of the system: columns k-H, k-1, k, k+1, k+H in that
// order, each only when the neighbour exists; the off-diagonal entries are
// minus the neighbour's own weight, the diagonal beta plus their sum.
// bFirst sets the columns (after SetStructure); later fills only refresh
// the values in the same slots.
void MumfordFillMatrix(SparseRowMatrix& a, const double* q, int width, int height, bool bFirst);

// The write-back rule: 255 above 255, the truncated value above 0, else 0
// (NaN included).
unsigned char MumfordClampByte(double value);

namespace segment {

// The whole smoothing: five rounds of edge field and solve on the planes
// (the data term; column-major, width x height of work), written back into
// the bytes of work (a single plane into all three). Progress advances by
// the noise-reduction weight. 0 without planes or picture.
int SmoothPlanes(const double* const* ppPlanes, int nPlanes, double dLambda, const ImageView& work,
                 Progress& progress);

}  // namespace segment

}  // namespace pictrace
