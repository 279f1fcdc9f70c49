#include "cli/ThreadTable.h"

#include <cstdio>
#include <fstream>

#include "cli/ImageFile.h"

namespace pictrace {

namespace {

std::string Trim(const std::string& s) {
  size_t b = s.find_first_not_of(" \t\r");
  if (b == std::string::npos) return std::string();
  size_t e = s.find_last_not_of(" \t\r");
  return s.substr(b, e - b + 1);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

bool ParseThreadTable(std::istream& in, const std::string& source, std::vector<ThreadColor>& table,
                      std::string& error) {
  table.clear();
  std::string line;
  int lineNo = 0;
  while (std::getline(in, line)) {
    lineNo++;
    if (lineNo == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);  // a UTF-8 byte-order mark
    std::string trimmed = Trim(line);
    if (trimmed.empty()) continue;
    std::vector<std::string> fields;
    size_t start = 0;
    for (;;) {
      size_t comma = trimmed.find(',', start);
      fields.push_back(Trim(trimmed.substr(start, comma - start)));
      if (comma == std::string::npos) break;
      start = comma + 1;
    }
    if (lineNo == 1 && fields.size() == 3 && fields[0] == "name" && fields[2] == "color") continue;
    const std::string where = source + ":" + std::to_string(lineNo) + ": ";
    if (fields.size() != 3) {
      error = where + "expected 3 fields (name,code,#rrggbb), found " +
              std::to_string(fields.size());
      return false;
    }
    ThreadColor t;
    t.name = fields[0];
    t.code = fields[1];
    if (t.name.empty()) {
      error = where + "the thread name is empty";
      return false;
    }
    if (!ParseHexColor(fields[2], t.color)) {
      error = where + "\"" + fields[2] + "\" is not a colour of the form #rrggbb";
      return false;
    }
    table.push_back(t);
  }
  if (in.bad()) {
    error = source + ": read error";
    return false;
  }
  if (table.empty()) {
    error = source + ": the thread table holds no colours";
    return false;
  }
  return true;
}

bool ParseHexColor(const std::string& s, COLORREF& color) {
  if (s.size() != 7 || s[0] != '#') return false;
  int v[6];
  for (int i = 0; i < 6; i++)
    if ((v[i] = HexDigit(s[i + 1])) < 0) return false;
  color = RGB(v[0] * 16 + v[1], v[2] * 16 + v[3], v[4] * 16 + v[5]);
  return true;
}

bool LoadThreadTable(const std::string& path, std::vector<ThreadColor>& table, std::string& error) {
  // A table of a few hundred threads is a few kilobytes; 16 MiB is plenty.
  if (!CheckInputFile(path, 16ull << 20, error)) return false;
  std::ifstream in(path);
  if (!in) {
    error = path + ": cannot open the thread table";
    return false;
  }
  return ParseThreadTable(in, path, table, error);
}

std::string ColorToHex(COLORREF color) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%02x%02x%02x", GetRValue(color), GetGValue(color),
                GetBValue(color));
  return buf;
}

}  // namespace pictrace
