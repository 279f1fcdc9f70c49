// The MFC value classes and arrays, message boxes and window messages.
#include <gtest/gtest.h>

#include <string>

#include "AfxCollections.h"
#include "AfxGeometry.h"
#include "AfxWnd.h"

TEST(Geometry, RectsArePointsHalfOpen) {
  CRect rc(2, 3, 6, 8);
  EXPECT_TRUE(rc.Width() == 4 && rc.Height() == 5 && rc.Size() == CSize(4, 5) && rc.CenterPoint() == CPoint(4, 5));
  // Left and top edges inside, right and bottom edges outside.
  const struct { int x, y; bool in; } pts[] = {{2, 3, 1}, {5, 7, 1}, {6, 7, 0}, {5, 8, 0}, {1, 3, 0}, {2, 2, 0}};
  for (const auto& p : pts) EXPECT_EQ(rc.PtInRect(CPoint(p.x, p.y)) != 0, p.in) << p.x << "," << p.y;
  EXPECT_TRUE(CRect(4, 4, 4, 9).IsRectEmpty() && CRect(4, 4, 5, 4).IsRectEmpty() && !CRect(4, 4, 5, 5).IsRectEmpty());
  EXPECT_TRUE(CRect().IsRectNull() && !CRect(0, 0, 0, 1).IsRectNull());
  CRect r(6, 8, 2, 3);
  r.NormalizeRect();
  EXPECT_EQ(r, CRect(2, 3, 6, 8));
  r.OffsetRect(-2, 1);
  r.InflateRect(1, 2);
  EXPECT_EQ(r, CRect(-1, 2, 5, 11));
  EXPECT_EQ(CRect(CPoint(1, 2), CSize(3, 4)), CRect(1, 2, 4, 6));
  CPoint pt(3, 4);
  pt.Offset(-5, 1);
  EXPECT_TRUE(pt == CPoint(-2, 5) && CSize(1, 2) != CSize(2, 1));
}

TEST(Collections, EditingKeepsOrderAndFillsGapsWithZeros) {
  auto items = [](const CDWordArray& a) {
    std::string s;
    for (INT_PTR i = 0; i < a.GetSize(); i++) s += std::to_string(a[i]) + " ";
    return s;
  };
  CDWordArray a, b;
  EXPECT_TRUE(a.Add(10) == 0 && a.Add(20) == 1 && a.Add(30) == 2);
  a.InsertAt(1, 15, 2);
  a.InsertAt(7, 99);  // past the end
  EXPECT_EQ(items(a), "10 15 15 20 30 0 0 99 ");
  a.RemoveAt(1, 3);
  a.RemoveAt(4);
  EXPECT_EQ(items(a), "10 30 0 0 ");
  EXPECT_EQ(a.GetUpperBound(), 3);
  a.SetSize(2);
  a.SetAt(1, 7);
  a.SetAtGrow(3, 9);
  EXPECT_EQ(items(a), "10 7 0 9 ");
  b.Add(1);
  b.Copy(a);
  EXPECT_EQ(b.Append(a), 4);
  b.ElementAt(0) = 5;
  EXPECT_EQ(items(b), "5 7 0 9 10 7 0 9 ");
  EXPECT_EQ(a.GetAt(0), 10u);  // a copy, not a view
  a.RemoveAll();
  EXPECT_TRUE(a.IsEmpty());
  CArray<CPoint, CPoint> pts;
  pts.Add(CPoint(1, 2));
  EXPECT_EQ(pts.GetData()[0], CPoint(1, 2));
}

namespace {

std::string g_text;
UINT g_type = 0, g_help = 0;
int Hook(const char* text, UINT type, UINT help) { return g_text = text, g_type = type, g_help = help, IDCANCEL; }

struct ProgressWindow : CWnd {
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override { return message + wParam * 10 + lParam * 100; }
};

}  // namespace

TEST(Window, MessagesReachTheHookOrStandardErrorAndTheSubclass) {
  AFX_MSGBOX_HOOK old = AfxSetMessageBoxHook(Hook);
  EXPECT_EQ(AfxMessageBox("Disk full", MB_OKCANCEL, 17), IDCANCEL);
  EXPECT_TRUE(g_text == "Disk full" && g_type == UINT(MB_OKCANCEL) && g_help == 17u);
  EXPECT_EQ(AfxMessageBox("Second"), IDCANCEL);
  EXPECT_TRUE(g_type == UINT(MB_OK) && g_help == 0u);
  EXPECT_EQ(AfxSetMessageBoxHook(nullptr), Hook);
  testing::internal::CaptureStderr();
  EXPECT_EQ(AfxMessageBox("Not supported"), IDOK);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Not supported\n");
  AfxSetMessageBoxHook(old);
  ProgressWindow wnd;
  EXPECT_EQ(static_cast<CWnd&>(wnd).SendMessage(3, 5, -1), 3 + 50 - 100);
  EXPECT_EQ(CWnd().SendMessage(0x1401), 0);
  {
    CWinApp app("host");
    EXPECT_TRUE(AfxGetApp() == &app && app.InitInstance());
  }
  EXPECT_EQ(AfxGetApp(), nullptr);
}
