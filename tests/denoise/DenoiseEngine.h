// An engine whose protected members the noise-reduction tests can reach,
// with a loader that installs a packed 24-bit DIB as input and working
// image directly, so that these tests do not depend on image conversion.
#pragma once

#include <cstring>
#include <vector>

#include "Pictrace.h"

class DenoiseEngine : public CPictrace {
 public:
  using CPictrace::FiniteDifferenceLasMumfordU;
  using CPictrace::GetValues;
  using CPictrace::IsGrayValued;
  using CPictrace::MumfordAlgo;
  using CPictrace::PyramidAlgo;

  void Install(const std::vector<unsigned char>& dib) {
    delete[] m_pDIB;
    delete[] m_pWorkDIB;
    m_pDIB = new unsigned char[dib.size()];
    m_pWorkDIB = new unsigned char[dib.size()];
    std::memcpy(m_pDIB, dib.data(), dib.size());
    std::memcpy(m_pWorkDIB, dib.data(), dib.size());
    std::memcpy(&m_bmiHeader, dib.data(), sizeof(BITMAPINFOHEADER));
    m_pDIBBits = m_pDIB + 40;
    m_pWorkBits = m_pWorkDIB + 40;
  }

  int Width() const { return m_bmiHeader.biWidth; }
  int Height() const { return m_bmiHeader.biHeight; }
  int Stride() const { return static_cast<int>(m_bmiHeader.biSizeImage / m_bmiHeader.biHeight); }
  size_t ImageBytes() const { return m_bmiHeader.biSizeImage; }

  unsigned char WorkByte(int x, int row, int c) const {
    return m_pWorkBits[row * Stride() + 3 * x + c];
  }
  void ClearWork() { std::memset(m_pWorkBits, 0, ImageBytes()); }
};
