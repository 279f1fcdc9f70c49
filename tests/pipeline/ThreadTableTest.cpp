// Thread tables read from CSV text and from the bundled tables.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/ThreadTable.h"

using pictrace::ParseThreadTable;
using pictrace::ThreadColor;

namespace {

bool Parse(const std::string& text, std::vector<ThreadColor>& table, std::string& error) {
  std::istringstream in(text);
  return ParseThreadTable(in, "t.csv", table, error);
}

}  // namespace

TEST(ThreadTable, ReadsNameCodeAndColourAfterTheHeader) {
  std::vector<ThreadColor> table;
  std::string error;
  ASSERT_TRUE(Parse("name,code,color\r\nBlack,002,#000000\r\n\n Sky Blue , 17 ,#1a2B3c\n", table,
                    error))
      << error;
  ASSERT_EQ(table.size(), 2u);
  EXPECT_EQ(table[0].name, "Black");
  EXPECT_EQ(table[0].code, "002");
  EXPECT_EQ(table[0].color, RGB(0, 0, 0));
  EXPECT_EQ(table[1].name, "Sky Blue");
  EXPECT_EQ(table[1].code, "17");
  EXPECT_EQ(table[1].color, RGB(0x1a, 0x2b, 0x3c));
  EXPECT_EQ(pictrace::ColorToHex(table[1].color), "#1a2b3c");
}

TEST(ThreadTable, MalformedLinesAreRefusedWithTheirLineNumber) {
  struct Case {
    const char* text;
    const char* message;
  } cases[] = {
      {"Red,1,#ff0000\nGreen,2\n", "t.csv:2: expected 3 fields"},
      {"Red,1,#ff0000,extra\n", "t.csv:1: expected 3 fields"},
      {"Red,1,ff0000\n", "t.csv:1: \"ff0000\" is not a colour"},
      {"Red,1,#ff00zz\n", "is not a colour"},
      {"Red,1,#ff000\n", "is not a colour"},
      {",1,#ff0000\n", "t.csv:1: the thread name is empty"},
      {"name,code,color\n\n", "t.csv: the thread table holds no colours"},
  };
  for (const Case& c : cases) {
    std::vector<ThreadColor> table;
    std::string error;
    EXPECT_FALSE(Parse(c.text, table, error)) << c.text;
    EXPECT_NE(error.find(c.message), std::string::npos) << error;
  }
}

TEST(ThreadTable, BundledTablesLoad) {
  const std::string dir = std::string(PICTRACE_EXAMPLES_DIR) + "/../threads/";
  std::vector<ThreadColor> table;
  std::string error;
  ASSERT_TRUE(pictrace::LoadThreadTable(dir + "pec-64.csv", table, error)) << error;
  EXPECT_EQ(table.size(), 64u);
  ASSERT_TRUE(pictrace::LoadThreadTable(dir + "jef-78.csv", table, error)) << error;
  EXPECT_EQ(table.size(), 78u);
  EXPECT_EQ(table[0].name, "Black");
  EXPECT_FALSE(pictrace::LoadThreadTable(dir + "missing.csv", table, error));
  EXPECT_NE(error.find("cannot open"), std::string::npos);
}
