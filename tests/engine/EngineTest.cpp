// The engine's own members: state, image input with its refusals, painting,
// progress messages and the exported result classes.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <tuple>
#include <vector>

#include "Pictrace.h"
#include "RasterDC.h"
#include "common/TestImages.h"

namespace {

using testimg::ExpectImage;

// Every pixel differs from its neighbours, and none is blank, edges included.
COLORREF Stripes(int x, int row) { return RGB(10 * x + 5, 20 * row + 7, (x + row) & 1 ? 200 : 50); }

std::vector<std::string> g_messages;
int Record(const char* text, UINT, UINT) {
  g_messages.push_back(text ? text : "");
  return IDOK;
}
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

TEST(EngineState, DefaultsSensitivityAndSatinWidth) {
  CPictrace e;
  EXPECT_EQ(e.m_nColorRadius, 15);
  EXPECT_EQ(e.m_dCurveTolerance, 1.0);
  EXPECT_EQ(e.m_fLightness[0], -16.0f);
  EXPECT_EQ(e.m_fLightness[255], 100.0f);
  for (auto step : {std::pair<int, int>{101, 10}, {-1, 10}, {100, 0}, {0, 100}, {37, 63}}) {
    e.SetSegmentationSensitivity(step.first);
    EXPECT_EQ(e.m_nSegmentThreshold, step.second) << "sensitivity " << step.first;
  }
  // 35 output units over the larger of the two scales; an empty rectangle
  // or no image leaves the width as it was.
  struct Case { int w, h; LONG l, t, r, b; double width; } cases[] = {
      {1000, 500, 0, 0, 2000, 1500, 35.0 / 3}, {1000, 500, 100, 50, 4100, 1050, 35.0 / 4},
      {1000, 500, 0, 0, 2000, 1000, 35.0 / 2}, {1000, 500, 0, 0, 1, 1500, 35.0 / 3},
      {1000, 500, 0, 0, 1, 1, 35.0 / 0.002},   {1000, 500, 0, 0, 0, 1500, 6.0},
      {1000, 500, 0, 10, 2000, 10, 6.0},       {1000, 500, 0, 1500, 2000, 0, 6.0},
      {0, 0, 0, 0, 2000, 1500, 6.0}};
  for (const Case& c : cases) {
    CPictrace s;
    auto dib = testimg::MakeDib24(c.w ? c.w : 1, c.h ? c.h : 1, Stripes);
    if (c.w) {
      ASSERT_EQ(s.SetDIBData(dib.data()), 1);
    }
    s.SetImageRealRect(c.l, c.t, c.r, c.b);
    EXPECT_DOUBLE_EQ(s.m_dSatinWidth, c.width) << c.w << " " << c.r << "," << c.b;
    LONG l, t, r, b;
    s.GetImageRealRect(l, t, r, b);
    EXPECT_EQ(std::make_tuple(l, t, r, b), std::make_tuple(c.l, c.t, c.r, c.b));
    CSize out;
    s.GetOutputSize(out);
    EXPECT_EQ(std::make_pair(out.cx, out.cy), std::make_pair(c.r - c.l, c.b - c.t));
  }
  // Loading an image derives the width from the rectangle set before.
  CPictrace late;
  late.SetImageRealRect(0, 0, 2000, 1500);
  EXPECT_EQ(late.m_dSatinWidth, 6.0);
  auto small = testimg::MakeDib24(100, 50, Stripes);
  ASSERT_EQ(late.SetDIBData(small.data()), 1);
  EXPECT_DOUBLE_EQ(late.m_dSatinWidth, 35.0 / 30);
}

TEST(EngineState, ResetDropsResultsButKeepsImageAndParameters) {
  auto dib = testimg::MakeDib24(12, 6, [](int x, int) { return x < 5 ? RGB(250, 0, 0) : RGB(0, 0, 250); });
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  e.SetSegmentationSensitivity(30);
  e.DoSegmentation(2, nullptr, 1.0, 0, nullptr);
  ASSERT_EQ(e.HasOutlines(), 1);
  e.CopyOutlines();
  EXPECT_EQ(e.m_listStoredRegions.size(), e.m_listOutlineRegions.size());
  EXPECT_EQ(e.m_arrStoredColorList.GetSize(), 2);
  e.ResetPictrace();
  EXPECT_EQ(e.HasOutlines(), 0);
  EXPECT_TRUE(e.m_listStoredRegions.empty());
  EXPECT_EQ(e.HasDIBData(), 1);
  EXPECT_EQ(e.m_nSegmentThreshold, 70);
  EXPECT_EQ(e.m_arrColorList.GetSize(), 2);
  ExpectImage(e.m_pDIBBits, 12, 6, [](int x, int) { return x < 5 ? RGB(250, 0, 0) : RGB(0, 0, 250); });
}

// --- image input

struct Conversion {
  int width, height, bits, entries;
  DWORD clrUsed;
  size_t inputBytes;  // header, table and rows of the input
  DWORD sizeImage;    // rows of the 24-bit result
};

TEST(ImageInput, EveryDepthBecomesTwentyFourBitsWithTheSizeRecomputed) {
  const Conversion cases[] = {
      {5, 3, 24, 0, 5, 40 + 3 * 16, 3 * 16},           // clrUsed names no table at 24 bits
      {33, 2, 1, 2, 0, 40 + 8 + 2 * 8, 2 * 100},       // 33rd pixel in the fifth byte
      {5, 3, 4, 16, 0, 40 + 64 + 3 * 4, 3 * 16},       // high nibble first
      {7, 2, 4, 3, 3, 40 + 12 + 2 * 4, 2 * 24},        // short table, rows right after it
      {6, 4, 8, 20, 20, 40 + 80 + 4 * 8, 4 * 20},
      {32767, 1, 24, 0, 0, 40 + 98304, 98304},         // the widest and tallest pictures held
      {1, 32767, 8, 2, 2, 40 + 8 + 4 * 32767, 4 * 32767}};
  for (const Conversion& c : cases) {
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
    EXPECT_EQ(h.biBitCount, 24);
    EXPECT_EQ(h.biSizeImage, c.sizeImage);
    EXPECT_EQ(h.biClrUsed, c.bits == 24 ? c.clrUsed : 0u);
    EXPECT_EQ(h.biCompression, static_cast<DWORD>(BI_RGB));
    if (c.bits != 24) {  // converted buffers carry the rewritten header
      EXPECT_EQ(std::memcmp(e.m_pDIB, &h, 40), 0);
      EXPECT_EQ(std::memcmp(e.m_pWorkDIB, &h, 40), 0);
    }
    EXPECT_NE(e.m_pDIB, dib.data());
    EXPECT_EQ(e.m_pDIBBits, e.m_pDIB + 40);
    EXPECT_EQ(e.m_pWorkBits, e.m_pWorkDIB + 40);
    ExpectImage(e.m_pDIBBits, c.width, c.height, want);
    ExpectImage(e.m_pWorkBits, c.width, c.height, want);
    CSize size;
    ASSERT_EQ(e.GetDIBSize(size), 1);
    EXPECT_EQ(std::make_pair(size.cx, size.cy), std::make_pair(LONG{c.width}, LONG{c.height}));
  }
}

TEST(ImageInput, IndexPastTheTableReadsTheFollowingBytesOrBlack) {
  // Two entries at 8 bits: index 2 reads the first pixel row (2, 255, 255),
  // an index past the buffer gives black.
  auto dib = testimg::MakePackedDib(4, 1, 8, {RGB(1, 1, 1), RGB(2, 2, 2)}, 2,
                                    [](int x, int) -> DWORD { return x == 0 ? 2 : 255; });
  CPictrace e;
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  EXPECT_EQ(testimg::PixelAt(e.m_pDIBBits, 4, 0, 0), RGB(255, 255, 2));
  EXPECT_EQ(testimg::PixelAt(e.m_pDIBBits, 4, 1, 0), RGB(0, 0, 0));
}

TEST(ImageInput, RefusalsShowTheMessageAndKeepTheCurrentImage) {
  struct Case { LONG width, height; WORD bits; } cases[] = {
      {8, 8, 16}, {8, 8, 32}, {8, 8, 0}, {8, 8, 2}, {0, 4, 24}, {4, 0, 24}, {-3, 4, 24},
      {4, -4, 24},  // top-down
      {32768, 1, 24}, {1, 32768, 24}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " at " << c.bits);
    CPictrace e;
    auto first = testimg::MakeDib24(3, 2, Stripes);
    ASSERT_EQ(e.SetDIBData(first.data()), 1);
    const BITMAPINFOHEADER before = e.m_bmiHeader;
    unsigned char *image = e.m_pDIB, *work = e.m_pWorkDIB;
    auto other = testimg::MakeDib24(8, 8, [](int, int) { return RGB(9, 9, 9); });
    Patch(other, c.width, c.height, c.bits, 0);
    MessageRecorder recorder;
    EXPECT_EQ(e.SetDIBData(other.data()), 0);
    EXPECT_EQ(g_messages, std::vector<std::string>{PT_MSG_UNSUPPORTED});
    EXPECT_EQ(std::memcmp(&e.m_bmiHeader, &before, 40), 0);
    EXPECT_EQ(e.m_pDIB, image);
    EXPECT_EQ(e.m_pWorkDIB, work);
    ExpectImage(e.m_pDIBBits, 3, 2, Stripes);
  }
  CPictrace empty;
  MessageRecorder recorder;
  EXPECT_EQ(empty.SetDIBData(nullptr), 0);
  EXPECT_TRUE(g_messages.empty());
  EXPECT_EQ(empty.HasDIBData(), 0);
  CSize size(9, 9);
  EXPECT_EQ(empty.GetDIBSize(size), 0);
}

