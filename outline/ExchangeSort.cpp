#include "outline/ExchangeSort.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace outline {

namespace {

// Range maxima over the keys, to find the next key above a value.
class MaxTree {
 public:
  explicit MaxTree(const std::vector<int>& keys) {
    while (m_size < keys.size()) m_size *= 2;
    m_max.assign(2 * m_size, INT_MIN);
    for (size_t k = 0; k < keys.size(); k++) m_max[m_size + k] = keys[k];
    for (size_t k = m_size - 1; k > 0; k--) m_max[k] = std::max(m_max[2 * k], m_max[2 * k + 1]);
  }
  void Set(size_t pos, int value) {
    size_t k = m_size + pos;
    m_max[k] = value;
    for (k /= 2; k > 0; k /= 2) m_max[k] = std::max(m_max[2 * k], m_max[2 * k + 1]);
  }
  // First position >= from whose key is greater than value, or -1.
  long FirstAbove(size_t from, int value) const { return Descend(1, 0, m_size, from, value); }

 private:
  long Descend(size_t node, size_t lo, size_t hi, size_t from, int value) const {
    if (hi <= from || m_max[node] <= value) return -1;
    if (hi - lo == 1) return static_cast<long>(lo);
    size_t mid = (lo + hi) / 2;
    long r = Descend(2 * node, lo, mid, from, value);
    return r >= 0 ? r : Descend(2 * node + 1, mid, hi, from, value);
  }
  size_t m_size = 1;
  std::vector<int> m_max;
};

}  // namespace

std::vector<int> ExchangeSortOrder(const std::vector<int>& keysIn) {
  const size_t n = keysIn.size();
  std::vector<int> keys = keysIn;
  std::vector<int> order(n);
  for (size_t k = 0; k < n; k++) order[k] = static_cast<int>(k);
  if (n < 2) return order;

  // Step i swaps exactly with the positions j whose key exceeds the key
  // then at i, in increasing j: the chain of next-greater keys. Jumping
  // along that chain makes the same swaps in the same order as comparing
  // every pair, so the result is identical. Inputs that need very many
  // swaps (long ascending runs) finish with the plain loops from the same
  // state, which is then cheaper.
  MaxTree tree(keys);
  const size_t budget = 64 * n + 1024;
  size_t swaps = 0;
  size_t i = 0;
  for (; i + 1 < n && swaps <= budget; i++) {
    for (long j = tree.FirstAbove(i + 1, keys[i]); j >= 0; j = tree.FirstAbove(j + 1, keys[i])) {
      std::swap(keys[i], keys[j]);
      std::swap(order[i], order[j]);
      tree.Set(static_cast<size_t>(j), keys[j]);
      swaps++;
    }
    tree.Set(i, INT_MIN);  // settled; never searched again
  }
  for (; i + 1 < n; i++)
    for (size_t j = i + 1; j < n; j++)
      if (keys[i] < keys[j]) {
        std::swap(keys[i], keys[j]);
        std::swap(order[i], order[j]);
      }
  return order;
}

}  // namespace outline
