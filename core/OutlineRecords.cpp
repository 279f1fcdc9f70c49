#include "core/OutlineRecords.h"

#include <cstring>

#include "PTResults.h"

namespace {

sPoint* CopyPoints(const sPoint* pSrc, int n) {
  if (!pSrc || n <= 0) return nullptr;
  sPoint* p = new sPoint[n];
  std::memcpy(p, pSrc, sizeof(sPoint) * static_cast<size_t>(n));
  return p;
}

CPTPolygon* CopyPolygon(const CPTPolygon* pSrc) {
  if (!pSrc) return nullptr;
  CPTPolygon* p = new CPTPolygon;
  p->m_nLines = pSrc->m_nLines;
  if (pSrc->m_pLines && pSrc->m_nLines > 0) {
    p->m_pLines = new CPTLine[pSrc->m_nLines];
    for (int i = 0; i < pSrc->m_nLines; i++) p->m_pLines[i] = pSrc->m_pLines[i];
  }
  return p;
}

}  // namespace

CConComponent::CConComponent()
    : m_nIndex(-1), m_pPoints(nullptr), m_nPoints(0), m_crColor(0), m_rcBound(0, 0, 0, 0) {}

CConComponent::~CConComponent() { delete[] m_pPoints; }

COutlineVector::COutlineVector()
    : m_nRegion(-1),
      m_nNeighbor(-1),
      m_nPoints(0),
      m_ptStart{0, 0},
      m_ptEnd{0, 0},
      m_pPoints(nullptr),
      m_pRawPoints(nullptr),
      m_nRawPoints(0),
      m_nLineID(0),
      m_crColor(0),
      m_rcBound(0, 0, 0, 0),
      m_nReserved(0) {}

COutlineVector::~COutlineVector() {
  delete[] m_pPoints;
  delete[] m_pRawPoints;
}

CHole::CHole()
    : m_pPoints(nullptr), m_pRawPoints(nullptr), m_nRawPoints(0), m_nPoints(0), m_pPolygon(nullptr) {}

CHole::~CHole() {
  delete[] m_pPoints;
  delete[] m_pRawPoints;
  delete m_pPolygon;
}

COutlineRegion::COutlineRegion()
    : m_bNarrow(0),
      m_nColorIndex(-1),
      m_bSkip(0),
      m_bMarked(0),
      m_nArea(0),
      m_pPoints(nullptr),
      m_pRawPoints(nullptr),
      m_nPoints(0),
      m_nRawPoints(0),
      m_rcBound(0, 0, 0, 0),
      m_crColor(0),
      m_nPixels(0),
      m_pComponent(nullptr),
      m_pPolygon(nullptr) {}

COutlineRegion::~COutlineRegion() { Clear(); }

void COutlineRegion::Clear() {
  delete[] m_pPoints;
  m_pPoints = nullptr;
  delete[] m_pRawPoints;
  m_pRawPoints = nullptr;
  m_nPoints = 0;
  m_nRawPoints = 0;
  for (INT_PTR i = 0; i < m_arrHoles.GetSize(); i++) delete m_arrHoles[i];
  m_arrHoles.RemoveAll();
  delete m_pComponent;
  m_pComponent = nullptr;
  delete m_pPolygon;
  m_pPolygon = nullptr;
}

COutlineRegion& COutlineRegion::operator=(const COutlineRegion& src) {
  if (this == &src) return *this;
  Clear();
  m_bNarrow = src.m_bNarrow;
  m_nColorIndex = src.m_nColorIndex;
  m_bSkip = src.m_bSkip;
  m_bMarked = src.m_bMarked;
  m_nArea = src.m_nArea;
  m_pPoints = CopyPoints(src.m_pPoints, src.m_nPoints);
  m_pRawPoints = CopyPoints(src.m_pRawPoints, src.m_nRawPoints);
  m_nPoints = src.m_nPoints;
  m_nRawPoints = src.m_nRawPoints;
  m_rcBound = src.m_rcBound;
  m_crColor = src.m_crColor;
  m_nPixels = src.m_nPixels;
  for (INT_PTR i = 0; i < src.m_arrHoles.GetSize(); i++) {
    const CHole* h = src.m_arrHoles[i];
    CHole* c = new CHole;
    c->m_pPoints = CopyPoints(h->m_pPoints, h->m_nPoints);
    c->m_pRawPoints = CopyPoints(h->m_pRawPoints, h->m_nRawPoints);
    c->m_nPoints = h->m_nPoints;
    c->m_nRawPoints = h->m_nRawPoints;
    c->m_pPolygon = CopyPolygon(h->m_pPolygon);
    m_arrHoles.Add(c);
  }
  if (src.m_pComponent) {
    const CConComponent* s = src.m_pComponent;
    m_pComponent = new CConComponent;
    m_pComponent->m_nIndex = s->m_nIndex;
    m_pComponent->m_pPoints = CopyPoints(s->m_pPoints, s->m_nPoints);
    m_pComponent->m_nPoints = s->m_nPoints;
    m_pComponent->m_crColor = s->m_crColor;
    m_pComponent->m_rcBound = s->m_rcBound;
  }
  m_pPolygon = CopyPolygon(src.m_pPolygon);
  return *this;
}
