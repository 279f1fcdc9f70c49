// Construction, destruction, reset and the small setters and getters.
#include <cmath>

#include "Pictrace.h"
#include "core/OutlineRecords.h"
#include "segment/RegionGraph.h"
#include "core/ThinLineRecords.h"
#include "engine/OwnCurves.h"
#include "engine/SatinScale.h"

CPictrace::CPictrace()
    : m_pProgressWnd(nullptr),
      m_pThreadColors(nullptr),
      m_nThreadColorCount(0),
      m_nThreadColorMode(0),
      m_bThinning(0),
      m_fProgressTotal(100.0f),
      m_fProgressPos(0.0f),
      m_nProgressShown(0),
      m_nUnused1(0),
      m_rcImageReal(0, 0, 0, 0),
      m_dSegmentParam(0.0),
      m_nOutputLineType(0),
      m_dSatinWidth(6.0),
      m_dUnusedParam1(200.0),
      m_dUnusedParam2(40.0),
      m_dUnusedParam3(1.0),
      m_pBlockRegions(nullptr),
      m_nColorRadius(15),
      m_nSegmentThreshold(10),
      m_pRegionHead(nullptr),
      m_bmiHeader(),
      m_pDIB(nullptr),
      m_pDIBBits(nullptr),
      m_pWorkDIB(nullptr),
      m_pWorkBits(nullptr),
      m_pMask(nullptr),
      m_pOriginalDIB(nullptr),
      m_dCurveTolerance(1.0),
      m_dStopTime(0.0),
      m_bStopped(0),
      m_nSeedRegions(0),
      m_pOwnCurves(nullptr) {
  m_bmiHeader.biWidth = 0;
  m_bmiHeader.biHeight = 0;
  // CIE L* without its linear toe; the product is rounded to float before
  // the subtraction, and the exponent is the literal 0.3333333.
  for (int i = 0; i < 256; i++) {
    float product = static_cast<float>(116.0 * std::pow(i / 255.0, 0.3333333));
    m_fLightness[i] = product - 16;
  }
}

CPictrace::~CPictrace() {
  if (m_pDIB) { delete[] m_pDIB; m_pDIB = nullptr; }
  if (m_pWorkDIB) { delete[] m_pWorkDIB; m_pWorkDIB = nullptr; }
  if (m_pOriginalDIB) { delete[] m_pOriginalDIB; m_pOriginalDIB = nullptr; }
  if (m_pThreadColors) { delete[] m_pThreadColors; m_pThreadColors = nullptr; }
  m_pDIBBits = nullptr;
  m_pWorkBits = nullptr;
  UnloadData();
}

void CPictrace::UnloadData() {
  delete m_pOwnCurves;
  m_pOwnCurves = nullptr;
  DeleteRegionList(m_pRegionHead);
  m_pRegionHead = nullptr;
  DeleteSnapshotList(m_pBlockRegions);
  m_pBlockRegions = nullptr;
  while (!m_listOutlineRegions.empty()) {
    delete m_listOutlineRegions.front();
    m_listOutlineRegions.pop_front();
  }
  while (!m_listStoredRegions.empty()) {
    delete m_listStoredRegions.front();
    m_listStoredRegions.pop_front();
  }
  while (!m_listThinLines.empty()) {
    delete m_listThinLines.front();
    m_listThinLines.pop_front();
  }
  while (!m_listWorkBuffers.empty()) {
    delete[] m_listWorkBuffers.front();
    m_listWorkBuffers.pop_front();
  }
  while (!m_listBackgroundRegions.empty()) {
    delete m_listBackgroundRegions.front();
    m_listBackgroundRegions.pop_front();
  }
}

void CPictrace::ResetPictrace() { UnloadData(); }

void CPictrace::ClearStoredRegions() {
  DeleteSnapshotList(m_pBlockRegions);
  m_pBlockRegions = nullptr;
}

void CPictrace::CopyOutlines() {
  while (!m_listStoredRegions.empty()) {
    delete m_listStoredRegions.front();
    m_listStoredRegions.pop_front();
  }
  // Rotate through the list once so that it ends in its former order.
  size_t n = m_listOutlineRegions.size();
  for (size_t i = 0; i < n; i++) {
    COutlineRegion* pRegion = m_listOutlineRegions.front();
    m_listOutlineRegions.pop_front();
    m_listOutlineRegions.push_back(pRegion);
    COutlineRegion* pCopy = new COutlineRegion;
    *pCopy = *pRegion;
    m_listStoredRegions.push_back(pCopy);
  }
  m_arrStoredColorList.RemoveAll();
  m_arrStoredColorList.Copy(m_arrColorList);
}

int CPictrace::HasOutlines() { return m_listOutlineRegions.empty() ? 0 : 1; }

void CPictrace::SetThinningFlag(int bThinning) { m_bThinning = bThinning; }

int CPictrace::IsThinning() { return m_bThinning; }

void CPictrace::SetSegmentationSensitivity(int nSensitivity) {
  if (nSensitivity >= 0 && nSensitivity <= 100) m_nSegmentThreshold = 100 - nSensitivity;
}

void CPictrace::SetSatinWidth(double dWidth) {
  if (dWidth > 0.0) m_dSatinWidth = dWidth;  // NaN compares false and is ignored
}

void CPictrace::DeriveSatinWidth() {
  const double scale = pictrace::engine::SatinScale(*this);
  if (scale > 0.0) SetSatinWidth(35.0 / scale);
}

void CPictrace::SetImageRealRect(LONG left, LONG top, LONG right, LONG bottom) {
  m_rcImageReal.SetRect(left, top, right, bottom);
  DeriveSatinWidth();
}

void CPictrace::GetImageRealRect(LONG& left, LONG& top, LONG& right, LONG& bottom) {
  left = m_rcImageReal.left;
  top = m_rcImageReal.top;
  right = m_rcImageReal.right;
  bottom = m_rcImageReal.bottom;
}

void CPictrace::GetOutputSize(CSize& size) {
  size.cx = m_rcImageReal.Width();
  size.cy = m_rcImageReal.Height();
}

void CPictrace::SetOutputLineType(int nType) { m_nOutputLineType = nType; }

void CPictrace::SetMASKData(int* pMask) { m_pMask = pMask; }

int* CPictrace::GetMaskBuf() { return m_pMask; }

BITMAPINFOHEADER* CPictrace::GetBmpInfoHeader() { return &m_bmiHeader; }

void CPictrace::SetCurveTolerance(double dTolerance) {
  if (dTolerance > 0.0) m_dCurveTolerance = dTolerance;
}
