// The outline stage: clean components, traced and smoothed pieces, and one
// outline region per component with its holes, ordered and colour-indexed.
#include <cstring>
#include <memory>
#include <vector>

#include "Pictrace.h"
#include "outline/ComponentList.h"
#include "outline/DiscFit.h"
#include "outline/OutlineImage.h"
#include "outline/OutlineRecords.h"
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

int CPictrace::GetOutline4Cartoon2(double dParam, unsigned char** ppMask) {
  outline::WorkImage img;
  if (!outline::GetWorkImage(*this, img)) return 0;
  while (!m_listOutlineRegions.empty()) {
    delete m_listOutlineRegions.front();
    m_listOutlineRegions.pop_front();
  }

  StageGuard stage;
  unsigned char* mask = ppMask ? *ppMask : nullptr;
  GetCompList(stage.comps, mask);
  int passes = 0;
  while (RemoveSmallRegions(stage.comps, 3.0, mask) == 1) {
    if (++passes > 100) {
      // Give up: the mask goes, the components of this pass stay in use.
      delete[] mask;
      mask = nullptr;
      if (ppMask) *ppMask = nullptr;
      break;
    }
    GetCompList(stage.comps, mask);
  }

  GetOutlineList(stage.pieces, stage.comps, dParam);
  std::vector<COutlineVector*> pieces(stage.pieces.begin(), stage.pieces.end());

  std::vector<sPoint> disc = outline::BuildDiscTable(m_dSatinWidth);
  std::vector<unsigned char> scratch(static_cast<size_t>(img.width) * img.height, 0);
  outline::AssemblyContext ctx;
  ctx.width = img.width;
  ctx.height = img.height;
  ctx.satinWidth = m_dSatinWidth;
  ctx.disc = &disc;
  ctx.scratch = scratch.data();
  outline::AssembleRegions(stage.comps, pieces, ctx, m_listOutlineRegions);

  SortRegionSeq(m_listOutlineRegions);
  SetOutlineColorIndex(m_listOutlineRegions);
  return 1;
}
