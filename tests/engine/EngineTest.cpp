// The engine's own members: state, image input with its refusals, painting,
// progress messages and the exported result classes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <tuple>
#include <vector>

#include "RasterDC.h"
#include "common/TestImages.h"

namespace {

using testimg::ExpectImage;
using std::make_tuple;

// Every pixel differs from its neighbours, and none is blank, edges included.
COLORREF Stripes(int x, int row) { return RGB(10 * x + 5, 20 * row + 7, (x + row) & 1 ? 200 : 50); }

std::vector<std::string> g_messages;
int Record(const char* text, UINT, UINT) { return g_messages.push_back(text ? text : ""), IDOK; }
struct MessageRecorder {
  AFX_MSGBOX_HOOK previous = AfxSetMessageBoxHook(&Record);
  MessageRecorder() { g_messages.clear(); }
  ~MessageRecorder() { AfxSetMessageBoxHook(previous); }
};

void Patch(std::vector<unsigned char>& dib, LONG width, LONG height, WORD bits, DWORD sizeImage) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  h.biWidth = width, h.biHeight = height, h.biBitCount = bits, h.biSizeImage = sizeImage;
  std::memcpy(dib.data(), &h, 40);
}

TEST(EngineState, SensitivitySatinWidthAndReset) {
  CPictrace e;
  for (auto step : {std::pair<int, int>{101, 10}, {-1, 10}, {100, 0}, {0, 100}, {37, 63}}) {
    e.SetSegmentationSensitivity(step.first);
    EXPECT_EQ(e.m_nSegmentThreshold, step.second) << "sensitivity " << step.first;
  }
  // 35 units over the larger scale of a 100 x 50 picture; an empty
  // rectangle, or no image, leaves the width as it was.
  struct Case { bool image; LONG l, t, r, b; double width; } cases[] = {
      {true, 0, 0, 200, 150, 35.0 / 3}, {true, 10, 5, 410, 105, 35.0 / 4}, {true, 0, 0, 200, 100, 35.0 / 2},
      {true, 0, 0, 1, 150, 35.0 / 3},   {true, 0, 0, 1, 1, 35.0 / 0.02},   {true, 0, 0, 0, 150, 6.0},
      {true, 0, 10, 200, 10, 6.0},      {true, 0, 150, 200, 0, 6.0},       {false, 0, 0, 200, 150, 6.0}};
  auto dib = testimg::MakeDib24(100, 50, Stripes);
  for (const Case& c : cases) {
    CPictrace s;
    if (c.image) s.SetDIBData(dib.data());
    s.SetImageRealRect(c.l, c.t, c.r, c.b);
    EXPECT_DOUBLE_EQ(s.m_dSatinWidth, c.width) << c.l << "," << c.t << "," << c.r << "," << c.b;
    CSize out;
    s.GetOutputSize(out);
    EXPECT_EQ(make_tuple(out.cx, out.cy), make_tuple(c.r - c.l, c.b - c.t));
    s.SetDIBData(dib.data());  // loading the image derives the width from the rectangle set before
    EXPECT_DOUBLE_EQ(s.m_dSatinWidth, c.image ? c.width : 35.0 / 3);
  }
  auto halves = testimg::MakeDib24(12, 6, [](int x, int) { return x < 5 ? RGB(250, 0, 0) : RGB(0, 0, 250); });
  ASSERT_EQ(e.SetDIBData(halves.data()), 1);
  e.DoSegmentation(2, nullptr, 1.0, 0, nullptr);
  e.CopyOutlines();
  ASSERT_EQ(make_tuple(e.HasOutlines(), e.m_listStoredRegions.size(), e.m_arrStoredColorList.GetSize()),
            make_tuple(1, e.m_listOutlineRegions.size(), INT_PTR{2}));
  e.ResetPictrace();  // drops the results, keeps the image and the parameters
  EXPECT_EQ(make_tuple(e.HasOutlines(), e.m_listStoredRegions.size(), e.HasDIBData(), e.m_nSegmentThreshold),
            make_tuple(0, size_t{0}, 1, 63));
}

// --- image input

