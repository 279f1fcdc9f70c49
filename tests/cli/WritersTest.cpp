// The writers on hand-built documents: exact SVG text, the JSON of regions
// and of linked centre lines, the one number format, and thread tables.
#include <gtest/gtest.h>
#include <sstream>

#include "Pictrace.h"
#include "cli/Writers.h"

using namespace pictrace;

namespace {

// Lines through (x0, y0), (x1, y1), ...; control points (x + 0.5, 9).
CPTLine* Chain(std::initializer_list<float> xy, int type = 0) {
  const std::vector<float> v(xy);
  CPTLine* lines = new CPTLine[v.size() / 2 - 1];
  for (size_t i = 0; i + 3 < v.size(); i += 2) {
    CPTLine& l = lines[i / 2];
    l.m_nType = type, l.m_ptStart.x = v[i], l.m_ptStart.y = v[i + 1], l.m_ptEnd.x = v[i + 2], l.m_ptEnd.y = v[i + 3];
    l.m_ptCtrl1.x = l.m_ptCtrl2.x = v[i] + 0.5f, l.m_ptCtrl1.y = l.m_ptCtrl2.y = 9;
  }
  return lines;
}

// Region 0 (colour 2): a square with a hole, written second; region 1: a Bezier
// line. Centre lines 1 (colour 1) and 2 (colour 2) hang off line 0, a lone junction.
struct Sample : OutputDocument {
  CPictrace engine;
  Sample() {
    imageWidth = 8, imageHeight = 6, output = RECT{0, 0, 16, 1}, source = "in.png";
    colors = {RGB(255, 0, 0), RGB(0, 0, 255)};
    regions.m_nRegions = 2, regions.m_pRegions = new CPTRegion[2];
    CPTRegion& a = regions.m_pRegions[0];
    a.m_nColorIndex = 2, a.m_nRegionFlag = 1, a.m_nPolygons = 2, a.m_pPolygons = new CPTPolygon[2];
    a.m_pPolygons[0].m_nLines = 4, a.m_pPolygons[0].m_pLines = Chain({0, 0, 4, 0, 4, 4, 0, 4, 0, 0});
    a.m_pPolygons[1].m_nLines = 2, a.m_pPolygons[1].m_pLines = Chain({0.1f, 1, 1 / 3.0f, 1, 1, 3e-5f});
    CPTRegion& b = regions.m_pRegions[1];
    b.m_nColorIndex = 1, b.m_nPolygons = 1, b.m_pPolygons = new CPTPolygon[1];
    b.m_pPolygons[0].m_nLines = 1, b.m_pPolygons[0].m_pLines = Chain({5, 5, 7, 5}, 1);
    lineColors = {RGB(0, 0, 0), RGB(0, 128, 0)}, background = RGB(250, 250, 250);
    lines.m_nThinLines = 3, lines.m_pThinLines = new CPTThinLine[3];
    const int links[3][6] = {{2, -1, -1, 1, 0, 0}, {1, 2, 0, -1, 1, 0}, {2, -1, 0, -1, 1, 1}};
    for (int i = 0; i < 3; i++) {
      CPTThinLine& t = lines.m_pThinLines[i];
      t.m_nColorIndex = links[i][0], t.m_nPolygonLines = 1, t.m_pPolygonLines = new CPTPolygonLine[1];
      CPTPolygonLine& l = t.m_pPolygonLines[0];
      l.m_nAttr1 = links[i][1], l.m_nAttr2 = links[i][2], l.m_nAttr3 = links[i][3], l.m_nAttr4 = links[i][4],
      l.m_nAttr5 = links[i][5];
      if (i) l.m_nLines = 2, l.m_pLines = Chain({1, 2.5f, 3, 4, 5, i * 0.1f});
    }
  }
};

const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" ";

TEST(Writers, RegionsAsSvgAndJson) {
  Sample s;
  s.hasRegions = true;
  EXPECT_EQ(FormatSvg(s, s.engine),
            std::string(kHead) + "width=\"1.6mm\" height=\"0.1mm\" viewBox=\"0 0 16 1\">\n"
            "<g id=\"color-1\" fill=\"#ff0000\" fill-rule=\"evenodd\" stroke=\"none\">\n<path d=\"M5 5C5.5 9 5.5 9 7 5Z\"/>\n</g>\n"
            "<g id=\"color-2\" fill=\"#0000ff\" fill-rule=\"evenodd\" stroke=\"none\">\n"
            "<path d=\"M0 0L4 0L4 4L0 4L0 0Z M0.1 1L0.33333334 1L1 3e-05Z\"/>\n</g>\n</svg>\n");
  std::string json = FormatJson(s, s.engine);
  EXPECT_EQ(json.rfind("{\"colors\":[\"#ff0000\",\"#0000ff\"],\"format\":\"pictrace-regions\",\"image\":{\"height\":6,\"width\":8},"
            "\"lineType\":0,\"output\":{\"bottom\":1,\"left\":0,\"right\":16,\"top\":0},\"regionCount\":2,\"regions\":"
            "[{\"colorIndex\":2,\"polygonCount\":2,\"polygons\":[{\"lineCount\":4,", 0), 0u) << json;
  EXPECT_NE(json.find("{\"lineCount\":2,\"lines\":[{\"ctrl1\":[0.6,9.0],\"ctrl2\":[0.6,9.0],\"end\":[0.33333334,1.0],"
                      "\"start\":[0.1,1.0],\"type\":0},{\"ctrl1\":[0.8333334,"), std::string::npos);
  EXPECT_NE(json.find("],\"regionFlag\":1},{\"colorIndex\":1,"), std::string::npos);
  EXPECT_EQ(json.substr(json.size() - 79), "\"type\":1}]}],\"regionFlag\":0}],\"source\":\"in.png\",\"threadColors\":[],\"version\":1}\n");
  EXPECT_EQ(json.find("lineColors"), std::string::npos);
  // Thread colours paint the groups; a picture-sized view box when the output rectangle is empty.
  s.output = RECT{100, 200, 100, 200};
  s.threads = {{RGB(0x12, 0x34, 0x56), true, "Ros\xE9", "007"}, {RGB(1, 2, 3), false, "", ""}};  // Latin-1
  const std::string svg = FormatSvg(s, s.engine);
  json = FormatJson(s, s.engine);
  EXPECT_EQ(svg.find("width=\"0.8mm\" height=\"0.6mm\" viewBox=\"100 200 8 6\">\n<g id=\"color-1\" fill=\"#123456\""), 93u);
  EXPECT_NE(svg.find("id=\"color-2\" fill=\"#010203\""), std::string::npos);
  EXPECT_NE(json.find("\"threadColors\":[{\"code\":\"007\",\"color\":\"#123456\",\"name\":\"Ros\xEF\xBF\xBD\"},"
                      "{\"code\":null,\"color\":\"#010203\",\"name\":null}]"), std::string::npos) << json;
}

TEST(Writers, CentreLinesKeepTheirLinks) {
  Sample s;
  s.hasLines = s.hasBackground = true;
  EXPECT_EQ(FormatSvg(s, s.engine),
            std::string(kHead) + "width=\"1.6mm\" height=\"0.1mm\" viewBox=\"0 0 16 1\">\n"
            "<g id=\"line-color-1\" fill=\"none\" stroke=\"#000000\" stroke-width=\"1\">\n"
            "<path id=\"line1\" d=\"M1 2.5L3 4L5 0.1\"/>\n</g>\n"
            "<g id=\"line-color-2\" fill=\"none\" stroke=\"#008000\" stroke-width=\"1\">\n"
            "<path id=\"line2\" d=\"M1 2.5L3 4L5 0.2\"/>\n</g>\n</svg>\n");
  const std::string json = FormatJson(s, s.engine);
  EXPECT_EQ(json.rfind("{\"background\":\"#fafafa\",\"format\":\"pictrace-lines\",", 0), 0u) << json;
  EXPECT_NE(json.find("\"lineColors\":[\"#000000\",\"#008000\"],\"lineCount\":3,\"lineType\":0,\"lines\":[{\"colorIndex\":2,"
                      "\"firstChild\":1,\"id\":0,\"laterBranch\":0,\"lineCount\":0,\"lines\":[],\"nextSibling\":-1,"
                      "\"parent\":-1,\"selected\":0},{\"colorIndex\":1,\"firstChild\":-1,\"id\":1,\"laterBranch\":1,"), std::string::npos);
  EXPECT_NE(json.find("\"nextSibling\":2,\"parent\":0,\"selected\":0},{\"colorIndex\":2,\"firstChild\":-1,\"id\":2,"
                      "\"laterBranch\":1,\"lineCount\":2,\"lines\":[{\"ctrl1\":[1.5,9.0],\"ctrl2\":[1.5,9.0],\"end\":[3.0,4.0],"
                      "\"start\":[1.0,2.5],\"type\":0},{\"ctrl1\":[3.5,9.0],\"ctrl2\":[3.5,9.0],\"end\":[5.0,0.2],"
                      "\"start\":[3.0,4.0],\"type\":0}],\"nextSibling\":-1,\"parent\":0,\"selected\":1}]"), std::string::npos);
  EXPECT_EQ(json.find("regions"), std::string::npos);
}

TEST(Writers, ThreadTablesAndOneOutputOnStandardOutput) {
  std::vector<ThreadColor> table;
  std::string error;
  std::istringstream good("\xEF\xBB\xBFname,code,color\r\nBlack,002,#000000\r\n\n Sky Blue , 17 ,#1a2B3c\n");  // with a BOM
  ASSERT_TRUE(ParseThreadTable(good, "t.csv", table, error)) << error;
  ASSERT_EQ(table.size(), 2u);
  EXPECT_EQ(table[0].name + table[0].code + ColorToHex(table[0].color) + "|" + table[1].name + "|" + table[1].code + "|" +
                ColorToHex(table[1].color), "Black002#000000|Sky Blue|17|#1a2b3c");
  const char* cases[][2] = {
      {"Red,1,#ff0000\nGreen,2\n", "t.csv:2: expected 3 fields"}, {"Red,1,#ff0000,extra\n", "t.csv:1: expected 3 fields"},
      {"Red,1,ff0000\n", "t.csv:1: \"ff0000\" is not a colour"}, {"Red,1,#ff00zz\n", "is not a colour"},
{",1,#ff0000\n", "t.csv:1: the thread name is empty"},
      {"name,code,color\n\n", "t.csv: the thread table holds no colours"}};
  for (const auto& c : cases) {
    std::istringstream in(c[0]);
    EXPECT_FALSE(ParseThreadTable(in, "t.csv", table, error)) << c[0];
    EXPECT_NE(error.find(c[1]), std::string::npos) << error;
  }
  EXPECT_TRUE(CheckOutputPaths({"-", "a.json", ""}, error));
  EXPECT_FALSE(CheckOutputPaths({"a.svg", "-", "-"}, error));
  EXPECT_EQ(error, "the JSON and the PNG preview cannot both go to standard output");
}

}  // namespace
