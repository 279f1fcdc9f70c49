// Line tracing as a function of explicit inputs: from a thinned skeleton to
// thin lines linked as a tree. The engine's DoTraceThinningLine fills the
// input from its fields and keeps the result as its thin lines.
#pragma once

#include "Pictrace.h"
#include "core/ImageView.h"
#include "core/OwnedList.h"

namespace pictrace {
namespace thinline {

struct LineTraceInput {
  unsigned char* mask = nullptr;       // 1 on skeleton pixels; chains pruned as too short are erased
  ImageView picture;                   // the thinning picture: the skeleton's colours
  const CDWordArray* colors = nullptr;  // line colours, traced in this order
  double minLength = 0.0;              // shorter end chains are pruned, pixels
  float smooth = 1.0f;                 // smoothing tolerance of the kept chains, pixels
};

// Per colour: end chains shorter than the minimum are pruned, the skeleton is
// split at junctions into chains linked as a tree, and each chain becomes a
// thin line with its smoothed points. Line ids run over all colours.
ThinLineList TraceLines(const LineTraceInput& in);

}  // namespace thinline
}  // namespace pictrace
