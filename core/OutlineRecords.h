// Records of the outline stage: pixel points, connected components, traced
// boundary pieces, and outline regions with their holes.
#pragma once

#include "core/NoCopy.h"
#include "AfxWin.h"

class CPTPolygon;

// One pixel position or pixel-corner vertex.
struct sPoint {
  short x;
  short y;
};

inline bool operator==(const sPoint& a, const sPoint& b) { return a.x == b.x && a.y == b.y; }
inline bool operator!=(const sPoint& a, const sPoint& b) { return !(a == b); }

// One 4-connected component of exactly equal colour.
class CConComponent : private pictrace::NoCopy {
 public:
  CConComponent();
  ~CConComponent();

  int m_nIndex;        // position in the list after numbering; -1 before
  sPoint* m_pPoints;   // pixels in flood-fill order, seed first; owned
  int m_nPoints;
  COLORREF m_crColor;  // red in bits 0-7, green 8-15, blue 16-23
  CRect m_rcBound;     // inclusive pixel bounds
};

// One traced boundary piece on the pixel-corner grid. The fields after
// m_nRawPoints are used when the piece holds the raw chain of a thin line.
class COutlineVector : private pictrace::NoCopy {
 public:
  COutlineVector();
  ~COutlineVector();

  int m_nRegion;    // the traced component; -1 after construction
  int m_nNeighbor;  // the component across the first step; -1 on the frame or once consumed
  int m_nPoints;
  sPoint m_ptStart;
  sPoint m_ptEnd;
  sPoint* m_pPoints;     // vertex chain, later reduced; owned
  sPoint* m_pRawPoints;  // untouched copy; owned
  int m_nRawPoints;
  int m_nLineID;       // thin line id
  COLORREF m_crColor;  // thin line colour
  CRect m_rcBound;     // inclusive bounds of the raw chain
  int m_nReserved;     // always 0
};

// One hole of an outline region.
class CHole : private pictrace::NoCopy {
 public:
  CHole();
  ~CHole();

  sPoint* m_pPoints;     // reduced chain; owned
  sPoint* m_pRawPoints;  // unreduced chain; owned
  int m_nRawPoints;
  int m_nPoints;
  CPTPolygon* m_pPolygon;  // output polygon; owned, null until built
};

// One region of the result: an outer outline, its holes and its flags.
// Constructed with colour index -1 and everything else zero or null.
// Assignment is a deep copy (chains, holes, component and output polygons
// are duplicated), so that a stored copy shares nothing with the original.
class COutlineRegion : private pictrace::NoCopy {
 public:
  COutlineRegion();
  ~COutlineRegion();
  COutlineRegion& operator=(const COutlineRegion& src);

  BYTE m_bNarrow;      // too thin for the satin disc and elongated
  int m_nColorIndex;   // index into the colour list; -1 when none
  int m_bSkip;         // left out of the region output; drawn lightened
  int m_bMarked;       // marked on the stored copy; also the only-thinning flag
  int m_nArea;         // twice the outer area
  sPoint* m_pPoints;   // outer outline, reduced chain; owned
  sPoint* m_pRawPoints;  // outer outline, unreduced chain; owned
  int m_nPoints;
  int m_nRawPoints;
  CRect m_rcBound;     // inclusive pixel bounds of the component
  COLORREF m_crColor;
  int m_nPixels;       // pixel count of the component
  CArray<CHole*, CHole*&> m_arrHoles;  // owned
  CConComponent* m_pComponent;         // owned
  CPTPolygon* m_pPolygon;              // output polygon of the outer outline; owned

  // Frees chains, holes, component and polygon and returns to the
  // constructed state.
  void Clear();
};
