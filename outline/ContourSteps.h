// Vertex classification and single steps along a component boundary on the
// grid of pixel corners. Vertex (x, y) is the top-left corner of pixel
// (x, y); around it lie LR = (x, y), UR = (x, y-1), UL = (x-1, y-1) and
// LL = (x-1, y). Directions: 0 = x+1, 2 = y-1, 4 = x-1, 6 = y+1.
#pragma once

namespace outline {

// 0, 2, 3 or 4; a vertex of order 2 or more is a junction. Vertices off the
// grid are 0.
int ContourOrder(const int* labels, int width, int height, int x, int y);

// Chooses the next direction for the boundary of `label` and moves (x, y)
// one step along it.
void NextStep(const int* labels, int width, int height, int label, int& x, int& y, int& dir);

// True for an interior vertex whose four pixels hold exactly one equal pair,
// and that pair diagonal: the boundary passes through it twice.
bool IsDiagonalVertex(const int* labels, int width, int height, int x, int y);

}  // namespace outline
