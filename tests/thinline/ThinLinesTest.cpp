// Thin lines: the thinning with its neighbour-colour fill, the thinning picture and its flags, the
// tracing of hand-made skeletons into linked lines, the output form, the host's copy, the drawing.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "RasterDC.h"
#include "core/OutlineRecords.h"
#include "thinline/ThinKit.h"
#include "core/ThinLineRecords.h"

using namespace thintest;

TEST(ThinningAndFat, Table) {
  // The mask starts 1 on '#' (or everywhere); `host` excludes every pixel but '#'. maskOf: the mask
  // expected on '#', '.', 'R', 'G' ('-': not checked). Row 0 and the edge columns are never thinned;
  // a removed pixel takes its usable neighbours' colour (mask 0), or the fill with mask 2 when the
  // neighbours still to be thinned (mask 1) or excluded outvote them.
  struct { Rows in; bool all, host; int ret; Rows out; const char* maskOf; } cases[] = {
      {{"............", "............", ".##########.", ".##########.", "............"}, false, false, 1,
       {"............", "............", "............", "..########..", "............"}, "10--"},
      {{"..........", "..#.....#.", "..#....#..", "..#...#...", "..#.......", "........#.", ".........."}, false, false, 1, {}, "10--"},
      {{"..........", "..#.....#.", "..#....#..", "..#...#...", "..#.......", "........#.", ".........."}, false, true, 0, {}, "12--"},
      {{"########", "########", "........", "........"}, false, false, 1, {"########", "#......#", "........", "........"}, "10--"},
      {{"RRRRRRRRRRRR", "R##########R", "R##########R", "RRRRRRRRRRRR"}, true, false, 0,
       {"RRRRRRRRRRRR", "RGGGGGGGGGGR", "RG########GR", "RRRRRRRRRRRR"}, "1-12"},
      {{"............", ".##########.", ".##########.", "............"}, false, true, 0,
       {"............", ".GGGGGGGGGG.", ".G########G.", "............"}, "12-2"},
  };
  for (auto& c : cases) {
    CPictrace engine;
    LoadBlank(engine, static_cast<int>(c.in[0].size()), static_cast<int>(c.in.size()));
    std::vector<int> host;
    for (unsigned char m : MaskWhere(c.in, '#')) host.push_back(c.host && !m ? -1 : 0);
    engine.SetMASKData(host.data());
    auto dib = DibFromText(c.in);
    auto mask = c.all ? std::vector<unsigned char>(c.in.size() * c.in[0].size(), 1) : MaskWhere(c.in, '#');
    SCOPED_TRACE(c.in[1]);
    EXPECT_EQ(engine.ThinningAndFat(dib.data(), mask.data(), kBlack, kGreen), c.ret);
    const Rows& out = c.out.empty() ? c.in : c.out;  // empty: one-pixel lines and isolated pixels stay
    EXPECT_EQ(TextFromDib(dib.data()), out);
    for (size_t i = 0; i < mask.size(); i++) {
      char want = c.maskOf[std::string("#.RG").find(out[i / out[0].size()][i % out[0].size()])];
      EXPECT_TRUE(want == '-' || mask[i] == want - '0') << "pixel " << i << " mask " << int(mask[i]);
    }
    engine.SetMASKData(nullptr);
  }
}

COutlineRegion* RegionOf(const Rows& rows, char c) {  // flagged: only painted
  COutlineRegion* r = new COutlineRegion;
  r->m_crColor = ColorOf(c), r->m_bMarked = 1, r->m_pComponent = new CConComponent;
  r->m_pComponent->m_pPoints = new sPoint[rows.size() * rows[0].size()];
  for (size_t k = 0, w = rows[0].size(); k < rows.size() * w; k++)
    if (rows[k / w][k % w] == c) r->m_pComponent->m_pPoints[r->m_nPixels++] = {static_cast<short>(k % w), static_cast<short>(k / w)};
  r->m_pComponent->m_nPoints = r->m_nPixels;
  return r;
}

