// A cap on decoded pixel count, so that a tiny compressed file cannot make
// the reader allocate gigabytes. The default admits every picture up to
// 32767 x 32767; the fuzzer lowers it.
#pragma once

#include <cstdint>

namespace pictrace {

// No picture file read is larger than this: 1 GiB, far above what the pixel
// limit lets a compressed picture decode to.
constexpr unsigned long long kMaxPictureFileBytes = 1ull << 30;

void SetMaxImagePixels(std::uint64_t pixels);
std::uint64_t MaxImagePixels();

}  // namespace pictrace
