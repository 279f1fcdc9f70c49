// Colour counts of the input picture as functions of explicit inputs: the
// grey test and the dominant colours of a few-coloured picture.
#pragma once

#include <vector>

#include "AfxWin.h"
#include "core/ImageView.h"

namespace pictrace {
namespace segment {

bool IsGray(const ImageView& picture);

// The colours that dominate enough interior pixels for the physical pixel
// size of rcReal, in order of first vote; false (kept untouched) when the
// picture has 100 dominant colours or more.
bool DominantColors(const ImageView& picture, const CRect& rcReal, std::vector<DWORD>& kept);

}  // namespace segment
}  // namespace pictrace
