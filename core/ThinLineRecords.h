// One traced centre line of line art, with its place in the line tree.
#pragma once

#include "core/NoCopy.h"
#include "AfxWin.h"

struct sPoint;
class COutlineVector;
class CPTPolygonLine;

class COutlineThinline : private pictrace::NoCopy {
 public:
  COutlineThinline();
  ~COutlineThinline();

  int m_nLineID;           // running number over all colours
  int m_nColorIndex;       // index into m_arrLineColors; -1 at construction
  int m_bSelected;         // selected by the user
  sPoint* m_pSmoothPoints;  // smoothed chain; owned
  int m_nSmoothPoints;
  CRect m_rcBound;         // min x, min y, max x, max y of the raw chain
  COLORREF m_crColor;      // 0xFFFFFF at construction
  int m_nRawPoints;
  COutlineVector* m_pVector;  // the raw chain; owned
  int m_nNextSibling;      // next branch leaving the same junction, or -1
  int m_nParent;           // chain this one hangs from, or -1
  int m_nFirstChild;       // first branch leaving this chain's end junction, or -1
  int m_bLaterBranch;      // 0 first branch at a junction, 1 otherwise
  CPTPolygonLine* m_pPolygonLine;  // output form; owned, null at construction
};
