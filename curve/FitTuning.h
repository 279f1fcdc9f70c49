// The fitter's tuning values in one place, each with the reason for it.
#pragma once

namespace pictrace::curve {

// --- chain preparation
// A raw outline's corners are found on a polygon that follows the staircase
// within 1.5 pixels (loose enough to pass over the irregular steps of
// anti-aliased edges); a corner must stand out from that polygon's chord by
// at least 2.25 pixels, which rounds the blunt bends of small discs.
constexpr double kRawPolygonTolerance = 1.5;
constexpr double kRawMinSagitta = 2.25;
// Polygon edges shorter than this may be the cut-off tip of a corner: turns
// are judged across them.
constexpr double kRawShortEdge = 3.5;
// Tangents of raw outlines are taken over four steps on each side.
constexpr int kRawWindow = 4;
// Vertex chains are sampled along their edges at a quarter of the tolerance,
// and tangents are taken over four tolerances of path.
constexpr double kSampleFraction = 0.25;
constexpr double kVertexWindowLength = 4.0;
// A very long edge is not sampled finer than this.
constexpr int kMaxSamplesPerEdge = 4096;
// Raw outlines guide the fit by a smoothing over eight points on each side.
constexpr int kSmoothHalf = 8;

// --- corners
// cos(55 degrees): a turn steeper than this may be a corner.
constexpr double kCornerCos = 0.5735764363510461;
// A corner may move this many chain points to its best place.
constexpr int kRefineReach = 3;
constexpr double kTipFlatness = 0.25;

// --- cubic fit
constexpr int kReparamRounds = 6;
// The tangent window at a cut (of a closed chain) or a split grows to this
// fraction of the shorter side, up to this multiple of the base window.
constexpr int kWindowDivisor = 8;
constexpr int kWindowGrowth = 8;
// A run that misses the tolerance by more than this factor is halved rather
// than split at its worst point.
constexpr double kFarMiss = 1.5;

// --- tangent tuning
// The estimate is turned by up to atan(0.35), about 19 degrees, in at most
// this many golden-section probes.
constexpr double kTuneRange = 0.35;
constexpr int kTuneProbes = 14;
// Only sides that miss the tolerance by this factor or less count.
constexpr double kTuneReach = 1.5;

}  // namespace pictrace::curve