TEST(MakeThinningTmpBitmap, PaintsStoredRegionsAndHonoursTheOnlyThinningFlag) {
  CPictrace engine;
  unsigned char sentinel = 0, *pMask = &sentinel;
  EXPECT_EQ(nullptr, engine.MakeThinningTmpBitmap(&pMask));  // no picture
  LoadBlank(engine, 13, 6);
  EXPECT_TRUE(engine.MakeThinningTmpBitmap(&pMask) == nullptr && pMask == &sentinel);  // no stored region
  Rows rows = {"BBBBBBBBBBBBB", "BBBBBBBBBBBBB", "B##########BB", "B##########BB", "BBBBBBBBBBBBB", "BBBBBBBBBBBB."};
  engine.m_listStoredRegions = {RegionOf(rows, '#'), RegionOf(rows, 'B')};
  CWordArray saved, cleared;
  engine.StoreRegionsOnlyThinningFlag(&saved);
  cleared.Add(0);
  for (int pass = 0; pass < 2; pass++) {
    std::unique_ptr<unsigned char[]> dib(engine.MakeThinningTmpBitmap(&pMask)), mask(pMask);
    BITMAPINFOHEADER h;  // rows of 39 bytes padded to 40
    std::memcpy(&h, dib.get(), 40);
    EXPECT_EQ(std::vector<long>({h.biWidth, h.biHeight, h.biBitCount, long(h.biCompression), long(h.biSizeImage)}), std::vector<long>({13, 6, 24, BI_RGB, 240}));
    EXPECT_EQ(rows, TextFromDib(dib.get()));  // the uncovered pixel stays white
    EXPECT_EQ(pass ? MaskWhere(rows, '#') : std::vector<unsigned char>(78, 0), std::vector<unsigned char>(pMask, pMask + 78));
    EXPECT_EQ(1, engine.ThinningAndFat(dib.get(), pMask, kBlack, kGreen));
    EXPECT_EQ(TextFromDib(dib.get()), pass ? Rows({"BBBBBBBBBBBBB", "BBBBBBBBBBBBB", "BBBBBBBBBBBBB", "BB########BBB",
                                                   "BBBBBBBBBBBBB", "BBBBBBBBBBBB."}) : rows);
    engine.SetRegionsOnlyThinningFlag(&cleared);  // clears the line's flag; the second region keeps its own
  }
  engine.SetRegionsOnlyThinningFlag(&saved);
  EXPECT_EQ(engine.m_listStoredRegions.front()->m_bMarked + engine.m_listStoredRegions.back()->m_bMarked + saved.GetSize(), 4);
}

namespace {

// An engine with a blank picture of the skeleton's size, an output
// rectangle `scale` times the picture and the line colours; the mask is 1
// on every skeleton pixel.
struct Tracing {
  CPictrace engine;
  std::vector<unsigned char> dib, mask;
  Tracing(const Rows& rows, int scale, std::vector<COLORREF> colors = {kBlack}) : dib(DibFromText(rows)) {
    LoadBlank(engine, static_cast<int>(rows[0].size()), static_cast<int>(rows.size()));
    engine.SetImageRealRect(0, 0, static_cast<int>(rows[0].size()) * scale, static_cast<int>(rows.size()) * scale);
    for (COLORREF c : colors) engine.m_arrLineColors.Add(c);
    for (const std::string& row : rows)
      for (char ch : row) mask.push_back(ch != '.');
  }
  // Each line as "id colour parent child sibling later: x,y x,y ..." (points optional).
  std::vector<std::string> Run(bool points = true) {
    engine.DoTraceThinningLine(mask.data(), dib.data(), 0.5);
    std::vector<std::string> out;
    for (const COutlineThinline* l : engine.m_listThinLines) {
      std::ostringstream s;
      s << l->m_nLineID << " " << l->m_nColorIndex << " " << l->m_nParent << " " << l->m_nFirstChild << " " << l->m_nNextSibling
        << " " << l->m_bLaterBranch << ":";
      for (int i = 0; points && i < l->m_pVector->m_nPoints; i++) s << " " << l->m_pVector->m_pPoints[i].x << "," << l->m_pVector->m_pPoints[i].y;
      out.push_back(s.str());
    }
    return out;
  }
};

const Rows kJunction = {"................", "................", "............#...", "...........#....", "..........#.....",
                        ".........#......", "........#.......", ".#######........", "........#.......", ".........#......",
                        "..........#.....", "...........#....", "............#...", "................"};

}  // namespace

