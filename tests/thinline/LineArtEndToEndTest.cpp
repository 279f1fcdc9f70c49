// The whole line-art job on real line drawings: the centre lines lie on the
// strokes, and connected strokes give connected line trees.
#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <map>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"
#include "PictraceLineArt.h"
#include "core/ThinLineRecords.h"

namespace {

bool IsDark(COLORREF c) { return GetRValue(c) + GetGValue(c) + GetBValue(c) < 3 * 160; }

// Number of 8-connected groups of pixels of the colour in a 24-bit picture.
int CountComponents(const unsigned char* bits, int w, int h, COLORREF color) {
  std::vector<unsigned char> seen(static_cast<size_t>(w) * h, 0);
  int groups = 0;
  std::vector<int> stack;
  for (int start = 0; start < w * h; start++) {
    if (seen[start] || testimg::PixelAt(bits, w, start % w, start / w) != color) continue;
    groups++;
    seen[start] = 1;
    stack.push_back(start);
    while (!stack.empty()) {
      const int p = stack.back();
      stack.pop_back();
      for (int dy = -1; dy <= 1; dy++)
        for (int dx = -1; dx <= 1; dx++) {
          const int x = p % w + dx, y = p / w + dy;
          if (x < 0 || y < 0 || x >= w || y >= h) continue;
          const int q = y * w + x;
          if (!seen[q] && testimg::PixelAt(bits, w, x, y) == color) {
            seen[q] = 1;
            stack.push_back(q);
          }
        }
    }
  }
  return groups;
}

struct Summary {
  int lines = 0;
  long points = 0;
  int trees = 0;
  int strokeGroups = 0;
  long offInput = 0;  // points on pixels that are light in the input
};

// Runs the job on a picture file at one output unit per pixel and checks
// the lines against the picture's pixels.
Summary CheckDrawing(const std::string& path) {
  Summary s;
  std::vector<unsigned char> dib = testimg::LoadDib(path);
  if (dib.empty()) return s;
  CPictrace engine;
  EXPECT_EQ(1, engine.SetDIBData(dib.data()));
  const int w = engine.m_bmiHeader.biWidth;
  const int h = engine.m_bmiHeader.biHeight;
  engine.SetImageRealRect(0, 0, w, h);

  pictrace::thinline::LineArtOptions options;
  pictrace::thinline::LineArtResult result;
  std::string error;
  auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(pictrace::thinline::RunLineArt(engine, options, result, error)) << error;
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_TRUE(result.bBackground);
  EXPECT_FALSE(IsDark(result.crBackground));
  EXPECT_EQ(1, engine.m_arrLineColors.GetSize());
  if (engine.m_arrLineColors.GetSize() != 1) return s;
  const COLORREF line = engine.m_arrLineColors[0];
  EXPECT_TRUE(IsDark(line));

  std::map<int, const COutlineThinline*> byId;
  for (const COutlineThinline* pLine : engine.m_listThinLines) byId[pLine->m_nLineID] = pLine;
  for (const COutlineThinline* pLine : engine.m_listThinLines) {
    s.lines++;
    s.points += pLine->m_nRawPoints;
    if (pLine->m_nParent < 0) s.trees++;
    const COutlineVector* v = pLine->m_pVector;
    for (int i = 0; i < v->m_nPoints; i++) {
      const sPoint p = v->m_pPoints[i];
      // On the strokes of the segmented picture, always; of the input,
      // unless the segmentation filled a small pocket between strokes.
      EXPECT_EQ(line, testimg::PixelAt(engine.m_pWorkBits, w, p.x, p.y)) << p.x << "," << p.y;
      if (!IsDark(testimg::PixelAt(engine.m_pDIBBits, w, p.x, p.y))) s.offInput++;
    }
    // A first branch starts where its parent ends; a later branch at the
    // junction the branch before it started from.
    if (pLine->m_nParent >= 0 && pLine->m_nParent != pLine->m_nLineID) {
      const COutlineVector* pv = byId.at(pLine->m_nParent)->m_pVector;
      const sPoint junction = pLine->m_bLaterBranch ? pv->m_pPoints[0] : pv->m_pPoints[pv->m_nPoints - 1];
      EXPECT_TRUE(v->m_pPoints[0] == junction) << "line " << pLine->m_nLineID;
    }
  }
  s.strokeGroups = CountComponents(engine.m_pWorkBits, w, h, line);
  CPTThinLines out;
  engine.GetThinLines(&out);
  EXPECT_EQ(s.lines, out.m_nThinLines);
  std::cout << path << ": " << s.lines << " lines in " << s.trees << " trees over "
            << s.strokeGroups << " stroke groups, " << s.points << " points (" << s.offInput
            << " on light input pixels), " << seconds << " s (segmentation "
            << result.dSegmentSeconds << " s, thinning " << result.dThinSeconds
            << " s, tracing " << result.dTraceSeconds << " s)\n";
  return s;
}

}  // namespace

TEST(LineArt, MugCentreLinesLieOnTheStrokes) {
  Summary s = CheckDrawing(testimg::ExamplePath("mug.png"));
  EXPECT_GT(s.lines, 10);
  EXPECT_EQ(0, s.offInput);
  // One tree per connected stroke.
  EXPECT_EQ(s.strokeGroups, s.trees);
}

TEST(LineArt, SharedLineDrawings) {
  for (const char* name : {"line_frog.png", "line_europe_map.png"}) {
    const std::string path = testimg::SharedImagePath(name);
    if (!testimg::FileExists(path)) {
      std::cout << "skipped: " << path << " is absent\n";
      continue;
    }
    Summary s = CheckDrawing(path);
    EXPECT_GT(s.lines, 10) << name;
    EXPECT_LT(s.offInput * 10, s.points) << name;
    EXPECT_LE(s.trees, s.strokeGroups) << name;
  }
}
