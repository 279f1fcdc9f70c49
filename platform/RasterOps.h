// The sixteen binary raster operations (ROP2 mix modes) of GDI, applied to
// 24-bit colours bit by bit: dst is the pixel on the surface, pen the colour
// of the pen, brush or background being drawn.
#pragma once

#include "WinTypes.h"

namespace ptgdi {

COLORREF ApplyRop2(int nROP2, COLORREF dst, COLORREF pen);

}  // namespace ptgdi
