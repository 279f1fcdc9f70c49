// The GDI subset the engine draws and hit-tests with: constants, pens,
// brushes, polygon regions, the device context interface and the DIB
// painting functions on an HDC.
//
// CDC keeps the drawing state (selected pen and brush, mix mode, fill mode,
// background, the path being built) and forwards rendering to virtual
// members; the base class has no surface and renders nothing. CRasterDC
// (RasterDC.h) is the device with pixels.
#pragma once

#include <vector>

#include "AfxGeometry.h"
#include "WinTypes.h"

// Pen styles.
#define PS_SOLID 0
#define PS_DASH 1
#define PS_DOT 2
#define PS_DASHDOT 3
#define PS_DASHDOTDOT 4
#define PS_NULL 5
#define PS_INSIDEFRAME 6
#define PS_USERSTYLE 7
#define PS_ALTERNATE 8
#define PS_STYLE_MASK 0x0000000F
#define PS_ENDCAP_ROUND 0x00000000
#define PS_ENDCAP_SQUARE 0x00000100
#define PS_ENDCAP_FLAT 0x00000200
#define PS_ENDCAP_MASK 0x00000F00
#define PS_JOIN_ROUND 0x00000000
#define PS_JOIN_BEVEL 0x00001000
#define PS_JOIN_MITER 0x00002000
#define PS_JOIN_MASK 0x0000F000
#define PS_COSMETIC 0x00000000
#define PS_GEOMETRIC 0x00010000
#define PS_TYPE_MASK 0x000F0000

// Brush styles and hatch patterns.
#define BS_SOLID 0
#define BS_NULL 1
#define BS_HOLLOW BS_NULL
#define BS_HATCHED 2
#define HS_HORIZONTAL 0
#define HS_VERTICAL 1
#define HS_FDIAGONAL 2
#define HS_BDIAGONAL 3
#define HS_CROSS 4
#define HS_DIAGCROSS 5

// Binary raster operations (mix modes).
#define R2_BLACK 1
#define R2_NOTMERGEPEN 2
#define R2_MASKNOTPEN 3
#define R2_NOTCOPYPEN 4
#define R2_MASKPENNOT 5
#define R2_NOT 6
#define R2_XORPEN 7
#define R2_NOTMASKPEN 8
#define R2_MASKPEN 9
#define R2_NOTXORPEN 10
#define R2_NOP 11
#define R2_MERGENOTPEN 12
#define R2_COPYPEN 13
#define R2_MERGEPENNOT 14
#define R2_MERGEPEN 15
#define R2_WHITE 16

// Polygon fill modes.
#define ALTERNATE 1
#define WINDING 2

// Background modes.
#define TRANSPARENT 1
#define OPAQUE 2

// Stretch modes.
#define BLACKONWHITE 1
#define WHITEONBLACK 2
#define COLORONCOLOR 3
#define HALFTONE 4

// PolyDraw point types.
#define PT_CLOSEFIGURE 0x01
#define PT_LINETO 0x02
#define PT_BEZIERTO 0x04
#define PT_MOVETO 0x06

#define SRCCOPY 0x00CC0020u
#define CLR_INVALID 0xFFFFFFFFu

// Region complexity results.
#define ERROR 0
#define NULLREGION 1
#define SIMPLEREGION 2
#define COMPLEXREGION 3

struct LOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  std::uintptr_t lbHatch;
};

class CDC;
typedef CDC* HDC;

class PICTRACE_API CGdiObject {
 public:
  CGdiObject() = default;
  CGdiObject(const CGdiObject&) = delete;
  CGdiObject& operator=(const CGdiObject&) = delete;
  virtual ~CGdiObject();
  // Releases the object; it can be created again afterwards.
  BOOL DeleteObject();
  bool IsCreated() const { return m_bCreated; }

 protected:
  virtual void Reset() {}
  bool m_bCreated = false;
};

class PICTRACE_API CPen : public CGdiObject {
 public:
  CPen();
  CPen(int nPenStyle, int nWidth, COLORREF crColor);
  CPen(int nPenStyle, int nWidth, const LOGBRUSH* pLogBrush, int nStyleCount = 0,
       const DWORD* lpStyle = nullptr);
  BOOL CreatePen(int nPenStyle, int nWidth, COLORREF crColor);
  BOOL CreatePen(int nPenStyle, int nWidth, const LOGBRUSH* pLogBrush, int nStyleCount = 0,
                 const DWORD* lpStyle = nullptr);

  int m_nStyle = PS_SOLID;  // full style word: type | end cap | join | style
  int m_nWidth = 1;
  COLORREF m_crColor = 0;
  std::vector<DWORD> m_userStyle;  // dash lengths of PS_USERSTYLE

  // Takes over src's attributes (and whether it exists), as a device does
  // with the pen it selects.
  void CopyAttributes(const CPen& src);

 protected:
  void Reset() override;
};

class PICTRACE_API CBrush : public CGdiObject {
 public:
  CBrush();
  explicit CBrush(COLORREF crColor);
  CBrush(int nIndex, COLORREF crColor);
  BOOL CreateSolidBrush(COLORREF crColor);
  BOOL CreateHatchBrush(int nIndex, COLORREF crColor);
  // BS_SOLID, BS_HATCHED or BS_NULL (a hollow brush that paints nothing).
  BOOL CreateBrushIndirect(const LOGBRUSH* lpLogBrush);

  UINT m_nStyle = BS_SOLID;
  int m_nHatch = 0;
  COLORREF m_crColor = RGB(255, 255, 255);

  void CopyAttributes(const CBrush& src);

 protected:
  BOOL Create(UINT nStyle, int nHatch, COLORREF crColor);
  void Reset() override;
};

