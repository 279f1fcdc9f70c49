// The result classes. Their assignment is shallow by design (memberwise:
// counts and array pointers are copied, never the arrays); PTResults.h says
// how a host moves a result without freeing it twice.
#include "PTResults.h"

#include <cstring>

CPTPoint::CPTPoint() : x(0.0f), y(0.0f) {}
CPTPoint::~CPTPoint() {}
CPTPoint& CPTPoint::operator=(const CPTPoint&) = default;

CPTLine::CPTLine() : m_nType(0) {}
CPTLine::~CPTLine() {}
CPTLine& CPTLine::operator=(const CPTLine&) = default;

CPTPolygon::CPTPolygon() : m_nLines(0), m_pLines(nullptr) {}
CPTPolygon::~CPTPolygon() { delete[] m_pLines; }
CPTPolygon& CPTPolygon::operator=(const CPTPolygon&) = default;

// m_nAttr4 and m_nAttr5 are deliberately left untouched by the constructor.
CPTPolygonLine::CPTPolygonLine() : m_nLines(0), m_pLines(nullptr) {
  std::memset(&m_nAttr1, 0xFF, sizeof(int) * 3);
}
CPTPolygonLine::~CPTPolygonLine() { delete[] m_pLines; }
CPTPolygonLine& CPTPolygonLine::operator=(const CPTPolygonLine&) = default;

CPTRegion::CPTRegion() : m_nPolygons(0), m_pPolygons(nullptr), m_nRegionFlag(0), m_nColorIndex(0) {}
CPTRegion::~CPTRegion() { delete[] m_pPolygons; }
CPTRegion& CPTRegion::operator=(const CPTRegion&) = default;

CPTRegions::CPTRegions() : m_nRegions(0), m_pRegions(nullptr) {}
CPTRegions::~CPTRegions() { delete[] m_pRegions; }
CPTRegions& CPTRegions::operator=(const CPTRegions&) = default;

CPTThinLine::CPTThinLine()
    : m_nPolygonLines(0), m_pPolygonLines(nullptr), m_nThinLineFlag(0), m_nColorIndex(0) {}
CPTThinLine::~CPTThinLine() { delete[] m_pPolygonLines; }
CPTThinLine& CPTThinLine::operator=(const CPTThinLine&) = default;

CPTThinLines::CPTThinLines() : m_nThinLines(0), m_pThinLines(nullptr) {}
CPTThinLines::~CPTThinLines() { delete[] m_pThinLines; }
CPTThinLines& CPTThinLines::operator=(const CPTThinLines&) = default;
