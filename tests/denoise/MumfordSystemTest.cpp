// The pieces of the smoothing solve: row lengths, edge field, the system
// rows against a hand-built matrix, and the sparse solver wrapper.
#include <gtest/gtest.h>

#include <vector>

#include "segment/MumfordSystem.h"
#include "segment/SparseSolve.h"

using namespace pictrace;

TEST(MumfordSystem, RowLengthsCountInImageNeighboursInColumnMajorOrder) {
  // 3 x 2: sample k = x * 2 + y; corners have 2 neighbours, the middle column 3.
  std::vector<int> lengths(6);
  MumfordRowLengths(3, 2, lengths.data());
  EXPECT_EQ(lengths, (std::vector<int>{3, 3, 4, 4, 3, 3}));

  int single = 0;
  MumfordRowLengths(1, 1, &single);
  EXPECT_EQ(single, 1);

  // A 1 x 3 column: the middle sample has neighbours above and below only.
  std::vector<int> column(3);
  MumfordRowLengths(1, 3, column.data());
  EXPECT_EQ(column, (std::vector<int>{2, 3, 2}));
}

TEST(MumfordSystem, EdgeFieldTakesTheStrongestChannel) {
  // 2 x 1: both samples see one difference. Plane 0 differs by 10 and
  // plane 1 by 20, so v comes from plane 1: 400 / (400 + 100 + 1e-5).
  double p0[] = {0.0, 10.0};
  double p1[] = {5.0, 25.0};
  const double* planes[] = {p0, p1};
  double v[2] = {-1, -1};
  MumfordEdgeField(planes, 2, 2, 1, 100.0, v);
  EXPECT_DOUBLE_EQ(v[0], 400.0 / (400.0 + 100.0 + 1e-5));
  EXPECT_DOUBLE_EQ(v[1], v[0]);

  // Only plane 0: 100 / (100 + 100 + 1e-5).
  MumfordEdgeField(planes, 1, 2, 1, 100.0, v);
  EXPECT_DOUBLE_EQ(v[0], 100.0 / (200.0 + 1e-5));

  // 1 x 3 column 0, 3, 7 with lambda 0: the middle sample sums 9 + 16.
  double col[] = {0.0, 3.0, 7.0};
  const double* colPlanes[] = {col};
  double w[3];
  MumfordEdgeField(colPlanes, 1, 1, 3, 0.0, w);
  EXPECT_DOUBLE_EQ(w[0], 9.0 / (9.0 + 1e-5));
  EXPECT_DOUBLE_EQ(w[1], 25.0 / (25.0 + 1e-5));
  EXPECT_DOUBLE_EQ(w[2], 16.0 / (16.0 + 1e-5));
}

// Rows of the 3 x 2 system for q[k] = k + 1, written out by hand:
// samples k = x * 2 + y; entries in column order k-2, k-1, k, k+1, k+2;
// off-diagonals are minus the neighbour's own weight.
struct Entry {
  int col;
  double value;
};
static const std::vector<std::vector<Entry>> kHandRows = {
    {{0, 0.1 + 2 + 3}, {1, -2}, {2, -3}},
    {{0, -1}, {1, 0.1 + 1 + 4}, {3, -4}},
    {{0, -1}, {2, 0.1 + 1 + 4 + 5}, {3, -4}, {4, -5}},
    {{1, -2}, {2, -3}, {3, 0.1 + 2 + 3 + 6}, {5, -6}},
    {{2, -3}, {4, 0.1 + 3 + 6}, {5, -6}},
    {{3, -4}, {4, -5}, {5, 0.1 + 4 + 5}},
};

static void ExpectRows(const SparseRowMatrix& a, const std::vector<std::vector<Entry>>& rows) {
  ASSERT_EQ(a.Size(), static_cast<int>(rows.size()));
  for (int r = 0; r < a.Size(); r++) {
    ASSERT_EQ(a.RowLength(r), static_cast<int>(rows[r].size())) << "row " << r;
    for (int s = 0; s < a.RowLength(r); s++) {
      EXPECT_EQ(a.EntryColumn(r, s), rows[r][s].col) << "row " << r << " slot " << s;
      EXPECT_DOUBLE_EQ(a.EntryValue(r, s), rows[r][s].value) << "row " << r << " slot " << s;
    }
  }
}

