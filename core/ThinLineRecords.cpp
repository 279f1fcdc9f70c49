#include "core/ThinLineRecords.h"

#include "PTResults.h"
#include "core/OutlineRecords.h"

COutlineThinline::COutlineThinline()
    : m_nLineID(0),
      m_nColorIndex(-1),
      m_bSelected(0),
      m_pSmoothPoints(nullptr),
      m_nSmoothPoints(0),
      m_rcBound(0, 0, 0, 0),
      m_crColor(0xFFFFFF),
      m_nRawPoints(0),
      m_pVector(nullptr),
      m_nNextSibling(-1),
      m_nParent(-1),
      m_nFirstChild(-1),
      m_bLaterBranch(0),
      m_pPolygonLine(nullptr) {}

COutlineThinline::~COutlineThinline() {
  delete[] m_pSmoothPoints;
  delete m_pVector;
  delete m_pPolygonLine;
}
