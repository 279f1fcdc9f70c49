// Helpers shared by the engine tests: palette DIBs built byte by byte, a
// message box recorder and an engine subclass that opens protected members.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"

namespace enginetest {

// A palette DIB (see testimg::MakePackedDib) with reserved bytes 0x77 in the
// table and padding bytes `pad`.
inline std::vector<unsigned char> MakePaletteDib(int width, int height, int bits,
                                                 const std::vector<COLORREF>& table, DWORD clrUsed,
                                                 int (*index)(int x, int row), unsigned char pad = 0xEE) {
  return testimg::MakePackedDib(width, height, bits, table, clrUsed,
                                [index](int x, int row) { return static_cast<DWORD>(index(x, row)); },
                                pad, 0x77);
}

inline BITMAPINFOHEADER HeaderOf(const std::vector<unsigned char>& dib) {
  BITMAPINFOHEADER h;
  std::memcpy(&h, dib.data(), 40);
  return h;
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
