// The device context's state: selected objects, mix, fill, background and
// stretch modes. The base class has no surface: its rendering hooks accept
// every request and paint nothing.
#include <utility>

#include "AfxGdi.h"

CDC::CDC() : m_hDC(this) {
  m_stockPen.CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
  m_stockBrush.CreateSolidBrush(RGB(255, 255, 255));
  m_curPen.CopyAttributes(m_stockPen);
  m_curBrush.CopyAttributes(m_stockBrush);
  m_pPen = &m_stockPen;
  m_pBrush = &m_stockBrush;
}

CDC::~CDC() = default;

namespace {

// Selecting an object that was never created fails and changes nothing;
// otherwise the context keeps a copy of its attributes and hands back the
// object selected before.
template <class T>
T* Select(T* pObject, T*& pSelected, T& current) {
  if (pObject == nullptr || !pObject->IsCreated()) return nullptr;
  current.CopyAttributes(*pObject);
  return std::exchange(pSelected, pObject);
}

}  // namespace

CPen* CDC::SelectObject(CPen* pPen) { return Select(pPen, m_pPen, m_curPen); }

CBrush* CDC::SelectObject(CBrush* pBrush) { return Select(pBrush, m_pBrush, m_curBrush); }

// The setters return the previous value, or 0 (leaving the state alone) for
// a value GDI does not know.
int CDC::SetROP2(int nDrawMode) {
  if (nDrawMode < R2_BLACK || nDrawMode > R2_WHITE) return 0;
  return std::exchange(m_nROP2, nDrawMode);
}

int CDC::SetPolyFillMode(int nPolyFillMode) {
  if (nPolyFillMode != ALTERNATE && nPolyFillMode != WINDING) return 0;
  return std::exchange(m_nPolyFillMode, nPolyFillMode);
}

int CDC::SetBkMode(int nBkMode) {
  if (nBkMode != TRANSPARENT && nBkMode != OPAQUE) return 0;
  return std::exchange(m_nBkMode, nBkMode);
}

COLORREF CDC::SetBkColor(COLORREF crColor) {
  return std::exchange(m_crBkColor, crColor & 0x00FFFFFFu);
}

int CDC::SetStretchBltMode(int nStretchMode) {
  if (nStretchMode < BLACKONWHITE || nStretchMode > HALFTONE) return 0;
  return std::exchange(m_nStretchMode, nStretchMode);
}

COLORREF CDC::GetPixel(int, int) const { return CLR_INVALID; }

COLORREF CDC::SetPixel(int, int, COLORREF) { return CLR_INVALID; }

BOOL CDC::RenderFill(const std::vector<PathOp>&, const CBrush&, int, int, int, COLORREF) {
  return TRUE;
}

BOOL CDC::RenderStroke(const std::vector<PathOp>&, const CPen&, int, int, COLORREF) {
  return TRUE;
}

int CDC::RenderDIB(int, int, int, int, int, int, int, int, const void*, const BITMAPINFO*,
                   bool) {
  return 1;
}

int SetStretchBltMode(HDC hdc, int mode) {
  return hdc == nullptr ? 0 : hdc->SetStretchBltMode(mode);
}
