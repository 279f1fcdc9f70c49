// BMP files: the header is checked against the file's length and the pixel
// rows are passed on unchanged behind a plain 40-byte info header.
#include <cstdint>
#include <cstring>

#include "WinTypes.h"
#include "cli/ImageFormats.h"

namespace pictrace {
namespace io {

namespace {
constexpr size_t kFileHeader = 14;
constexpr size_t kInfoHeader = 40;
}  // namespace

bool ReadBmp(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason) {
  if (size < kFileHeader + kInfoHeader) {
    reason = "the BMP file is truncated (" + std::to_string(size) + " bytes is shorter than its headers)";
    return false;
  }
  const unsigned char* info = data + kFileHeader;
  unsigned long headerSize = ReadU32(info);
  unsigned long offBits = ReadU32(data + 10);
  // The 40-byte header and its longer successors (V2 to V5) all start with
  // the same fields; the older 12-byte core header is not read.
  if (headerSize < kInfoHeader || headerSize > 124) {
    reason = "unsupported BMP header size " + std::to_string(headerSize);
    return false;
  }
  if (size < kFileHeader + headerSize) {
    reason = "the BMP file is truncated inside its header";
    return false;
  }
  long width = ReadS32(info + 4);
  long height = ReadS32(info + 8);
  unsigned bits = ReadU16(info + 14);
  unsigned long compression = ReadU32(info + 16);
  unsigned long clrUsed = ReadU32(info + 32);
  if (height < 0) {
    reason = "top-down BMP files (negative height) are not supported";
    return false;
  }
  if (compression != 0) {
    reason = "compressed BMP files are not supported (compression " + std::to_string(compression) + ")";
    return false;
  }
  if (!CheckSize(width, height, reason)) return false;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) {
    reason = "unsupported BMP colour depth of " + std::to_string(bits) + " bits";
    return false;
  }
  // Palette pictures carry biClrUsed entries (all 2^bits when zero); deeper
  // pictures have no colour table the engine reads, so none is passed on.
  std::uint64_t colours = 0;
  if (bits <= 8) {
    std::uint64_t full = 1ULL << bits;
    if (clrUsed > full) {
      reason = "the BMP colour table claims " + std::to_string(clrUsed) + " entries for " +
               std::to_string(bits) + "-bit pixels";
      return false;
    }
    colours = clrUsed ? clrUsed : full;
  }
  std::uint64_t tableStart = kFileHeader + headerSize;
  std::uint64_t tableBytes = colours * 4;
  std::uint64_t stride = DibRowBytes(width, bits);
  std::uint64_t pixelBytes = stride * static_cast<std::uint64_t>(height);
  if (tableStart + tableBytes > size) {
    reason = "the BMP file is truncated inside its colour table";
    return false;
  }
  if (offBits < tableStart + tableBytes) {
    reason = "the BMP pixel offset " + std::to_string(offBits) + " points inside the headers";
    return false;
  }
  if (offBits + pixelBytes > size) {
    reason = "the BMP header claims " + std::to_string(width) + " x " + std::to_string(height) + " pixels (" +
             std::to_string(pixelBytes) + " bytes from offset " + std::to_string(offBits) +
             ") but the file holds only " + std::to_string(size) + " bytes";
    return false;
  }
  dib.assign(kInfoHeader + tableBytes + pixelBytes, 0);
  std::memcpy(dib.data(), info, kInfoHeader);
  WriteU32(dib.data(), kInfoHeader);
  if (bits > 8) WriteU32(dib.data() + 32, 0);
  if (tableBytes) std::memcpy(dib.data() + kInfoHeader, data + tableStart, tableBytes);
  std::memcpy(dib.data() + kInfoHeader + tableBytes, data + offBits, pixelBytes);
  return true;
}

}  // namespace io
}  // namespace pictrace
