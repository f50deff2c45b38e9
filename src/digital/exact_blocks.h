#pragma once
// The linear algebra of one implicit step of a one-dimensional cell: small
// dense blocks (one row and column per species, at most six) and the block
// tridiagonal system of all nodes, eliminated from the far end towards the
// electrode, where the surface row couples the species through the electron
// transfers. Indices run from 0; blocks are stored row-major, n by n.
#include <vector>

namespace voltrix {

constexpr int kMaxBlock = 6;

struct SpeciesMatrix {
  double a[kMaxBlock][kMaxBlock] = {};
};

struct SpeciesVector {
  double v[kMaxBlock] = {};
};

// Replaces m by its inverse (Gauss-Jordan, partial pivoting). A singular
// block raises DivisionByZero.
void InvertInPlace(SpeciesMatrix& m, int n);

// Row 0 (the surface): P c(0) + Q c(1) = s, P and Q full.
// Row i, 1 <= i <= last: L(i) c(i-1) + M(i) c(i) + U(i) c(i+1) = r(i), with L
// and U diagonal (transport acts species by species) and M full (reactions).
class BlockTridiagonal {
 public:
  BlockTridiagonal(int last, int n);

  // Every M is diagonal (no homogeneous reactions): the species are solved
  // as separate chains.
  bool diagonal = false;

  int last() const { return last_; }
  int species() const { return n_; }

  double& L(int i, int p) { return L_[i * n_ + p]; }
  double& U(int i, int p) { return U_[i * n_ + p]; }
  double* M(int i) { return &M_[i * n_ * n_]; }
  double& r(int i, int p) { return r_[i * n_ + p]; }
  double L(int i, int p) const { return L_[i * n_ + p]; }
  double U(int i, int p) const { return U_[i * n_ + p]; }
  const double* M(int i) const { return &M_[i * n_ * n_]; }
  double r(int i, int p) const { return r_[i * n_ + p]; }
  const double* lower() const { return L_.data(); }
  const double* upper() const { return U_.data(); }
  const double* rhs() const { return r_.data(); }

  // The reduced interior, which depends on L, M and U only: a step whose
  // blocks stay the same may keep it and solve again with other surface rows
  // and right-hand sides.
  struct Factor {
    std::vector<double> Ginv;           // inverse of the reduced block of each row
    std::vector<double> towards, away;  // diagonal blocks: U Ginv(i+1) and Ginv L of each row
    SpeciesMatrix surfaceCoupling;      // Q Ginv(1), for the Q the factor was made with
  };
  void factor(const SpeciesMatrix& Q, Factor& f) const;

  // Solves for c (node-major, n values per node, last + 1 nodes) given the
  // surface row P, s and the right-hand sides r(1..last).
  void solve(const Factor& f, const SpeciesMatrix& P, const SpeciesVector& s, std::vector<double>& c) const;

 private:
  int last_, n_;
  std::vector<double> L_, U_, M_, r_;
  mutable std::vector<double> g_;
};

}  // namespace voltrix
