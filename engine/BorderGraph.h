// The outlines of a tiling cut into borders: maximal runs of a raw
// pixel-corner chain between junctions. A junction is a point where the
// region across the chain changes, where three or more regions meet (two
// diagonal pairs at one corner included), where the chain reaches or leaves
// the picture's frame, or a corner of the picture. Two neighbours walk each
// shared border in opposite directions; it is held once.
#pragma once

#include <vector>

#include "core/OutlineRecords.h"

namespace pictrace {
namespace engine {

// One outline (outer outline or hole) as its raw chain.
struct OutlineChain {
  const sPoint* points = nullptr;
  int count = 0;
};

// What lies across a border.
enum class Across { kRegion, kFrame, kNothing };

struct Border {
  std::vector<sPoint> run;  // junction to junction; a closed border: its ring once
  bool closed = false;
  Across across = Across::kNothing;
};

// A border as one outline walks it.
struct BorderStep {
  int border = 0;
  bool reversed = false;
};

struct BorderGraph {
  std::vector<Border> borders;
  // Per outline, its borders in chain order, starting at its first junction.
  // Empty for a chain that is not a closed walk of unit steps within the
  // picture, or that runs along another chain in the same direction; such a
  // chain has no partner and is fitted whole.
  std::vector<std::vector<BorderStep>> outlines;
};

// Splits the chains of a width x height picture (corners from (0, 0) to
// (width, height)) into borders.
BorderGraph SplitIntoBorders(const std::vector<OutlineChain>& chains, int width, int height);

}  // namespace engine
}  // namespace pictrace
