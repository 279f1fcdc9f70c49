// Pens and brushes: creation with GDI's argument checks, release, and the
// attribute copy a device keeps of the selected object.
#include "AfxGdi.h"

CGdiObject::~CGdiObject() = default;

BOOL CGdiObject::DeleteObject() {
  if (!m_bCreated) return FALSE;
  Reset();
  m_bCreated = false;
  return TRUE;
}

namespace {

bool ValidPenStyle(int nPenStyle) {
  int style = nPenStyle & PS_STYLE_MASK;
  int type = nPenStyle & PS_TYPE_MASK;
  int cap = nPenStyle & PS_ENDCAP_MASK;
  int join = nPenStyle & PS_JOIN_MASK;
  if (style > PS_ALTERNATE) return false;
  if (type != PS_COSMETIC && type != PS_GEOMETRIC) return false;
  if (cap != PS_ENDCAP_ROUND && cap != PS_ENDCAP_SQUARE && cap != PS_ENDCAP_FLAT) return false;
  if (join != PS_JOIN_ROUND && join != PS_JOIN_BEVEL && join != PS_JOIN_MITER) return false;
  return (nPenStyle & ~(PS_STYLE_MASK | PS_TYPE_MASK | PS_ENDCAP_MASK | PS_JOIN_MASK)) == 0;
}

}  // namespace

CPen::CPen() = default;

CPen::CPen(int nPenStyle, int nWidth, COLORREF crColor) { CreatePen(nPenStyle, nWidth, crColor); }

CPen::CPen(int nPenStyle, int nWidth, const LOGBRUSH* pLogBrush, int nStyleCount,
           const DWORD* lpStyle) {
  CreatePen(nPenStyle, nWidth, pLogBrush, nStyleCount, lpStyle);
}

// The simple form: a cosmetic pen, or a round-capped wide pen when nWidth > 1.
// PS_USERSTYLE and PS_ALTERNATE need the extended form.
BOOL CPen::CreatePen(int nPenStyle, int nWidth, COLORREF crColor) {
  if (m_bCreated || nWidth < 0) return FALSE;
  if ((nPenStyle & ~PS_STYLE_MASK) != 0) return FALSE;
  int style = nPenStyle & PS_STYLE_MASK;
  if (style == PS_USERSTYLE || style == PS_ALTERNATE) return FALSE;
  m_nStyle = nPenStyle;
  m_nWidth = nWidth == 0 ? 1 : nWidth;
  m_crColor = crColor & 0x00FFFFFFu;
  m_userStyle.clear();
  m_bCreated = true;
  return TRUE;
}

// The extended form: cosmetic pens are one pixel wide; geometric pens take
// their end cap, join and (for PS_USERSTYLE) dash lengths in device units.
BOOL CPen::CreatePen(int nPenStyle, int nWidth, const LOGBRUSH* pLogBrush, int nStyleCount,
                     const DWORD* lpStyle) {
  if (m_bCreated || pLogBrush == nullptr || !ValidPenStyle(nPenStyle)) return FALSE;
  bool geometric = (nPenStyle & PS_TYPE_MASK) == PS_GEOMETRIC;
  int style = nPenStyle & PS_STYLE_MASK;
  if (geometric ? nWidth < 0 : nWidth != 1) return FALSE;
  if (!geometric && style == PS_INSIDEFRAME) return FALSE;
  if (pLogBrush->lbStyle != BS_SOLID && pLogBrush->lbStyle != BS_HATCHED) return FALSE;
  std::vector<DWORD> dashes;
  if (style == PS_USERSTYLE) {
    if (nStyleCount < 1 || nStyleCount > 16 || lpStyle == nullptr) return FALSE;
    DWORD total = 0;
    for (int i = 0; i < nStyleCount; i++) {
      if (lpStyle[i] > 0xFFFFu) return FALSE;
      total += lpStyle[i];
    }
    if (total == 0) return FALSE;
    dashes.assign(lpStyle, lpStyle + nStyleCount);
  } else if (nStyleCount != 0 || lpStyle != nullptr) {
    return FALSE;
  }
  m_nStyle = nPenStyle;
  m_nWidth = nWidth == 0 ? 1 : nWidth;
  m_crColor = pLogBrush->lbColor & 0x00FFFFFFu;
  m_userStyle.swap(dashes);
  m_bCreated = true;
  return TRUE;
}

void CPen::CopyAttributes(const CPen& src) {
  m_nStyle = src.m_nStyle;
  m_nWidth = src.m_nWidth;
  m_crColor = src.m_crColor;
  m_userStyle = src.m_userStyle;
  m_bCreated = src.m_bCreated;
}

void CPen::Reset() {
  m_nStyle = PS_SOLID;
  m_nWidth = 1;
  m_crColor = 0;
  m_userStyle.clear();
}

CBrush::CBrush() = default;

CBrush::CBrush(COLORREF crColor) { CreateSolidBrush(crColor); }

CBrush::CBrush(int nIndex, COLORREF crColor) { CreateHatchBrush(nIndex, crColor); }

BOOL CBrush::CreateSolidBrush(COLORREF crColor) { return Create(BS_SOLID, 0, crColor & 0x00FFFFFFu); }

BOOL CBrush::CreateHatchBrush(int nIndex, COLORREF crColor) {
  if (nIndex < HS_HORIZONTAL || nIndex > HS_DIAGCROSS) return FALSE;
  return Create(BS_HATCHED, nIndex, crColor & 0x00FFFFFFu);
}

// A brush is created once; later calls leave it as it is.
BOOL CBrush::Create(UINT nStyle, int nHatch, COLORREF crColor) {
  if (m_bCreated) return FALSE;
  m_nStyle = nStyle;
  m_nHatch = nHatch;
  m_crColor = crColor;
  m_bCreated = true;
  return TRUE;
}

BOOL CBrush::CreateBrushIndirect(const LOGBRUSH* lpLogBrush) {
  if (lpLogBrush == nullptr) return FALSE;
  switch (lpLogBrush->lbStyle) {
    case BS_SOLID: return CreateSolidBrush(lpLogBrush->lbColor);
    case BS_HATCHED: return CreateHatchBrush(static_cast<int>(lpLogBrush->lbHatch), lpLogBrush->lbColor);
    case BS_NULL: return Create(BS_NULL, 0, 0);
    default: return FALSE;
  }
}

void CBrush::CopyAttributes(const CBrush& src) {
  m_nStyle = src.m_nStyle;
  m_nHatch = src.m_nHatch;
  m_crColor = src.m_crColor;
  m_bCreated = src.m_bCreated;
}

void CBrush::Reset() {
  m_nStyle = BS_SOLID;
  m_nHatch = 0;
  m_crColor = RGB(255, 255, 255);
}
