// Assembly of outline regions from the traced pieces: the outer outline of
// each component, its holes and its narrow flag.
#pragma once

#include <list>
#include <vector>

#include "core/OutlineRecords.h"

namespace outline {

struct AssemblyContext {
  int width = 0;
  int height = 0;
  double satinWidth = 0.0;
  const std::vector<sPoint>* disc = nullptr;  // offsets of the satin disc
  unsigned char* scratch = nullptr;           // zeroed width x height bytes
};

// Takes the components off the front of comps one by one (the i-th taken is
// region i) and appends a region for each that has a piece of its own to
// regions; a component without one is deleted. Pieces are consumed through
// their m_nNeighbor as the holes are built; they stay owned by the caller.
// The searches over the pieces go through a CPieceIndex built on entry.
void AssembleRegions(std::list<CConComponent*>& comps, const std::vector<COutlineVector*>& pieces,
                     const AssemblyContext& ctx,
                     std::list<COutlineRegion*>& regions);

}  // namespace outline
