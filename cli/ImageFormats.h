// Per-format readers behind LoadImageBytes. Each fills a packed DIB
// (40-byte header, colour table, bottom-up rows) or returns false with a
// reason (without the file name; the caller adds it).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace pictrace {
namespace io {

bool ReadBmp(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason);
bool ReadPng(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason);
bool ReadJpeg(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason);

// Largest width or height accepted from any file.
constexpr long kMaxSide = 32767;

// Checks the size a header declares against kMaxSide and the pixel limit
// (ImageLimits.h); every reader calls it before allocating pixel rows.
bool CheckSize(long width, long height, std::string& reason);

// Allocates a bottom-up 24-bit DIB of width x height (header filled, pixels
// zero) and returns its row stride.
size_t MakeDib24(long width, long height, std::vector<unsigned char>& dib);

// A colour channel composed over white by its alpha (0 to 255), rounded.
inline unsigned char OverWhite(unsigned channel, unsigned alpha) {
  return static_cast<unsigned char>((channel * alpha + 255 * (255 - alpha) + 127) / 255);
}

// Little-endian readers and writers for header fields.
inline unsigned ReadU16(const unsigned char* p) { return p[0] | (p[1] << 8); }
inline unsigned long ReadU32(const unsigned char* p) {
  return static_cast<unsigned long>(p[0]) | (static_cast<unsigned long>(p[1]) << 8) |
         (static_cast<unsigned long>(p[2]) << 16) | (static_cast<unsigned long>(p[3]) << 24);
}
inline long ReadS32(const unsigned char* p) {
  unsigned long u = ReadU32(p);
  return u >= 0x80000000UL ? static_cast<long>(u) - 0x100000000L : static_cast<long>(u);
}
void WriteU16(unsigned char* p, unsigned v);
void WriteU32(unsigned char* p, unsigned long v);

}  // namespace io
}  // namespace pictrace
