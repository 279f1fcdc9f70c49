// MFC value classes for points, sizes and rectangles.
#pragma once

#include "WinTypes.h"

class CPoint : public POINT {
 public:
  CPoint() { x = 0; y = 0; }
  CPoint(int initX, int initY) { x = initX; y = initY; }
  CPoint(POINT pt) { x = pt.x; y = pt.y; }
  bool operator==(const POINT& o) const { return x == o.x && y == o.y; }
  bool operator!=(const POINT& o) const { return !(*this == o); }
  void Offset(int dx, int dy) { x += dx; y += dy; }
};

class CSize : public SIZE {
 public:
  CSize() { cx = 0; cy = 0; }
  CSize(int initCX, int initCY) { cx = initCX; cy = initCY; }
  bool operator==(const SIZE& o) const { return cx == o.cx && cy == o.cy; }
  bool operator!=(const SIZE& o) const { return !(*this == o); }
};

// Rectangles are half-open as in GDI: Width() and Height() are right - left
// and bottom - top; IsRectEmpty() is true when either is not positive.
class CRect : public RECT {
 public:
  CRect() { left = top = right = bottom = 0; }
  CRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
  CRect(const RECT& rc) { left = rc.left; top = rc.top; right = rc.right; bottom = rc.bottom; }
  CRect(POINT topLeft, SIZE size) {
    left = topLeft.x; top = topLeft.y; right = left + size.cx; bottom = top + size.cy;
  }

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  CSize Size() const { return CSize(Width(), Height()); }
  CPoint TopLeft() const { return CPoint(left, top); }
  CPoint BottomRight() const { return CPoint(right, bottom); }
  CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
  bool IsRectEmpty() const { return left >= right || top >= bottom; }
  bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
  bool PtInRect(POINT pt) const { return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom; }
  void SetRect(int l, int t, int r, int b) { left = l; top = t; right = r; bottom = b; }
  void SetRectEmpty() { left = top = right = bottom = 0; }
  void OffsetRect(int dx, int dy) { left += dx; right += dx; top += dy; bottom += dy; }
  void InflateRect(int dx, int dy) { left -= dx; right += dx; top -= dy; bottom += dy; }
  void NormalizeRect() {
    if (left > right) { LONG t = left; left = right; right = t; }
    if (top > bottom) { LONG t = top; top = bottom; bottom = t; }
  }
  bool operator==(const RECT& o) const {
    return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
  }
  bool operator!=(const RECT& o) const { return !(*this == o); }
  operator LPRECT() { return this; }
  operator LPCRECT() const { return this; }
};

static_assert(sizeof(CRect) == 16, "CRect is four LONGs");
static_assert(sizeof(CPoint) == 8 && sizeof(CSize) == 8, "CPoint and CSize are two LONGs");
