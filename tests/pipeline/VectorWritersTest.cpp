// SVG and JSON documents of hand-built regions.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/JsonWriter.h"
#include "cli/SvgWriter.h"

using namespace pictrace;

namespace {

void SetLine(CPTLine& l, int type, float x0, float y0, float x1, float y1) {
  l.m_nType = type;
  l.m_ptStart.x = x0, l.m_ptStart.y = y0;
  l.m_ptEnd.x = x1, l.m_ptEnd.y = y1;
}

// Region 0 (colour 2): a 4 x 4 square with a triangular hole. Region 1
// (colour 1): one Bezier line and a straight one.
struct Sample {
  Sample() {
    regions.m_nRegions = 2;
    regions.m_pRegions = new CPTRegion[2];
    CPTRegion& a = regions.m_pRegions[0];
    a.m_nColorIndex = 2;
    a.m_nRegionFlag = 1;
    a.m_nPolygons = 2;
    a.m_pPolygons = new CPTPolygon[2];
    a.m_pPolygons[0].m_nLines = 4;
    a.m_pPolygons[0].m_pLines = new CPTLine[4];
    SetLine(a.m_pPolygons[0].m_pLines[0], 0, 0, 0, 4, 0);
    SetLine(a.m_pPolygons[0].m_pLines[1], 0, 4, 0, 4, 4);
    SetLine(a.m_pPolygons[0].m_pLines[2], 0, 4, 4, 0, 4);
    SetLine(a.m_pPolygons[0].m_pLines[3], 0, 0, 4, 0, 0);
    a.m_pPolygons[1].m_nLines = 3;
    a.m_pPolygons[1].m_pLines = new CPTLine[3];
    SetLine(a.m_pPolygons[1].m_pLines[0], 0, 1, 1, 2.5f, 1);
    SetLine(a.m_pPolygons[1].m_pLines[1], 0, 2.5f, 1, 1, 3);
    SetLine(a.m_pPolygons[1].m_pLines[2], 0, 1, 3, 1, 1);
    CPTRegion& b = regions.m_pRegions[1];
    b.m_nColorIndex = 1;
    b.m_nPolygons = 1;
    b.m_pPolygons = new CPTPolygon[1];
    b.m_pPolygons[0].m_nLines = 2;
    b.m_pPolygons[0].m_pLines = new CPTLine[2];
    SetLine(b.m_pPolygons[0].m_pLines[0], 1, 5, 5, 7, 5);
    b.m_pPolygons[0].m_pLines[0].m_ptCtrl1.x = 5.5f, b.m_pPolygons[0].m_pLines[0].m_ptCtrl1.y = 6;
    b.m_pPolygons[0].m_pLines[0].m_ptCtrl2.x = 6.5f, b.m_pPolygons[0].m_pLines[0].m_ptCtrl2.y = 6;
    SetLine(b.m_pPolygons[0].m_pLines[1], 0, 7, 5, 5, 5);

    doc.source = "in.png";
    doc.imageWidth = 8;
    doc.imageHeight = 6;
    doc.output = RECT{0, 0, 16, 12};
    doc.colors = {RGB(255, 0, 0), RGB(0, 0, 255)};
    doc.regions = &regions;
  }
  CPTRegions regions;
  TraceDocument doc;
};

}  // namespace

TEST(SvgWriter, RegionPathHasOneFigurePerPolygon) {
  Sample s;
  EXPECT_EQ(FormatRegionPath(s.regions.m_pRegions[0]),
            "M0 0L4 0L4 4L0 4L0 0Z M1 1L2.5 1L1 3L1 1Z");
  EXPECT_EQ(FormatRegionPath(s.regions.m_pRegions[1]), "M5 5C5.5 6 6.5 6 7 5L5 5Z");
}

TEST(SvgWriter, GroupsRegionsByColourInListOrder) {
  Sample s;
  std::string svg = FormatSvg(s.doc);
  EXPECT_NE(svg.find("width=\"16\" height=\"12\" viewBox=\"0 0 16 12\""), std::string::npos);
  size_t g1 = svg.find("<g id=\"color-1\" fill=\"#ff0000\" fill-rule=\"evenodd\"");
  size_t g2 = svg.find("<g id=\"color-2\" fill=\"#0000ff\" fill-rule=\"evenodd\"");
  ASSERT_NE(g1, std::string::npos);
  ASSERT_NE(g2, std::string::npos);
  EXPECT_LT(g1, g2);
  // Region 1 (colour 1) is written in the first group, region 0 in the second.
  EXPECT_LT(svg.find("M5 5C"), g2);
  EXPECT_GT(svg.find("M0 0L4 0"), g2);
}

TEST(SvgWriter, ThreadColoursPaintTheGroups) {
  Sample s;
  s.doc.threadColors = {RGB(0x12, 0x34, 0x56), RGB(1, 2, 3)};
  std::string svg = FormatSvg(s.doc);
  EXPECT_NE(svg.find("id=\"color-1\" fill=\"#123456\""), std::string::npos);
  EXPECT_NE(svg.find("id=\"color-2\" fill=\"#010203\""), std::string::npos);
}

TEST(SvgWriter, ZeroSizeOutputFallsBackToThePictureSize) {
  Sample s;
  s.doc.output = RECT{100, 200, 100, 200};
  EXPECT_NE(FormatSvg(s.doc).find("viewBox=\"100 200 8 6\""), std::string::npos);
}

TEST(JsonWriter, HoldsEveryRegionPolygonAndLine) {
  Sample s;
  ThreadColor red{"Red", "800", RGB(200, 0, 0)};
  s.doc.threadColors = {RGB(200, 0, 0), RGB(0, 0, 200)};
  s.doc.threads = {&red, nullptr};
  auto j = nlohmann::json::parse(FormatJson(s.doc));
  EXPECT_EQ(j["format"], "pictrace-regions");
  EXPECT_EQ(j["image"]["width"], 8);
  EXPECT_EQ(j["output"]["right"], 16);
  EXPECT_EQ(j["colors"], nlohmann::json({"#ff0000", "#0000ff"}));
  EXPECT_EQ(j["threadColors"][0]["name"], "Red");
  EXPECT_EQ(j["threadColors"][0]["color"], "#c80000");
  EXPECT_TRUE(j["threadColors"][1]["name"].is_null());
  ASSERT_EQ(j["regionCount"], 2);
  const auto& a = j["regions"][0];
  EXPECT_EQ(a["colorIndex"], 2);
  EXPECT_EQ(a["regionFlag"], 1);
  ASSERT_EQ(a["polygonCount"], 2);
  EXPECT_EQ(a["polygons"][1]["lineCount"], 3);
  EXPECT_EQ(a["polygons"][1]["lines"][0]["end"], nlohmann::json({2.5, 1.0}));
  const auto& bez = j["regions"][1]["polygons"][0]["lines"][0];
  EXPECT_EQ(bez["type"], 1);
  EXPECT_EQ(bez["ctrl1"], nlohmann::json({5.5, 6.0}));
  EXPECT_EQ(bez["ctrl2"], nlohmann::json({6.5, 6.0}));
}
