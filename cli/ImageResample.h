// Area-average resampling of packed 24-bit DIBs, so that benchmarks and
// tests can run the engine on one photograph at several sizes.
#pragma once

#include <vector>

namespace pictrace {

// Box-filtered resample to width x height: each output pixel is the rounded
// mean of the source pixels its area covers.
std::vector<unsigned char> BoxResample(const std::vector<unsigned char>& src, int width, int height);

// The same to about the given pixel count, keeping the aspect ratio.
std::vector<unsigned char> BoxResampleToPixels(const std::vector<unsigned char>& src, double pixels);

}  // namespace pictrace
