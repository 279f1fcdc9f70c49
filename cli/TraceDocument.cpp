#include "cli/TraceDocument.h"

#include <charconv>
#include <cstdio>
#include <fstream>
#include <iostream>

namespace pictrace {

COLORREF TraceDocument::PaintColor(int n) const {
  const std::vector<COLORREF>& list = threadColors.empty() ? colors : threadColors;
  if (n < 1 || n > static_cast<int>(list.size())) return 0;
  return list[static_cast<size_t>(n - 1)];
}

bool WriteTextFile(const std::string& path, const std::string& text, std::string& error) {
  if (path == "-") {
    std::cout << text;
    std::cout.flush();
    if (!std::cout) {
      error = "cannot write to standard output";
      return false;
    }
    return true;
  }
  std::ofstream out(path, std::ios::binary);
  if (out) out << text;
  if (out) out.close();
  if (!out) {
    error = path + ": cannot write the file";
    return false;
  }
  return true;
}

std::string FormatFloat(float v) {
  char buf[32];
  auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

}  // namespace pictrace