TEST(ImageInput, SavedCopyComesBackWithItsSatinWidth) {
  CPictrace e;
  e.CopyBMPData_DataToOriginal();  // nothing to save yet
  EXPECT_EQ(e.m_pOriginalDIB, nullptr);
  e.SetImageRealRect(0, 0, 50, 20);
  const std::vector<COLORREF> table = {RGB(5, 6, 7), RGB(70, 80, 90), RGB(200, 100, 0)};
  auto index = [](int x, int row) { return (x + row) % 3; };
  auto palette = testimg::MakePackedDib(7, 4, 8, table, 3, [&](int x, int row) -> DWORD { return index(x, row); });
  ASSERT_EQ(e.SetDIBData(palette.data()), 1);
  unsigned char* image = e.m_pDIB;
  e.CopyBMPData_OriginalToData();  // nothing saved: nothing happens
  EXPECT_EQ(e.m_pDIB, image);
  auto stale = testimg::MakeDib24(4, 4, Stripes);
  ASSERT_EQ(e.SetDIBData(stale.data()), 1);
  e.CopyBMPData_DataToOriginal();
  ASSERT_EQ(e.SetDIBData(palette.data()), 1);
  e.CopyBMPData_DataToOriginal();  // replaces the earlier copy
  auto second = testimg::MakeDib24(10, 1, Stripes);
  ASSERT_EQ(e.SetDIBData(second.data()), 1);
  EXPECT_DOUBLE_EQ(e.m_dSatinWidth, 35.0 / 20);  // 20 / 1 beats 50 / 10
  e.CopyBMPData_OriginalToData();
  EXPECT_DOUBLE_EQ(e.m_dSatinWidth, 35.0 / (50.0 / 7));  // 50 / 7 beats 20 / 4
  EXPECT_EQ(e.m_bmiHeader.biWidth, 7);
  ExpectImage(e.m_pDIBBits, 7, 4, [&](int x, int row) { return table[index(x, row)]; });
  ExpectImage(e.m_pWorkBits, 7, 4, [&](int x, int row) { return table[index(x, row)]; });
  // The engine's own buffers can be loaded again.
  ASSERT_EQ(e.SetDIBData(e.m_pDIB), 1);
  ASSERT_EQ(e.SetDIBData(e.m_pWorkDIB), 1);
  ExpectImage(e.m_pDIBBits, 7, 4, [&](int x, int row) { return table[index(x, row)]; });
}

