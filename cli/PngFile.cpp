// PNG files through libpng's simplified reader, composited onto white and
// stored as a bottom-up 24-bit DIB; and the PNG writer for previews.
#include <png.h>

#include <cstdio>
#include <memory>

#include "cli/ImageFile.h"
#include "cli/ImageFormats.h"

namespace pictrace {
namespace io {

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
  image.format = PNG_FORMAT_BGR;
  size_t stride = 0;
  try {
    stride = MakeDib24(static_cast<long>(image.width), static_cast<long>(image.height), dib);
  } catch (...) {
    png_image_free(&image);  // the reader's state is not freed by unwinding
    throw;
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
