// Curve output on real pictures: it tiles the picture as the straight output
// does (sampled 4 x 4 per pixel, at 1 and 4 units per pixel), neighbours hold
// the same cubics, nothing crosses, every traced point stays within the
// tolerance, and it is lighter than the straight output while painting
// nearly the same pixels. The examples always run; PICTRACE_ALL_PICTURES=1
// adds the shared pictures.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <unordered_map>

#include "PictraceLineArt.h"
#include "cli/OutputDocument.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"
#include "core/Progress.h"
#include "engine/BorderGraph.h"
#include "engine/RegionOutput.h"
#include "outline/OutlineKit.h"
#include "pipeline/RegionRaster.h"

namespace {

using testimg::Point;

struct Piece {
  Point a, b;
  int outline;
};

// Every outline of the engine's regions (image pixels, y down) as pieces of
// 64 per Bezier line, with its raw chain.
struct Outlines {
  std::vector<Piece> pieces;
  std::vector<std::pair<const sPoint*, int>> raw;
  int segments = 0, subpaths = 0;
  explicit Outlines(const CPictrace& e) {
    for (const COutlineRegion* r : e.m_listOutlineRegions)
      for (INT_PTR k = -1; k < r->m_arrHoles.GetSize(); k++) {
        const CPTPolygon* p = k < 0 ? r->m_pPolygon : r->m_arrHoles[k]->m_pPolygon;
        if (k < 0) raw.push_back({r->m_pRawPoints, r->m_nRawPoints});
        else raw.push_back({r->m_arrHoles[k]->m_pRawPoints, r->m_arrHoles[k]->m_nRawPoints});
        if (!p || p->m_nLines == 0) continue;
        subpaths++, segments += p->m_nLines;
        for (int i = 0; i < p->m_nLines; i++) {
          std::vector<Point> pts = testimg::FlattenLine(p->m_pLines[i], 64);
          for (size_t j = 1; j < pts.size(); j++) pieces.push_back({pts[j - 1], pts[j], static_cast<int>(raw.size()) - 1});
        }
      }
  }
};

// Pieces by 2-pixel cell.
std::unordered_map<long long, std::vector<int>> Cells(const std::vector<Piece>& pieces) {
  std::unordered_map<long long, std::vector<int>> cells;
  for (size_t i = 0; i < pieces.size(); i++) {
    const Piece& p = pieces[i];
    for (long long cy = static_cast<long long>(std::min(p.a.y, p.b.y) / 2); cy <= static_cast<long long>(std::max(p.a.y, p.b.y) / 2); cy++)
      for (long long cx = static_cast<long long>(std::min(p.a.x, p.b.x) / 2); cx <= static_cast<long long>(std::max(p.a.x, p.b.x) / 2); cx++)
        cells[cy * 100000 + cx].push_back(static_cast<int>(i));
  }
  return cells;
}

double Orient(Point a, Point b, Point c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); }

// Pieces that cross properly (each one's ends strictly on both sides of the other).
int Crossings(const std::vector<Piece>& pieces) {
  int n = 0;
  for (const auto& cell : Cells(pieces))
    for (size_t i = 0; i < cell.second.size(); i++)
      for (size_t j = i + 1; j < cell.second.size(); j++) {
        const Piece &p = pieces[cell.second[i]], &q = pieces[cell.second[j]];
        n += Orient(p.a, p.b, q.a) * Orient(p.a, p.b, q.b) < 0 && Orient(q.a, q.b, p.a) * Orient(q.a, q.b, p.b) < 0;
      }
  return n;
}

double SegmentDistance(Point p, Point a, Point b) {
  double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len2, 0.0, 1.0) : 0.0;
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// The largest distance of a raw chain point from its own outline's curve.
double WorstRawDistance(const Outlines& o, int height) {
  auto cells = Cells(o.pieces);
  double worst = 0;
  for (size_t k = 0; k < o.raw.size(); k++)
    for (int i = 0; i < o.raw[k].second; i++) {
      Point p{1.0 * o.raw[k].first[i].x, 1.0 * (height - o.raw[k].first[i].y)};
      double best = 1e9;
      for (long long cy = static_cast<long long>(p.y / 2) - 1; cy <= static_cast<long long>(p.y / 2) + 1; cy++)
        for (long long cx = static_cast<long long>(p.x / 2) - 1; cx <= static_cast<long long>(p.x / 2) + 1; cx++) {
          auto it = cells.find(cy * 100000 + cx);
          if (it == cells.end()) continue;
          for (int j : it->second)
            if (o.pieces[j].outline == static_cast<int>(k)) best = std::min(best, SegmentDistance(p, o.pieces[j].a, o.pieces[j].b));
        }
      worst = std::max(worst, best);
    }
  return worst;
}

