// The outline stage: clean components, traced and smoothed pieces, and one
// outline region per component with its holes, ordered and colour-indexed.
#include <cstring>
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "outline/ComponentList.h"
#include "outline/DiscFit.h"
#include "outline/OutlineStage.h"
#include "outline/RegionAssembly.h"

namespace {

// Deletes what the stage still holds when it leaves, also on an exception.
struct StageGuard {
  std::list<CConComponent*> comps;
  std::list<COutlineVector*> pieces;
  ~StageGuard() {
    outline::ClearComponents(comps);
    for (COutlineVector* p : pieces) delete p;
  }
};

}  // namespace

namespace outline {

OutlineInput InputOf(const CPictrace& e) {
  OutlineInput in;
  const BITMAPINFOHEADER& h = e.m_bmiHeader;
  if (e.m_pDIB && e.m_pWorkBits) in.image = pictrace::ViewOf(h, e.m_pWorkBits);
  in.headerStride = pictrace::HeaderStride(h);
  in.hostMask = e.m_pMask;
  in.outputRect = e.m_rcImageReal;
  in.satinWidth = e.m_dSatinWidth;
  in.colors = &e.m_arrColorList;
  return in;
}

bool Usable(const OutlineInput& in) {
  return !in.image.Empty() && in.image.width <= kMaxSide && in.image.height <= kMaxSide;
}

pictrace::RegionList TraceRegions(const OutlineInput& in, double dParam, unsigned char** ppMask) {
  pictrace::RegionList regions;
  if (!Usable(in)) return regions;

  StageGuard stage;
  unsigned char* mask = ppMask ? *ppMask : nullptr;
  ComponentList(in, stage.comps, mask);
  int passes = 0;
  while (RemoveSmallComponents(in, stage.comps, 3.0, mask) == 1) {
    if (++passes > 100) {
      // Give up: the mask goes, the components of this pass stay in use.
      delete[] mask;
      mask = nullptr;
      if (ppMask) *ppMask = nullptr;
      break;
    }
    ComponentList(in, stage.comps, mask);
  }

  TracePieces(in, stage.pieces, stage.comps, dParam);
  std::vector<COutlineVector*> pieces(stage.pieces.begin(), stage.pieces.end());

  std::vector<sPoint> disc = BuildDiscTable(in.satinWidth);
  std::vector<unsigned char> scratch(static_cast<size_t>(in.image.width) * in.image.height, 0);
  AssemblyContext ctx;
  ctx.width = in.image.width;
  ctx.height = in.image.height;
  ctx.satinWidth = in.satinWidth;
  ctx.disc = &disc;
  ctx.scratch = scratch.data();
  AssembleRegions(stage.comps, pieces, ctx, regions.Items());

  SortRegions(regions.Items());
  if (in.colors) TieToColors(regions.Items(), *in.colors);
  return regions;
}

}  // namespace outline

int CPictrace::GetOutline4Cartoon2(double dParam, unsigned char** ppMask) {
  const outline::OutlineInput in = outline::InputOf(*this);
  if (!outline::Usable(in)) return 0;
  pictrace::RegionList().Swap(m_listOutlineRegions);  // the old regions go before the new ones are built
  pictrace::RegionList regions = outline::TraceRegions(in, dParam, ppMask);
  regions.Swap(m_listOutlineRegions);
  return 1;
}
