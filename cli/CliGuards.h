// What a user is told when a trace runs into the engine's guards: a picture
// that starts as far more seed regions than a photograph (dithering, noise,
// one-pixel patterns) and a job stopped at --time-limit.
#pragma once

#include <string>

#include "Pictrace.h"

namespace pictrace {
namespace cli {

// After the segmentation: warns about a picture of many more seed regions
// than a photograph has, and reports a stop at the time limit (false then,
// and nothing may be written).
bool ReportGuards(CPictrace& engine, const std::string& input, double timeLimit);

}  // namespace cli
}  // namespace pictrace
