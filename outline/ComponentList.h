// Building and clearing component lists for the component search and the
// outline stage.
#pragma once

#include <list>

#include "outline/OutlineStage.h"
#include "core/OutlineRecords.h"

namespace outline {

// Deletes every component and empties the list.
void ClearComponents(std::list<CConComponent*>& listComp);

// One flood-fill pass over the image (no numbering, no repair): labels is
// set up from the host mask and the cartoon mask and left with 1 at every
// visited pixel; queue has room for width * height points.
void FloodComponents(const pictrace::ImageView& img, const int* pHostMask, const unsigned char* pMask,
                     int* labels, sPoint* queue, std::list<CConComponent*>& listComp);

}  // namespace outline
