// Picture files built in memory for the command-line and file-reader tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace clitest {

// A BMP file: 14-byte file header, 40-byte info header, a grey colour table
// of `colours` entries, rows of the given bit count filled by value(x, row)
// (a palette index, or 0xRRGGBB for 24 bits).
std::vector<unsigned char> MakeBmp(int width, int height, int bits, int colours,
                                   unsigned (*value)(int x, int row));
// A PNG whose pixel (x, y) (top-down) is rgba(x, y) as 0xRRGGBBAA.
std::vector<unsigned char> MakePng(int width, int height, unsigned (*rgba)(int x, int y));
// A baseline JPEG of a flat colour (0xRRGGBB), quality 95.
std::vector<unsigned char> MakeJpeg(int width, int height, unsigned colour);

// Little-endian header fields.
void PutU32(std::vector<unsigned char>& b, std::size_t at, std::uint32_t v, int bytes = 4);

}  // namespace clitest
