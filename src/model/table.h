#pragma once
// Fixed-size tables stored from index 0, as the model's arrays are. An index
// beyond a bound raises "Subscript out of range". Hot loops check a range
// once and then work on data() directly.
#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "model/errors.h"

namespace voltrix {

inline void CheckIndex(long i, long size) {
  if (i < 0 || i >= size) Raise(ErrorKind::SubscriptOutOfRange);
}

template <class T, int N>
class Table1 {
 public:
  T& operator()(long i) {
    CheckIndex(i, N);
    return v_[i];
  }
  const T& operator()(long i) const {
    CheckIndex(i, N);
    return v_[i];
  }
  static constexpr int size() { return N; }
  T* data() { return v_.data(); }
  const T* data() const { return v_.data(); }
  void fill(const T& x) { v_.fill(x); }

 private:
  std::array<T, N> v_{};
};

// Rows by columns; kept on the heap so that a workbench stays small to copy
// around by pointer and large tables do not live on the stack.
template <class T, int Rows, int Cols>
class Table2 {
 public:
  Table2() : v_(static_cast<std::size_t>(Rows) * Cols, T{}) {}
  T& operator()(long r, long c) {
    CheckIndex(r, Rows);
    CheckIndex(c, Cols);
    return v_[static_cast<std::size_t>(r) * Cols + c];
  }
  const T& operator()(long r, long c) const {
    CheckIndex(r, Rows);
    CheckIndex(c, Cols);
    return v_[static_cast<std::size_t>(r) * Cols + c];
  }
  T* row(long r) {
    CheckIndex(r, Rows);
    return v_.data() + static_cast<std::size_t>(r) * Cols;
  }
  const T* row(long r) const {
    CheckIndex(r, Rows);
    return v_.data() + static_cast<std::size_t>(r) * Cols;
  }
  static constexpr int rows() { return Rows; }
  static constexpr int cols() { return Cols; }
  void fill(const T& x) { std::fill(v_.begin(), v_.end(), x); }

 private:
  std::vector<T> v_;
};

}  // namespace voltrix
