// Limits on what a picture file may make the reader (and the trace after
// it) allocate, checked against the file's header before any pixel row is
// decoded, so that a tiny file claiming a huge size costs nothing.
#pragma once

#include <cstdint>

namespace pictrace {

// No picture file read is larger than this: 1 GiB, far above what the pixel
// limit lets a compressed picture decode to.
constexpr unsigned long long kMaxPictureFileBytes = 1ull << 30;

// The most pixels any picture may have: the engine's points are 16-bit, so
// neither side may pass 32767.
constexpr std::uint64_t kMaxPixelsEver = 32767ull * 32767ull;

// Peak memory of a trace per picture pixel: the largest resident size
// divided by the pixel count, measured on photographs of 0.6 to 8
// megapixels (the most: 226 with --denoise and 50 colours on 1.5
// megapixels, 236 on 8 megapixels), with a little to spare.
constexpr std::uint64_t kTraceBytesPerPixel = 240;

// The pixel limit: pictures with more pixels are refused before they are
// decoded. Until set, it is DefaultMaxImagePixels(); 0 restores that.
void SetMaxImagePixels(std::uint64_t pixels);
std::uint64_t MaxImagePixels();
bool MaxImagePixelsIsDefault();

// What a trace can take in the memory available now (MemAvailable, or the
// free pages when /proc is missing, and no more than the address-space
// limit), at most kMaxPixelsEver.
std::uint64_t DefaultMaxImagePixels();

}  // namespace pictrace
