// The sparse system of the noise reduction on Eigen: a row-major matrix in
// compressed form whose row starts are fixed once, and Eigen's BiCGSTAB with
// the identity as preconditioner.
#include "segment/SparseSolve.h"

#include <climits>

#if !__has_include(<Eigen/Sparse>)
#error "the noise reduction needs Eigen 3 (Debian package libeigen3-dev)"
#endif
#include <Eigen/IterativeLinearSolvers>
#include <Eigen/Sparse>

namespace pictrace {

typedef Eigen::SparseMatrix<double, Eigen::RowMajor, int> RowMatrix;

struct SparseRowMatrixImpl {
  RowMatrix matrix;
};

SparseRowMatrix::SparseRowMatrix() : m_impl(new SparseRowMatrixImpl) {}
SparseRowMatrix::~SparseRowMatrix() = default;

bool SparseRowMatrix::SetStructure(int n, const int* rowLengths) {
  RowMatrix& m = m_impl->matrix;
  m.resize(0, 0);
  if (n < 0 || (n > 0 && !rowLengths)) return false;
  long long nnz = 0;
  for (int r = 0; r < n; r++) {
    if (rowLengths[r] < 0 || rowLengths[r] > n) return false;
    nnz += rowLengths[r];
  }
  if (nnz > INT_MAX) return false;
  // A freshly resized matrix is in compressed form; writing the row starts
  // and sizing the entry storage fixes the structure without any search.
  m.resize(n, n);
  int* outer = m.outerIndexPtr();
  outer[0] = 0;
  for (int r = 0; r < n; r++) outer[r + 1] = outer[r] + rowLengths[r];
  m.resizeNonZeros(static_cast<Eigen::Index>(nnz));
  // Until filled, the slots of a row sit in distinct ascending columns with
  // value 0, so that the matrix is always well formed.
  int* inner = m.innerIndexPtr();
  double* values = m.valuePtr();
  for (int r = 0; r < n; r++)
    for (int s = 0; s < rowLengths[r]; s++) {
      inner[outer[r] + s] = s;
      values[outer[r] + s] = 0.0;
    }
  return true;
}

int SparseRowMatrix::Size() const { return static_cast<int>(m_impl->matrix.rows()); }

int SparseRowMatrix::RowLength(int row) const {
  if (row < 0 || row >= Size()) return 0;
  const int* outer = m_impl->matrix.outerIndexPtr();
  return outer[row + 1] - outer[row];
}

void SparseRowMatrix::SetEntry(int row, int slot, int col, double value) {
  if (slot < 0 || slot >= RowLength(row) || col < 0 || col >= Size()) return;
  RowMatrix& m = m_impl->matrix;
  int pos = m.outerIndexPtr()[row] + slot;
  m.innerIndexPtr()[pos] = col;
  m.valuePtr()[pos] = value;
}

int SparseRowMatrix::EntryColumn(int row, int slot) const {
  if (slot < 0 || slot >= RowLength(row)) return -1;
  const RowMatrix& m = m_impl->matrix;
  return m.innerIndexPtr()[m.outerIndexPtr()[row] + slot];
}

double SparseRowMatrix::EntryValue(int row, int slot) const {
  if (slot < 0 || slot >= RowLength(row)) return 0.0;
  const RowMatrix& m = m_impl->matrix;
  return m.valuePtr()[m.outerIndexPtr()[row] + slot];
}

double* SparseRowMatrix::Values() { return m_impl->matrix.valuePtr(); }

struct SparseSolveAccess {
  static const RowMatrix& Matrix(const SparseRowMatrix& a) { return a.m_impl->matrix; }
};

SolveReport SolveBiCGSTAB(SparseRowMatrix& a, double* x, const double* b, int maxIterations,
                          double accuracy) {
  SolveReport report;
  const RowMatrix& m = SparseSolveAccess::Matrix(a);
  const Eigen::Index n = m.rows();
  if (n == 0) {
    report.converged = true;
    return report;
  }
  Eigen::BiCGSTAB<RowMatrix, Eigen::IdentityPreconditioner> solver;
  solver.setTolerance(accuracy);
  solver.setMaxIterations(maxIterations);
  solver.compute(m);
  Eigen::Map<Eigen::VectorXd> xv(x, n);
  Eigen::Map<const Eigen::VectorXd> bv(b, n);
  Eigen::VectorXd result = solver.solveWithGuess(bv, xv);
  xv = result;
  report.iterations = static_cast<int>(solver.iterations());
  report.relativeResidual = solver.error();
  report.converged = solver.info() == Eigen::Success;
  return report;
}

}  // namespace pictrace
