// Duplicate pieces and reverse twins among the traced pieces.
#pragma once

#include <vector>

#include "core/OutlineRecords.h"

namespace outline {

constexpr int kPieceKept = -1;       // kept as traced
constexpr int kPieceDuplicate = -2;  // to delete

// Status of every piece: for each i in order whose status is still kept,
// every later j with the same region, neighbour, start and end becomes a
// duplicate, and every later j that runs the same boundary the other way
// (region and neighbour swapped, start and end swapped, region != neighbour)
// gets status i. Later i overwrite earlier verdicts on the same j.
std::vector<int> ClassifyPieces(const std::vector<COutlineVector*>& pieces);

}  // namespace outline
