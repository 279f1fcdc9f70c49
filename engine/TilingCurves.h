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
  std::vector<curve::Cubic> Fit(size_t border, const Plan& plan) const;
  bool Mend(size_t border, Plan& plan, const std::vector<curve::Vec2>& at, bool bLastResort) const;

  std::vector<OutlineChain> chains_;
  BorderGraph graph_;
  std::vector<std::vector<curve::Vec2>> runs_;   // each border's run in its canonical form
  std::vector<std::vector<curve::Cubic>> fits_;  // fitted along the canonical run
  std::vector<char> flipped_;  // the canonical form walks the border backwards
  double tolerance_;
};

}  // namespace engine
}  // namespace pictrace
