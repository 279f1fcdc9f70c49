// Pictures for the tests: synthetic packed DIBs and the bundled examples.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Pictrace.h"

namespace testimg {

// A packed 24-bit bottom-up DIB of width x height whose pixel at (x, row)
// has colour fn(x, row); row is the storage row (row 0 is stored first).
std::vector<unsigned char> MakeDib24(int width, int height,
                                     const std::function<COLORREF(int x, int row)>& fn);

// A packed bottom-up DIB of 1, 4, 8 or 24 bits per pixel with a colour table
// of `table` (reserved bytes `reserved`) and `clrUsed` in the header.
// value(x, row) is each pixel's palette index, or its colour at 24 bits. The
// padding bytes of every row are `pad`, so that a reader straying into them
// is noticed.
std::vector<unsigned char> MakePackedDib(int width, int height, int bits,
                                         const std::vector<COLORREF>& table, DWORD clrUsed,
                                         const std::function<DWORD(int x, int row)>& value,
                                         unsigned char pad = 0, unsigned char reserved = 0);

// Path of a file in examples/.
std::string ExamplePath(const std::string& name);
// Path of a file in the shared picture folder (may be absent).
std::string SharedImagePath(const std::string& name);
bool FileExists(const std::string& path);

// Reads a picture file (PNG, JPEG or BMP) into a packed DIB; fails the
// calling test when it cannot.
std::vector<unsigned char> LoadDib(const std::string& path);

// Colour of pixel (x, row) of a packed 24-bit DIB's rows.
COLORREF PixelAt(const unsigned char* bits, int width, int x, int row);

// Expects every pixel (x, row) of a packed 24-bit DIB's rows, width x
// height, to have the colour want(x, row); a failure names the pixel.
void ExpectImage(const unsigned char* bits, int width, int height,
                 const std::function<COLORREF(int x, int row)>& want);

// A test name made of a parameter: every character that is not a letter or
// a digit becomes '_'.
std::string ParamName(const std::string& param);

}  // namespace testimg