TEST(ImageInput, EveryDepthBecomesTwentyFourBitsWithTheSizeRecomputed) {
  struct Case { int width, height, bits, entries; DWORD clrUsed; size_t inputBytes; DWORD sizeImage; } cases[] = {
      {5, 3, 24, 0, 5, 40 + 3 * 16, 3 * 16},      // clrUsed names no table at 24 bits
      {33, 2, 1, 2, 0, 40 + 8 + 2 * 8, 2 * 100},  // the 33rd pixel in the fifth byte
      {5, 3, 4, 16, 0, 40 + 64 + 3 * 4, 3 * 16},  // high nibble first
      {7, 2, 4, 3, 3, 40 + 12 + 2 * 4, 2 * 24},   // short table, rows right after it
      {6, 4, 8, 20, 20, 40 + 80 + 4 * 8, 4 * 20},
      {32767, 1, 24, 0, 0, 40 + 98304, 98304},    // the widest and tallest pictures held
      {1, 32767, 8, 2, 2, 40 + 8 + 4 * 32767, 4 * 32767}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " at " << c.bits);
    std::vector<COLORREF> table;
    for (int i = 0; i < c.entries; i++) table.push_back(RGB(16 * i + 3, 250 - 7 * i, 9 * i + 1));
    auto index = [&](int x, int row) { return (7 * x + 3 * row + x / 5) % c.entries; };
    auto want = [&](int x, int row) { return c.bits == 24 ? Stripes(x, row) : table[index(x, row)]; };
    auto dib = testimg::MakePackedDib(
        c.width, c.height, c.bits, table, c.clrUsed,
        [&](int x, int row) -> DWORD { return c.bits == 24 ? Stripes(x, row) : index(x, row); }, 0xEE, 0x77);
    ASSERT_EQ(dib.size(), c.inputBytes);
    Patch(dib, c.width, c.height, static_cast<WORD>(c.bits), 12345);
    CPictrace e;
    ASSERT_EQ(e.SetDIBData(dib.data()), 1);
    const BITMAPINFOHEADER& h = e.m_bmiHeader;
    EXPECT_EQ(make_tuple(h.biBitCount, h.biSizeImage, h.biClrUsed, h.biClrImportant, h.biCompression),
              make_tuple(WORD{24}, c.sizeImage, c.bits == 24 ? c.clrUsed : 0u, 0u, DWORD{BI_RGB}));
    if (c.bits != 24) {  // converted buffers carry the rewritten header
      EXPECT_EQ(std::memcmp(e.m_pDIB, &h, 40), 0);
      EXPECT_EQ(std::memcmp(e.m_pWorkDIB, &h, 40), 0);
    }
    EXPECT_EQ(make_tuple(e.m_pDIBBits, e.m_pWorkBits), make_tuple(e.m_pDIB + 40, e.m_pWorkDIB + 40));
    ExpectImage(e.m_pDIBBits, c.width, c.height, want);
    ExpectImage(e.m_pWorkBits, c.width, c.height, want);
    CSize size;
    EXPECT_EQ(make_tuple(e.GetDIBSize(size), size.cx, size.cy), make_tuple(1, LONG{c.width}, LONG{c.height}));
  }
  // An index past the table reads the bytes that follow it while they lie
  // in the buffer (here the row 2, 255, 255, 255), then black.
  auto past = testimg::MakePackedDib(4, 1, 8, {RGB(1, 1, 1), RGB(2, 2, 2)}, 2,
                                     [](int x, int) -> DWORD { return x == 0 ? 2 : 255; });
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(past.data()), 1);
  EXPECT_EQ(testimg::PixelAt(e.m_pDIBBits, 4, 0, 0), RGB(255, 255, 2));
  EXPECT_EQ(testimg::PixelAt(e.m_pDIBBits, 4, 1, 0), RGB(0, 0, 0));
}

TEST(ImageInput, RefusalsShowTheMessageAndKeepTheCurrentImage) {
  struct Case { LONG width, height; WORD bits; } cases[] = {
      {8, 8, 16}, {8, 8, 32}, {8, 8, 0}, {8, 8, 2}, {0, 4, 24}, {4, 0, 24}, {-3, 4, 24},
      {4, -4, 24},  // top-down
      {32768, 1, 24}, {1, 32768, 24}};
  auto first = testimg::MakeDib24(3, 2, Stripes);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " at " << c.bits);
    CPictrace e;
    ASSERT_EQ(e.SetDIBData(first.data()), 1);
    const BITMAPINFOHEADER before = e.m_bmiHeader;
    const auto buffers = make_tuple(e.m_pDIB, e.m_pWorkDIB);
    auto other = testimg::MakeDib24(8, 8, Stripes);
    Patch(other, c.width, c.height, c.bits, 0);
    MessageRecorder recorder;
    EXPECT_EQ(e.SetDIBData(other.data()), 0);
    EXPECT_EQ(g_messages, std::vector<std::string>{PT_MSG_UNSUPPORTED});
    EXPECT_EQ(std::memcmp(&e.m_bmiHeader, &before, 40), 0);
    EXPECT_EQ(make_tuple(e.m_pDIB, e.m_pWorkDIB), buffers);
    ExpectImage(e.m_pDIBBits, 3, 2, Stripes);
  }
  CPictrace empty;
  MessageRecorder recorder;
  CSize size(9, 9);
  EXPECT_EQ(make_tuple(empty.SetDIBData(nullptr), empty.HasDIBData(), empty.GetDIBSize(size)), make_tuple(0, 0, 0));
  EXPECT_TRUE(g_messages.empty());
}