// Bezier lines of the outlines that are not on the frame and that no other
// outline holds, bit for bit, either way (a hole runs the same way as the
// outline of the region inside it).
int UnsharedLines(const CPictrace& e) {
  using Key = std::array<float, 8>;
  std::map<Key, int> count;
  std::vector<Key> lines;
  const float w = static_cast<float>(e.m_bmiHeader.biWidth), h = static_cast<float>(e.m_bmiHeader.biHeight);
  for (const COutlineRegion* r : e.m_listOutlineRegions)
    for (INT_PTR k = -1; k < r->m_arrHoles.GetSize(); k++) {
      const CPTPolygon* p = k < 0 ? r->m_pPolygon : r->m_arrHoles[k]->m_pPolygon;
      for (int i = 0; p && i < p->m_nLines; i++) {
        const CPTLine& l = p->m_pLines[i];
        Key key{l.m_ptStart.x, l.m_ptStart.y, l.m_ptCtrl1.x, l.m_ptCtrl1.y, l.m_ptCtrl2.x, l.m_ptCtrl2.y, l.m_ptEnd.x, l.m_ptEnd.y};
        key = std::min(key, Key{key[6], key[7], key[4], key[5], key[2], key[3], key[0], key[1]});
        count[key]++;
        bool frame = true;
        for (int j = 0; j < 8; j += 2) frame = frame && (key[j] == 0 || key[j] == w || key[j + 1] == 0 || key[j + 1] == h);
        if (!frame) lines.push_back(key);
      }
    }
  int unshared = 0;
  for (const Key& k : lines) unshared += count[k] != 2;
  return unshared;
}

int Nodes(const CPTRegions& regions) {
  int n = 0;
  for (int r = 0; r < regions.m_nRegions; r++)
    for (int k = 0; k < regions.m_pRegions[r].m_nPolygons; k++)
      n += regions.m_pRegions[r].m_pPolygons[k].m_nLines ? 1 + regions.m_pRegions[r].m_pPolygons[k].m_nLines : 0;
  return n;
}

using LineKey = std::array<float, 8>;

// Each region's Bezier lines, sorted, keyed by the region's place in the
// list as first traced.
std::map<const COutlineRegion*, std::vector<LineKey>> LinesByRegion(const std::list<COutlineRegion*>& regions) {
  std::map<const COutlineRegion*, std::vector<LineKey>> out;
  for (const COutlineRegion* r : regions)
    for (INT_PTR k = -1; k < r->m_arrHoles.GetSize(); k++) {
      const CPTPolygon* p = k < 0 ? r->m_pPolygon : r->m_arrHoles[k]->m_pPolygon;
      for (int i = 0; p && i < p->m_nLines; i++) {
        const CPTLine& l = p->m_pLines[i];
        out[r].push_back({l.m_ptStart.x, l.m_ptStart.y, l.m_ptCtrl1.x, l.m_ptCtrl1.y, l.m_ptCtrl2.x, l.m_ptCtrl2.y, l.m_ptEnd.x, l.m_ptEnd.y});
      }
      std::sort(out[r].begin(), out[r].end());
    }
  return out;
}

class CurveTiling : public ::testing::TestWithParam<std::string> {};

