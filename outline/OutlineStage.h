// The outline stage as functions of explicit inputs: from a flat-coloured
// picture to outline regions with holes, ordered and tied to a colour list.
// The engine's members of this stage fill an OutlineInput from its fields
// and call these; background extraction calls them on a picture of its own.
#pragma once

#include <cstddef>
#include <list>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "core/OutlineRecords.h"
#include "core/OwnedList.h"

namespace outline {

// Points are 16-bit, so the outline stage refuses larger pictures.
constexpr int kMaxSide = 32767;

struct OutlineInput {
  pictrace::ImageView image;    // the flat-coloured picture, painted over by the clean-up
  std::size_t headerStride = 0; // the row size the header gives, read by the clean-up
  int* hostMask = nullptr;      // the host's mask; the clean-up may write it
  CRect outputRect;             // output rectangle, which scales the smallest region
  double satinWidth = 0.0;      // pixels; regions too thin for its disc are narrow
  const CDWordArray* colors = nullptr;  // the colour list regions are tied to
};

// The engine's working picture and fields as the stage's input; the image
// is empty when the engine holds no usable picture.
OutlineInput InputOf(const CPictrace& engine);
bool Usable(const OutlineInput& in);

// Connected components of equal colour, outside both masks, with the
// crossing repair; numbered only when a repair was made. 0 without a picture.
int ComponentList(const OutlineInput& in, std::list<CConComponent*>& comps, unsigned char* pMask);
// One clean-up pass: components of at most the smallest size take a
// neighbour's colour. 1 when some component found one.
int RemoveSmallComponents(const OutlineInput& in, std::list<CConComponent*>& comps, double dMinArea,
                          unsigned char* pMask);
// Traces the boundary pieces of the components and smooths them.
int TracePieces(const OutlineInput& in, std::list<COutlineVector*>& pieces,
                std::list<CConComponent*>& comps, double dParam);
void SmoothPieces(std::list<COutlineVector*>& pieces, double dParam);

// Regions from the largest enclosed area to the smallest (equal areas in the
// exchange sort's order); 0 for an empty list.
int SortRegions(std::list<COutlineRegion*>& regions);
// Ties every region of the list to the nearest colour of the list (the first
// of equal distances) and gives it that colour.
void TieToColors(std::list<COutlineRegion*>& regions, const CDWordArray& colors);

// The whole stage; no regions without a usable picture. The cartoon mask
// (*ppMask, may be null) is freed and nulled when the clean-up gives up
// after 100 passes.
pictrace::RegionList TraceRegions(const OutlineInput& in, double dParam, unsigned char** ppMask);

}  // namespace outline