TEST(DoTraceThinningLine, JunctionGivesThreeLinkedChainsAndShortSpursGo) {
  // Traced from the first end point in scan order, (12,2), into the
  // junction (7,7); the first branch goes left, the later one hangs from
  // the branch before it. Minimum length sqrt(300) / 4 = 4.33.
  Tracing t(kJunction, 4);
  ASSERT_EQ(t.Run(), (std::vector<std::string>{"0 0 -1 1 -1 1: 12,2 11,3 10,4 9,5 8,6 7,7",
                                               "1 0 0 -1 2 0: 7,7 6,7 5,7 4,7 3,7 2,7 1,7",
                                               "2 0 1 -1 -1 1: 7,7 8,8 9,9 10,10 11,11 12,12"}));
  const COutlineThinline* last = t.engine.m_listThinLines.back();
  EXPECT_TRUE(last->m_rcBound == CRect(7, 7, 12, 12) && last->m_pVector->m_rcBound == CRect(7, 7, 12, 12) &&
              last->m_crColor == kBlack && last->m_nRawPoints == 6);
  const COutlineThinline* left = *std::next(t.engine.m_listThinLines.begin());
  ASSERT_EQ(2, left->m_nSmoothPoints);  // a straight chain smooths to its ends
  EXPECT_EQ(left->m_pSmoothPoints[0].x * 10 + left->m_pSmoothPoints[1].x, 71);
  EXPECT_EQ(std::vector<unsigned char>(t.mask.size(), 0), t.mask);  // all consumed
  Rows spur(kJunction.begin(), kJunction.begin() + 10);  // the lower arm cut to 2 pixels
  spur.push_back(std::string(16, '.'));
  EXPECT_EQ(Tracing(spur, 4).Run(), std::vector<std::string>{"0 0 -1 -1 -1 1: 12,2 11,3 10,4 9,5 8,6 7,7 6,7 5,7 4,7 3,7 2,7 1,7"});
}

TEST(DoTraceThinningLine, RingLengthLimitsAndColours) {
  // A ring has no node: only the loop pass finds it. Its first pixel has
  // two ways on and is saved on its own; the first way runs round the ring.
  Tracing ring({"..........", "....####..", "...#....#.", "...#....#.", "....####..", ".........."}, 2);
  ASSERT_EQ(ring.Run(), (std::vector<std::string>{"0 0 -1 1 -1 1: 4,1", "1 0 0 -1 -1 0: 4,1 3,2 3,3 4,4 5,4 6,4 7,4 8,3 8,2 7,1 6,1 5,1"}));
  EXPECT_EQ(0, ring.engine.m_listThinLines.front()->m_pPolygonLine->m_nLines);  // one point: no lines
  // 17 and 18 pixels against sqrt(300) = 17.32 at one unit per pixel.
  Tracing len({"....................", ".#################..", "....................", ".##################.", "...................."}, 1);
  auto lines = len.Run();
  EXPECT_TRUE(lines.size() == 1 && lines[0].substr(0, 20) == "0 0 -1 -1 -1 1: 1,3 ");
  Rows bar = {"..........", ".########.", ".........."};
  Tracing zero(bar, 0), none(bar, 8, {});  // zero rectangle: every ending chain goes; no line colours: nothing
  EXPECT_TRUE(zero.Run().empty() && none.Run().empty() && none.mask == MaskWhere(bar, '#'));
  // Ids run over the colours; links stay within one. Red is traced from
  // (1,3) to the junction (6,4), then two branches.
  Tracing two({"............", ".#####......", "............", ".RRRRR......", "......R.....", ".......RRRR.",
               "......R.....", ".....R......", "............"}, 8, {kBlack, kRed});
  EXPECT_EQ(two.Run(false), (std::vector<std::string>{"0 0 -1 -1 -1 1:", "1 1 -1 2 -1 1:", "2 1 1 -1 3 0:", "3 1 2 -1 -1 1:"}));
}

