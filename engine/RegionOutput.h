// Region output on any list of outline regions: the output polygons kept in
// the records (image pixels, y downward) and the regions handed to the host
// (output units of the output rectangle). The engine's current regions and
// its background regions both go through here.
#pragma once

#include <list>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "core/Progress.h"

namespace pictrace {
namespace engine {

// Rebuilds the polygons of the regions (and their holes) colour by colour,
// nColors colours in list order: straight lines for line type 0, fitted
// curves within dTolerance pixels otherwise, fitted border by border over the
// whole list (a picture of nWidth x nHeight pixels) so that neighbours share
// their curves. The stage advances progress by its weight.
void BuildOutputPolygons(std::list<COutlineRegion*>& regions, int nColors, int nLineType, int nWidth,
                         int nHeight, double dTolerance, Progress& progress);

// Fills pRegions with the regions that are not skipped, colour by colour,
// every point mapped into rcReal (a picture of nWidth x nHeight pixels).
void CollectRegions(const std::list<COutlineRegion*>& regions, int nColors, const CRect& rcReal,
                    int nWidth, int nHeight, CPTRegions* pRegions);

// Every outline of the list (a region's outline, then its holes; regions in
// list order, whatever their colour) as GetRegions hands it out in output
// units: straight lines for line type 0, the tiling curves otherwise.
std::vector<std::vector<CPTLine>> OutlinesInOutputUnits(std::list<COutlineRegion*>& regions, int nLineType,
                                                        const CRect& rcReal, int nWidth, int nHeight,
                                                        double dTolerance);

}  // namespace engine
}  // namespace pictrace
