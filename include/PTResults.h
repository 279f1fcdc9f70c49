// Result objects handed to the host: flat records with public fields whose
// order and widths are part of the library's interface. Each class has a
// constructor that clears it, a destructor that frees the arrays it owns and
// a shallow operator= (count and pointer are copied, not the array). To move
// a result, copy it and then clear the source's count and pointer.
#pragma once

#include "WinTypes.h"

class PICTRACE_API CPTPoint {
 public:
  CPTPoint();
  ~CPTPoint();
  CPTPoint& operator=(const CPTPoint& src);

  float x;
  float y;
};

// One outline segment: m_nType 0 is straight (control points stay at (0,0)),
// 1 a cubic Bezier.
class PICTRACE_API CPTLine {
 public:
  CPTLine();
  ~CPTLine();
  CPTLine& operator=(const CPTLine& src);

  int m_nType;
  CPTPoint m_ptStart;
  CPTPoint m_ptCtrl1;
  CPTPoint m_ptCtrl2;
  CPTPoint m_ptEnd;
};

// One closed outline.
class PICTRACE_API CPTPolygon {
 public:
  CPTPolygon();
  ~CPTPolygon();
  CPTPolygon& operator=(const CPTPolygon& src);

  int m_nLines;
  CPTLine* m_pLines;
};

// One thin line with its place in the line tree. The constructor sets
// m_nAttr1..m_nAttr3 to -1 and leaves m_nAttr4 and m_nAttr5 as they were.
class PICTRACE_API CPTPolygonLine {
 public:
  CPTPolygonLine();
  ~CPTPolygonLine();
  CPTPolygonLine& operator=(const CPTPolygonLine& src);

  int m_nLines;
  CPTLine* m_pLines;
  int m_nAttr1;  // next branch leaving the same junction, or -1
  int m_nAttr2;  // parent line, or -1
  int m_nAttr3;  // first branch leaving this line's end junction, or -1
  int m_nAttr4;  // 0 first branch at a junction, 1 later branch
  int m_nAttr5;  // selected flag
};

// One filled region: polygon 0 is the outer outline, the others its holes.
class PICTRACE_API CPTRegion {
 public:
  CPTRegion();
  ~CPTRegion();
  CPTRegion& operator=(const CPTRegion& src);

  int m_nPolygons;
  CPTPolygon* m_pPolygons;
  int m_nRegionFlag;   // 1 for a narrow region of some size
  int m_nColorIndex;   // one-based index into the colour list
};

class PICTRACE_API CPTRegions {
 public:
  CPTRegions();
  ~CPTRegions();
  CPTRegions& operator=(const CPTRegions& src);

  int m_nRegions;
  CPTRegion* m_pRegions;
};

class PICTRACE_API CPTThinLine {
 public:
  CPTThinLine();
  ~CPTThinLine();
  CPTThinLine& operator=(const CPTThinLine& src);

  int m_nPolygonLines;
  CPTPolygonLine* m_pPolygonLines;
  int m_nThinLineFlag;  // always 0
  int m_nColorIndex;    // one-based index into the line colour list
};

class PICTRACE_API CPTThinLines {
 public:
  CPTThinLines();
  ~CPTThinLines();
  CPTThinLines& operator=(const CPTThinLines& src);

  int m_nThinLines;
  CPTThinLine* m_pThinLines;
};
