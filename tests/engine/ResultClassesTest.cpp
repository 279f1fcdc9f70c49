// The exported result classes: their layout is part of the library's
// interface, and their assignment is shallow on purpose.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

#include "PTResults.h"

namespace {

TEST(ResultClassesTest, FieldOrderAndWidthsAreTheExportedLayout) {
  const size_t p = sizeof(void*);
  struct Place {
    const char* what;
    size_t actual;
    size_t expected;
  };
#define PT_FIELD(T, f, at) Place{#T "::" #f, offsetof(T, f), at}
#define PT_SIZE(T, size) Place{"sizeof " #T, sizeof(T), size}
  const Place places[] = {
      PT_FIELD(CPTPoint, x, 0), PT_FIELD(CPTPoint, y, 4), PT_SIZE(CPTPoint, 8),
      PT_FIELD(CPTLine, m_nType, 0), PT_FIELD(CPTLine, m_ptStart, 4),
      PT_FIELD(CPTLine, m_ptCtrl1, 12), PT_FIELD(CPTLine, m_ptCtrl2, 20),
      PT_FIELD(CPTLine, m_ptEnd, 28), PT_SIZE(CPTLine, 36),
      PT_FIELD(CPTPolygon, m_nLines, 0), PT_FIELD(CPTPolygon, m_pLines, p), PT_SIZE(CPTPolygon, 2 * p),
      PT_FIELD(CPTPolygonLine, m_nLines, 0), PT_FIELD(CPTPolygonLine, m_pLines, p),
      PT_FIELD(CPTPolygonLine, m_nAttr1, 2 * p), PT_FIELD(CPTPolygonLine, m_nAttr2, 2 * p + 4),
      PT_FIELD(CPTPolygonLine, m_nAttr3, 2 * p + 8), PT_FIELD(CPTPolygonLine, m_nAttr4, 2 * p + 12),
      PT_FIELD(CPTPolygonLine, m_nAttr5, 2 * p + 16),
      PT_SIZE(CPTPolygonLine, 2 * p + 24),  // 20 bytes of ints, padded to the pointer
      PT_FIELD(CPTRegion, m_nPolygons, 0), PT_FIELD(CPTRegion, m_pPolygons, p),
      PT_FIELD(CPTRegion, m_nRegionFlag, 2 * p), PT_FIELD(CPTRegion, m_nColorIndex, 2 * p + 4),
      PT_SIZE(CPTRegion, 2 * p + 8),
      PT_FIELD(CPTRegions, m_nRegions, 0), PT_FIELD(CPTRegions, m_pRegions, p), PT_SIZE(CPTRegions, 2 * p),
      PT_FIELD(CPTThinLine, m_nPolygonLines, 0), PT_FIELD(CPTThinLine, m_pPolygonLines, p),
      PT_FIELD(CPTThinLine, m_nThinLineFlag, 2 * p), PT_FIELD(CPTThinLine, m_nColorIndex, 2 * p + 4),
      PT_SIZE(CPTThinLine, 2 * p + 8),
      PT_FIELD(CPTThinLines, m_nThinLines, 0), PT_FIELD(CPTThinLines, m_pThinLines, p),
      PT_SIZE(CPTThinLines, 2 * p),
  };
#undef PT_FIELD
#undef PT_SIZE
  for (const Place& place : places) EXPECT_EQ(place.actual, place.expected) << place.what;

  // No virtual table may sit in front of the fields.
  EXPECT_FALSE(std::is_polymorphic<CPTPolygonLine>::value);
  EXPECT_FALSE(std::is_polymorphic<CPTRegions>::value);
  EXPECT_FALSE(std::is_polymorphic<CPTThinLines>::value);
}

TEST(ResultClassesTest, ConstructorsSetTheDocumentedDefaults) {
  CPTLine line;
  EXPECT_EQ(line.m_nType, 0);
  EXPECT_EQ(line.m_ptCtrl1.x, 0.0f);
  EXPECT_EQ(line.m_ptCtrl1.y, 0.0f);
  EXPECT_EQ(line.m_ptCtrl2.x, 0.0f);
  EXPECT_EQ(line.m_ptEnd.y, 0.0f);

  CPTRegion region;
  EXPECT_EQ(region.m_nPolygons, 0);
  EXPECT_EQ(region.m_pPolygons, nullptr);
  EXPECT_EQ(region.m_nRegionFlag, 0);
  EXPECT_EQ(region.m_nColorIndex, 0);

  CPTThinLine thin;
  EXPECT_EQ(thin.m_nThinLineFlag, 0);
  EXPECT_EQ(thin.m_nColorIndex, 0);
}

TEST(ResultClassesTest, PolygonLineSetsAttributesOneToThreeAndLeavesTheRest) {
  // Construct over known bytes: fields 3-5 become -1, fields 6 and 7 keep
  // whatever the memory held.
  alignas(CPTPolygonLine) unsigned char storage[sizeof(CPTPolygonLine)];
  std::memset(storage, 0x5A, sizeof storage);
  CPTPolygonLine* line = new (storage) CPTPolygonLine;
  EXPECT_EQ(line->m_nLines, 0);
  EXPECT_EQ(line->m_pLines, nullptr);
  EXPECT_EQ(line->m_nAttr1, -1);
  EXPECT_EQ(line->m_nAttr2, -1);
  EXPECT_EQ(line->m_nAttr3, -1);
  EXPECT_EQ(line->m_nAttr4, 0x5A5A5A5A);
  EXPECT_EQ(line->m_nAttr5, 0x5A5A5A5A);
  line->~CPTPolygonLine();
}

TEST(ResultClassesTest, AssignmentIsShallowAndCopiesEveryField) {
  CPTPolygonLine a;
  a.m_nLines = 2;
  a.m_pLines = new CPTLine[2];
  a.m_nAttr1 = 4;
  a.m_nAttr2 = 5;
  a.m_nAttr3 = 6;
  a.m_nAttr4 = 1;
  a.m_nAttr5 = 1;
  CPTPolygonLine b;
  b = a;
  EXPECT_EQ(b.m_pLines, a.m_pLines);  // the same array, not a copy
  EXPECT_EQ(b.m_nLines, 2);
  EXPECT_EQ(b.m_nAttr1, 4);
  EXPECT_EQ(b.m_nAttr2, 5);
  EXPECT_EQ(b.m_nAttr3, 6);
  EXPECT_EQ(b.m_nAttr4, 1);
  EXPECT_EQ(b.m_nAttr5, 1);
  b.m_pLines = nullptr;  // keep one owner
  b.m_nLines = 0;

  CPTRegions ra;
  ra.m_nRegions = 1;
  ra.m_pRegions = new CPTRegion[1];
  CPTRegions rb;
  rb = ra;
  EXPECT_EQ(rb.m_pRegions, ra.m_pRegions);
  rb.m_pRegions = nullptr;

  CPTThinLines ta;
  ta.m_nThinLines = 1;
  ta.m_pThinLines = new CPTThinLine[1];
  CPTThinLines tb;
  tb = ta;
  EXPECT_EQ(tb.m_pThinLines, ta.m_pThinLines);
  tb.m_pThinLines = nullptr;
}

TEST(ResultClassesTest, MovePatternHandsNestedArraysToTheHostWithoutDoubleFree) {
  // A region built on the heap is copied into the host's array, then
  // emptied so that deleting it frees nothing; the host's destructor frees
  // the whole tree (the sanitizer build checks there is no leak or double
  // free).
  CPTRegions host;
  host.m_nRegions = 1;
  host.m_pRegions = new CPTRegion[1];

  CPTRegion* built = new CPTRegion;
  built->m_nPolygons = 2;
  built->m_pPolygons = new CPTPolygon[2];
  built->m_pPolygons[0].m_nLines = 3;
  built->m_pPolygons[0].m_pLines = new CPTLine[3];
  built->m_pPolygons[0].m_pLines[2].m_ptEnd.x = 7.5f;
  built->m_nRegionFlag = 1;
  built->m_nColorIndex = 3;
  CPTPolygon* polygons = built->m_pPolygons;

  host.m_pRegions[0] = *built;
  built->m_nPolygons = 0;
  built->m_pPolygons = nullptr;
  delete built;

  EXPECT_EQ(host.m_pRegions[0].m_pPolygons, polygons);
  EXPECT_EQ(host.m_pRegions[0].m_nPolygons, 2);
  EXPECT_EQ(host.m_pRegions[0].m_nRegionFlag, 1);
  EXPECT_EQ(host.m_pRegions[0].m_nColorIndex, 3);
  EXPECT_EQ(host.m_pRegions[0].m_pPolygons[0].m_pLines[2].m_ptEnd.x, 7.5f);
}

TEST(ResultClassesTest, DestructorsTestThePointerNotTheCount) {
  // A failed allocation in a builder leaves a count beside a null pointer;
  // destroying such objects must not walk the count.
  CPTPolygon polygon;
  polygon.m_nLines = 4;
  CPTRegions regions;
  regions.m_nRegions = 2;
  CPTThinLines lines;
  lines.m_nThinLines = 3;
  SUCCEED();
}

}  // namespace
