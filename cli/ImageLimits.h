// A cap on decoded pixel count, so that a tiny compressed file cannot make
// the reader allocate gigabytes. The default admits every picture up to
// 32767 x 32767; the fuzzer lowers it.
#pragma once

#include <cstdint>

namespace pictrace {

void SetMaxImagePixels(std::uint64_t pixels);
std::uint64_t MaxImagePixels();

}  // namespace pictrace
