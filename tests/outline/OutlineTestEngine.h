// An engine that opens the outline stage's protected members to the tests,
// and small helpers to load flat-colour pictures into it.
#pragma once

#include <functional>
#include <list>
#include <vector>

#include "Pictrace.h"
#include "common/TestImages.h"
#include "core/OutlineRecords.h"

class OutlineEngine : public CPictrace {
 public:
  using CPictrace::BeCross13;
  using CPictrace::BeCross24;
  using CPictrace::contour_order;
  using CPictrace::DeflateComponent;
  using CPictrace::find_next_step;
  using CPictrace::FindAnotherOutline;
  using CPictrace::GetCompList;
  using CPictrace::GetOutline4Cartoon2;
  using CPictrace::GetOutlineList;
  using CPictrace::IsPointInOutline;
  using CPictrace::RemoveExtraPoint;
  using CPictrace::RemoveSmallRegions;
  using CPictrace::SetOutlineColorIndex;
  using CPictrace::SmoothOutline;
  using CPictrace::SmoothOutlineVector;
  using CPictrace::SortRegionSeq;

  // Loads a width x height picture whose pixel (x, row) has colour fn(x, row).
  void Load(int width, int height, const std::function<COLORREF(int, int)>& fn) {
    std::vector<unsigned char> dib = testimg::MakeDib24(width, height, fn);
    SetDIBData(dib.data());
  }
  // Loads a picture drawn as text rows, one character per pixel.
  void LoadText(const std::vector<const char*>& rows);

  COLORREF WorkPixel(int x, int row) const {
    return testimg::PixelAt(m_pWorkBits, m_bmiHeader.biWidth, x, row);
  }
};

// The colour used for a character of a text picture.
COLORREF TextColor(char c);

// Frees every element of a list of owned pointers.
template <class T>
void DeleteAll(std::list<T*>& l) {
  for (T* p : l) delete p;
  l.clear();
}

// A list of owned pointers that frees its elements when it goes.
template <class T>
struct Owned : std::list<T*> {
  using std::list<T*>::list;
  Owned() = default;
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() {
    for (T* p : *this) delete p;
  }
};

// A hand-made piece over pts; its raw points are pts moved down by rawDy,
// so that raw and reduced points can be told apart.
COutlineVector* Piece(int region, int neighbor, std::vector<sPoint> pts, int rawDy = 0);

// A closed vertex chain as a vector.
std::vector<sPoint> Chain(const sPoint* p, int n);
sPoint Pt(int x, int y);

// Per pixel, how many regions cover its centre when each region's outer
// outline and holes are filled together with the alternate rule.
std::vector<int> RegionCoverage(const std::list<COutlineRegion*>& regions, int width, int height);
