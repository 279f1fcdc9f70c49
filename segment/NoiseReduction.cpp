// Edge-preserving smoothing of the input image into the working image: five
// alternations of an edge field estimated from the current solution and a
// sparse solve per colour plane in which smoothing is weakened at edges.
#include <climits>
#include <cmath>
#include <vector>

#include "Pictrace.h"
#include "core/ImageView.h"
#include "core/Progress.h"
#include "segment/MumfordSystem.h"
#include "segment/SparseSolve.h"

using namespace pictrace;

namespace {

// Row stride of the engine's pixel rows, or 0 when the header cannot
// describe the 24-bit buffers the engine holds.
long long RowStride(const BITMAPINFOHEADER& h) {
  if (h.biWidth <= 0 || h.biHeight <= 0) return 0;
  const long long stride = static_cast<long long>(pictrace::HeaderStride(h));
  return stride < 3LL * h.biWidth ? 0 : stride;
}

}  // namespace

void CPictrace::NoiseReduction(double dLambda) { MumfordAlgo(dLambda); }

void CPictrace::MumfordAlgo(double dLambda) {
  // Nothing to smooth without an image; a negative or NaN lambda would make
  // the edge response meaningless. Both leave the engine untouched.
  if (!m_pDIBBits || !m_pWorkBits || RowStride(m_bmiHeader) == 0) return;
  if (!(dLambda >= 0.0)) return;
  // Five entries per row must fit the solver's integer indices.
  if (static_cast<long long>(m_bmiHeader.biWidth) * m_bmiHeader.biHeight > INT_MAX / 5) return;

  UnloadData();
  GetValues();
  std::vector<double*> planes(m_listWorkBuffers.begin(), m_listWorkBuffers.end());
  FiniteDifferenceLasMumfordU(planes.data(), static_cast<int>(planes.size()), dLambda);
}

void CPictrace::GetValues() {
  while (!m_listWorkBuffers.empty()) {
    delete[] m_listWorkBuffers.front();
    m_listWorkBuffers.pop_front();
  }
  const int width = m_bmiHeader.biWidth;
  const int height = m_bmiHeader.biHeight;
  const long long stride = RowStride(m_bmiHeader);
  if (!m_pDIBBits || stride == 0) return;
  const size_t n = static_cast<size_t>(width) * height;
  const int nPlanes = IsGrayValued() ? 1 : 3;
  for (int c = 0; c < nPlanes; c++) {
    double* plane = new double[n];
    size_t k = 0;
    for (int x = 0; x < width; x++)
      for (int y = 0; y < height; y++)
        plane[k++] = m_pDIBBits[y * stride + 3 * x + c];
    m_listWorkBuffers.push_back(plane);
  }
}

namespace pictrace {
namespace segment {

int SmoothPlanes(const double* const* ppPlanes, int nPlanes, double dLambda, const ImageView& work,
                 Progress& progress) {
  const int width = work.width;
  const int height = work.height;
  const long long stride = static_cast<long long>(work.stride);
  if (!ppPlanes || nPlanes <= 0 || stride == 0 || !work.bits) return 0;
  const int n = width * height;

  std::vector<int> lengths(n);
  MumfordRowLengths(width, height, lengths.data());
  SparseRowMatrix a;
  if (!a.SetStructure(n, lengths.data())) return 0;

  std::vector<std::vector<double>> u(nPlanes);
  std::vector<const double*> uPtr(nPlanes);
  for (int c = 0; c < nPlanes; c++) {
    u[c].assign(ppPlanes[c], ppPlanes[c] + n);
    uPtr[c] = u[c].data();
  }
  std::vector<double> v(n), q(n), h(n);

  const double stage = progress.Span(PT_WEIGHT_NOISE);
  bool bFirstFill = true;
  for (int i = 1; i <= kMumfordRounds; i++) {
    MumfordEdgeField(uPtr.data(), nPlanes, width, height, dLambda, v.data());
    // The weights depend on the shared edge field only, so the matrix is the
    // same for every plane of a round: filling it once per round gives the
    // system each plane's solve would have built for itself.
    MumfordWeights(v.data(), n, q.data());
    MumfordFillMatrix(a, q.data(), width, height, bFirstFill);
    bFirstFill = false;
    for (int c = 0; c < nPlanes; c++) {
      const double* f = ppPlanes[c];
      for (int k = 0; k < n; k++) h[k] = kMumfordBeta * f[k];
      SolveBiCGSTAB(a, u[c].data(), h.data(), kMumfordSolverSteps, kMumfordSolverAccuracy);
    }
    progress.ShowAt(stage * i / kMumfordRounds);
  }
  progress.EndStage(PT_WEIGHT_NOISE);

  // Written whether or not the solver reached its accuracy; a grey image's
  // single plane goes to all three bytes.
  const int nWritten = nPlanes < 3 ? nPlanes : 3;
  for (int c = 0; c < nWritten; c++) {
    int k = 0;
    for (int x = 0; x < width; x++)
      for (int y = 0; y < height; y++, k++) {
        unsigned char byte = MumfordClampByte(u[c][k]);
        unsigned char* p = work.bits + y * stride + 3 * x;
        if (nPlanes == 1) {
          p[0] = p[1] = p[2] = byte;
        } else {
          p[c] = byte;
        }
      }
  }
  return 1;
}

}  // namespace segment
}  // namespace pictrace

int CPictrace::FiniteDifferenceLasMumfordU(double** ppPlanes, int nPlanes, double dLambda) {
  pictrace::ImageView work = pictrace::ViewOf(m_bmiHeader, m_pWorkBits);
  work.stride = static_cast<size_t>(RowStride(m_bmiHeader));  // 0 when the header cannot describe the rows
  pictrace::Progress progress = JobProgress();
  return pictrace::segment::SmoothPlanes(ppPlanes, nPlanes, dLambda, work, progress);
}
