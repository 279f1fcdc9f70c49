// The retry rule of the segmentation driver: after a clustering pass that
// found a different number of colours than wanted, the next pass aims one
// colour further in the direction that should close the gap. An upward search
// that overshoots turns down once; a downward search that undershoots stops.
// At most five retries run, and only while the target stays within 2..49.
#pragma once

namespace pictrace {

class ColorCountRetry {
 public:
  static const int kMaxRetries = 5;
  static const int kTargetLimit = 50;  // targets must stay below this
  static const int kTargetMin = 2;

  explicit ColorCountRetry(int nWanted) : m_nWanted(nWanted), m_nCur(nWanted) {}

  // The colour count the next clustering pass aims at.
  int Target() const { return m_nCur; }
  // +1 searching upward, -1 downward, 0 when the first pass hit the count.
  int Direction() const { return m_nDir; }
  int Retries() const { return m_nRetries; }

  // Takes the count found by the first pass; true when a retry pass follows.
  bool AfterFirstPass(int nCount, bool bNoRetry) {
    if (nCount < m_nWanted) {
      m_nCur++;
      m_nDir = 1;
    } else if (nCount > m_nWanted) {
      m_nCur--;
      m_nDir = -1;
    }
    return m_nDir != 0 && m_nCur < kTargetLimit && m_nCur >= kTargetMin && !bNoRetry;
  }

  // Takes the count found by a retry pass; true when another retry follows.
  bool AfterRetry(int nCount) {
    m_nRetries++;
    if (nCount == m_nWanted) return false;
    if (nCount < m_nWanted && m_nDir == 1) {
      m_nCur++;
    } else if (nCount > m_nWanted && m_nDir == -1) {
      m_nCur--;
    } else if (nCount > m_nWanted && m_nDir == 1) {
      // Overshot upward: turn down, once; the direction never returns to +1.
      m_nCur--;
      m_nDir = -1;
    } else {
      return false;  // fell short while going down
    }
    if (m_nCur >= kTargetLimit || m_nCur < kTargetMin) return false;
    return m_nRetries < kMaxRetries;
  }

 private:
  int m_nWanted;
  int m_nCur;
  int m_nDir = 0;
  int m_nRetries = 0;
};

}  // namespace pictrace
