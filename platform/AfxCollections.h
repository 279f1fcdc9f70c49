// MFC array containers: CArray<TYPE, ARG_TYPE> and the typed arrays built on it.
// Like MFC's, they are not copyable; use Copy() or Append().
#pragma once

#include <cassert>
#include <cstdint>
#include <vector>

#include "WinTypes.h"

typedef std::intptr_t INT_PTR;

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;

  INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
  INT_PTR GetCount() const { return GetSize(); }
  INT_PTR GetUpperBound() const { return GetSize() - 1; }
  bool IsEmpty() const { return m_data.empty(); }

  // nGrowBy is accepted for source compatibility; growth is amortised anyway.
  void SetSize(INT_PTR nNewSize, INT_PTR nGrowBy = -1) {
    (void)nGrowBy;
    assert(nNewSize >= 0);
    if (nNewSize < 0) return;
    m_data.resize(static_cast<std::size_t>(nNewSize));
  }
  void RemoveAll() { m_data.clear(); }
  void FreeExtra() { m_data.shrink_to_fit(); }

  const TYPE& GetAt(INT_PTR nIndex) const { return m_data[Checked(nIndex)]; }
  TYPE& GetAt(INT_PTR nIndex) { return m_data[Checked(nIndex)]; }
  void SetAt(INT_PTR nIndex, ARG_TYPE newElement) { m_data[Checked(nIndex)] = newElement; }
  TYPE& ElementAt(INT_PTR nIndex) { return m_data[Checked(nIndex)]; }
  const TYPE& ElementAt(INT_PTR nIndex) const { return m_data[Checked(nIndex)]; }
  const TYPE* GetData() const { return m_data.empty() ? nullptr : m_data.data(); }
  TYPE* GetData() { return m_data.empty() ? nullptr : m_data.data(); }

  void SetAtGrow(INT_PTR nIndex, ARG_TYPE newElement) {
    assert(nIndex >= 0);
    if (nIndex < 0) return;
    if (nIndex >= GetSize()) m_data.resize(static_cast<std::size_t>(nIndex) + 1);
    m_data[static_cast<std::size_t>(nIndex)] = newElement;
  }
  INT_PTR Add(ARG_TYPE newElement) {
    m_data.push_back(newElement);
    return GetSize() - 1;
  }
  INT_PTR Append(const CArray& src) {
    INT_PTR nOldSize = GetSize();
    m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
    return nOldSize;
  }
  void Copy(const CArray& src) {
    if (this != &src) m_data = src.m_data;
  }
  void InsertAt(INT_PTR nIndex, ARG_TYPE newElement, INT_PTR nCount = 1) {
    assert(nIndex >= 0 && nCount >= 0);
    if (nIndex < 0 || nCount < 0) return;  // release builds: refuse, keep the array
    TYPE value = newElement;
    if (nIndex >= GetSize()) m_data.resize(static_cast<std::size_t>(nIndex));
    m_data.insert(m_data.begin() + nIndex, static_cast<std::size_t>(nCount), value);
  }
  void RemoveAt(INT_PTR nIndex, INT_PTR nCount = 1) {
    assert(nIndex >= 0 && nCount >= 0 && nIndex + nCount <= GetSize());
    if (nIndex < 0 || nCount < 0 || nIndex + nCount > GetSize()) return;
    m_data.erase(m_data.begin() + nIndex, m_data.begin() + nIndex + nCount);
  }

  TYPE& operator[](INT_PTR nIndex) { return m_data[Checked(nIndex)]; }
  const TYPE& operator[](INT_PTR nIndex) const { return m_data[Checked(nIndex)]; }

 private:
  std::size_t Checked(INT_PTR nIndex) const {
    assert(nIndex >= 0 && nIndex < GetSize());
    return static_cast<std::size_t>(nIndex);
  }
  std::vector<TYPE> m_data;
};

class CDWordArray : public CArray<DWORD, DWORD> {};
class CWordArray : public CArray<WORD, WORD> {};
class CPtrArray : public CArray<void*, void*> {};
