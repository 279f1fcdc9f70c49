// A list of outline regions that owns them: what a stage hands back, freed
// whole when it is dropped, also on the way out of a failed stage.
#pragma once

#include <list>
#include <utility>

#include "core/OutlineRecords.h"

namespace pictrace {

class RegionList {
 public:
  RegionList() = default;
  ~RegionList() { Clear(); }
  RegionList(RegionList&& other) noexcept : m_items(std::move(other.m_items)) { other.m_items.clear(); }
  RegionList& operator=(RegionList&& other) noexcept {
    if (this != &other) {
      Clear();
      m_items.swap(other.m_items);
    }
    return *this;
  }
  RegionList(const RegionList&) = delete;
  RegionList& operator=(const RegionList&) = delete;

  std::list<COutlineRegion*>& Items() { return m_items; }
  const std::list<COutlineRegion*>& Items() const { return m_items; }
  bool Empty() const { return m_items.empty(); }

  // Exchanges the regions with a list someone else owns.
  void Swap(std::list<COutlineRegion*>& other) { m_items.swap(other); }

  void Clear() {
    while (!m_items.empty()) {
      delete m_items.front();
      m_items.pop_front();
    }
  }

 private:
  std::list<COutlineRegion*> m_items;
};

}  // namespace pictrace