TEST(MumfordSystem, MatrixRowsMatchTheHandBuiltSystem) {
  std::vector<int> lengths(6);
  MumfordRowLengths(3, 2, lengths.data());
  SparseRowMatrix a;
  ASSERT_TRUE(a.SetStructure(6, lengths.data()));
  double q[] = {1, 2, 3, 4, 5, 6};
  MumfordFillMatrix(a, q, 3, 2, true);
  ExpectRows(a, kHandRows);
  // The matrix is deliberately not symmetric.
  EXPECT_EQ(a.EntryValue(0, 1), -2.0);
  EXPECT_EQ(a.EntryValue(1, 0), -1.0);

  // A refill keeps the columns and replaces every value.
  double q2[] = {2, 4, 6, 8, 10, 12};
  MumfordFillMatrix(a, q2, 3, 2, false);
  std::vector<std::vector<Entry>> doubled = kHandRows;
  for (auto& row : doubled)
    for (auto& e : row) e.value = (e.value < 0) ? 2 * e.value : 0.1 + 2 * (e.value - 0.1);
  ExpectRows(a, doubled);
}

TEST(SparseSolve, StructureRejectsImpossibleRows) {
  SparseRowMatrix a;
  int tooLong[] = {1, 3};
  EXPECT_FALSE(a.SetStructure(2, tooLong));
  EXPECT_EQ(a.Size(), 0);
  int negative[] = {1, -1};
  EXPECT_FALSE(a.SetStructure(2, negative));
  EXPECT_FALSE(a.SetStructure(-1, nullptr));
  EXPECT_TRUE(a.SetStructure(0, nullptr));
  // Out-of-range entries are ignored rather than written past the rows.
  int one[] = {1};
  ASSERT_TRUE(a.SetStructure(1, one));
  a.SetEntry(0, 1, 0, 5.0);
  a.SetEntry(1, 0, 0, 5.0);
  a.SetEntry(0, 0, 3, 5.0);
  EXPECT_EQ(a.EntryValue(0, 0), 0.0);
  EXPECT_EQ(a.EntryColumn(0, 0), 0);
}

TEST(SparseSolve, SolvesANonSymmetricSystemFromTheGivenStart) {
  // [4 1; 2 3] x = [1; 2] has the solution (0.1, 0.6).
  int lengths[] = {2, 2};
  SparseRowMatrix a;
  ASSERT_TRUE(a.SetStructure(2, lengths));
  a.SetEntry(0, 0, 0, 4.0);
  a.SetEntry(0, 1, 1, 1.0);
  a.SetEntry(1, 0, 0, 2.0);
  a.SetEntry(1, 1, 1, 3.0);
  double b[] = {1.0, 2.0};

  double x[] = {0.0, 0.0};
  SolveReport r = SolveBiCGSTAB(a, x, b, 200, 1e-12);
  EXPECT_TRUE(r.converged);
  EXPECT_NEAR(x[0], 0.1, 1e-10);
  EXPECT_NEAR(x[1], 0.6, 1e-10);

  // The exact solution as start vector needs no step.
  double exact[] = {0.1, 0.6};
  r = SolveBiCGSTAB(a, exact, b, 200, 1e-6);
  EXPECT_EQ(r.iterations, 0);
  EXPECT_DOUBLE_EQ(exact[0], 0.1);

  // With no step allowed, the start vector comes back unchanged.
  double start[] = {7.0, -3.0};
  r = SolveBiCGSTAB(a, start, b, 0, 1e-6);
  EXPECT_FALSE(r.converged);
  EXPECT_EQ(start[0], 7.0);
  EXPECT_EQ(start[1], -3.0);
}
