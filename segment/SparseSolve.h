// A sparse, non-symmetric linear system filled row by row, and its
// iterative solve. The noise reduction talks only to this interface, so
// that the sparse library behind it can be exchanged in one file.
#pragma once

#include <memory>

#include "core/NoCopy.h"

namespace pictrace {

struct SparseRowMatrixImpl;

// A square matrix stored by rows. The structure is fixed once from the row
// lengths; afterwards every entry of every row is set by its slot number,
// and refilling the same slots with new values keeps the structure. Within
// a row the entries must be set in ascending column order the first time.
class SparseRowMatrix : private pictrace::NoCopy {
 public:
  SparseRowMatrix();
  ~SparseRowMatrix();

  // Sizes the matrix to n x n with rowLengths[r] entries in row r (0-based).
  // Returns false (and leaves the matrix empty) for a negative size or
  // length, or a length larger than n.
  bool SetStructure(int n, const int* rowLengths);

  int Size() const;
  int RowLength(int row) const;

  // Sets entry `slot` (0-based, below RowLength(row)) of row `row` to
  // value in column `col`.
  void SetEntry(int row, int slot, int col, double value);

  // Column and value of an entry, for inspection.
  int EntryColumn(int row, int slot) const;
  double EntryValue(int row, int slot) const;

  // Contiguous values in row-major slot order, for a fast refill that keeps
  // the columns (the first fill must go through SetEntry).
  double* Values();

 private:
  friend struct SparseSolveAccess;
  std::unique_ptr<SparseRowMatrixImpl> m_impl;
};

// Outcome of an iterative solve.
struct SolveReport {
  int iterations = 0;
  double relativeResidual = 0.0;  // |b - A x| / |b| as the solver estimates it
  bool converged = false;
};

// Solves A x = b by BiCGSTAB without preconditioner, starting from the
// values in x and overwriting them with the result. Stops when the relative
// residual falls to `accuracy` or after `maxIterations` steps; x holds the
// last iterate either way. x and b have A.Size() entries.
SolveReport SolveBiCGSTAB(SparseRowMatrix& a, double* x, const double* b, int maxIterations,
                          double accuracy);

}  // namespace pictrace
