// Helpers shared by the engine tests: palette DIBs built byte by byte, a
// message box recorder and an engine subclass that opens protected members.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "Pictrace.h"

namespace enginetest {

// Packed DIB with a colour table of `table` (stored as RGBQUADs) and
// `clrUsed` in the header. index(x, row) gives each pixel's palette index;
// padding bytes of every row are filled with `pad` so that a reader that
// strays into them is noticed.
inline std::vector<unsigned char> MakePaletteDib(int width, int height, int bits,
                                                 const std::vector<COLORREF>& table, DWORD clrUsed,
                                                 int (*index)(int x, int row), unsigned char pad = 0xEE) {
  int stride = ((width * bits + 31) / 32) * 4;
  std::vector<unsigned char> dib(40 + table.size() * 4 + static_cast<size_t>(stride) * height, pad);
  BITMAPINFOHEADER h{};
  h.biSize = 40;
  h.biWidth = width;
  h.biHeight = height;
  h.biPlanes = 1;
  h.biBitCount = static_cast<WORD>(bits);
  h.biClrUsed = clrUsed;
  std::memcpy(dib.data(), &h, 40);
  for (size_t i = 0; i < table.size(); i++) {
    unsigned char* q = dib.data() + 40 + 4 * i;
    q[0] = GetBValue(table[i]);
    q[1] = GetGValue(table[i]);
    q[2] = GetRValue(table[i]);
    q[3] = 0x77;
  }
  unsigned char* rows = dib.data() + 40 + table.size() * 4;
  for (int row = 0; row < height; row++) {
    unsigned char* r = rows + static_cast<size_t>(row) * stride;
    std::memset(r, 0, static_cast<size_t>((width * bits + 7) / 8));
    for (int x = 0; x < width; x++) {
      int v = index(x, row);
      if (bits == 8) {
        r[x] = static_cast<unsigned char>(v);
      } else if (bits == 4) {
        r[x / 2] |= static_cast<unsigned char>((x & 1) ? v : v << 4);
      } else {
        if (v) r[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
      }
    }
  }
  return dib;
}

inline BITMAPINFOHEADER HeaderOf(const std::vector<unsigned char>& dib) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  return h;
}

// Pixel (x, row) of a 24-bit packed DIB's rows.
inline COLORREF Pixel24(const unsigned char* bits, int width, int x, int row) {
  const unsigned char* p = bits + static_cast<size_t>(row) * (((width * 3 + 3) / 4) * 4) + 3 * x;
  return RGB(p[2], p[1], p[0]);
}

// Records every message box for the lifetime of the object.
class MessageRecorder {
 public:
  MessageRecorder() : m_previous(AfxSetMessageBoxHook(&MessageRecorder::Hook)) { Texts().clear(); }
  ~MessageRecorder() { AfxSetMessageBoxHook(m_previous); }
  const std::vector<std::string>& texts() const { return Texts(); }

 private:
  static std::vector<std::string>& Texts() {
    static std::vector<std::string> texts;
    return texts;
  }
  static int Hook(const char* text, UINT, UINT) {
    Texts().push_back(text ? text : "");
    return IDOK;
  }
  AFX_MSGBOX_HOOK m_previous;
};

// The engine with its protected members reachable from the tests.
class TestEngine : public CPictrace {
 public:
  using CPictrace::ConvertTo24;
  using CPictrace::PaintDIB;
  using CPictrace::SetSatinWidth;
  using CPictrace::ShowProgress;
};

}  // namespace enginetest
