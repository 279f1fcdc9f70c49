#include "cli/ImageFile.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>

#include "WinTypes.h"
#include "cli/ImageFormats.h"
#include "cli/ImageLimits.h"

namespace pictrace {

namespace {
std::uint64_t g_maxPixels = 0;  // 0: the default

bool HasPrefix(const unsigned char* data, size_t size, const char* magic, size_t n) {
  return size >= n && std::memcmp(data, magic, n) == 0;
}

// Bytes of memory available now; 0 when unknown.
std::uint64_t AvailableMemory() {
  std::uint64_t bytes = 0;
  std::ifstream meminfo("/proc/meminfo");
  std::string key;
  std::uint64_t kb = 0;
  while (meminfo >> key >> kb)
    if (key == "MemAvailable:") {
      bytes = kb * 1024;
      break;
    } else {
      meminfo.ignore(1 << 10, '\n');
    }
  if (bytes == 0) {
    const long pages = sysconf(_SC_AVPHYS_PAGES), pageSize = sysconf(_SC_PAGESIZE);
    if (pages > 0 && pageSize > 0) bytes = static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
  }
  struct rlimit limit;
  if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY &&
      (bytes == 0 || limit.rlim_cur < bytes))
    bytes = limit.rlim_cur;
  return bytes;
}
}  // namespace

std::uint64_t DefaultMaxImagePixels() {
  const std::uint64_t bytes = AvailableMemory();
  if (bytes == 0) return kMaxPixelsEver;
  return std::min(kMaxPixelsEver, bytes / kTraceBytesPerPixel);
}

void SetMaxImagePixels(std::uint64_t pixels) { g_maxPixels = std::min(pixels, kMaxPixelsEver); }
bool MaxImagePixelsIsDefault() { return g_maxPixels == 0; }
std::uint64_t MaxImagePixels() {
  static const std::uint64_t byDefault = DefaultMaxImagePixels();
  return g_maxPixels ? g_maxPixels : byDefault;
}

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
  const std::uint64_t pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
  if (pixels > MaxImagePixels()) {
    reason = "the picture is " + std::to_string(width) + " x " + std::to_string(height) + " = " +
             std::to_string(pixels) + " pixels, more than the limit of " + std::to_string(MaxImagePixels()) +
             (MaxImagePixelsIsDefault() ? " pixels (what a trace can hold in the memory available)" : " pixels") +
             "; --max-pixels N changes the limit";
    return false;
  }
  return true;
}

size_t MakeDib24(long width, long height, std::vector<unsigned char>& dib) {
  size_t stride = static_cast<size_t>(DibRowBytes(width, 24));
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

bool CheckInputFile(const std::string& path, unsigned long long maxBytes, std::string& error) {
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return true;  // opening it will say why
  if (!S_ISREG(st.st_mode)) {
    error = path + (S_ISDIR(st.st_mode) ? ": is a folder, not a file" : ": not a regular file");
    return false;
  }
  if (static_cast<unsigned long long>(st.st_size) > maxBytes) {
    error = path + ": " + std::to_string(st.st_size) + " bytes, more than the " + std::to_string(maxBytes) +
            " such a file may have";
    return false;
  }
  return true;
}

bool LoadImageFile(const std::string& path, std::vector<unsigned char>& dib, std::string& error) {
  dib.clear();
  if (!CheckInputFile(path, kMaxPictureFileBytes, error)) return false;
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

namespace {

WriteFunction g_write = ::write;

// Writes all bytes to an open descriptor; false with errno set on failure.
bool WriteAll(int fd, const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = g_write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n == 0) errno = EIO;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

std::string Reason() { return std::strerror(errno); }

}  // namespace

WriteFunction SetWriteFunction(WriteFunction write) {
  const WriteFunction previous = g_write;
  g_write = write ? write : ::write;
  return previous;
}

// A file is written whole or not at all: the bytes go to a temporary file
// beside the target, which replaces the target only once it is complete and
// flushed to disk; a failure removes the temporary and leaves the target as
// it was. A target that exists but is not a regular file (a device, a pipe)
// is written in place and never removed or replaced.
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
  struct stat st;
  if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
    if (S_ISDIR(st.st_mode)) {
      error = path + ": cannot write the file: it is a folder";
      return false;
    }
    const int fd = open(path.c_str(), O_WRONLY);
    const bool ok = fd >= 0 && WriteAll(fd, bytes);
    if (!ok) error = path + ": cannot write the file: " + Reason();
    if (fd >= 0 && close(fd) != 0 && ok) {
      error = path + ": cannot write the file: " + Reason();
      return false;
    }
    return ok;
  }
  std::string temp = path + ".XXXXXX";
  const int fd = mkstemp(&temp[0]);
  if (fd < 0) {
    error = path + ": cannot write the file: " + Reason();
    return false;
  }
  bool ok = WriteAll(fd, bytes) && fsync(fd) == 0;
  std::string reason = ok ? "" : Reason();
  if (close(fd) != 0 && ok) ok = false, reason = Reason();
  // mkstemp makes the file private; give it the mode a new file would have.
  // The mask is read once: reading it means setting it, which would race
  // with a batch's other threads.
  static const mode_t mask = [] {
    const mode_t m = umask(0);
    umask(m);
    return m;
  }();
  if (ok && chmod(temp.c_str(), 0666 & ~mask) != 0) ok = false, reason = Reason();
  if (ok && rename(temp.c_str(), path.c_str()) != 0) ok = false, reason = Reason();
  if (!ok) {
    unlink(temp.c_str());
    error = path + ": cannot write the file: " + reason;
  }
  return ok;
}

}  // namespace pictrace