TEST_P(CurveTiling, TilesSharesBordersAndStaysFaithful) {
  std::vector<unsigned char> dib = testimg::LoadDib(GetParam());
  CPictrace e;
  ASSERT_TRUE(e.SetDIBData(dib.data()));
  const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
  e.SetImageRealRect(0, 0, w, h);
  CDWordArray colors;
  e.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  CPTRegions straight;
  e.GetRegions(&straight, 0);
  std::vector<int> straightColour(static_cast<size_t>(w) * h);
  {
    auto cov = pipetest::RasterizeRegions(straight, w, h);
    for (size_t k = 0; k < straightColour.size(); k++) straightColour[k] = cov.owner[k] < 0 ? 0 : straight.m_pRegions[cov.owner[k]].m_nColorIndex;
  }
  for (int scale : {1, 4}) {
    SCOPED_TRACE(scale);
    e.SetImageRealRect(0, 0, w * scale, h * scale);
    CPTRegions curved;
    e.GetRegions(&curved, 1);
    auto fine = pipetest::RasterizeRegions(curved, 4 * w, 4 * h, 0, 0, scale / 4.0, scale / 4.0);
    auto centres = pipetest::RasterizeRegions(curved, w, h, 0, 0, scale, scale);
    int changed = 0;
    for (size_t k = 0; k < straightColour.size(); k++)
      changed += straightColour[k] != (centres.owner[k] < 0 ? 0 : curved.m_pRegions[centres.owner[k]].m_nColorIndex);
    std::printf("[ curves ] %s x%d: %d gaps, %d overlaps in %d samples; nodes %d vs %d straight (%.2f); %.2f %% pixels changed\n",
                GetParam().substr(GetParam().rfind('/') + 1).c_str(), scale, fine.Uncovered(), fine.CoveredTwice(),
                16 * w * h, Nodes(curved), Nodes(straight), 1.0 * Nodes(curved) / Nodes(straight), 100.0 * changed / (w * h));
    EXPECT_EQ(fine.Uncovered(), 0);
    EXPECT_EQ(fine.CoveredTwice(), 0);
    EXPECT_LE(Nodes(curved), 0.6 * Nodes(straight));
    EXPECT_LE(changed, 0.02 * w * h);
  }
  Outlines o(e);
  // The same curves when the regions come in the other order (crossings were
  // mended on these pictures, which must not depend on it either).
  auto lines = LinesByRegion(e.m_listOutlineRegions);
  e.m_listOutlineRegions.reverse();
  pictrace::Progress silent;
  pictrace::engine::BuildOutputPolygons(e.m_listOutlineRegions, static_cast<int>(e.m_arrColorList.GetSize()), 1, w, h, e.m_dCurveTolerance, silent);
  EXPECT_TRUE(LinesByRegion(e.m_listOutlineRegions) == lines);
  EXPECT_EQ(UnsharedLines(e), 0);
  EXPECT_EQ(Crossings(o.pieces), 0);
  double worst = WorstRawDistance(o, h);
  std::printf("[ curves ] worst traced point %.3f px from its curve\n", worst);
  EXPECT_LE(worst, e.m_dCurveTolerance + 0.01);
}

