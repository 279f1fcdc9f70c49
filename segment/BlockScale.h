// The two values of the block stage that are shared by all engine objects
// and survive from call to call: restoring saved block regions continues
// from the scale the last block stage reached, whichever picture that was.
#pragma once

#include <cstdint>

extern int s_nBlockScale;                      // 0 until a block stage has run
extern std::uint64_t s_nBlockSizeLimit;        // largest region size that may merge; 8 at start

// 2^s * 16 as a 64-bit integer part; 0 at or beyond 2^64.
std::uint64_t BlockSizeLimitAt(double s);
