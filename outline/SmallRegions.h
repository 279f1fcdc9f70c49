// The pixel-count limit below which a component is merged away.
#pragma once

namespace outline {

// minArea * 100 / s / s + 0.5 truncated, never below 4, where s is the
// coarser of the two physical scales (output units per pixel). A limit that
// is not finite or does not fit in an int (a zero output rectangle gives
// s = 0) falls to the minimum of 4.
int SmallRegionLimit(double minArea, int rectWidth, int rectHeight, int width, int height);

}  // namespace outline
