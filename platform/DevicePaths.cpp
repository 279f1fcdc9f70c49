// Paths and immediate lines and polygons: the device collects figures as
// PathOp lists in device coordinates and hands them to the rendering hooks.
#include "AfxGdi.h"

namespace {

// The type of a PolyDraw point without the close flag; 0 when unknown.
int BaseType(BYTE type) {
  int base = type & ~PT_CLOSEFIGURE;
  return (base == PT_MOVETO || base == PT_LINETO || base == PT_BEZIERTO) ? base : 0;
}

// Checks a PolyDraw list as GDI does before drawing anything: known types,
// Bezier points in complete triples.
bool ValidPolyDraw(const POINT* lpPoints, const BYTE* lpTypes, int nCount) {
  if (nCount < 0 || (nCount > 0 && (lpPoints == nullptr || lpTypes == nullptr))) return false;
  for (int i = 0; i < nCount;) {
    int base = BaseType(lpTypes[i]);
    if (base == 0) return false;
    if (base != PT_BEZIERTO) {
      i++;
      continue;
    }
    if (i + 2 >= nCount) return false;
    if (BaseType(lpTypes[i + 1]) != PT_BEZIERTO || BaseType(lpTypes[i + 2]) != PT_BEZIERTO)
      return false;
    i += 3;
  }
  return true;
}

bool HasOpenFigure(const std::vector<CDC::PathOp>& ops) {
  return !ops.empty() && ops.back().type != PT_CLOSEFIGURE;
}

// Appends a close of the figure in progress (back to its MoveTo point).
void CloseFigure(std::vector<CDC::PathOp>& ops) {
  if (!HasOpenFigure(ops)) return;
  for (std::size_t i = ops.size(); i-- > 0;) {
    if (ops[i].type == PT_MOVETO) {
      ops.push_back({PT_CLOSEFIGURE, ops[i].x, ops[i].y});
      return;
    }
  }
}

// The figure through nCount points: a MoveTo to the first, a LineTo to each
// of the others.
std::vector<CDC::PathOp> FigureThrough(const POINT* lpPoints, int nCount) {
  std::vector<CDC::PathOp> figure;
  figure.push_back({PT_MOVETO, static_cast<double>(lpPoints[0].x),
                    static_cast<double>(lpPoints[0].y)});
  for (int i = 1; i < nCount; i++)
    figure.push_back({PT_LINETO, static_cast<double>(lpPoints[i].x),
                      static_cast<double>(lpPoints[i].y)});
  return figure;
}

}  // namespace

BOOL CDC::BeginPath() {
  m_path.clear();
  m_bInPath = true;
  m_bPathDone = false;
  return TRUE;
}

BOOL CDC::EndPath() {
  if (!m_bInPath) return FALSE;
  m_bInPath = false;
  m_bPathDone = true;
  return TRUE;
}

BOOL CDC::AbortPath() {
  m_path.clear();
  m_bInPath = false;
  m_bPathDone = false;
  return TRUE;
}

// Outside a path bracket the points are drawn at once with the current pen,
// starting from the current position; inside they extend the path.
BOOL CDC::PolyDraw(const POINT* lpPoints, const BYTE* lpTypes, int nCount) {
  if (!ValidPolyDraw(lpPoints, lpTypes, nCount)) return FALSE;
  std::vector<PathOp> immediate;
  std::vector<PathOp>& ops = m_bInPath ? m_path : immediate;
  for (int i = 0; i < nCount; i++) {
    int base = BaseType(lpTypes[i]);
    double x = lpPoints[i].x;
    double y = lpPoints[i].y;
    if (base == PT_MOVETO) {
      ops.push_back({PT_MOVETO, x, y});
    } else {
      if (!HasOpenFigure(ops))
        ops.push_back({PT_MOVETO, static_cast<double>(m_ptCurrent.x),
                       static_cast<double>(m_ptCurrent.y)});
      ops.push_back({static_cast<BYTE>(base), x, y});
      // A close on any point of a Bezier triple takes effect after the triple.
      bool closeNow = (lpTypes[i] & PT_CLOSEFIGURE) != 0;
      if (base == PT_BEZIERTO) {
        for (int k = 1; k <= 2; k++) {
          i++;
          ops.push_back({PT_BEZIERTO, static_cast<double>(lpPoints[i].x),
                         static_cast<double>(lpPoints[i].y)});
          closeNow = closeNow || (lpTypes[i] & PT_CLOSEFIGURE) != 0;
        }
      }
      if (closeNow) CloseFigure(ops);
    }
    m_ptCurrent = lpPoints[i];
  }
  if (m_bInPath || immediate.empty()) return TRUE;
  return RenderStroke(immediate, m_curPen, m_nROP2, m_nBkMode, m_crBkColor);
}