// A polygon region. A point (x, y) is inside when, on the horizontal line
// through it, the edges spanning y0 <= y < y1 cross at xe with xe <= x an odd
// number of times (ALTERNATE) or with a non-zero signed count (WINDING): left
// and top edges are inside, right and bottom edges outside, as in GDI.
class PICTRACE_API CRgn : public CGdiObject {
 public:
  CRgn();
  BOOL CreatePolygonRgn(const POINT* lpPoints, int nCount, int nPolyFillMode);
  BOOL PtInRegion(int x, int y) const;
  BOOL PtInRegion(POINT point) const { return PtInRegion(point.x, point.y); }

 protected:
  void Reset() override;
  std::vector<POINT> m_points;
  int m_nFillMode = ALTERNATE;
  RECT m_rcBounds = {0, 0, 0, 0};  // half-open box of the vertices, for a quick reject
};

class PICTRACE_API CDC {
 public:
  CDC();
  CDC(const CDC&) = delete;
  CDC& operator=(const CDC&) = delete;
  virtual ~CDC();

  // Selecting a pen or brush returns the one selected before (the device's
  // stock black pen or white brush at first); the device keeps a copy of the
  // object's attributes, so the caller may delete it after selecting another.
  CPen* SelectObject(CPen* pPen);
  CBrush* SelectObject(CBrush* pBrush);
  CPen* GetCurrentPen() const { return m_pPen; }
  CBrush* GetCurrentBrush() const { return m_pBrush; }

  int SetROP2(int nDrawMode);
  int GetROP2() const { return m_nROP2; }
  int SetPolyFillMode(int nPolyFillMode);
  int GetPolyFillMode() const { return m_nPolyFillMode; }
  int SetBkMode(int nBkMode);
  int GetBkMode() const { return m_nBkMode; }
  COLORREF SetBkColor(COLORREF crColor);
  COLORREF GetBkColor() const { return m_crBkColor; }
  int SetStretchBltMode(int nStretchMode);
  int GetStretchBltMode() const { return m_nStretchMode; }

  // Paths: BeginPath discards any open path; figures are collected until
  // EndPath; FillPath and StrokePath render the closed path and discard it.
  BOOL BeginPath();
  BOOL EndPath();
  BOOL AbortPath();
  BOOL PolyDraw(const POINT* lpPoints, const BYTE* lpTypes, int nCount);
  BOOL MoveTo(int x, int y);
  BOOL LineTo(int x, int y);
  BOOL FillPath();
  BOOL StrokePath();
  BOOL StrokeAndFillPath();

  // Immediate polygon drawing with the current pen, brush and modes.
  BOOL Polygon(const POINT* lpPoints, int nCount);
  BOOL Polyline(const POINT* lpPoints, int nCount);

  virtual COLORREF GetPixel(int x, int y) const;
  virtual COLORREF SetPixel(int x, int y, COLORREF crColor);

  int SetDIBitsToDevice(int xDest, int yDest, DWORD w, DWORD h, int xSrc, int ySrc,
                        UINT startScan, UINT cLines, const void* lpvBits,
                        const BITMAPINFO* lpbmi, UINT colorUse);
  int StretchDIBits(int xDest, int yDest, int destWidth, int destHeight, int xSrc, int ySrc,
                    int srcWidth, int srcHeight, const void* lpBits, const BITMAPINFO* lpbmi,
                    UINT iUsage, DWORD rop);

  HDC m_hDC;  // the device's own handle: this object

  // One element of a path: a MoveTo / LineTo / BezierTo point or a close.
  struct PathOp {
    BYTE type;  // PT_MOVETO, PT_LINETO, PT_BEZIERTO or PT_CLOSEFIGURE
    double x;
    double y;
  };

 protected:
  // Rendering hooks of a device with a surface. The path is in device
  // coordinates; the attributes are the ones selected at the call.
  virtual BOOL RenderFill(const std::vector<PathOp>& path, const CBrush& brush, int nFillMode,
                          int nROP2, int nBkMode, COLORREF crBk);
  virtual BOOL RenderStroke(const std::vector<PathOp>& path, const CPen& pen, int nROP2,
                            int nBkMode, COLORREF crBk);
  virtual int RenderDIB(int xDest, int yDest, int destWidth, int destHeight, int xSrc,
                        int ySrc, int srcWidth, int srcHeight, const void* lpBits,
                        const BITMAPINFO* lpbmi, bool bottomUpScanMapping);

  CPen m_stockPen;
  CBrush m_stockBrush;
  CPen m_curPen;  // copy of the selected pen's attributes
  CBrush m_curBrush;
  CPen* m_pPen;
  CBrush* m_pBrush;
  int m_nROP2 = R2_COPYPEN;
  int m_nPolyFillMode = ALTERNATE;
  int m_nBkMode = OPAQUE;
  COLORREF m_crBkColor = RGB(255, 255, 255);
  int m_nStretchMode = BLACKONWHITE;
  bool m_bInPath = false;
  bool m_bPathDone = false;
  std::vector<PathOp> m_path;
  POINT m_ptCurrent = {0, 0};
};

PICTRACE_API int SetStretchBltMode(HDC hdc, int mode);
PICTRACE_API int SetDIBitsToDevice(HDC hdc, int xDest, int yDest, DWORD w, DWORD h, int xSrc,
                                   int ySrc, UINT startScan, UINT cLines, const void* lpvBits,
                                   const BITMAPINFO* lpbmi, UINT colorUse);
PICTRACE_API int StretchDIBits(HDC hdc, int xDest, int yDest, int destWidth, int destHeight,
                               int xSrc, int ySrc, int srcWidth, int srcHeight,
                               const void* lpBits, const BITMAPINFO* lpbmi, UINT iUsage,
                               DWORD rop);
