// Indexes over the region list that let the greedy merge loops find their
// next candidate without walking the list: positions of the regions in list
// order, counters over positions and a leftmost-minimum tree. The list only
// ever loses regions during a loop (merged regions are unlinked, none is
// inserted or moved), so a position fixed at the start stays valid.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class CRegion;

// Position of every region of a list, in list order, found by address. It
// lives for a whole stage: regions that merge away are removed, and no
// region is created while it lives, so no address comes back.
class RegionPositions {
 public:
  explicit RegionPositions(CRegion* pHead);
  int Size() const { return static_cast<int>(m_regions.size()); }
  CRegion* At(int i) const { return m_regions[static_cast<std::size_t>(i)]; }  // null once removed
  int Of(const CRegion* pRegion) const;  // -1 when not in the list or removed
  void Remove(int i);
  // Live regions; a stage renumbers (builds anew) once most have gone, so
  // that work per scale follows the live count.
  int Live() const { return m_nLive; }

 private:
  std::size_t Slot(const CRegion* pRegion) const;
  std::vector<CRegion*> m_regions;
  // A list whose regions lie in few runs of consecutive nodes (as packed
  // or seeded graphs do) is looked up by address range and offset; other
  // lists go through the hash table.
  struct Run {
    std::uintptr_t begin;  // address of the run's first region
    std::uintptr_t end;    // one past its last
    int first;             // position of the first region
  };
  std::vector<Run> m_runs;  // by address; empty when the table is used
  mutable std::size_t m_nLastRun = 0;  // the run of the last lookup, tried first
  struct Slotted {
    const CRegion* key;
    int position;
  };
  std::vector<Slotted> m_slots;  // open addressing, linear probing; key and value share a line
  std::size_t m_mask = 0;
  int m_nLive = 0;
};

// Counts of flagged positions (a Fenwick tree).
class PositionCounter {
 public:
  explicit PositionCounter(int n);
  // Built in linear time from one flag (0 or 1) per position.
  PositionCounter(const std::vector<unsigned char>& flags);
  void Add(int i, int delta);
  std::int64_t CountBelow(int i) const;  // flagged positions < i
  int FindNth(std::int64_t n) const;     // position of the n-th flagged (1-based), or size

 private:
  int m_n;
  int m_top;  // highest power of two <= m_n
  std::vector<std::int32_t> m_tree;  // counts never exceed the position count, an int
};

// Float values by position; finds the first position of the minimum of a
// suffix, with the same tie rule as a strict-less scan (earliest wins).
class LeftmostMinTree {
 public:
  explicit LeftmostMinTree(int n);
  // Built in linear time from one value per position.
  explicit LeftmostMinTree(const std::vector<float>& values);
  void Set(int i, float v);
  float MinFrom(int p) const;               // +inf for an empty suffix
  int FirstAtMost(int p, float bound) const;  // first i >= p with value <= bound, or -1

 private:
  int m_size;
  std::vector<float> m_tree;
};
