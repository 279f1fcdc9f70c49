// Mean-shift clustering of the region means as a function of explicit
// inputs: the modes found, each region repainted with its nearest mode, and
// the radius the search ended at.
#pragma once

#include <vector>

#include "core/ImageView.h"
#include "segment/RegionGraph.h"

namespace pictrace {
namespace segment {

struct Clustering {
  int radius = 0;              // the kernel radius the search was left at
  std::vector<DWORD> colors;   // the modes kept, brightest first
};

// Clusters the region means (weighted by pixel counts) towards nWanted modes
// and paints every region of the list into work with its nearest mode.
Clustering ClusterColors(const CRegion* pHead, const ImageView& work, int nWanted);

int InCentroid(double r, double g, double b, double cr, double cg, double cb, double dRadius);
void MeanF(unsigned char* pVisited, const double* pR, const double* pG, const double* pB,
           const int* pWeight, int n, double dRadius, double& dCR, double& dCG, double& dCB);
void MeanShiftProcess(const double* pR, const double* pG, const double* pB, const int* pWeight, int n,
                      double dRadius, double* pModeR, double* pModeG, double* pModeB, int& nModes);

}  // namespace segment
}  // namespace pictrace