TEST(ThinLineOutput, FormOrderMappingAndDrawing) {
  CPictrace engine;
  LoadBlank(engine, 40, 30);
  CPTThinLines result;
  engine.CreateOutputThinLine();  // nothing to build or hand out
  engine.GetThinLines(&result);
  EXPECT_TRUE(result.m_nThinLines == 0 && result.m_pThinLines == nullptr);
  engine.m_arrLineColors.Add(kRed), engine.m_arrLineColors.Add(kBlue);
  // (colour index, selected, smoothed points); colour 5 is not in the list.
  for (auto& l : std::vector<std::tuple<int, int, std::vector<sPoint>>>{
           {1, 1, {{0, 0}, {4, 10}}}, {0, 0, {{2, 10}, {6, 10}, {6, 20}}}, {5, 1, {{1, 1}, {2, 2}}}, {0, 0, {{3, 4}}}, {0, 0, {{5, 20}, {35, 20}}}}) {
    COutlineThinline* p = new COutlineThinline;
    p->m_nColorIndex = std::get<0>(l), p->m_bSelected = std::get<1>(l), p->m_crColor = p->m_nColorIndex ? kBlue : kRed;
    p->m_nSmoothPoints = static_cast<int>(std::get<2>(l).size());
    std::copy(std::get<2>(l).begin(), std::get<2>(l).end(), p->m_pSmoothPoints = new sPoint[p->m_nSmoothPoints]);
    p->m_nNextSibling = 5, p->m_nParent = 6, p->m_nFirstChild = 7, p->m_bLaterBranch = 1;
    engine.m_listThinLines.push_back(p);
  }
  engine.CreateOutputThinLine(), engine.CreateOutputThinLine();  // built again: replaced (the leak checker watches)
  const CPTPolygonLine* form = (*std::next(engine.m_listThinLines.begin()))->m_pPolygonLine;
  ASSERT_EQ(2, form->m_nLines);  // y from the top: 30 - y; straight, no control points
  const CPTLine &a = form->m_pLines[0], &b = form->m_pLines[1];
  EXPECT_EQ(std::vector<float>({a.m_ptStart.x, a.m_ptStart.y, b.m_ptEnd.x, b.m_ptEnd.y, float(a.m_nType), a.m_ptCtrl1.x}),
            std::vector<float>({2, 20, 6, 10, 0, 0}));
  EXPECT_EQ(std::vector<int>({form->m_nAttr1, form->m_nAttr2, form->m_nAttr3, form->m_nAttr4}), std::vector<int>({5, 6, 7, 1}));
  EXPECT_EQ((*std::prev(engine.m_listThinLines.end(), 2))->m_pPolygonLine->m_nLines, 0);  // one point: no line
  // The host's copy: colour 0 first, the unknown colour left out, mapped into a rectangle twice the picture at (100, 50).
  engine.SetImageRealRect(100, 50, 180, 110);
  engine.GetThinLines(&result);
  ASSERT_EQ(4, result.m_nThinLines);
  std::vector<int> got;
  for (int k = 0; k < 4; k++) got.push_back(result.m_pThinLines[k].m_nColorIndex * 10 + result.m_pThinLines[k].m_pPolygonLines[0].m_nAttr5);
  EXPECT_EQ(got, std::vector<int>({10, 10, 10, 21}));
  const CPTLine& line = result.m_pThinLines[0].m_pPolygonLines[0].m_pLines[0];  // control points: the corner
  EXPECT_EQ(std::vector<float>({line.m_ptStart.x, line.m_ptStart.y, line.m_ptCtrl1.x, line.m_ptCtrl2.y}), std::vector<float>({104, 90, 100, 50}));
  EXPECT_NE(form->m_pLines, result.m_pThinLines[0].m_pPolygonLines[0].m_pLines);
  // Drawing the last line, (5,20)-(35,20): nothing while the thinning view is off; then a red pen two
  // pixels wide 10 from the top, at twice the size 20; selected: white dots, dashes inverting beneath.
  CRasterDC dc(40, 30), big(80, 60), sel(40, 30);
  engine.DrawThinLine(&dc, CRect(0, 0, 40, 30));
  EXPECT_EQ(kWhite, dc.GetPixel(20, 10));
  engine.SetThinningFlag(1);
  engine.DrawThinLine(&dc, CRect(0, 0, 40, 30)), engine.DrawThinLine(&big, CRect(0, 0, 80, 60));
  engine.m_listThinLines.back()->m_bSelected = 1;
  engine.DrawThinLine(&sel, CRect(0, 0, 40, 30));
  int red = 0, bigRed = 0, black = 0, white = 0;
  for (int y = 8; y <= 12; y++) red += dc.GetPixel(20, y) == kRed, bigRed += big.GetPixel(40, 2 * y) == kRed;
  for (int x = 8; x <= 32; x++) black += sel.GetPixel(x, 10) == kBlack, white += sel.GetPixel(x, 10) == kWhite;
  EXPECT_EQ(std::vector<int>({red, bigRed > 0, black > 5, white > 5, black + white}), std::vector<int>({2, 1, 1, 1, 25}));
  EXPECT_TRUE(dc.GetPixel(20, 20) == kWhite && sel.GetPixel(20, 20) == kWhite);
}
