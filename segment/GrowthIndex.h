// An index over the links of one region that merges many times in a row
// (a large region taking in fragments one by one), so that each merge
// costs about the absorbed region's links instead of the grown region's.
//
// During such a run no other region changes, so the value of a link of
// the grown region A depends only on A and on the target's size, means and
// the link's weak-edge count. Links that agree on those have the same value
// bit for bit, and among them the earliest in A's list wins a tie; so A's
// best link is found by valuing one link per class and taking the lowest
// value, the earliest class head of equal ones. The link values themselves
// are written once, when the run ends (RefreshOwnValues), and are then the
// values a refresh after every merge would have left.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

class CRegion;
class CNodeNeighbor;

class GrowthIndex {
 public:
  // Indexes the links of pRegion, which has just grown and been valued.
  void Build(CRegion* pRegion);
  bool Holds(const CRegion* pRegion) const { return m_pRegion == pRegion; }
  void Clear();
  // CombineRegion of the indexed region, then its value and best link as
  // RefreshOwnValues would pick them; its link values are left as they are.
  void Grow(CRegion*& pHead, double dFactor);

 private:
  struct Key {
    std::uint32_t size, red, green, blue, weak;
    bool operator<(const Key& o) const;
  };
  struct Entry {
    CNodeNeighbor* link;
    CNodeNeighbor* prev;  // the link before it in A's list, or null
    std::uint64_t order;  // increasing along A's list
    Key key;
  };
  Key KeyOf(const CNodeNeighbor* l) const;
  void Insert(CRegion* target, CNodeNeighbor* link, CNodeNeighbor* prev);
  void Unlink(CRegion* target);  // from the list and the index; the link is not freed
  void Rekey(CRegion* target);

  CRegion* m_pRegion = nullptr;
  CNodeNeighbor* m_pTail = nullptr;
  std::uint64_t m_nNextOrder = 0;
  std::unordered_map<const CRegion*, Entry> m_entries;  // by target
  std::map<Key, std::set<std::pair<std::uint64_t, CRegion*>>> m_classes;
};
