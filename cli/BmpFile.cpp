// BMP files: the header is checked against the file's length. Palette and
// 24-bit rows are passed on unchanged behind a plain 40-byte info header
// (top-down files turned bottom-up); 16- and 32-bit pixels, plain or with
// bit-field masks (an alpha mask included), become 24-bit like PNG files,
// composed over white where transparent.
#include <cstdint>
#include <cstring>

#include "WinTypes.h"
#include "cli/ImageFormats.h"

namespace pictrace {
namespace io {

namespace {
constexpr size_t kFileHeader = 14;
constexpr size_t kInfoHeader = 40;
constexpr unsigned long kBitFields = 3, kAlphaBitFields = 6;

// One channel of a 16- or 32-bit pixel: the bits under the mask scaled to
// 0..255 (a 5-bit 31 becomes 255).
struct Channel {
  std::uint32_t mask = 0;
  int shift = 0;
  std::uint32_t max = 0;
  explicit Channel(std::uint32_t m) : mask(m) {
    if (!m) return;
    while (!((m >> shift) & 1)) shift++;
    max = m >> shift;
  }
  unsigned Get(std::uint32_t pixel, unsigned absent) const {
    if (!max) return absent;
    return static_cast<unsigned>((static_cast<std::uint64_t>((pixel & mask) >> shift) * 255 + max / 2) / max);
  }
};

// Converts 16- or 32-bit rows (stored bottom-up, stride bytes apart) into
// the 24-bit DIB; masks are red, green, blue and alpha (0: opaque).
void ConvertDeep(const unsigned char* rows, size_t stride, long width, long height, unsigned bits,
                 const std::uint32_t masks[4], std::vector<unsigned char>& dib) {
  const Channel red(masks[0]), green(masks[1]), blue(masks[2]), alpha(masks[3]);
  const size_t out = MakeDib24(width, height, dib);
  for (long row = 0; row < height; row++) {
    const unsigned char* p = rows + static_cast<size_t>(row) * stride;
    unsigned char* q = dib.data() + kInfoHeader + static_cast<size_t>(row) * out;
    for (long x = 0; x < width; x++, q += 3) {
      const std::uint32_t v = bits == 16 ? ReadU16(p + 2 * x) : static_cast<std::uint32_t>(ReadU32(p + 4 * x));
      const unsigned a = alpha.Get(v, 255);
      const unsigned c[3] = {blue.Get(v, 0), green.Get(v, 0), red.Get(v, 0)};
      for (int i = 0; i < 3; i++) q[i] = OverWhite(c[i], a);
    }
  }
}

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
  const bool topDown = height < 0;
  if (topDown) height = -height;
  if (!CheckSize(width, height, reason)) return false;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) {
    reason = "unsupported BMP colour depth of " + std::to_string(bits) + " bits";
    return false;
  }
  const bool deep = bits == 16 || bits == 32;
  const bool fields = deep && (compression == kBitFields || compression == kAlphaBitFields);
  if (compression != 0 && !fields) {
    reason = "compressed BMP files are not supported (compression " + std::to_string(compression) + ", " +
             std::to_string(bits) + " bits)";
    return false;
  }
  // Palette pictures carry biClrUsed entries (all 2^bits when zero); deeper
  // pictures have no colour table the engine reads, so none is passed on.
  // Bit-field masks follow a 40-byte header, or sit inside a longer one.
  std::uint64_t colours = 0;
  if (bits <= 8) {
    std::uint64_t full = 1ULL << bits;
    if (clrUsed > full) {
      reason = "the BMP colour table claims " + std::to_string(clrUsed) + " entries for " +
               std::to_string(bits) + "-bit pixels";
      return false;
    }
    colours = clrUsed ? clrUsed : full;
  } else if (fields && headerSize == kInfoHeader) {
    colours = compression == kAlphaBitFields ? 4 : 3;
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
  const unsigned char* pixels = data + offBits;
  std::vector<unsigned char> flipped;
  if (topDown) {
    flipped.resize(pixelBytes);
    for (long row = 0; row < height; row++)
      std::memcpy(flipped.data() + static_cast<size_t>(row) * stride,
                  pixels + static_cast<size_t>(height - 1 - row) * stride, stride);
    pixels = flipped.data();
  }
  if (deep) {
    std::uint32_t masks[4] = {0, 0, 0, 0};
    if (!fields) {
      masks[0] = bits == 16 ? 0x7C00 : 0xFF0000;
      masks[1] = bits == 16 ? 0x03E0 : 0xFF00;
      masks[2] = bits == 16 ? 0x001F : 0xFF;
    } else {
      const unsigned char* m = headerSize == kInfoHeader ? data + tableStart : info + 40;
      const int n = headerSize == kInfoHeader ? static_cast<int>(colours) : headerSize >= 56 ? 4 : 3;
      for (int i = 0; i < n; i++) masks[i] = static_cast<std::uint32_t>(ReadU32(m + 4 * i));
    }
    ConvertDeep(pixels, stride, width, height, bits, masks, dib);
    return true;
  }
  dib.assign(kInfoHeader + tableBytes + pixelBytes, 0);
  std::memcpy(dib.data(), info, kInfoHeader);
  WriteU32(dib.data(), kInfoHeader);
  if (topDown) WriteU32(dib.data() + 8, static_cast<unsigned long>(height));
  if (bits > 8) WriteU32(dib.data() + 32, 0);
  if (tableBytes) std::memcpy(dib.data() + kInfoHeader, data + tableStart, tableBytes);
  std::memcpy(dib.data() + kInfoHeader + tableBytes, pixels, pixelBytes);
  return true;
}

}  // namespace io
}  // namespace pictrace
