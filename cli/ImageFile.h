// Reading and writing picture files. The engine itself never touches files;
// the command line (and the tests) go through these functions.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace pictrace {

// Reads a PNG, JPEG or BMP file into a packed DIB (40-byte header, colour
// table, bottom-up rows) ready for CPictrace::SetDIBData. PNG and JPEG
// become 24-bit; BMP files of 1, 4, 8 and 24 bits are passed on as they are,
// after their header has been checked against the file's length. On failure
// returns false and sets error to a message naming the file.
bool LoadImageFile(const std::string& path, std::vector<unsigned char>& dib, std::string& error);

// Before a file is read: false, with a message naming it, when the path is
// a folder or not a regular file (a device such as /dev/zero never ends) or
// holds more than maxBytes. A missing file passes; opening it reports that.
bool CheckInputFile(const std::string& path, unsigned long long maxBytes, std::string& error);

// The same from bytes in memory (name is used in messages only).
bool LoadImageBytes(const unsigned char* data, size_t size, const std::string& name,
                    std::vector<unsigned char>& dib, std::string& error);

// Top-down rows of blue, green, red bytes as the bytes of an 8-bit RGB PNG.
bool EncodePng(const unsigned char* bgrTopDown, int width, int height, int stride, std::string& png,
               std::string& reason);

// Writes top-down rows of blue, green, red bytes as an 8-bit RGB PNG file.
bool WritePng(const std::string& path, const unsigned char* bgrTopDown, int width, int height,
              int stride, std::string& error);

// Writes bytes to a file, or to standard output for the path "-". Every
// write is checked (a full disk shows only when the file is closed); on
// failure returns false and sets error to a message naming the file.
bool WriteFileBytes(const std::string& path, const std::string& bytes, std::string& error);

// The call every file write goes through (::write unless replaced). Tests
// put in one that fails part-way through a file, as a full disk does;
// returns the one it replaces.
using WriteFunction = ssize_t (*)(int fd, const void* data, size_t size);
WriteFunction SetWriteFunction(WriteFunction write);

}  // namespace pictrace