TEST(ImageInput, SavedCopyComesBackWithItsSatinWidth) {
  CPictrace e;
  e.CopyBMPData_DataToOriginal();  // nothing to save yet
  EXPECT_EQ(e.m_pOriginalDIB, nullptr);
  e.SetImageRealRect(0, 0, 50, 20);
  const std::vector<COLORREF> table = {RGB(5, 6, 7), RGB(70, 80, 90), RGB(200, 100, 0)};
  auto want = [&](int x, int row) { return table[(x + row) % 3]; };
  auto palette = testimg::MakePackedDib(7, 4, 8, table, 3, [](int x, int row) -> DWORD { return (x + row) % 3; });
  auto stale = testimg::MakeDib24(4, 4, Stripes), second = testimg::MakeDib24(10, 1, Stripes);
  ASSERT_EQ(e.SetDIBData(palette.data()), 1);
  unsigned char* image = e.m_pDIB;
  e.CopyBMPData_OriginalToData();  // nothing saved: nothing happens
  EXPECT_EQ(e.m_pDIB, image);
  ASSERT_EQ(e.SetDIBData(stale.data()), 1);
  e.CopyBMPData_DataToOriginal();
  ASSERT_EQ(e.SetDIBData(palette.data()), 1);
  e.CopyBMPData_DataToOriginal();  // replaces the earlier copy
  ASSERT_EQ(e.SetDIBData(second.data()), 1);
  EXPECT_DOUBLE_EQ(e.m_dSatinWidth, 35.0 / 20);  // 20 / 1 beats 50 / 10
  e.CopyBMPData_OriginalToData();
  EXPECT_DOUBLE_EQ(e.m_dSatinWidth, 35.0 / (50.0 / 7));  // 50 / 7 beats 20 / 4
  ExpectImage(e.m_pDIBBits, 7, 4, want);
  ExpectImage(e.m_pWorkBits, 7, 4, want);
  ASSERT_EQ(e.SetDIBData(e.m_pDIB), 1);  // the engine's own buffers load again
  ASSERT_EQ(e.SetDIBData(e.m_pWorkDIB), 1);
  ExpectImage(e.m_pDIBBits, 7, 4, want);
}

// --- painting

TEST(ImagePaint, TopRowFirstStretchedTemplateOrSavedCopy) {
  CPictrace e;
  CRasterDC same(5, 4), big(6, 4), work(2, 2), original(2, 2);
  RECT inset{1, 1, 4, 3}, all{0, 0, 6, 4}, small{0, 0, 2, 2};
  EXPECT_EQ(e.DrawDIB(&same, &inset, FALSE), 0);  // no image
  auto dib = testimg::MakeDib24(3, 2, Stripes);
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  EXPECT_EQ(e.DrawDIB(&work, &small, TRUE), 0);  // nothing saved
  EXPECT_TRUE(e.DrawDIB(&same, &inset, FALSE) && e.DrawDIB(&big, &all, FALSE));
  EXPECT_EQ(make_tuple(same.GetStretchBltMode(), big.GetStretchBltMode()), make_tuple(COLORONCOLOR, COLORONCOLOR));
  for (int y = 0; y < 4; y++)  // device row 1 shows the top picture row, storage row 1
    for (int x = 0; x < 6; x++) {
      const bool inside = x >= 1 && x < 4 && y >= 1 && y < 3;
      EXPECT_EQ(same.GetPixel(std::min(x, 4), y), inside ? Stripes(x - 1, 2 - y) : RGB(255, 255, 255)) << x << "," << y;
      EXPECT_EQ(big.GetPixel(x, y), Stripes(x / 2, 1 - y / 2)) << x << "," << y;
    }
  // The source rectangle is the current 2 x 2 image's: the saved 3 x 2 copy
  // shows its left 2 x 2.
  e.CopyBMPData_DataToOriginal();
  auto two = testimg::MakeDib24(2, 2, [](int x, int row) { return RGB(100 + x, 50 + row, 9); });
  ASSERT_EQ(e.SetDIBData(two.data()), 1);
  e.m_pWorkBits[0] = 0x11, e.m_pWorkBits[1] = 0x22, e.m_pWorkBits[2] = 0x33;
  EXPECT_TRUE(e.DrawDIB(&work, &small, FALSE) && e.DrawDIB(&original, &small, TRUE));
  for (int y = 0; y < 2; y++)
    for (int x = 0; x < 2; x++) {
      EXPECT_EQ(work.GetPixel(x, y), x == 0 && y == 1 ? RGB(0x33, 0x22, 0x11) : RGB(100 + x, 51 - y, 9));
      EXPECT_EQ(original.GetPixel(x, y), Stripes(x, 1 - y));
    }
}

// --- progress

