// JPEG files through libjpeg, stored as a bottom-up 24-bit DIB. libjpeg
// reports fatal errors through longjmp; nothing with a destructor lives
// between setjmp and the decoding calls.
#include <csetjmp>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

#include "cli/ImageFormats.h"

namespace pictrace {
namespace io {

namespace {

struct ErrorManager {
  jpeg_error_mgr pub;
  std::jmp_buf jump;
  char message[JMSG_LENGTH_MAX];
};

void OnError(j_common_ptr cinfo) {
  ErrorManager* err = reinterpret_cast<ErrorManager*>(cinfo->err);
  (*cinfo->err->format_message)(cinfo, err->message);
  std::longjmp(err->jump, 1);
}

// A damaged or truncated stream only draws warnings from libjpeg (it pads
// the missing rows with grey); a picture we trace must be whole, so
// warnings are fatal here.
void OnMessage(j_common_ptr cinfo, int level) {
  if (level < 0) OnError(cinfo);
}

// Converts one decoded row (RGB or CMYK) into blue, green, red bytes.
void StoreRow(const unsigned char* src, unsigned char* dst, JDIMENSION width, bool cmyk, bool inverted) {
  for (JDIMENSION x = 0; x < width; x++) {
    if (cmyk) {
      const unsigned char* p = src + 4 * x;
      int c = inverted ? p[0] : 255 - p[0], m = inverted ? p[1] : 255 - p[1];
      int y = inverted ? p[2] : 255 - p[2], k = inverted ? p[3] : 255 - p[3];
      dst[3 * x + 0] = static_cast<unsigned char>(y * k / 255);
      dst[3 * x + 1] = static_cast<unsigned char>(m * k / 255);
      dst[3 * x + 2] = static_cast<unsigned char>(c * k / 255);
    } else {
      const unsigned char* p = src + 3 * x;
      dst[3 * x + 0] = p[2];
      dst[3 * x + 1] = p[1];
      dst[3 * x + 2] = p[0];
    }
  }
}

// Decodes into dib; returns false with reason. Kept apart from the setjmp
// frame's caller so that no C++ object is skipped by a longjmp.
bool Decode(jpeg_decompress_struct& cinfo, ErrorManager& err, const unsigned char* data, size_t size,
            std::vector<unsigned char>& dib, std::vector<unsigned char>& row, std::string& reason) {
  if (setjmp(err.jump)) {
    reason = std::string("the JPEG data is damaged (") + err.message + ")";
    return false;
  }
  jpeg_mem_src(&cinfo, data, static_cast<unsigned long>(size));
  jpeg_read_header(&cinfo, TRUE);
  bool cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
  cinfo.out_color_space = cmyk ? JCS_CMYK : JCS_RGB;
  if (!CheckSize(static_cast<long>(cinfo.image_width), static_cast<long>(cinfo.image_height), reason))
    return false;
  jpeg_start_decompress(&cinfo);
  JDIMENSION width = cinfo.output_width, height = cinfo.output_height;
  if (!CheckSize(static_cast<long>(width), static_cast<long>(height), reason)) return false;
  size_t stride = MakeDib24(static_cast<long>(width), static_cast<long>(height), dib);
  row.resize(static_cast<size_t>(width) * static_cast<size_t>(cinfo.output_components));
  bool inverted = cmyk && cinfo.saw_Adobe_marker;
  while (cinfo.output_scanline < height) {
    JSAMPROW rows[1] = {row.data()};
    jpeg_read_scanlines(&cinfo, rows, 1);
    size_t storageRow = height - cinfo.output_scanline;  // bottom-up
    StoreRow(row.data(), dib.data() + 40 + storageRow * stride, width, cmyk, inverted);
  }
  jpeg_finish_decompress(&cinfo);
  return true;
}

}  // namespace

bool ReadJpeg(const unsigned char* data, size_t size, std::vector<unsigned char>& dib, std::string& reason) {
  jpeg_decompress_struct cinfo;
  ErrorManager err;
  err.message[0] = '\0';
  cinfo.err = jpeg_std_error(&err.pub);
  err.pub.error_exit = OnError;
  err.pub.emit_message = OnMessage;
  jpeg_create_decompress(&cinfo);
  std::vector<unsigned char> row;
  bool ok = false;
  try {
    ok = Decode(cinfo, err, data, size, dib, row, reason);
  } catch (...) {
    jpeg_destroy_decompress(&cinfo);  // libjpeg's pools are not freed by unwinding
    throw;
  }
  jpeg_destroy_decompress(&cinfo);
  return ok;
}

}  // namespace io
}  // namespace pictrace
