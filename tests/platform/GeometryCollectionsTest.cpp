// The MFC value classes and arrays the engine and its hosts rely on.
#include <gtest/gtest.h>

#include "AfxCollections.h"
#include "AfxGeometry.h"

TEST(Geometry, RectIsHalfOpen) {
  CRect rc(2, 3, 6, 8);
  EXPECT_EQ(rc.Width(), 4);
  EXPECT_EQ(rc.Height(), 5);
  EXPECT_TRUE(rc.PtInRect(CPoint(2, 3)));
  EXPECT_TRUE(rc.PtInRect(CPoint(5, 7)));
  EXPECT_FALSE(rc.PtInRect(CPoint(6, 7)));
  EXPECT_FALSE(rc.PtInRect(CPoint(5, 8)));
  EXPECT_TRUE(CRect(4, 4, 4, 9).IsRectEmpty());
  EXPECT_TRUE(CRect().IsRectNull());
  EXPECT_EQ(rc.CenterPoint(), CPoint(4, 5));
  EXPECT_EQ(rc.Size(), CSize(4, 5));
}

TEST(Geometry, RectEditing) {
  CRect rc(6, 8, 2, 3);
  EXPECT_TRUE(rc.IsRectEmpty());
  rc.NormalizeRect();
  EXPECT_EQ(rc, CRect(2, 3, 6, 8));
  rc.OffsetRect(-2, 1);
  EXPECT_EQ(rc, CRect(0, 4, 4, 9));
  rc.InflateRect(1, 2);
  EXPECT_EQ(rc, CRect(-1, 2, 5, 11));
  EXPECT_EQ(CRect(CPoint(1, 2), CSize(3, 4)), CRect(1, 2, 4, 6));
  CPoint pt(3, 4);
  pt.Offset(-5, 1);
  EXPECT_EQ(pt, CPoint(-2, 5));
  EXPECT_NE(CSize(1, 2), CSize(2, 1));
}

namespace {
std::vector<DWORD> Items(const CDWordArray& a) {
  std::vector<DWORD> out;
  for (INT_PTR i = 0; i < a.GetSize(); i++) out.push_back(a[i]);
  return out;
}
}  // namespace

TEST(Collections, AddInsertRemove) {
  CDWordArray a;
  EXPECT_EQ(a.Add(10), 0);
  EXPECT_EQ(a.Add(20), 1);
  EXPECT_EQ(a.Add(30), 2);
  a.InsertAt(1, 15, 2);
  EXPECT_EQ(Items(a), (std::vector<DWORD>{10, 15, 15, 20, 30}));
  a.InsertAt(7, 99);  // past the end: the gap is filled with zeros
  EXPECT_EQ(Items(a), (std::vector<DWORD>{10, 15, 15, 20, 30, 0, 0, 99}));
  a.RemoveAt(1, 3);
  EXPECT_EQ(Items(a), (std::vector<DWORD>{10, 30, 0, 0, 99}));
  a.RemoveAt(4);
  EXPECT_EQ(a.GetUpperBound(), 3);
  a.RemoveAll();
  EXPECT_TRUE(a.IsEmpty());
}

TEST(Collections, SizeCopyAppend) {
  CDWordArray a;
  a.SetSize(3);
  EXPECT_EQ(Items(a), (std::vector<DWORD>{0, 0, 0}));
  a.SetAt(1, 7);
  a.SetAtGrow(5, 9);
  EXPECT_EQ(Items(a), (std::vector<DWORD>{0, 7, 0, 0, 0, 9}));
  a.SetSize(2);
  EXPECT_EQ(Items(a), (std::vector<DWORD>{0, 7}));

  CDWordArray b;
  b.Add(1);
  b.Copy(a);
  EXPECT_EQ(Items(b), (std::vector<DWORD>{0, 7}));
  EXPECT_EQ(b.Append(a), 2);
  EXPECT_EQ(Items(b), (std::vector<DWORD>{0, 7, 0, 7}));
  b.ElementAt(0) = 5;
  EXPECT_EQ(b.GetAt(0), 5u);
  EXPECT_EQ(a[0], 0u);  // a copy, not a view

  CArray<CPoint, CPoint> pts;
  pts.Add(CPoint(1, 2));
  EXPECT_EQ(pts.GetData()[0], CPoint(1, 2));
}
