#include "cli/TestFiles.h"

#include <png.h>

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace clitest {

void PutU32(std::vector<unsigned char>& b, std::size_t at, std::uint32_t v, int bytes) {
  for (int i = 0; i < bytes; i++) b[at + i] = static_cast<unsigned char>((v >> (8 * i)) & 0xFF);
}

std::vector<unsigned char> MakeBmp(int width, int height, int bits, int colours,
                                   unsigned (*value)(int x, int row)) {
  const size_t stride = ((static_cast<size_t>(width) * bits + 31) / 32) * 4;
  const size_t offset = 14 + 40 + 4 * static_cast<size_t>(colours);
  std::vector<unsigned char> b(offset + stride * height, 0);
  b[0] = 'B';
  b[1] = 'M';
  PutU32(b, 2, static_cast<std::uint32_t>(b.size()));
  PutU32(b, 10, static_cast<std::uint32_t>(offset));
  PutU32(b, 14, 40);
  PutU32(b, 18, static_cast<std::uint32_t>(width));
  PutU32(b, 22, static_cast<std::uint32_t>(height));
  PutU32(b, 26, 1, 2);
  PutU32(b, 28, static_cast<std::uint32_t>(bits), 2);
  PutU32(b, 46, static_cast<std::uint32_t>(colours));
  for (int i = 0; i < colours; i++)
    for (int c = 0; c < 3; c++) b[54 + 4 * i + c] = static_cast<unsigned char>(i * 255 / (colours > 1 ? colours - 1 : 1));
  for (int row = 0; row < height; row++) {
    unsigned char* r = b.data() + offset + row * stride;
    for (int x = 0; x < width; x++) {
      const unsigned v = value(x, row);
      if (bits == 24)
        for (int c = 0; c < 3; c++) r[3 * x + c] = static_cast<unsigned char>(v >> (8 * c));
      else if (bits == 8) r[x] = static_cast<unsigned char>(v);
      else if (bits == 4) r[x / 2] |= static_cast<unsigned char>((x & 1) ? v : v << 4);
      else if (bits == 1 && v) r[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
    }
  }
  return b;
}

std::vector<unsigned char> MakePng(int width, int height, unsigned (*rgba)(int x, int y)) {
  std::vector<unsigned char> pixels;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++)
      for (int shift = 24; shift >= 0; shift -= 8) pixels.push_back(static_cast<unsigned char>(rgba(x, y) >> shift));
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
  std::vector<unsigned char> out(size);
  png_image_write_to_memory(&image, out.data(), &size, 0, pixels.data(), 0, nullptr);
  out.resize(size);
  return out;
}

std::vector<unsigned char> MakeJpeg(int width, int height, unsigned colour) {
  jpeg_compress_struct cinfo;
  jpeg_error_mgr jerr;
  cinfo.err = jpeg_std_error(&jerr);
  jpeg_create_compress(&cinfo);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&cinfo, &buffer, &size);
  cinfo.image_width = static_cast<JDIMENSION>(width);
  cinfo.image_height = static_cast<JDIMENSION>(height);
  cinfo.input_components = 3;
  cinfo.in_color_space = JCS_RGB;
  jpeg_set_defaults(&cinfo);
  jpeg_set_quality(&cinfo, 95, TRUE);
  jpeg_start_compress(&cinfo, TRUE);
  std::vector<unsigned char> row;
  for (int x = 0; x < width; x++)
    for (int shift = 16; shift >= 0; shift -= 8) row.push_back(static_cast<unsigned char>(colour >> shift));
  while (cinfo.next_scanline < cinfo.image_height) {
    JSAMPROW rows[1] = {row.data()};
    jpeg_write_scanlines(&cinfo, rows, 1);
  }
  jpeg_finish_compress(&cinfo);
  std::vector<unsigned char> out(buffer, buffer + size);
  jpeg_destroy_compress(&cinfo);
  std::free(buffer);
  return out;
}

}  // namespace clitest