// --- painting

TEST(ImagePaint, SameSizeCopiesTopRowFirstOtherSizesStretch) {
  auto dib = testimg::MakeDib24(3, 2, Stripes);
  CPictrace e;
  CRasterDC none(2, 2);
  RECT whole{0, 0, 2, 2};
  EXPECT_EQ(e.DrawDIB(&none, &whole, FALSE), 0);  // no image
  ASSERT_EQ(e.SetDIBData(dib.data()), 1);
  CRasterDC same(5, 4), big(6, 4);
  RECT inset{1, 1, 4, 3}, all{0, 0, 6, 4};
  EXPECT_NE(e.DrawDIB(&same, &inset, FALSE), 0);
  EXPECT_NE(e.DrawDIB(&big, &all, FALSE), 0);
  EXPECT_EQ(same.GetStretchBltMode(), COLORONCOLOR);
  EXPECT_EQ(big.GetStretchBltMode(), COLORONCOLOR);
  for (int y = 0; y < 4; y++)
    for (int x = 0; x < 6; x++) {
      // Device row 1 shows the top picture row, storage row 1.
      bool inside = x >= 1 && x < 4 && y >= 1 && y < 3;
      if (x < 5) {
        EXPECT_EQ(same.GetPixel(x, y), inside ? Stripes(x - 1, 2 - y) : RGB(255, 255, 255)) << x << "," << y;
      }
      EXPECT_EQ(big.GetPixel(x, y), Stripes(x / 2, 1 - y / 2)) << x << "," << y;
    }
}

