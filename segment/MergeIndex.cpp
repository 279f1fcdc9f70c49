#include "segment/MergeIndex.h"

#include <algorithm>
#include <limits>

#include "segment/RegionGraph.h"

namespace {
const size_t kMostRuns = 64;
}

RegionPositions::RegionPositions(CRegion* pHead) {
  for (CRegion* r = pHead; r; r = r->m_pNext) m_regions.push_back(r);
  m_nLive = static_cast<int>(m_regions.size());

  for (size_t i = 0; i < m_regions.size() && m_runs.size() <= kMostRuns;) {
    size_t j = i + 1;
    while (j < m_regions.size() && reinterpret_cast<std::uintptr_t>(m_regions[j]) ==
                                       reinterpret_cast<std::uintptr_t>(m_regions[j - 1]) + sizeof(CRegion))
      j++;
    std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(m_regions[i]);
    m_runs.push_back(Run{begin, begin + (j - i) * sizeof(CRegion), static_cast<int>(i)});
    i = j;
  }
  if (m_runs.size() <= kMostRuns) {
    std::sort(m_runs.begin(), m_runs.end(), [](const Run& a, const Run& b) { return a.begin < b.begin; });
    return;
  }
  m_runs.clear();

  size_t capacity = 16;
  while (capacity < 2 * m_regions.size()) capacity *= 2;
  m_mask = capacity - 1;
  m_slots.assign(capacity, Slotted{nullptr, -1});
  for (size_t i = 0; i < m_regions.size(); i++) m_slots[Slot(m_regions[i])] = Slotted{m_regions[i], static_cast<int>(i)};
}

size_t RegionPositions::Slot(const CRegion* pRegion) const {
  std::uint64_t h = reinterpret_cast<std::uintptr_t>(pRegion) >> 3;
  h *= 0x9E3779B97F4A7C15ull;
  size_t s = static_cast<size_t>(h >> 20) & m_mask;
  while (m_slots[s].key && m_slots[s].key != pRegion) s = (s + 1) & m_mask;
  return s;
}

int RegionPositions::Of(const CRegion* pRegion) const {
  if (!pRegion) return -1;
  if (m_slots.empty()) {
    const std::uintptr_t a = reinterpret_cast<std::uintptr_t>(pRegion);
    const Run* run = m_runs.empty() ? nullptr : &m_runs[m_nLastRun];
    if (!run || a < run->begin || a >= run->end) {
      auto after = std::upper_bound(m_runs.begin(), m_runs.end(), a, [](std::uintptr_t x, const Run& r) { return x < r.begin; });
      if (after == m_runs.begin()) return -1;
      run = &*(after - 1);
      if (a >= run->end) return -1;
      m_nLastRun = static_cast<size_t>(run - m_runs.data());
    }
    if ((a - run->begin) % sizeof(CRegion) != 0) return -1;
    int i = run->first + static_cast<int>((a - run->begin) / sizeof(CRegion));
    return m_regions[static_cast<size_t>(i)] == pRegion ? i : -1;  // removed regions are null
  }
  return m_slots[Slot(pRegion)].position;
}

// The key stays in its slot, so that the probe chains through it hold.
void RegionPositions::Remove(int i) {
  CRegion*& r = m_regions[static_cast<size_t>(i)];
  if (!r) return;
  if (!m_slots.empty()) m_slots[Slot(r)].position = -1;
  r = nullptr;
  m_nLive--;
}

PositionCounter::PositionCounter(int n) : m_n(n), m_top(1), m_tree(static_cast<size_t>(n) + 1, 0) {
  while (m_top * 2 <= m_n) m_top *= 2;
}

PositionCounter::PositionCounter(const std::vector<unsigned char>& flags)
    : PositionCounter(static_cast<int>(flags.size())) {
  for (int k = 1; k <= m_n; k++) {
    m_tree[static_cast<size_t>(k)] += flags[static_cast<size_t>(k - 1)];
    int parent = k + (k & -k);
    if (parent <= m_n) m_tree[static_cast<size_t>(parent)] += m_tree[static_cast<size_t>(k)];
  }
}

void PositionCounter::Add(int i, int delta) {
  for (int k = i + 1; k <= m_n; k += k & -k) m_tree[static_cast<size_t>(k)] += delta;
}

std::int64_t PositionCounter::CountBelow(int i) const {
  std::int64_t sum = 0;
  for (int k = i; k > 0; k -= k & -k) sum += m_tree[static_cast<size_t>(k)];
  return sum;
}

int PositionCounter::FindNth(std::int64_t n) const {
  if (n <= 0) return 0;
  int pos = 0;
  for (int step = m_top; step > 0; step /= 2) {
    int next = pos + step;
    if (next <= m_n && m_tree[static_cast<size_t>(next)] < n) {
      pos = next;
      n -= m_tree[static_cast<size_t>(next)];
    }
  }
  return pos;  // 0-based position of the n-th, or m_n when there are fewer
}

LeftmostMinTree::LeftmostMinTree(int n) : m_size(1) {
  while (m_size < n) m_size *= 2;
  m_tree.assign(2 * static_cast<size_t>(m_size), std::numeric_limits<float>::infinity());
}

LeftmostMinTree::LeftmostMinTree(const std::vector<float>& values)
    : LeftmostMinTree(static_cast<int>(values.size())) {
  std::copy(values.begin(), values.end(), m_tree.begin() + m_size);
  for (size_t k = static_cast<size_t>(m_size); k-- > 1;) {
    float l = m_tree[2 * k], r = m_tree[2 * k + 1];
    m_tree[k] = r < l ? r : l;
  }
}

void LeftmostMinTree::Set(int i, float v) {
  size_t k = static_cast<size_t>(i + m_size);
  m_tree[k] = v;
  for (k /= 2; k > 0; k /= 2) {
    float l = m_tree[2 * k], r = m_tree[2 * k + 1];
    m_tree[k] = r < l ? r : l;
  }
}

float LeftmostMinTree::MinFrom(int p) const {
  float best = std::numeric_limits<float>::infinity();
  size_t lo = static_cast<size_t>(p + m_size), hi = 2 * static_cast<size_t>(m_size);
  while (lo < hi) {
    if (lo & 1) {
      if (m_tree[lo] < best) best = m_tree[lo];
      lo++;
    }
    if (hi & 1) {
      hi--;
      if (m_tree[hi] < best) best = m_tree[hi];
    }
    lo /= 2;
    hi /= 2;
  }
  return best;
}

int LeftmostMinTree::FirstAtMost(int p, float bound) const {
  if (p >= m_size) return -1;
  size_t i = static_cast<size_t>(p + m_size);
  for (;;) {
    if (m_tree[i] <= bound) {
      while (i < static_cast<size_t>(m_size)) {
        i *= 2;
        if (!(m_tree[i] <= bound)) i++;
      }
      return static_cast<int>(i) - m_size;
    }
    while (i & 1) i /= 2;  // a right child: its parent's range is done
    if (i == 0) return -1;
    i++;
  }
}
