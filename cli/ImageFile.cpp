#include "cli/ImageFile.h"

#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>

#include "cli/ImageFormats.h"
#include "cli/ImageLimits.h"

namespace pictrace {

namespace {
std::uint64_t g_maxPixels = 32767ULL * 32767ULL;

bool HasPrefix(const unsigned char* data, size_t size, const char* magic, size_t n) {
  return size >= n && std::memcmp(data, magic, n) == 0;
}
}  // namespace

void SetMaxImagePixels(std::uint64_t pixels) { g_maxPixels = pixels; }
std::uint64_t MaxImagePixels() { return g_maxPixels; }

namespace io {

void WriteU16(unsigned char* p, unsigned v) {
  p[0] = static_cast<unsigned char>(v & 0xFF);
  p[1] = static_cast<unsigned char>((v >> 8) & 0xFF);
}

void WriteU32(unsigned char* p, unsigned long v) {
  for (int i = 0; i < 4; i++) p[i] = static_cast<unsigned char>((v >> (8 * i)) & 0xFF);
}

bool CheckSize(long width, long height, std::string& reason) {
  if (width <= 0 || height <= 0) {
    reason = "the picture has no pixels (" + std::to_string(width) + " x " + std::to_string(height) + ")";
    return false;
  }
  if (width > kMaxSide || height > kMaxSide) {
    reason = "the picture is too large (" + std::to_string(width) + " x " + std::to_string(height) +
             "; at most " + std::to_string(kMaxSide) + " in either direction)";
    return false;
  }
  if (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > MaxImagePixels()) {
    reason = "the picture has too many pixels (" + std::to_string(width) + " x " + std::to_string(height) + ")";
    return false;
  }
  return true;
}

size_t MakeDib24(long width, long height, std::vector<unsigned char>& dib) {
  size_t stride = ((static_cast<size_t>(width) * 3 + 3) / 4) * 4;
  size_t imageSize = stride * static_cast<size_t>(height);
  dib.assign(40 + imageSize, 0);
  unsigned char* h = dib.data();
  WriteU32(h + 0, 40);
  WriteU32(h + 4, static_cast<unsigned long>(width));
  WriteU32(h + 8, static_cast<unsigned long>(height));
  WriteU16(h + 12, 1);
  WriteU16(h + 14, 24);
  WriteU32(h + 16, 0);
  WriteU32(h + 20, static_cast<unsigned long>(imageSize));
  return stride;
}

}  // namespace io

bool LoadImageBytes(const unsigned char* data, size_t size, const std::string& name,
                    std::vector<unsigned char>& dib, std::string& error) {
  dib.clear();
  std::string reason;
  bool ok = false;
  try {
    if (size == 0) {
      reason = "the file is empty";
    } else if (HasPrefix(data, size, "\x89PNG\r\n\x1a\n", 8)) {
      ok = io::ReadPng(data, size, dib, reason);
    } else if (HasPrefix(data, size, "\xFF\xD8", 2)) {
      ok = io::ReadJpeg(data, size, dib, reason);
    } else if (HasPrefix(data, size, "BM", 2)) {
      ok = io::ReadBmp(data, size, dib, reason);
    } else {
      reason = "not a PNG, JPEG or BMP picture";
    }
  } catch (const std::bad_alloc&) {
    ok = false;
    reason = "not enough memory to hold the picture";
  }
  if (!ok) {
    dib.clear();
    error = name + ": " + reason;
  }
  return ok;
}

bool LoadImageFile(const std::string& path, std::vector<unsigned char>& dib, std::string& error) {
  // Directories and devices (/dev/zero never ends) are refused by name, and
  // no picture file is larger than the cap: both before anything is read.
  struct stat st;
  if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
    dib.clear();
    error = path + (S_ISDIR(st.st_mode) ? ": is a folder, not a picture file" : ": not a regular file");
    return false;
  }
  if (stat(path.c_str(), &st) == 0 && static_cast<unsigned long long>(st.st_size) > kMaxPictureFileBytes) {
    dib.clear();
    error = path + ": " + std::to_string(st.st_size) + " bytes, more than a picture file may have (" +
            std::to_string(kMaxPictureFileBytes) + ")";
    return false;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    dib.clear();
    error = path + ": cannot open the file";
    return false;
  }
  std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) {
    dib.clear();
    error = path + ": cannot read the file";
    return false;
  }
  return LoadImageBytes(bytes.data(), bytes.size(), path, dib, error);
}

bool WriteFileBytes(const std::string& path, const std::string& bytes, std::string& error) {
  if (path == "-") {
    std::cout << bytes;
    std::cout.flush();
    if (!std::cout) {
      error = "cannot write to standard output";
      return false;
    }
    return true;
  }
  std::ofstream out(path, std::ios::binary);
  if (out) out << bytes;
  if (out) out.close();
  if (!out) {
    error = path + ": cannot write the file";
    return false;
  }
  return true;
}

}  // namespace pictrace
