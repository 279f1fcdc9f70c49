#include "cli/CliGuards.h"

#include <iostream>
#include <sstream>

#include "cli/Commands.h"

namespace pictrace {
namespace cli {

namespace {
// Photographs start as at most about 0.6 seed regions per pixel (0.3 to
// 0.6 on the shared ones); noise and one-pixel checkerboards as nearly 1.
const double kSeedsPerPixelWarning = 0.8;
const int kSeedsWarning = 100000;  // below this a picture traces quickly anyway
}  // namespace

bool ReportGuards(CPictrace& engine, const std::string& input, double timeLimit) {
  const double pixels = static_cast<double>(engine.m_bmiHeader.biWidth) * engine.m_bmiHeader.biHeight;
  const int seeds = engine.GetSeedRegionCount();
  if (seeds >= kSeedsWarning && seeds > kSeedsPerPixelWarning * pixels)
    ErrorStream() << "pictrace: warning: " << input << " starts as " << seeds << " regions of near-equal colour in "
              << static_cast<long long>(pixels) << " pixels, far more than a photograph has (noise or "
              << "dithering?); tracing may be slow and detailed; --denoise 3000 smooths it first\n";
  if (!engine.IsStopped()) return true;
  std::ostringstream limit;
  limit << timeLimit;
  Fail(input + ": stopped after the time limit of " + limit.str() + " s (--time-limit); nothing was written");
  return false;
}

}  // namespace cli
}  // namespace pictrace