TEST(ImagePaint, TemplateOrSavedCopy) {
  CPictrace e;
  auto big = testimg::MakeDib24(4, 4, Stripes);
  ASSERT_EQ(e.SetDIBData(big.data()), 1);
  RECT dest{0, 0, 2, 2};
  CRasterDC none(2, 2);
  EXPECT_EQ(e.DrawDIB(&none, &dest, TRUE), 0);  // nothing saved yet
  EXPECT_EQ(none.GetPixel(0, 0), RGB(255, 255, 255));
  e.CopyBMPData_DataToOriginal();
  auto small = testimg::MakeDib24(2, 2, [](int x, int row) { return RGB(100 + x, 50 + row, 9); });
  ASSERT_EQ(e.SetDIBData(small.data()), 1);
  e.m_pWorkBits[0] = 0x11, e.m_pWorkBits[1] = 0x22, e.m_pWorkBits[2] = 0x33;
  CRasterDC work(2, 2), original(2, 2);
  EXPECT_NE(e.DrawDIB(&work, &dest, FALSE), 0);
  // The source rectangle is the current image's: the saved 4 x 4 copy shows
  // its lower-left 2 x 2.
  EXPECT_NE(e.DrawDIB(&original, &dest, TRUE), 0);
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
    messages.emplace_back(message, wParam, lParam);
    return 0;
  }
  std::vector<Message> messages;
};
struct ProgressEngine : CPictrace {
  using CPictrace::ShowProgress;
};

TEST(Progress, BeginStepsAndEnd) {
  for (auto kind : {std::pair<int, float>{0, 100.0f}, {1, 80.0f}, {2, 40.0f}, {7, 40.0f}, {-1, 40.0f}}) {
    ProgressEngine e;
    RecordingWnd wnd;
    e.m_pProgressWnd = &wnd;
    e.m_fProgressPos = 33.0f;
    e.m_nProgressShown = 50;
    e.BeginProgress(kind.first);
    EXPECT_EQ(e.m_fProgressTotal, kind.second) << kind.first;
    EXPECT_EQ(e.m_fProgressPos, 0.0f);
    EXPECT_EQ(wnd.messages, (std::vector<Message>{{0x1401, 0, 0}, {0x1402, 0, 100}, {0x1403, 0, 0}}));
    // Steps under 5 are swallowed and backward steps never sent.
    for (int pos : {3, 5, 9, 2, 10, 14, 15}) e.ShowProgress(pos);
    e.EndProgress();
    EXPECT_EQ(wnd.messages, (std::vector<Message>{{0x1401, 0, 0}, {0x1402, 0, 100}, {0x1403, 0, 0},
                                                  {0x1403, 5, 0}, {0x1403, 10, 0}, {0x1403, 15, 0},
                                                  {0x1404, 1, 0}}));
    EXPECT_EQ(e.m_nProgressShown, 15);
  }
  ProgressEngine quiet;  // without a window the position shown stays
  quiet.BeginProgress(1);
  quiet.ShowProgress(50);
  quiet.EndProgress();
  EXPECT_EQ(quiet.m_nProgressShown, 0);
}

