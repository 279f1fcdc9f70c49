// The disc of the satin width as pixel offsets, and the test whether a
// component holds that disc somewhere.
#pragma once

#include <vector>

#include "core/OutlineRecords.h"

namespace outline {

// Offsets around a circle of radius r: the angle advances by 1/r from 0
// while below 2 pi and while the table (room for truncate(2 pi r) entries)
// is not full; each entry is (cos * r - 0.5, sin * r - 0.5) truncated toward
// zero, and an entry equal to the one before it is not kept.
//
// Offsets that leave any picture (|value| > 32767) are clamped to the
// 16-bit range, and a radius beyond 100000 pixels gives one far offset:
// both still leave every picture, so the disc test answers the same.
std::vector<sPoint> BuildDiscTable(double r);

// True when some pixel of the component (in order) has every offset position
// inside the component or outside the width x height picture. scratch is a
// zeroed width x height byte buffer; it is zero again on return.
bool HoldsDisc(const CConComponent* comp, const sPoint* offsets, int nOffsets, int width,
               int height, unsigned char* scratch);

}  // namespace outline
