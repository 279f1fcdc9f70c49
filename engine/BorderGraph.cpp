// Border split: every unit step of every chain is entered in a table of the
// steps leaving each pixel corner, so that the step walked the other way, and
// with it the region across, is found in constant time. Junctions are marked
// on the corners, then every chain is cut at the marked corners it passes.
#include "engine/BorderGraph.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace pictrace {
namespace engine {

namespace {

constexpr int kFrame = -2;    // across the step: the picture's frame
constexpr int kNobody = -1;   // across the step: no traced region

// Unit steps by direction: +x, +y, -x, -y; the opposite of d is d ^ 2.
const int kDx[4] = {1, 0, -1, 0};
const int kDy[4] = {0, 1, 0, -1};

int StepDirection(sPoint a, sPoint b) {
  for (int d = 0; d < 4; d++)
    if (b.x - a.x == kDx[d] && b.y - a.y == kDy[d]) return d;
  return -1;
}

class Splitter {
 public:
  Splitter(const std::vector<OutlineChain>& chains, int width, int height)
      : w_(width), h_(height), users_(Corners() * 4, -1), junction_(Corners(), 0) {
    rings_.resize(chains.size());
    base_.assign(chains.size(), -1);
    for (size_t o = 0; o < chains.size(); o++) Enter(o, chains[o]);
    for (size_t o = 0; o < rings_.size(); o++)
      if (base_[o] >= 0) MarkJunctions(o);
  }

  BorderGraph Split() {
    BorderGraph g;
    g.outlines.resize(rings_.size());
    startsBorder_.assign(owner_.size(), -1);
    for (size_t o = 0; o < rings_.size(); o++)
      if (base_[o] >= 0) Cut(o, g);
    return g;
  }

 private:
  size_t Corners() const { return (static_cast<size_t>(w_) + 1) * (static_cast<size_t>(h_) + 1); }
  size_t Corner(sPoint p) const { return static_cast<size_t>(p.y) * (static_cast<size_t>(w_) + 1) + p.x; }
  bool Inside(sPoint p) const { return p.x >= 0 && p.y >= 0 && p.x <= w_ && p.y <= h_; }
  sPoint At(size_t o, int i) const {
    const std::vector<sPoint>& r = rings_[o];
    return r[static_cast<size_t>(i) % r.size()];
  }
  // The two user slots of the unit edge from p in direction d: edges are
  // filed under their lower corner, horizontal ones first.
  size_t EdgeSlot(sPoint p, int d) const {
    sPoint low = d < 2 ? p : sPoint{static_cast<short>(p.x + kDx[d]), static_cast<short>(p.y + kDy[d])};
    return (Corner(low) * 2 + (d % 2)) * 2;
  }
  size_t StepSlot(size_t o, int i) const { return EdgeSlot(At(o, i), StepDirection(At(o, i), At(o, i + 1))); }
  // The step of another chain along the same edge, either way, or -1.
  int32_t OtherUser(size_t o, int i) const {
    size_t slot = StepSlot(o, i);
    int32_t self = base_[o] + static_cast<int32_t>(static_cast<size_t>(i) % rings_[o].size());
    return users_[slot] == self ? users_[slot + 1] : users_[slot];
  }

  // The ring of the chain without repeats, and its steps filed by edge; a
  // chain that is no ring of unit steps inside the picture, or that would be
  // the third user of an edge, stays out.
  void Enter(size_t o, const OutlineChain& c) {
    std::vector<sPoint>& r = rings_[o];
    for (int i = 0; i < c.count && c.points; i++)
      if (r.empty() || r.back() != c.points[i]) r.push_back(c.points[i]);
    while (r.size() > 1 && r.back() == r.front()) r.pop_back();
    if (r.size() < 4) return;
    for (size_t i = 0; i < r.size(); i++)
      if (!Inside(r[i]) || StepDirection(r[i], r[(i + 1) % r.size()]) < 0) return;
    const int32_t base = static_cast<int32_t>(owner_.size());
    base_[o] = base;
    for (size_t i = 0; i < r.size(); i++) {
      size_t slot = StepSlot(o, static_cast<int>(i));
      if (users_[slot] < 0) {
        users_[slot] = base + static_cast<int32_t>(i);
      } else if (users_[slot + 1] < 0) {
        users_[slot + 1] = base + static_cast<int32_t>(i);
      } else {
        for (size_t k = 0; k < i; k++) {
          size_t undo = StepSlot(o, static_cast<int>(k));
          for (int u = 0; u < 2; u++)
            if (users_[undo + u] == base + static_cast<int32_t>(k)) users_[undo + u] = -1;
        }
        base_[o] = -1;
        return;
      }
    }
    owner_.insert(owner_.end(), r.size(), static_cast<int32_t>(o));
  }

  bool OnFrame(sPoint a, int d) const {
    return (d % 2 == 0) ? (a.y == 0 || a.y == h_) : (a.x == 0 || a.x == w_);
  }