// --- result classes

TEST(ResultClasses, FieldOrderAndWidthsAreTheExportedLayout) {
  const size_t p = sizeof(void*);
  struct Place { const char* what; size_t actual, expected; };
#define PT_AT(T, f, at) Place{#T "::" #f, offsetof(T, f), at}
#define PT_SIZE(T, size) Place{"sizeof " #T, sizeof(T), size}
  const Place places[] = {
      PT_AT(CPTPoint, y, 4), PT_SIZE(CPTPoint, 8), PT_AT(CPTLine, m_ptStart, 4),
      PT_AT(CPTLine, m_ptCtrl1, 12), PT_AT(CPTLine, m_ptCtrl2, 20), PT_AT(CPTLine, m_ptEnd, 28),
      PT_SIZE(CPTLine, 36), PT_AT(CPTPolygon, m_pLines, p), PT_SIZE(CPTPolygon, 2 * p),
      PT_AT(CPTPolygonLine, m_pLines, p), PT_AT(CPTPolygonLine, m_nAttr1, 2 * p),
      PT_AT(CPTPolygonLine, m_nAttr5, 2 * p + 16), PT_SIZE(CPTPolygonLine, 2 * p + 24),
      PT_AT(CPTRegion, m_pPolygons, p), PT_AT(CPTRegion, m_nRegionFlag, 2 * p),
      PT_AT(CPTRegion, m_nColorIndex, 2 * p + 4), PT_SIZE(CPTRegion, 2 * p + 8),
      PT_AT(CPTRegions, m_pRegions, p), PT_SIZE(CPTRegions, 2 * p),
      PT_AT(CPTThinLine, m_pPolygonLines, p), PT_AT(CPTThinLine, m_nThinLineFlag, 2 * p),
      PT_AT(CPTThinLine, m_nColorIndex, 2 * p + 4), PT_SIZE(CPTThinLine, 2 * p + 8),
      PT_AT(CPTThinLines, m_pThinLines, p), PT_SIZE(CPTThinLines, 2 * p)};
#undef PT_AT
#undef PT_SIZE
  for (const Place& place : places) EXPECT_EQ(place.actual, place.expected) << place.what;
}

// Constructs T over bytes of 0x5A and returns it for inspection.
template <class T>
T* OverGarbage(void* storage) {
  std::memset(storage, 0x5A, sizeof(T));
  return new (storage) T;
}

