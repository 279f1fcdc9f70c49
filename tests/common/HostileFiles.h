// Picture files built as bytes: headers that lie about their size, and the
// deep formats the readers convert (16- and 32-bit BMP, 16-bit PNG).
#pragma once

#include <png.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace hostile {

using Bytes = std::vector<unsigned char>;

// A 69-byte PNG and a 25-byte JPEG whose headers claim 32767 x 32767 pixels.
inline Bytes HugePng() {
  const char bytes[] =
      "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x7f\xff\0\0\x7f\xff\x08\x02\0\0\0\xc6\x90\x91\x6a\0\0\0\x0cIDAT"
      "\x78\xda\x63\x60\x60\x60\0\0\0\x04\0\x01\xc8\xea\xeb\xf9\0\0\0\0IEND\xae\x42\x60\x82";
  return Bytes(bytes, bytes + sizeof bytes - 1);
}
inline Bytes HugeJpeg() {
  return {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0x7F, 0xFF, 0x7F, 0xFF, 1, 1, 0x11, 0, 0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0};
}

// A BMP file of width x height at 16 or 32 bits, 40-byte header, with
// `masks` after it (give them with compression 3 or 6); pixel(x, row) is the
// stored value, rows bottom-up.
inline Bytes DeepBmp(int width, int height, int bits, std::uint32_t compression, const std::vector<std::uint32_t>& masks,
                     const std::function<std::uint32_t(int x, int row)>& pixel) {
  const size_t stride = (width * bits + 31) / 32 * 4, offset = 54 + 4 * masks.size();
  Bytes b(offset + stride * height, 0);
  auto put = [&b](size_t at, std::uint32_t v, int n) {
    for (int i = 0; i < n; i++) b[at + i] = static_cast<unsigned char>(v >> (8 * i));
  };
  b[0] = 'B', b[1] = 'M', put(2, b.size(), 4), put(10, offset, 4), put(14, 40, 4), put(18, width, 4);
  put(22, height, 4), put(26, 1, 2), put(28, bits, 2), put(30, compression, 4);
  for (size_t i = 0; i < masks.size(); i++) put(54 + 4 * i, masks[i], 4);
  for (int row = 0; row < height; row++)
    for (int x = 0; x < width; x++) put(offset + row * stride + x * bits / 8, pixel(x, row), bits / 8);
  return b;
}

// An opaque 16-bit RGB PNG whose pixel (x, y) (top-down) is rgb(x, y) * 257
// per channel, with no colour-space chunk (libpng's gAMA taken out).
inline Bytes Png16(int width, int height, const std::function<std::uint32_t(int x, int y)>& rgb) {
  std::vector<png_uint_16> pixels;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++)
      for (int shift = 16; shift >= 0; shift -= 8) pixels.push_back(static_cast<png_uint_16>((rgb(x, y) >> shift & 0xFF) * 257));
  png_image image{};
  image.version = PNG_IMAGE_VERSION, image.width = width, image.height = height, image.format = PNG_FORMAT_LINEAR_RGB;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
  Bytes out(size);
  png_image_write_to_memory(&image, out.data(), &size, 0, pixels.data(), 0, nullptr);
  out.resize(size);
  const char gama[] = "gAMA";
  auto at = std::search(out.begin(), out.end(), gama, gama + 4);
  if (at != out.end()) out.erase(at - 4, at + 12);
  return out;
}

}  // namespace hostile