  // Who is across step i of chain o.
  int AcrossStep(size_t o, int i) const {
    int32_t e = OtherUser(o, i);
    if (e >= 0) return owner_[e];
    return OnFrame(At(o, i), StepDirection(At(o, i), At(o, i + 1))) ? kFrame : kNobody;
  }

  // Edges with a user that touch the corner.
  int Degree(sPoint p) const {
    int n = 0;
    for (int d = 0; d < 4; d++) {
      sPoint q{static_cast<short>(p.x + kDx[d]), static_cast<short>(p.y + kDy[d])};
      if (Inside(q) && users_[EdgeSlot(p, d)] >= 0) n++;
    }
    return n;
  }

  void MarkJunctions(size_t o) {
    const int m = static_cast<int>(rings_[o].size());
    int before = AcrossStep(o, m - 1);
    for (int i = 0; i < m; i++) {
      int after = AcrossStep(o, i);
      sPoint p = At(o, i);
      bool pictureCorner = (p.x == 0 || p.x == w_) && (p.y == 0 || p.y == h_);
      if (before != after || pictureCorner || Degree(p) >= 3) junction_[Corner(p)] = 1;
      before = after;
    }
  }

  Across KindOf(int across) const {
    return across >= 0 ? Across::kRegion : across == kFrame ? Across::kFrame : Across::kNothing;
  }

  // Position of step id e in its chain.
  int Position(int32_t e) const { return e - base_[owner_[e]]; }

  // The border the other side entered first, and whether this chain walks it
  // backwards; -1 when there is none or its run is not this one.
  int TwinOf(size_t o, int first, int length, bool closed, const BorderGraph& g, bool& reversed) const {
    auto matches = [&](int32_t e, bool back) {
      if (e < 0 || startsBorder_[e] < 0) return false;
      const Border& b = g.borders[startsBorder_[e]];
      if (b.closed != closed || static_cast<int>(b.run.size()) != (closed ? length : length + 1)) return false;
      if (closed) return true;
      for (int k = 0; k <= length; k++)
        if (b.run[k] != At(o, back ? first + length - k : first + k)) return false;
      return true;
    };
    // Along the same way the other side's border starts where this one does;
    // the other way it starts where this one ends.
    int32_t e = OtherUser(o, first);
    if (e >= 0 && At(owner_[e], Position(e)) == At(o, first) && matches(closed ? e : e, false)) {
      reversed = false;
      return startsBorder_[e];
    }
    e = OtherUser(o, closed ? first : first + length - 1);
    if (e >= 0 && At(owner_[e], Position(e)) != At(o, closed ? first : first + length - 1) && matches(e, true)) {
      reversed = true;
      return startsBorder_[e];
    }
    return -1;
  }

  void Cut(size_t o, BorderGraph& g) {
    const int m = static_cast<int>(rings_[o].size());
    std::vector<int> cuts;
    for (int i = 0; i < m; i++)
      if (junction_[Corner(At(o, i))]) cuts.push_back(i);
    std::vector<BorderStep>& steps = g.outlines[o];
    const bool closed = cuts.empty();
    if (closed) cuts.push_back(0);
    for (size_t k = 0; k < cuts.size(); k++) {
      int first = cuts[k];
      int length = closed ? m : k + 1 < cuts.size() ? cuts[k + 1] - first : cuts[0] + m - first;
      bool reversed = false;
      int twin = TwinOf(o, first, length, closed, g, reversed);
      if (twin >= 0) {
        steps.push_back({twin, reversed});
        continue;
      }
      Border b;
      for (int i = 0; i < (closed ? length : length + 1); i++) b.run.push_back(At(o, first + i));
      b.closed = closed;
      b.across = KindOf(AcrossStep(o, first));
      const int32_t id = static_cast<int32_t>(g.borders.size());
      steps.push_back({id, false});
      // The other side of a closed border may enter its ring anywhere.
      for (int i = 0; i < (closed ? m : 1); i++) startsBorder_[base_[o] + first + i] = id;
      g.borders.push_back(std::move(b));
    }
  }

  int w_, h_;
  std::vector<std::vector<sPoint>> rings_;
  std::vector<int32_t> base_;     // first step id of each entered chain, or -1
  std::vector<int32_t> owner_;    // chain of each step id
  std::vector<int32_t> users_;    // per unit edge: the step ids walking it, two at most
  std::vector<uint8_t> junction_;
  std::vector<int32_t> startsBorder_;  // per step id: the border entered with it first
};

}  // namespace

BorderGraph SplitIntoBorders(const std::vector<OutlineChain>& chains, int width, int height) {
  if (width <= 0 || height <= 0) return BorderGraph{std::vector<Border>(), std::vector<std::vector<BorderStep>>(chains.size())};
  return Splitter(chains, width, height).Split();
}

}  // namespace engine
}  // namespace pictrace
