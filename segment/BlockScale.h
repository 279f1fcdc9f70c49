// The two values of the block stage that are shared by all engine objects
// of one thread and survive from call to call: restoring saved block
// regions continues from the scale the last block stage of the thread
// reached, whichever picture that was. Each thread has its own, so that
// engines on different threads do not disturb each other.
#pragma once

#include <cstdint>

extern thread_local int s_nBlockScale;                   // 0 until a block stage has run
extern thread_local std::uint64_t s_nBlockSizeLimit;     // largest region size that may merge; 8 at start

// 2^s * 16 as a 64-bit integer part; 0 at or beyond 2^64.
std::uint64_t BlockSizeLimitAt(double s);
