// Lists of records that own them: what a stage hands back, freed whole when
// dropped, also on the way out of a failed stage.
#pragma once

#include <list>
#include <utility>

#include "core/OutlineRecords.h"
#include "core/ThinLineRecords.h"

namespace pictrace {

template <class T>
class OwnedList {
 public:
  OwnedList() = default;
  ~OwnedList() { Clear(); }
  // Stages hand their lists back by value; a list is never assigned.
  OwnedList(OwnedList&& other) noexcept : m_items(std::move(other.m_items)) { other.m_items.clear(); }
  OwnedList& operator=(const OwnedList&) = delete;

  std::list<T*>& Items() { return m_items; }

  // Exchanges the records with a list someone else owns.
  void Swap(std::list<T*>& other) { m_items.swap(other); }

  void Clear() {
    while (!m_items.empty()) {
      delete m_items.front();
      m_items.pop_front();
    }
  }

 private:
  std::list<T*> m_items;
};

using RegionList = OwnedList<COutlineRegion>;
using ThinLineList = OwnedList<COutlineThinline>;

}  // namespace pictrace