TEST(ResultClasses, ConstructorsClearAndAssignmentCopiesEveryFieldShallowly) {
  alignas(16) unsigned char s1[64], s2[64], s3[64], s4[64], s5[64];
  CPTLine* line = OverGarbage<CPTLine>(s1);
  EXPECT_EQ(std::make_tuple(line->m_nType, line->m_ptStart.x, line->m_ptCtrl1.y, line->m_ptCtrl2.x, line->m_ptEnd.y),
            std::make_tuple(0, 0.0f, 0.0f, 0.0f, 0.0f));
  CPTPolygonLine* pl = OverGarbage<CPTPolygonLine>(s2);  // attributes 4 and 5 keep the bytes
  EXPECT_EQ(std::make_tuple(pl->m_nLines, pl->m_pLines, pl->m_nAttr1, pl->m_nAttr2, pl->m_nAttr3, pl->m_nAttr4, pl->m_nAttr5),
            std::make_tuple(0, static_cast<CPTLine*>(nullptr), -1, -1, -1, 0x5A5A5A5A, 0x5A5A5A5A));
  CPTRegion* region = OverGarbage<CPTRegion>(s3);
  EXPECT_EQ(std::make_tuple(region->m_nPolygons, region->m_pPolygons, region->m_nRegionFlag, region->m_nColorIndex),
            std::make_tuple(0, static_cast<CPTPolygon*>(nullptr), 0, 0));
  CPTThinLine* thin = OverGarbage<CPTThinLine>(s4);
  EXPECT_EQ(std::make_tuple(thin->m_nPolygonLines, thin->m_pPolygonLines, thin->m_nThinLineFlag, thin->m_nColorIndex),
            std::make_tuple(0, static_cast<CPTPolygonLine*>(nullptr), 0, 0));
  CPTPolygon* polygon = OverGarbage<CPTPolygon>(s5);
  EXPECT_EQ(std::make_pair(polygon->m_nLines, polygon->m_pLines), std::make_pair(0, static_cast<CPTLine*>(nullptr)));

  // Assignment: every field, the arrays shared rather than copied.
  line->m_nType = 1;
  line->m_ptStart.x = 1.5f, line->m_ptStart.y = 2.5f, line->m_ptCtrl1.x = 3.5f, line->m_ptCtrl1.y = 4.5f;
  line->m_ptCtrl2.x = 5.5f, line->m_ptCtrl2.y = 6.5f, line->m_ptEnd.x = 7.5f, line->m_ptEnd.y = 8.5f;
  CPTLine lineCopy;
  lineCopy = *line;
  EXPECT_EQ(std::memcmp(&lineCopy, line, sizeof(CPTLine)), 0);
  pl->m_nLines = 2, pl->m_pLines = new CPTLine[2], pl->m_nAttr1 = 4, pl->m_nAttr2 = 5, pl->m_nAttr3 = 6;
  pl->m_nAttr4 = 7, pl->m_nAttr5 = 8;
  CPTPolygonLine plCopy;
  plCopy = *pl;
  EXPECT_EQ(std::make_tuple(plCopy.m_nLines, plCopy.m_pLines, plCopy.m_nAttr1, plCopy.m_nAttr2, plCopy.m_nAttr3, plCopy.m_nAttr4, plCopy.m_nAttr5),
            std::make_tuple(2, pl->m_pLines, 4, 5, 6, 7, 8));
  plCopy.m_pLines = nullptr;
  polygon->m_nLines = 3, polygon->m_pLines = new CPTLine[3];
  CPTPolygon polyCopy;
  polyCopy = *polygon;
  EXPECT_EQ(std::make_pair(polyCopy.m_nLines, polyCopy.m_pLines), std::make_pair(3, polygon->m_pLines));
  polyCopy.m_pLines = nullptr;
  region->m_nPolygons = 1, region->m_pPolygons = new CPTPolygon[1], region->m_nRegionFlag = 1, region->m_nColorIndex = 9;
  CPTRegion regionCopy;
  regionCopy = *region;
  EXPECT_EQ(std::make_tuple(regionCopy.m_nPolygons, regionCopy.m_pPolygons, regionCopy.m_nRegionFlag, regionCopy.m_nColorIndex),
            std::make_tuple(1, region->m_pPolygons, 1, 9));
  regionCopy.m_pPolygons = nullptr;
  thin->m_nPolygonLines = 2, thin->m_pPolygonLines = new CPTPolygonLine[2], thin->m_nThinLineFlag = 3, thin->m_nColorIndex = 4;
  CPTThinLine thinCopy;
  thinCopy = *thin;
  EXPECT_EQ(std::make_tuple(thinCopy.m_nPolygonLines, thinCopy.m_pPolygonLines, thinCopy.m_nThinLineFlag, thinCopy.m_nColorIndex),
            std::make_tuple(2, thin->m_pPolygonLines, 3, 4));
  thinCopy.m_pPolygonLines = nullptr;
  CPTRegions regions, regionsCopy;
  regions.m_nRegions = 2, regions.m_pRegions = new CPTRegion[2];
  regionsCopy = regions;
  EXPECT_EQ(std::make_pair(regionsCopy.m_nRegions, regionsCopy.m_pRegions), std::make_pair(2, regions.m_pRegions));
  regionsCopy.m_pRegions = nullptr;
  CPTThinLines thins, thinsCopy;
  thins.m_nThinLines = 3, thins.m_pThinLines = new CPTThinLine[3];
  thinsCopy = thins;
  EXPECT_EQ(std::make_pair(thinsCopy.m_nThinLines, thinsCopy.m_pThinLines), std::make_pair(3, thins.m_pThinLines));
  thinsCopy.m_pThinLines = nullptr;
  line->~CPTLine(), pl->~CPTPolygonLine(), region->~CPTRegion(), thin->~CPTThinLine(), polygon->~CPTPolygon();
}

}  // namespace