using Message = std::tuple<UINT, WPARAM, LPARAM>;
struct RecordingWnd : CWnd {
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    return messages.emplace_back(message, wParam, lParam), 0;
  }
  std::vector<Message> messages;
};
struct ProgressEngine : CPictrace { using CPictrace::ShowProgress; };

TEST(Progress, BeginStepsAndEnd) {
  for (auto kind : {std::pair<int, float>{0, 100.0f}, {1, 80.0f}, {2, 40.0f}, {7, 40.0f}, {-1, 40.0f}}) {
    ProgressEngine e;
    RecordingWnd wnd;
    e.m_pProgressWnd = &wnd;
    e.m_fProgressPos = 33.0f;
    e.m_nProgressShown = 50;
    e.BeginProgress(kind.first);
    EXPECT_EQ(make_tuple(e.m_fProgressTotal, e.m_fProgressPos), make_tuple(kind.second, 0.0f)) << kind.first;
    for (int pos : {3, 5, 9, 2, 10, 14, 15}) e.ShowProgress(pos);  // under 5 more, or backwards: swallowed
    e.EndProgress();
    EXPECT_EQ(wnd.messages, (std::vector<Message>{{0x1401, 0, 0}, {0x1402, 0, 100}, {0x1403, 0, 0}, {0x1403, 5, 0},
                                                  {0x1403, 10, 0}, {0x1403, 15, 0}, {0x1404, 1, 0}}));
    EXPECT_EQ(e.m_nProgressShown, 15);
  }
  ProgressEngine quiet;  // without a window the position shown stays
  quiet.BeginProgress(1);
  quiet.ShowProgress(50);
  quiet.EndProgress();
  EXPECT_EQ(quiet.m_nProgressShown, 0);
}

// --- result classes

TEST(ResultClasses, ConstructorsClearAndAssignmentIsShallow) {
  // Built over bytes of 0x5A, a polygon line leaves attributes 4 and 5 as they were.
  alignas(CPTPolygonLine) unsigned char storage[sizeof(CPTPolygonLine)];
  std::memset(storage, 0x5A, sizeof storage);
  CPTPolygonLine& a = *new (storage) CPTPolygonLine;
  auto fields = [](const CPTPolygonLine& l) { return make_tuple(l.m_nLines, l.m_pLines, l.m_nAttr1, l.m_nAttr2, l.m_nAttr3, l.m_nAttr4, l.m_nAttr5); };
  EXPECT_EQ(fields(a), make_tuple(0, nullptr, -1, -1, -1, 0x5A5A5A5A, 0x5A5A5A5A));
  a.m_nLines = 2, a.m_pLines = new CPTLine[2], a.m_nAttr1 = 4, a.m_nAttr2 = 5, a.m_nAttr3 = 6, a.m_nAttr4 = 7, a.m_nAttr5 = 8;
  CPTPolygonLine b;
  b = a;
  EXPECT_EQ(fields(b), make_tuple(2, a.m_pLines, 4, 5, 6, 7, 8));
  b.m_pLines = nullptr;
  a.~CPTPolygonLine();
  CPTThinLine t, tc;
  CPTPolygon p, pc;
  CPTRegions r, rc;
  CPTThinLines s, sc;
  EXPECT_EQ(make_tuple(t.m_nPolygonLines, t.m_pPolygonLines, t.m_nThinLineFlag, t.m_nColorIndex, p.m_nLines, p.m_pLines,
                       r.m_nRegions, r.m_pRegions, s.m_nThinLines, s.m_pThinLines),
            make_tuple(0, nullptr, 0, 0, 0, nullptr, 0, nullptr, 0, nullptr));
  t.m_nPolygonLines = 2, t.m_pPolygonLines = new CPTPolygonLine[2], t.m_nThinLineFlag = 3, t.m_nColorIndex = 4;
  p.m_nLines = 3, p.m_pLines = new CPTLine[3], r.m_nRegions = 2, r.m_pRegions = new CPTRegion[2];
  s.m_nThinLines = 3, s.m_pThinLines = new CPTThinLine[3];
  tc = t, pc = p, rc = r, sc = s;
  EXPECT_EQ(make_tuple(tc.m_nPolygonLines, tc.m_pPolygonLines, tc.m_nThinLineFlag, tc.m_nColorIndex, pc.m_nLines, pc.m_pLines,
                       rc.m_nRegions, rc.m_pRegions, sc.m_nThinLines, sc.m_pThinLines),
            make_tuple(2, t.m_pPolygonLines, 3, 4, 3, p.m_pLines, 2, r.m_pRegions, 3, s.m_pThinLines));
  tc.m_pPolygonLines = nullptr, pc.m_pLines = nullptr, rc.m_pRegions = nullptr, sc.m_pThinLines = nullptr;
}

}  // namespace