// Hand-made pictures (rows from the bottom, each character a 3 x 3 block
// unless the picture is marked fine, since regions of 4 pixels or less are
// cleaned up), traced by the outline stage at tolerance 0, curves built at
// tolerance 1: the border split, the points every outline through them must
// keep (in characters, top-down), and the tiling checks.
TEST(CurveTiling, HandMadeBordersAndJunctions) {
  struct Case {
    const char* name;
    std::vector<const char*> rows;
    bool fine;
    int borders;                   // -1: not counted by hand
    std::vector<Point> junctions;  // kept exactly by every outline through them
  } cases[] = {
      // 3 frame borders a square, one shared between (2,0) and (2,2).
      {"two squares", {"..##", "..##"}, false, 7, {{2, 0}, {2, 2}}},
      // 4 frame borders; the hole and the inner square are one closed border.
      {"ring", {"....", ".##.", ".##.", "...."}, false, 5, {{0, 0}, {4, 0}, {4, 4}, {0, 4}}},
      // 7 frame borders, 3 shared ones from (2,2).
      {"three at a point", {"rrgg", "rrgg", "rrbb", "rrbb"}, false, 10, {{2, 2}, {2, 0}, {2, 4}, {4, 2}}},
      // 8 frame borders, 4 shared ones from the middle.
      {"four at a corner", {"rrgg", "rrgg", "bbyy", "bbyy"}, false, 12, {{2, 2}}},
      {"diagonal pairs", {"..##", "..##", "##..", "##.."}, false, -1, {{2, 2}}},
      // A staircase strip a pixel wide between two regions: its two borders
      // are a pixel apart and must not cross. Frame: 3 for the strip (the
      // corner at (0,0) cuts one), 2 for each other region; 2 shared.
      {"strip", {"##rrrrrrrrrr", "g##rrrrrrrrr", "gg##rrrrrrrr", "ggg##rrrrrrr", "gggg##rrrrrr", "ggggg##rrrrr",
                 "gggggg##rrrr", "ggggggg##rrr", "gggggggg##rr", "ggggggggg##r"}, true, 10, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const int k = c.fine ? 1 : 3;
    OutlineEngine e;
    e.Load(k * static_cast<int>(std::strlen(c.rows[0])), k * static_cast<int>(c.rows.size()),
           [&](int x, int row) { return TextColor(c.rows[row / k][x / k]); });
    ASSERT_EQ(e.GetOutline4Cartoon2(0.0, nullptr), 1);
    const int w = e.m_bmiHeader.biWidth, h = e.m_bmiHeader.biHeight;
    std::vector<pictrace::engine::OutlineChain> chains;
    for (COutlineRegion* r : e.m_listOutlineRegions) {
      r->m_nColorIndex = 0;
      chains.push_back({r->m_pRawPoints, r->m_nRawPoints});
      for (INT_PTR i = 0; i < r->m_arrHoles.GetSize(); i++) chains.push_back({r->m_arrHoles[i]->m_pRawPoints, r->m_arrHoles[i]->m_nRawPoints});
    }
    if (c.borders >= 0) {
      EXPECT_EQ(pictrace::engine::SplitIntoBorders(chains, w, h).borders.size(), static_cast<size_t>(c.borders));
    }
    pictrace::Progress silent;
    pictrace::engine::BuildOutputPolygons(e.m_listOutlineRegions, 1, 1, w, h, 1.0, silent);
    CPTRegions out;
    pictrace::engine::CollectRegions(e.m_listOutlineRegions, 1, CRect(0, 0, w, h), w, h, &out);
    auto fine = pipetest::RasterizeRegions(out, 4 * w, 4 * h, 0, 0, 0.25, 0.25);
    EXPECT_EQ(std::make_tuple(fine.Uncovered(), fine.CoveredTwice()), std::make_tuple(0, 0));
    EXPECT_EQ(UnsharedLines(e), 0);
    EXPECT_EQ(Crossings(Outlines(e).pieces), 0);
    for (Point j : c.junctions)
      for (int r = 0; r < out.m_nRegions; r++)
        for (int q = 0; q < out.m_pRegions[r].m_nPolygons; q++) {
          const CPTPolygon& p = out.m_pRegions[r].m_pPolygons[q];
          bool passes = false, kept = false;
          for (int i = 0; i < p.m_nLines; i++) {
            std::vector<Point> pts = testimg::FlattenLine(p.m_pLines[i], 64);
            for (const Point& q : pts) passes = passes || std::hypot(q.x - k * j.x, q.y - k * j.y) < 0.01;
            kept = kept || (p.m_pLines[i].m_ptEnd.x == k * j.x && p.m_pLines[i].m_ptEnd.y == k * j.y);
          }
          EXPECT_EQ(passes, kept) << "region " << r << " polygon " << q << " at " << j.x << "," << j.y;
        }
    // Curves on the frame stay on it: the picture's corners are kept and no
    // point of a curve leaves the picture.
    for (int r = 0; r < out.m_nRegions; r++)
      for (int q = 0; q < out.m_pRegions[r].m_nPolygons; q++)
        for (int i = 0; i < out.m_pRegions[r].m_pPolygons[q].m_nLines; i++)
          for (const Point& pt : testimg::FlattenLine(out.m_pRegions[r].m_pPolygons[q].m_pLines[i], 16))
            EXPECT_TRUE(pt.x >= 0 && pt.y >= 0 && pt.x <= w && pt.y <= h) << pt.x << "," << pt.y;
    // The same curves when the regions come in the other order.
    auto before = LinesByRegion(e.m_listOutlineRegions);
    e.m_listOutlineRegions.reverse();
    pictrace::engine::BuildOutputPolygons(e.m_listOutlineRegions, 1, 1, w, h, 1.0, silent);
    EXPECT_TRUE(LinesByRegion(e.m_listOutlineRegions) == before);
  }
}

// A host that converts the straight regions it got one by one gets the
// curve output's curves, so neighbours still share their borders.
TEST(CurveTiling, HostConvertedRegionsAreTheCurveOutput) {
  std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath("flag_kr.png"));
  CPictrace e;
  ASSERT_TRUE(e.SetDIBData(dib.data()));
  e.SetImageRealRect(10, 20, 10 + 2 * e.m_bmiHeader.biWidth, 20 + 2 * e.m_bmiHeader.biHeight);
  CDWordArray colors;
  e.DoSegmentation(8, &colors, 1.0, 0, nullptr);
  CPTRegions host, curved;
  e.GetRegions(&host, 0);
  e.GetRegions(&curved, 1);
  ASSERT_EQ(host.m_nRegions, curved.m_nRegions);
  for (int r = 0; r < host.m_nRegions; r++)
    for (int k = 0; k < host.m_pRegions[r].m_nPolygons; k++) {
      CPTPolygon& p = host.m_pRegions[r].m_pPolygons[k];
      const CPTPolygon& want = curved.m_pRegions[r].m_pPolygons[k];
      ASSERT_EQ(e.ConvertToBezier(&p), 1);
      ASSERT_EQ(p.m_nLines, want.m_nLines) << r << " " << k;
      for (int i = 0; i < p.m_nLines; i++)
        EXPECT_TRUE(p.m_pLines[i].m_ptCtrl1.x == want.m_pLines[i].m_ptCtrl1.x && p.m_pLines[i].m_ptEnd.y == want.m_pLines[i].m_ptEnd.y);
    }
}

