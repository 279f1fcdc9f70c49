// PNG files through libpng, composited onto white and stored as a bottom-up
// 24-bit DIB; and the PNG writer for previews. 8-bit files go through the
// simplified reader; 16-bit files are scaled to 8 bits without any gamma
// change, as other decoders do (the simplified reader takes 16-bit samples
// without colour-space chunks as linear light and brightens them).
#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>

#include "cli/ImageFile.h"
#include "cli/ImageFormats.h"

namespace pictrace {
namespace io {

namespace {

// The bytes of a file in memory, handed to libpng's low-level reader.
struct MemoryStream {
  const unsigned char* data;
  size_t size;
  size_t at;
};

void ReadFromMemory(png_structp png, png_bytep out, png_size_t n) {
  MemoryStream* s = static_cast<MemoryStream*>(png_get_io_ptr(png));
  if (n > s->size - s->at) png_error(png, "the file ends early");
  std::memcpy(out, s->data + s->at, n);
  s->at += n;
}

// libpng's messages: an error keeps its text for the reason and jumps back;
// warnings (chunks the reader skips) are not the user's concern.
struct Messages {
  char text[200];
};

void OnPngError(png_structp png, png_const_charp message) {
  Messages* m = static_cast<Messages*>(png_get_error_ptr(png));
  std::snprintf(m->text, sizeof m->text, "%s", message);
  png_longjmp(png, 1);
}

void OnPngWarning(png_structp, png_const_charp) {}

// Decodes a 16-bit PNG into dib (already sized) through libpng's low-level
// reader: every format expanded to RGBA, each sample scaled to 8 bits
// (v * 255 / 65535 rounded, so 128 * 257 becomes 128), then composed over
// white. pixels holds the 8-bit RGBA rows. libpng reports errors through
// longjmp; nothing with a destructor lives in this frame.
bool Decode16(png_structp png, png_infop info, MemoryStream& stream, const Messages& messages,
              std::vector<unsigned char>& pixels, std::vector<png_bytep>& rows, std::vector<unsigned char>& dib,
              png_uint_32 width, png_uint_32 height, size_t stride, std::string& reason) {
  if (setjmp(png_jmpbuf(png))) {
    reason = std::string("the PNG data is damaged (") + messages.text + ")";
    return false;
  }
  png_set_read_fn(png, &stream, ReadFromMemory);
  png_read_info(png, info);
  if (png_get_image_width(png, info) != width || png_get_image_height(png, info) != height)
    png_error(png, "the header changed between reads");
  png_set_expand(png);
  png_set_gray_to_rgb(png);
  png_set_scale_16(png);
  png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  pixels.resize(static_cast<size_t>(width) * height * 4);
  rows.resize(height);
  for (png_uint_32 y = 0; y < height; y++) rows[y] = pixels.data() + static_cast<size_t>(y) * width * 4;
  png_read_image(png, rows.data());
  for (png_uint_32 y = 0; y < height; y++) {
    const unsigned char* p = rows[y];
    unsigned char* q = dib.data() + 40 + (height - 1 - y) * stride;  // bottom-up
    for (png_uint_32 x = 0; x < width; x++, p += 4, q += 3)
      for (int c = 0; c < 3; c++) q[2 - c] = OverWhite(p[c], p[3]);
  }
  return true;
}

bool ReadPng16(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, png_uint_32 width,
               png_uint_32 height, size_t stride, std::string& reason) {
  Messages messages{};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &messages, OnPngError, OnPngWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) {
    png_destroy_read_struct(&png, nullptr, nullptr);
    reason = "libpng could not start";
    return false;
  }
  MemoryStream stream{data, size, 0};
  std::vector<unsigned char> pixels;
  std::vector<png_bytep> rows;
  bool ok = false;
  try {
    ok = Decode16(png, info, stream, messages, pixels, rows, dib, width, height, stride, reason);
  } catch (...) {
    png_destroy_read_struct(&png, &info, nullptr);  // libpng's state is not freed by unwinding
    throw;
  }
  png_destroy_read_struct(&png, &info, nullptr);
  return ok;
}

}  // namespace

bool ReadPng(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&image, data, size)) {
    reason = std::string("not a readable PNG (") + image.message + ")";
    png_image_free(&image);
    return false;
  }
  if (!CheckSize(static_cast<long>(image.width), static_cast<long>(image.height), reason)) {
    png_image_free(&image);
    return false;
  }
  // The bit depth sits at a fixed place in the header chunk, which
  // png_image_begin_read has found first in the file and checked.
  const bool sixteenBit = data[24] == 16;
  image.format = PNG_FORMAT_BGR;
  size_t stride = 0;
  try {
    stride = MakeDib24(static_cast<long>(image.width), static_cast<long>(image.height), dib);
  } catch (...) {
    png_image_free(&image);  // the reader's state is not freed by unwinding
    throw;
  }
  if (sixteenBit) {
    const png_uint_32 width = image.width, height = image.height;
    png_image_free(&image);
    return ReadPng16(data, size, dib, width, height, stride, reason);
  }
  // Transparent pixels show the white of the fabric-less page.
  png_color background{255, 255, 255};
  // A negative row stride asks libpng for bottom-up rows.
  if (!png_image_finish_read(&image, &background, dib.data() + 40, -static_cast<png_int_32>(stride), nullptr)) {
    reason = std::string("the PNG data is damaged (") + image.message + ")";
    png_image_free(&image);
    return false;
  }
  png_image_free(&image);
  return true;
}

}  // namespace io

bool EncodePng(const unsigned char* bgrTopDown, int width, int height, int stride, std::string& png,
               std::string& reason) {
  if (width <= 0 || height <= 0 || stride < width * 3) {
    reason = "cannot write a " + std::to_string(width) + " x " + std::to_string(height) + " picture";
    return false;
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_BGR;
  // The first call measures, the second fills.
  png_alloc_size_t size = 0;
  bool ok = png_image_write_to_memory(&image, nullptr, &size, 0, bgrTopDown, stride, nullptr) != 0;
  if (ok) {
    png.assign(size, '\0');
    ok = png_image_write_to_memory(&image, &png[0], &size, 0, bgrTopDown, stride, nullptr) != 0;
    png.resize(size);
  }
  if (!ok) reason = std::string("cannot encode the PNG (") + image.message + ")";
  png_image_free(&image);
  return ok;
}

bool WritePng(const std::string& path, const unsigned char* bgrTopDown, int width, int height, int stride,
              std::string& error) {
  std::string png;
  if (!EncodePng(bgrTopDown, width, height, stride, png, error)) {
    error = path + ": " + error;
    return false;
  }
  return WriteFileBytes(path, png, error);
}

}  // namespace pictrace
