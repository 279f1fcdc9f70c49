#include "cli/TestFiles.h"

#include <png.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace clitest {

void PutU16(std::vector<unsigned char>& b, size_t at, unsigned v) {
  b[at] = static_cast<unsigned char>(v & 0xFF);
  b[at + 1] = static_cast<unsigned char>((v >> 8) & 0xFF);
}

void PutU32(std::vector<unsigned char>& b, size_t at, std::uint32_t v) {
  for (int i = 0; i < 4; i++) b[at + i] = static_cast<unsigned char>((v >> (8 * i)) & 0xFF);
}

std::vector<unsigned char> MakeBmp(int width, int height, int bits, int colours,
                                   unsigned (*value)(int x, int row)) {
  size_t stride = ((static_cast<size_t>(width) * bits + 31) / 32) * 4;
  size_t offset = 14 + 40 + 4 * static_cast<size_t>(colours);
  std::vector<unsigned char> b(offset + stride * height, 0);
  b[0] = 'B';
  b[1] = 'M';
  PutU32(b, 2, static_cast<std::uint32_t>(b.size()));
  PutU32(b, 10, static_cast<std::uint32_t>(offset));
  PutU32(b, 14, 40);
  PutU32(b, 18, static_cast<std::uint32_t>(width));
  PutU32(b, 22, static_cast<std::uint32_t>(height));
  PutU16(b, 26, 1);
  PutU16(b, 28, static_cast<unsigned>(bits));
  PutU32(b, 46, static_cast<std::uint32_t>(colours));
  for (int i = 0; i < colours; i++) {  // grey ramp
    unsigned char g = static_cast<unsigned char>(colours > 1 ? i * 255 / (colours - 1) : 0);
    b[54 + 4 * i] = b[55 + 4 * i] = b[56 + 4 * i] = g;
  }
  for (int row = 0; row < height; row++) {
    unsigned char* r = b.data() + offset + row * stride;
    for (int x = 0; x < width; x++) {
      unsigned v = value(x, row);
      if (bits == 24) {
        r[3 * x] = static_cast<unsigned char>(v & 0xFF);
        r[3 * x + 1] = static_cast<unsigned char>((v >> 8) & 0xFF);
        r[3 * x + 2] = static_cast<unsigned char>((v >> 16) & 0xFF);
      } else if (bits == 8) {
        r[x] = static_cast<unsigned char>(v);
      } else if (bits == 4) {
        r[x / 2] |= static_cast<unsigned char>((x & 1) ? v : v << 4);
      } else if (bits == 1 && v) {
        r[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
      }
    }
  }
  return b;
}

std::vector<unsigned char> MakePng(int width, int height, unsigned (*colour)(int x, int y)) {
  std::vector<unsigned char> rgb(static_cast<size_t>(width) * height * 3);
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++) {
      unsigned c = colour(x, y);
      unsigned char* p = rgb.data() + (static_cast<size_t>(y) * width + x) * 3;
      p[0] = static_cast<unsigned char>(c >> 16);
      p[1] = static_cast<unsigned char>(c >> 8);
      p[2] = static_cast<unsigned char>(c);
    }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGB;
  png_alloc_size_t size = 0;
  png_image_write_to_memory(&image, nullptr, &size, 0, rgb.data(), 0, nullptr);
  std::vector<unsigned char> out(size);
  png_image_write_to_memory(&image, out.data(), &size, 0, rgb.data(), 0, nullptr);
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
  std::vector<unsigned char> row(static_cast<size_t>(width) * 3);
  for (int x = 0; x < width; x++) {
    row[3 * x] = static_cast<unsigned char>(colour >> 16);
    row[3 * x + 1] = static_cast<unsigned char>(colour >> 8);
    row[3 * x + 2] = static_cast<unsigned char>(colour);
  }
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
