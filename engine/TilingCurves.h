// Curve output that tiles: every border of the outlines is fitted once and
// both neighbours take the same cubics, so the curves leave no gap and no
// overlap between regions. Where a border's curve would cross another
// border or itself, the border is cut at the traced point nearest the
// crossing and its pieces are fitted on their own; a piece that still
// crosses is fitted closer, and at last taken exactly as traced.
#pragma once

#include <map>
#include <vector>

#include "curve/BezierMath.h"
#include "engine/BorderGraph.h"

namespace pictrace {
namespace engine {

class TilingCurves {
 public:
  // dTolerance in pixels: every chain point lies within it of its curve.
  TilingCurves(const std::vector<OutlineChain>& chains, int width, int height, double dTolerance);

  // The closed curve of outline i, in its chain's direction. A chain without
  // borders is fitted whole.
  std::vector<curve::Cubic> OutlineCurve(size_t i) const;

  // Borders that needed cuts or closer fits because of a crossing.
  int Mended() const { return mended_; }

 private:
  // How a border is fitted: cut at these run indices, each piece at its own
  // level of closeness (pieces known by the index they start at).
  struct Plan {
    std::vector<int> cuts;      // ascending; none for a border fitted whole
    std::map<int, int> levels;  // 0 where absent
    int& LevelAt(int start) { return levels[start]; }
    int Level(int start) const {
      auto it = levels.find(start);
      return it == levels.end() ? 0 : it->second;
    }
  };
  // The start of the piece that holds run index i, and its end.
  static void PieceOf(const Border& b, const Plan& plan, int i, int& start, int& end);
  std::vector<curve::Cubic> Fit(const Border& b, const Plan& plan) const;
  bool Mend(const Border& b, Plan& plan, const std::vector<curve::Vec2>& at, bool bLastResort) const;

  std::vector<OutlineChain> chains_;
  BorderGraph graph_;
  static bool Canonical(Border& b);

  std::vector<std::vector<curve::Cubic>> fits_;  // in each border's canonical form
  std::vector<char> flipped_;  // the canonical form walks the border backwards
  double tolerance_;
  int mended_ = 0;
};

}  // namespace engine
}  // namespace pictrace
