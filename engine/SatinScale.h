// The scale the engine keeps its satin width in: output units per pixel
// along the side that scales most.
#pragma once

#include "Pictrace.h"

namespace pictrace {
namespace engine {

// 0 when the picture or the output rectangle has no size.
inline double SatinScale(const CPictrace& e) {
  if (!(e.m_bmiHeader.biWidth > 0 && e.m_rcImageReal.Width() >= 1 && e.m_bmiHeader.biHeight >= 1 &&
        e.m_rcImageReal.Height() > 0))
    return 0.0;
  double sx = e.m_rcImageReal.Width() * 1.0 / e.m_bmiHeader.biWidth;
  double sy = e.m_rcImageReal.Height() * 1.0 / e.m_bmiHeader.biHeight;
  return (sy <= sx) ? sx : sy;
}

}  // namespace engine
}  // namespace pictrace
