// The host's exclusion mask as the thinning code reads it.
#pragma once

#include "Pictrace.h"

namespace pictrace {
namespace thinline {

// m_pMask holds one int per pixel of the engine's picture. It is read only
// when the work picture has that size, so that a picture of another size
// can never index past the host's buffer; otherwise nothing is excluded.
inline const int* HostMaskFor(const CPictrace& engine, int width, int height) {
  if (!engine.m_pMask) return nullptr;
  if (engine.m_bmiHeader.biWidth != width || engine.m_bmiHeader.biHeight != height) return nullptr;
  return engine.m_pMask;
}

}  // namespace thinline
}  // namespace pictrace
