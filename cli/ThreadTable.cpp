#include "cli/ThreadTable.h"

#include <algorithm>
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

// Drops a UTF-8 byte-order mark at the start of a chart's first line.
void StripByteOrderMark(std::string& line) {
  if (line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
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
    if (lineNo == 1) StripByteOrderMark(line);
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

bool ParseGimpPalette(std::istream& in, const std::string& source, std::vector<ThreadColor>& table,
                      std::string& error, std::string* name) {
  table.clear();
  std::string line;
  int lineNo = 0;
  auto fail = [&](const std::string& message) {
    error = source + ":" + std::to_string(lineNo) + ": " + message;
    return false;
  };
  while (std::getline(in, line)) {
    lineNo++;
    if (lineNo == 1) StripByteOrderMark(line);
    const std::string trimmed = Trim(line);
    if (lineNo == 1) {
      if (trimmed != "GIMP Palette") return fail("expected \"GIMP Palette\"");
      continue;
    }
    if (lineNo == 2) {
      if (trimmed.compare(0, 5, "Name:") != 0) return fail("expected \"Name: ...\"");
      if (name) *name = Trim(trimmed.substr(5));
      continue;
    }
    if (lineNo == 3 && trimmed.compare(0, 8, "Columns:") == 0) continue;
    if (lineNo <= 4 || trimmed.empty() || trimmed[0] == '#') continue;  // the header comment, blanks
    // Three numbers 0 to 255, then the name and number.
    int rgb[3];
    size_t pos = 0;
    for (int& v : rgb) {
      const size_t b = std::min(trimmed.find_first_not_of(" \t", pos), trimmed.size());
      const size_t e = std::min(trimmed.find_first_not_of("0123456789", b), trimmed.size());
      if (e == b || e - b > 3 || (e < trimmed.size() && trimmed[e] != ' ' && trimmed[e] != '\t'))
        return fail("expected a colour as three numbers 0 to 255 and the thread's name and number");
      v = std::stoi(trimmed.substr(b, e - b));
      if (v > 255) return fail("colour value " + std::to_string(v) + " is above 255");
      pos = e;
    }
    const std::string rest = Trim(trimmed.substr(pos));
    if (rest.empty()) return fail("the thread name is missing");
    ThreadColor t;
    t.color = RGB(rgb[0], rgb[1], rgb[2]);
    const size_t space = rest.find_last_of(" \t");
    t.name = space == std::string::npos ? rest : Trim(rest.substr(0, space));
    t.code = space == std::string::npos ? std::string() : rest.substr(space + 1);
    table.push_back(t);
  }
  if (in.bad()) {
    error = source + ": read error";
    return false;
  }
  if (lineNo < 2) return fail("a GIMP palette needs its \"GIMP Palette\" and \"Name:\" lines");
  if (table.empty()) {
    error = source + ": the thread chart holds no colours";
    return false;
  }
  return true;
}

std::string FormatGimpPalette(const std::string& name, const std::vector<ThreadColor>& table) {
  std::string out = "GIMP Palette\nName: " + name + "\nColumns: 4\n# RGB Value\tColor Name Number\n";
  for (const ThreadColor& t : table) {
    char rgb[16];
    std::snprintf(rgb, sizeof rgb, "%3d %3d %3d\t", GetRValue(t.color), GetGValue(t.color), GetBValue(t.color));
    out += rgb + t.name + (t.code.empty() ? "" : " " + t.code) + "\n";
  }
  return out;
}

bool LoadThreadTable(const std::string& path, std::vector<ThreadColor>& table, std::string& error) {
  // A table of a few hundred threads is a few kilobytes; 16 MiB is plenty.
  if (!CheckInputFile(path, 16ull << 20, error)) return false;
  std::ifstream in(path);
  if (!in) {
    error = path + ": cannot open the thread table";
    return false;
  }
  std::string first;
  std::getline(in, first);
  StripByteOrderMark(first);
  in.clear();
  in.seekg(0);
  if (Trim(first) == "GIMP Palette") return ParseGimpPalette(in, path, table, error);
  return ParseThreadTable(in, path, table, error);
}

std::string ColorToHex(COLORREF color) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%02x%02x%02x", GetRValue(color), GetGValue(color),
                GetBValue(color));
  return buf;
}

}  // namespace pictrace
