#include "PTResults.h"

#include <cstring>

CPTPoint::CPTPoint() : x(0.0f), y(0.0f) {}
CPTPoint::~CPTPoint() {}
CPTPoint& CPTPoint::operator=(const CPTPoint& src) {
  x = src.x;
  y = src.y;
  return *this;
}

CPTLine::CPTLine() : m_nType(0) {}
CPTLine::~CPTLine() {}
CPTLine& CPTLine::operator=(const CPTLine& src) {
  m_nType = src.m_nType;
  m_ptStart = src.m_ptStart;
  m_ptCtrl1 = src.m_ptCtrl1;
  m_ptCtrl2 = src.m_ptCtrl2;
  m_ptEnd = src.m_ptEnd;
  return *this;
}

CPTPolygon::CPTPolygon() : m_nLines(0), m_pLines(nullptr) {}
CPTPolygon::~CPTPolygon() {
  if (m_pLines) delete[] m_pLines;
}
CPTPolygon& CPTPolygon::operator=(const CPTPolygon& src) {
  m_nLines = src.m_nLines;
  m_pLines = src.m_pLines;
  return *this;
}

// m_nAttr4 and m_nAttr5 are deliberately left untouched by the constructor.
CPTPolygonLine::CPTPolygonLine() : m_nLines(0), m_pLines(nullptr) {
  std::memset(&m_nAttr1, 0xFF, sizeof(int) * 3);
}
CPTPolygonLine::~CPTPolygonLine() {
  if (m_pLines) delete[] m_pLines;
}
CPTPolygonLine& CPTPolygonLine::operator=(const CPTPolygonLine& src) {
  m_nLines = src.m_nLines;
  m_pLines = src.m_pLines;
  m_nAttr1 = src.m_nAttr1;
  m_nAttr2 = src.m_nAttr2;
  m_nAttr3 = src.m_nAttr3;
  m_nAttr4 = src.m_nAttr4;
  m_nAttr5 = src.m_nAttr5;
  return *this;
}

CPTRegion::CPTRegion() : m_nPolygons(0), m_pPolygons(nullptr), m_nRegionFlag(0), m_nColorIndex(0) {}
CPTRegion::~CPTRegion() {
  if (m_pPolygons) delete[] m_pPolygons;
}
CPTRegion& CPTRegion::operator=(const CPTRegion& src) {
  m_nPolygons = src.m_nPolygons;
  m_pPolygons = src.m_pPolygons;
  m_nRegionFlag = src.m_nRegionFlag;
  m_nColorIndex = src.m_nColorIndex;
  return *this;
}

CPTRegions::CPTRegions() : m_nRegions(0), m_pRegions(nullptr) {}
CPTRegions::~CPTRegions() {
  if (m_pRegions) delete[] m_pRegions;
}
CPTRegions& CPTRegions::operator=(const CPTRegions& src) {
  m_nRegions = src.m_nRegions;
  m_pRegions = src.m_pRegions;
  return *this;
}

CPTThinLine::CPTThinLine()
    : m_nPolygonLines(0), m_pPolygonLines(nullptr), m_nThinLineFlag(0), m_nColorIndex(0) {}
CPTThinLine::~CPTThinLine() {
  if (m_pPolygonLines) delete[] m_pPolygonLines;
}
CPTThinLine& CPTThinLine::operator=(const CPTThinLine& src) {
  m_nPolygonLines = src.m_nPolygonLines;
  m_pPolygonLines = src.m_pPolygonLines;
  m_nThinLineFlag = src.m_nThinLineFlag;
  m_nColorIndex = src.m_nColorIndex;
  return *this;
}

CPTThinLines::CPTThinLines() : m_nThinLines(0), m_pThinLines(nullptr) {}
CPTThinLines::~CPTThinLines() {
  if (m_pThinLines) delete[] m_pThinLines;
}
CPTThinLines& CPTThinLines::operator=(const CPTThinLines& src) {
  m_nThinLines = src.m_nThinLines;
  m_pThinLines = src.m_pThinLines;
  return *this;
}
