// Small-matrix routines against hand-worked inverses and a plain reference.
#include "digital/matrix.h"

#include <gtest/gtest.h>

#include <random>

#include "model/errors.h"
#include "model/headless_platform.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

Matrix FromRows(std::initializer_list<std::initializer_list<double>> rows) {
  Matrix A;
  int i = 1;
  for (const auto& row : rows) {
    int k = 1;
    for (double x : row) A(i, k++) = x;
    ++i;
  }
  return A;
}

// Plain reference: the inverse by solving A X = I with partial pivoting on
// an augmented copy.
Matrix ReferenceInverse(const Matrix& A, int n) {
  double a[7][14] = {};
  for (int i = 1; i <= n; ++i) {
    for (int k = 1; k <= n; ++k) a[i][k] = A(i, k);
    a[i][n + i] = 1;
  }
  for (int c = 1; c <= n; ++c) {
    int best = c;
    for (int r = c + 1; r <= n; ++r)
      if (std::fabs(a[r][c]) > std::fabs(a[best][c])) best = r;
    for (int k = 1; k <= 2 * n; ++k) std::swap(a[c][k], a[best][k]);
    for (int r = 1; r <= n; ++r) {
      if (r == c) continue;
      const double f = a[r][c] / a[c][c];
      for (int k = 1; k <= 2 * n; ++k) a[r][k] -= f * a[c][k];
    }
  }
  Matrix X;
  for (int i = 1; i <= n; ++i)
    for (int k = 1; k <= n; ++k) X(i, k) = a[i][n + k] / a[i][i];
  return X;
}

TEST(InvertMatrix, HandWorkedInversesOfTwoByTwoBlocks) {
  RecordingMessageBox messages;
  Matrix swap = FromRows({{0, 1}, {1, 0}});
  InvertMatrix(swap, 2, messages);
  EXPECT_EQ(swap(1, 1), 0);
  EXPECT_EQ(swap(1, 2), 1);
  EXPECT_EQ(swap(2, 1), 1);
  EXPECT_EQ(swap(2, 2), 0);

  Matrix A = FromRows({{1, 2}, {3, 4}});
  InvertMatrix(A, 2, messages);
  EXPECT_CLOSE(A(1, 1), -2.0, 1e-14);
  EXPECT_CLOSE(A(1, 2), 1.0, 1e-14);
  EXPECT_CLOSE(A(2, 1), 1.5, 1e-14);
  EXPECT_CLOSE(A(2, 2), -0.5, 1e-14);
  EXPECT_TRUE(messages.shown.empty());
}

TEST(InvertMatrix, DiagonalBlocksTakeTheShortcut) {
  RecordingMessageBox messages;
  Matrix one;
  one(1, 1) = 4;
  InvertMatrix(one, 1, messages);
  EXPECT_EQ(one(1, 1), 0.25);

  Matrix I;
  for (int i = 1; i <= 6; ++i) I(i, i) = 1;
  InvertMatrix(I, 6, messages);
  for (int i = 1; i <= 6; ++i)
    for (int k = 1; k <= 6; ++k) EXPECT_EQ(I(i, k), i == k ? 1.0 : 0.0);

  Matrix D = FromRows({{2, 0, 0}, {0, -8, 0}, {0, 0, 0.5}});
  InvertMatrix(D, 3, messages);
  EXPECT_EQ(D(1, 1), 0.5);
  EXPECT_EQ(D(2, 2), -0.125);
  EXPECT_EQ(D(3, 3), 2.0);
}

TEST(InvertMatrix, ZeroOnTheDiagonalOfADiagonalBlockIsADivisionByZero) {
  RecordingMessageBox messages;
  Matrix D = FromRows({{2, 0}, {0, 0}});
  try {
    InvertMatrix(D, 2, messages);
    FAIL() << "no error raised";
  } catch (const RunError& e) {
    EXPECT_EQ(e.kind(), ErrorKind::DivisionByZero);
  }
  EXPECT_TRUE(messages.shown.empty());  // not the singular-block message
}

TEST(InvertMatrix, SingularFullBlockShowsTheMessageAndLeavesItHalfReduced) {
  RecordingMessageBox messages;
  Matrix A = FromRows({{1, 1}, {1, 1}});
  InvertMatrix(A, 2, messages);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0], "Error: inverse matrix D=0");
  // After the first elimination step the trailing square is 0.
  EXPECT_EQ(A(1, 1), 1);
  EXPECT_EQ(A(1, 2), 1);
  EXPECT_EQ(A(2, 1), -1);
  EXPECT_EQ(A(2, 2), 0);
}

TEST(InvertMatrix, ElementsOutsideTheBlockAreNotTouched) {
  RecordingMessageBox messages;
  Matrix A;
  for (int i = 0; i < 7; ++i)
    for (int k = 0; k < 7; ++k) A(i, k) = 100 + 10 * i + k;
  A(1, 1) = 1;
  A(1, 2) = 2;
  A(2, 1) = 3;
  A(2, 2) = 4;
  InvertMatrix(A, 2, messages);
  for (int i = 0; i < 7; ++i)
    for (int k = 0; k < 7; ++k) {
      if (i == 0 || k == 0 || i > 2 || k > 2) {
        EXPECT_EQ(A(i, k), 100 + 10 * i + k) << i << "," << k;
      }
    }
}

// Complete pivoting with physical exchanges must undo them correctly for
// every size the solver uses, including blocks that need a pivot far from
// the diagonal.
TEST(InvertMatrix, AgreesWithAPlainReferenceForEverySize) {
  RecordingMessageBox messages;
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(-1, 1);
  for (int n = 1; n <= 6; ++n)
    for (int trial = 0; trial < 40; ++trial) {
      Matrix A;
      for (int i = 1; i <= n; ++i)
        for (int k = 1; k <= n; ++k) A(i, k) = u(rng);
      A(n, 1) += 3;  // the largest element off the diagonal
      const Matrix expected = ReferenceInverse(A, n);
      Matrix inverse = A;
      InvertMatrix(inverse, n, messages);
      Matrix product;
      MatrixProduct(A, inverse, n, n, n, product);
      for (int i = 1; i <= n; ++i)
        for (int k = 1; k <= n; ++k) {
          EXPECT_NEAR(inverse(i, k), expected(i, k), 1e-9 * (1 + std::fabs(expected(i, k))));
          EXPECT_NEAR(product(i, k), i == k ? 1.0 : 0.0, 1e-10);
        }
    }
  EXPECT_TRUE(messages.shown.empty());
}

TEST(MatrixProduct, BlocksAndColumnsAgainstHandValues) {
  const Matrix A = FromRows({{1, 2, 3}, {4, 5, 6}});
  const Matrix B = FromRows({{7, 8}, {9, 10}, {11, 12}});
  Matrix R;
  R(3, 3) = 42;  // beyond the counts: kept
  MatrixProduct(A, B, 2, 3, 2, R);
  EXPECT_EQ(R(1, 1), 58);
  EXPECT_EQ(R(1, 2), 64);
  EXPECT_EQ(R(2, 1), 139);
  EXPECT_EQ(R(2, 2), 154);
  EXPECT_EQ(R(3, 3), 42);

  Column x, y;
  x(1) = 1;
  x(2) = -1;
  x(3) = 2;
  MatrixProduct(A, x, 2, 3, y);
  EXPECT_EQ(y(1), 5);
  EXPECT_EQ(y(2), 11);
}

}  // namespace
}  // namespace voltrix
