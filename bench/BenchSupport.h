// Pictures for the benchmarks: synthetic packed DIBs, the shared picture
// folder, and resampling of a photograph to a wanted size.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Pictrace.h"

namespace bench {

// A packed 24-bit bottom-up DIB of width x height whose pixel at (x, row)
// has colour fn(x, row); fn is called once per pixel, row by row, each row
// from left to right.
std::vector<unsigned char> MakeDib24(int width, int height,
                                     const std::function<COLORREF(int x, int row)>& fn);

// Path of a file in the shared picture folder (may be absent).
std::string SharedImagePath(const std::string& name);

// Reads the shared picture name into a packed DIB; false when the file is
// absent or unreadable (error then says why, when the reader could tell).
bool LoadSharedImage(const std::string& name, std::vector<unsigned char>& dib, std::string& error);

// Bilinear resample of a packed 24-bit DIB to width x height.
std::vector<unsigned char> Resample(const std::vector<unsigned char>& src, int width, int height);

}  // namespace bench
