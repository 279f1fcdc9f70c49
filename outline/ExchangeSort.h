// The exchange sort of the region order, with its exact treatment of equal
// keys, at the cost of the swaps it makes rather than of all pairs.
#pragma once

#include <vector>

namespace outline {

// The positions of `keys` in the order that this sort leaves them:
//   for i in 0..n-2: for j in i+1..n-1: if key[i] < key[j]: swap(i, j)
// Descending by key; equal keys end as that procedure puts them.
std::vector<int> ExchangeSortOrder(const std::vector<int>& keys);

}  // namespace outline
