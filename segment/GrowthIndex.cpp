#include "segment/GrowthIndex.h"

#include <cstring>
#include <tuple>

#include "segment/RegionGraph.h"

namespace {

std::uint32_t Bits(float f) {
  std::uint32_t u;
  std::memcpy(&u, &f, sizeof u);
  return u;
}

}  // namespace

bool GrowthIndex::Key::operator<(const Key& o) const {
  return std::tie(size, red, green, blue, weak) < std::tie(o.size, o.red, o.green, o.blue, o.weak);
}

GrowthIndex::Key GrowthIndex::KeyOf(const CNodeNeighbor* l) const {
  const CRegion* x = l->m_pRegion;
  return Key{x->m_nSize, Bits(x->m_fRed), Bits(x->m_fGreen), Bits(x->m_fBlue), l->m_nWeakEdges};
}

void GrowthIndex::Clear() {
  m_pRegion = nullptr;
  m_pTail = nullptr;
  m_entries.clear();
  m_classes.clear();
}

void GrowthIndex::Build(CRegion* pRegion) {
  Clear();
  m_pRegion = pRegion;
  CNodeNeighbor* prev = nullptr;
  for (CNodeNeighbor* l = pRegion->m_pNeighbors; l; l = l->m_pNext) {
    Insert(l->m_pRegion, l, prev);
    prev = l;
  }
  m_pTail = prev;
}

void GrowthIndex::Insert(CRegion* target, CNodeNeighbor* link, CNodeNeighbor* prev) {
  Entry e{link, prev, m_nNextOrder++, KeyOf(link)};
  m_classes[e.key].emplace(e.order, target);
  m_entries[target] = e;
}

void GrowthIndex::Unlink(CRegion* target) {
  auto it = m_entries.find(target);
  const Entry e = it->second;
  m_entries.erase(it);
  CNodeNeighbor* next = e.link->m_pNext;
  if (e.prev)
    e.prev->m_pNext = next;
  else
    m_pRegion->m_pNeighbors = next;
  if (next) m_entries[next->m_pRegion].prev = e.prev;
  if (m_pTail == e.link) m_pTail = e.prev;
  auto c = m_classes.find(e.key);
  c->second.erase({e.order, target});
  if (c->second.empty()) m_classes.erase(c);
}

void GrowthIndex::Rekey(CRegion* target) {
  Entry& e = m_entries[target];
  auto c = m_classes.find(e.key);
  c->second.erase({e.order, target});
  if (c->second.empty()) m_classes.erase(c);
  e.key = KeyOf(e.link);
  m_classes[e.key].emplace(e.order, target);
}

// The same list surgery as CombineRegion, with A's link to B, A's tail and
// A's link to each shared neighbour found through the index.
void GrowthIndex::Grow(CRegion*& pHead, double dFactor) {
  CRegion* a = m_pRegion;
  CNodeNeighbor* best = a->m_pBestNeighbor;
  CRegion* b = best->m_pRegion;
  Unlink(b);
  delete best;
  a->m_pBestNeighbor = nullptr;

  CNodeNeighbor* l = b->m_pNeighbors;
  b->m_pNeighbors = nullptr;
  while (l) {
    CNodeNeighbor* next = l->m_pNext;
    if (next) PrefetchNode(next->m_pRegion->m_pNeighbors);
    CRegion* x = l->m_pRegion;
    if (x == a) {
      delete l;
    } else {
      if (MoveLinkToA(x, a, b)) {
        auto it = m_entries.find(x);
        if (it != m_entries.end()) {
          it->second.link->m_nWeakEdges += l->m_nWeakEdges;
          Rekey(x);
        }
        delete l;
      } else {
        l->m_pNext = nullptr;
        CNodeNeighbor* prev = m_pTail;
        if (prev)
          prev->m_pNext = l;
        else
          a->m_pNeighbors = l;
        m_pTail = l;
        Insert(x, l, prev);
      }
    }
    l = next;
  }
  AbsorbRegion(a, b, pHead);

  // The lowest value from zero down; of equal ones, the earliest link.
  a->m_fDecrease = 0.0f;
  std::uint64_t bestOrder = 0;
  for (const auto& c : m_classes) {
    const auto& head = *c.second.begin();
    CNodeNeighbor* link = m_entries[head.second].link;
    const float v = MergeValueOf(a, link, dFactor);
    if (v < a->m_fDecrease || (a->m_pBestNeighbor && v == a->m_fDecrease && head.first < bestOrder)) {
      a->m_fDecrease = v;
      a->m_pBestNeighbor = link;
      bestOrder = head.first;
    }
  }
}
