// The line-art job: which colours of a segmented picture are thinned, and the whole job on real
// line drawings, whose centre lines lie on the strokes and whose connected strokes give line trees.
#include <gtest/gtest.h>

#include <map>

#include "core/OutlineRecords.h"
#include "PictraceLineArt.h"
#include "thinline/ThinKit.h"
#include "core/ThinLineRecords.h"

using namespace thintest;
using namespace pictrace::thinline;

TEST(LineArt, ChoosesTheColoursToThinAndRefusesWithoutPictureOrRegions) {
  LineArtResult result;
  std::string error;
  CPictrace bare;  // without a picture, then without regions
  EXPECT_FALSE(RunLineArt(bare, LineArtOptions(), result, error) || error.empty());
  LoadBlank(bare, 8, 8);
  EXPECT_FALSE(ChooseLineColors(bare, LineArtOptions(), result, error = "") || error.empty() || ThinAndTrace(bare, kWhite, 1.0, result, error));
  // A white frame around black and red regions, as a segmentation leaves it: by default every colour
  // but the background is thinned, in colour list order; given line colours pick the nearest one.
  for (std::vector<COLORREF> given : {std::vector<COLORREF>{}, {RGB(30, 20, 10)}}) {
    CPictrace engine;
    LoadBlank(engine, 20, 20);
    for (COLORREF c : {kWhite, kRed, kBlack}) engine.m_arrColorList.Add(c);
    for (int b : {0, 5, 10}) {  // boxes 0..19 (white), 5..9 (black), 10..14 (red)
      COutlineRegion* r = new COutlineRegion;
      r->m_rcBound = CRect(b, b, b ? b + 4 : 19, b ? b + 4 : 19);
      r->m_nColorIndex = b ? 3 - b / 5 : 0, r->m_crColor = engine.m_arrColorList[r->m_nColorIndex];
      r->m_nPixels = (r->m_rcBound.Width() + 1) * (r->m_rcBound.Height() + 1);
      engine.m_listOutlineRegions.push_back(r);
    }
    LineArtOptions options;
    ASSERT_TRUE(ChooseLineColors(engine, (options.lineColors = given, options), result, error)) << error;
    EXPECT_TRUE(result.bBackground && result.crBackground == kWhite);
    std::vector<COLORREF> got(engine.m_arrLineColors.GetData(), engine.m_arrLineColors.GetData() + engine.m_arrLineColors.GetSize());
    for (COutlineRegion* r : engine.m_listStoredRegions) got.push_back(r->m_bMarked);  // then the only-thinning flags
    for (COutlineRegion* r : engine.m_listOutlineRegions) got.push_back(r->m_bSkip);
    EXPECT_EQ(got, given.empty() ? std::vector<COLORREF>({kRed, kBlack, 1, 0, 0, 0, 0, 0}) : std::vector<COLORREF>({kBlack, 1, 0, 1, 0, 0, 0}));
  }
}

bool IsDark(COLORREF c) { return GetRValue(c) + GetGValue(c) + GetBValue(c) < 3 * 160; }

// Runs the job at one output unit per pixel; counts lines, points, trees, points on light input
// pixels and the 8-connected groups of stroke pixels.
std::map<std::string, long> CheckDrawing(const std::string& path) {
  std::map<std::string, long> s;
  std::vector<unsigned char> dib = testimg::LoadDib(path);
  CPictrace engine;
  if (dib.empty() || !engine.SetDIBData(dib.data())) return s;
  const int w = engine.m_bmiHeader.biWidth, h = engine.m_bmiHeader.biHeight;
  engine.SetImageRealRect(0, 0, w, h);
  LineArtResult result;
  std::string error;
  EXPECT_TRUE(RunLineArt(engine, LineArtOptions(), result, error)) << error;
  EXPECT_TRUE(result.bBackground && !IsDark(result.crBackground) && engine.m_arrLineColors.GetSize() == 1 &&
              IsDark(engine.m_arrLineColors[0]));
  const COLORREF line = engine.m_arrLineColors.GetSize() ? engine.m_arrLineColors[0] : kWhite;
  auto stroke = [&](int x, int y) { return x >= 0 && y >= 0 && x < w && y < h && testimg::PixelAt(engine.m_pWorkBits, w, x, y) == line; };
  std::map<int, const COutlineThinline*> byId;
  for (const COutlineThinline* l : engine.m_listThinLines) byId[l->m_nLineID] = l;
  for (const COutlineThinline* l : engine.m_listThinLines) {
    s["lines"]++, s["points"] += l->m_nRawPoints, s["trees"] += l->m_nParent < 0;
    const COutlineVector* v = l->m_pVector;
    for (int i = 0; i < v->m_nPoints; i++) {  // on the segmented strokes; on the input's unless a pocket was filled
      EXPECT_TRUE(stroke(v->m_pPoints[i].x, v->m_pPoints[i].y));
      s["offInput"] += !IsDark(testimg::PixelAt(engine.m_pDIBBits, w, v->m_pPoints[i].x, v->m_pPoints[i].y));
    }
    // A first branch starts where its parent ends, a later one where the branch before it started.
    const COutlineVector* pv = l->m_nParent >= 0 && l->m_nParent != l->m_nLineID ? byId.at(l->m_nParent)->m_pVector : v;
    EXPECT_TRUE(v->m_pPoints[0] == pv->m_pPoints[l->m_bLaterBranch || pv == v ? 0 : pv->m_nPoints - 1]) << l->m_nLineID;
  }
  std::vector<int> seen(static_cast<size_t>(w) * h, 0), stack;
  for (int start = 0; start < w * h; start++)
    for (stack = {start}, s["strokeGroups"] += !seen[start] && stroke(start % w, start / w); !stack.empty();) {
      int p = stack.back(), x = p % w, y = p / w;
      stack.pop_back();
      if (seen[p] || !stroke(x, y)) continue;
      seen[p] = 1;
      for (int d = 0; d < 9; d++)
        if (stroke(x + d % 3 - 1, y + d / 3 - 1)) stack.push_back(p + (d / 3 - 1) * w + d % 3 - 1);
    }
  CPTThinLines out;
  engine.GetThinLines(&out);
  EXPECT_EQ(s["lines"], out.m_nThinLines);
  return s;
}

TEST(LineArt, CentreLinesLieOnTheStrokesOfRealDrawings) {
  auto s = CheckDrawing(testimg::ExamplePath("mug.png"));
  EXPECT_TRUE(s["lines"] > 10 && s["offInput"] == 0 && s["strokeGroups"] == s["trees"]);  // one tree per stroke
  for (const char* name : {"line_frog.png", "line_europe_map.png"}) {
    if (!testimg::FileExists(testimg::SharedImagePath(name))) continue;
    s = CheckDrawing(testimg::SharedImagePath(name));
    EXPECT_TRUE(s["lines"] > 10 && s["offInput"] * 10 < s["points"] && s["trees"] <= s["strokeGroups"]) << name;
  }
}