// lines --curves: every centre line keeps its two ends (where the lines of a
// tree meet) and its straight path stays within the tolerance of the curve.
TEST(CurveTiling, CentreLinesAsCurvesKeepTheirEnds) {
  std::vector<unsigned char> dib = testimg::LoadDib(testimg::ExamplePath("mug.png"));
  CPictrace e;
  ASSERT_TRUE(e.SetDIBData(dib.data()));
  e.SetImageRealRect(0, 0, e.m_bmiHeader.biWidth, e.m_bmiHeader.biHeight);
  pictrace::thinline::LineArtResult result;
  std::string error;
  ASSERT_TRUE(pictrace::thinline::RunLineArt(e, pictrace::thinline::LineArtOptions(), result, error)) << error;
  pictrace::OutputDocument straight, curved;
  pictrace::TakeLines(straight, e);
  pictrace::TakeLines(curved, e);
  pictrace::CurveLines(curved, e);
  int before = 0, after = 0;
  for (int i = 0; i < straight.lines.m_nThinLines; i++) {
    const CPTPolygonLine &s = straight.lines.m_pThinLines[i].m_pPolygonLines[0], &c = curved.lines.m_pThinLines[i].m_pPolygonLines[0];
    before += s.m_nLines, after += c.m_nLines;
    if (s.m_nLines == 0) continue;  // a lone skeleton pixel
    ASSERT_GT(c.m_nLines, 0);
    EXPECT_TRUE(c.m_pLines[0].m_ptStart.x == s.m_pLines[0].m_ptStart.x && c.m_pLines[0].m_ptStart.y == s.m_pLines[0].m_ptStart.y);
    EXPECT_TRUE(c.m_pLines[c.m_nLines - 1].m_ptEnd.x == s.m_pLines[s.m_nLines - 1].m_ptEnd.x &&
                c.m_pLines[c.m_nLines - 1].m_ptEnd.y == s.m_pLines[s.m_nLines - 1].m_ptEnd.y);
    std::vector<Piece> pieces;
    for (int k = 0; k < c.m_nLines; k++) {
      EXPECT_EQ(c.m_pLines[k].m_nType, 1);
      std::vector<Point> pts = testimg::FlattenLine(c.m_pLines[k], 64);
      for (size_t j = 1; j < pts.size(); j++) pieces.push_back({pts[j - 1], pts[j], 0});
    }
    for (int k = 0; k < s.m_nLines; k++) {
      double best = 1e9;
      for (const Piece& p : pieces) best = std::min(best, SegmentDistance({s.m_pLines[k].m_ptEnd.x, s.m_pLines[k].m_ptEnd.y}, p.a, p.b));
      EXPECT_LE(best, 1.01) << "line " << i << " vertex " << k;
    }
  }
  EXPECT_LT(after, before * 3 / 4);
}

std::vector<std::string> Pictures() {
  std::vector<std::string> all;
  for (const char* n : {"monkey_face.png", "flag_kr.png", "astronaut.png", "mug.png"}) all.push_back(testimg::ExamplePath(n));
  const char* every = std::getenv("PICTRACE_ALL_PICTURES");
  if (every && *every == '1')
    for (const char* n : {"clip_butterflies.png", "clip_im_logo.png", "line_europe_map.png", "line_frog.png", "line_stained_glass.png",
                          "photo_fig_large.png", "photo_lighthouse.png", "photo_paintbrushes.png"})
      all.push_back(testimg::SharedImagePath(n));
  return all;
}

INSTANTIATE_TEST_SUITE_P(Pictures, CurveTiling, ::testing::ValuesIn(Pictures()), [](const auto& info) {
  return testimg::ParamName(info.param.substr(info.param.rfind('/') + 1));
});

}  // namespace