BOOL CDC::MoveTo(int x, int y) {
  if (m_bInPath) m_path.push_back({PT_MOVETO, static_cast<double>(x), static_cast<double>(y)});
  m_ptCurrent = {x, y};
  return TRUE;
}

BOOL CDC::LineTo(int x, int y) {
  POINT pt = {x, y};
  BYTE type = PT_LINETO;
  return PolyDraw(&pt, &type, 1);
}

BOOL CDC::FillPath() {
  if (!m_bPathDone) return FALSE;
  BOOL ok = RenderFill(m_path, m_curBrush, m_nPolyFillMode, m_nROP2, m_nBkMode, m_crBkColor);
  m_path.clear();
  m_bPathDone = false;
  return ok;
}

BOOL CDC::StrokePath() {
  if (!m_bPathDone) return FALSE;
  BOOL ok = RenderStroke(m_path, m_curPen, m_nROP2, m_nBkMode, m_crBkColor);
  m_path.clear();
  m_bPathDone = false;
  return ok;
}

BOOL CDC::StrokeAndFillPath() {
  if (!m_bPathDone) return FALSE;
  std::vector<PathOp> closed;
  for (const PathOp& op : m_path) {
    if (op.type == PT_MOVETO) CloseFigure(closed);
    closed.push_back(op);
  }
  CloseFigure(closed);
  BOOL filled = RenderFill(closed, m_curBrush, m_nPolyFillMode, m_nROP2, m_nBkMode, m_crBkColor);
  BOOL stroked = RenderStroke(closed, m_curPen, m_nROP2, m_nBkMode, m_crBkColor);
  m_path.clear();
  m_bPathDone = false;
  return filled && stroked;
}

// A closed figure filled with the brush and outlined with the pen; inside a
// path bracket it becomes a closed figure of the path.
BOOL CDC::Polygon(const POINT* lpPoints, int nCount) {
  if (lpPoints == nullptr || nCount < 2) return FALSE;
  std::vector<PathOp> figure = FigureThrough(lpPoints, nCount);
  CloseFigure(figure);
  if (m_bInPath) {
    m_path.insert(m_path.end(), figure.begin(), figure.end());
    return TRUE;
  }
  BOOL filled = RenderFill(figure, m_curBrush, m_nPolyFillMode, m_nROP2, m_nBkMode, m_crBkColor);
  BOOL stroked = RenderStroke(figure, m_curPen, m_nROP2, m_nBkMode, m_crBkColor);
  return filled && stroked;
}

// Connected lines; neither uses nor moves the current position.
BOOL CDC::Polyline(const POINT* lpPoints, int nCount) {
  if (lpPoints == nullptr || nCount < 2) return FALSE;
  std::vector<PathOp> figure = FigureThrough(lpPoints, nCount);
  if (m_bInPath) {
    m_path.insert(m_path.end(), figure.begin(), figure.end());
    return TRUE;
  }
  return RenderStroke(figure, m_curPen, m_nROP2, m_nBkMode, m_crBkColor);
}
