#include "RasterOps.h"

#include "AfxGdi.h"

namespace ptgdi {

COLORREF ApplyRop2(int nROP2, COLORREF dst, COLORREF pen) {
  const DWORD kMask = 0x00FFFFFFu;
  DWORD d = dst & kMask;
  DWORD p = pen & kMask;
  DWORD r;
  switch (nROP2) {
    case R2_BLACK: r = 0; break;
    case R2_NOTMERGEPEN: r = ~(d | p); break;
    case R2_MASKNOTPEN: r = d & ~p; break;
    case R2_NOTCOPYPEN: r = ~p; break;
    case R2_MASKPENNOT: r = p & ~d; break;
    case R2_NOT: r = ~d; break;
    case R2_XORPEN: r = d ^ p; break;
    case R2_NOTMASKPEN: r = ~(d & p); break;
    case R2_MASKPEN: r = d & p; break;
    case R2_NOTXORPEN: r = ~(d ^ p); break;
    case R2_NOP: r = d; break;
    case R2_MERGENOTPEN: r = d | ~p; break;
    case R2_COPYPEN: r = p; break;
    case R2_MERGEPENNOT: r = p | ~d; break;
    case R2_MERGEPEN: r = d | p; break;
    case R2_WHITE: r = kMask; break;
    default: r = p; break;  // the device never holds another mode
  }
  return r & kMask;
}

}  // namespace ptgdi
