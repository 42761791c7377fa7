/// @file
/// MRG32k3a, a combined multiple recursive generator: P. L'Ecuyer, "Good parameters and implementations for combined
/// multiple recursive random number generators", Operations Research 47 (1999). Skipping ahead multiplies a component
/// of the state, as a row vector, by a power of its transition matrix.
#pragma once

#include <gpuruntime/randgenerators.hpp>

#include <cmath>

#include "platform/platform.hpp"

namespace gpucommon::rand {

/// x mod M, for a modulus a little below 2^32: with x = high * 2^32 + low, x is congruent to
/// high * (2^32 - M) + low. Two such folds bring any x below 2 * M.
template <unsigned long M>
GPURUNTIME_HOST_DEVICE constexpr unsigned long foldedOnce(unsigned long x) {
  return (x >> 32) * (0x100000000UL - M) + (x & 0xFFFFFFFF);
}
template <unsigned long M>
GPURUNTIME_HOST_DEVICE constexpr unsigned long reducedOnce(unsigned long x) {
  return x >= M ? x - M : x;
}
template <unsigned int M, class Unsigned>
GPURUNTIME_HOST_DEVICE constexpr Unsigned intMod(Unsigned x) {
  static_assert(M > 0xFFFF0000U, "a modulus just below 2^32");
  return reducedOnce<M>(foldedOnce<M>(foldedOnce<M>(x)));
}

/// vector[j] = sum over i of vector[i] * matrix[3 * i + j], mod M. Everything is below M.
template <unsigned int M>
GPURUNTIME_HOST_DEVICE constexpr void matVecProdInplace(const unsigned int* matrix, unsigned int* vector) {
  unsigned int product[3] = {};
  for (int j = 0; j < 3; ++j) {
    unsigned long sum = 0;
    for (int i = 0; i < 3; ++i) {
      sum = intMod<M>(sum + static_cast<unsigned long>(vector[i]) * matrix[3 * i + j]);
    }
    product[j] = static_cast<unsigned int>(sum);
  }
  for (int j = 0; j < 3; ++j) vector[j] = product[j];
}

/// a = a * b mod M.
template <unsigned int M>
GPURUNTIME_HOST_DEVICE constexpr void matMatProdInplace(unsigned int* a, const unsigned int* b) {
  for (int row = 0; row < 3; ++row) matVecProdInplace<M>(b, a + 3 * row);
}

template <unsigned int M>
GPURUNTIME_HOST_DEVICE constexpr void matSquareInplace(unsigned int* matrix) {
  unsigned int copy[9] = {};
  for (int i = 0; i < 9; ++i) copy[i] = matrix[i];
  matMatProdInplace<M>(matrix, copy);
}

GPURUNTIME_HOST_DEVICE constexpr void setIdentity(unsigned int* matrix) {
  for (int i = 0; i < 9; ++i) matrix[i] = i % 4 == 0 ? 1 : 0;
}

/// The matrix to a power mod M, from the lowest bit of the power up.
template <unsigned int M>
GPURUNTIME_HOST_DEVICE constexpr void matPowInplace(unsigned int* matrix, unsigned long long power) {
  unsigned int result[9] = {};
  setIdentity(result);
  for (; power > 0; power >>= 1) {
    if ((power & 1) != 0) matMatProdInplace<M>(result, matrix);
    matSquareInplace<M>(matrix);
  }
  for (int i = 0; i < 9; ++i) matrix[i] = result[i];
}

namespace MRG32K3A {

/// The components of the state, by their moduli.
enum MRG32K3A_StateIdx : unsigned int { first = 4294967087U, second = 4294944443U };

namespace detail {

inline constexpr unsigned int levels = 11, entryCount = 71, entryWords = 7;

struct LevelStarts {
  unsigned int start[levels];
};
struct Table {
  unsigned int entry[entryCount][entryWords];
};

// Of an entry's words, those that the matrix repeats stand once. Of the first component these are words 0 to 6 of the
// matrix, of the second words 2 to 8.
inline constexpr unsigned int firstStored(MRG32K3A_StateIdx component) {
  return component == first ? 0 : 2;
}

/// The transpose of the matrix of one raw step.
template <MRG32K3A_StateIdx M>
constexpr void setOneStep(unsigned int* matrix) {
  const unsigned int ofFirst[9] = {0, 0, M - 810728, 1, 0, 1403580, 0, 1, 0};
  const unsigned int ofSecond[9] = {0, 0, M - 1370589, 1, 0, 0, 0, 1, 527612};
  for (int i = 0; i < 9; ++i) matrix[i] = M == first ? ofFirst[i] : ofSecond[i];
}

/// Entry 7 * l + d - 1: the matrix for d * 8^l steps of 2^logStep raw ones.
template <MRG32K3A_StateIdx M>
constexpr Table tableOf(unsigned int logStep) {
  Table table{};
  unsigned int step[9] = {};
  setOneStep<M>(step);
  for (unsigned int i = 0; i < logStep; ++i) matSquareInplace<M>(step);
  for (unsigned int level = 0, entry = 0; level < levels; ++level) {
    unsigned int matrix[9] = {};
    setIdentity(matrix);
    for (unsigned int digit = 1; digit < 8 && entry < entryCount; ++digit, ++entry) {
      matMatProdInplace<M>(matrix, step);
      for (unsigned int i = 0; i < entryWords; ++i) table.entry[entry][i] = matrix[firstStored(M) + i];
    }
    for (int i = 0; i < 3; ++i) matSquareInplace<M>(step);
  }
  return table;
}

constexpr LevelStarts levelStarts() {
  LevelStarts starts{};
  for (unsigned int level = 0; level < levels; ++level) starts.start[level] = 1U << 3 * level;
  return starts;
}

}  // namespace detail

GPURUNTIME_CONSTANT_TABLE(detail::LevelStarts, MRG32K3A_LEVELSTARTS, detail::levelStarts());
// A sample takes two raw steps.
GPURUNTIME_CONSTANT_TABLE(detail::Table, MRG32K3A_TRANSITION1, detail::tableOf<first>(1));
GPURUNTIME_CONSTANT_TABLE(detail::Table, MRG32K3A_TRANSITION2, detail::tableOf<second>(1));
// Substreams begin 2^76 raw steps apart. For who moves a stream to one of them; nothing here does.
GPURUNTIME_CONSTANT_TABLE(detail::Table, MRG32K3A_SUBSTREAMTRANSITION1, detail::tableOf<first>(76));
GPURUNTIME_CONSTANT_TABLE(detail::Table, MRG32K3A_SUBSTREAMTRANSITION2, detail::tableOf<second>(76));

namespace detail {

GPURUNTIME_HOST_DEVICE void expandEntry(unsigned int* matrix, MRG32K3A_StateIdx component,
                                        const unsigned int (&words)[entryWords]) {
  const unsigned int stored = firstStored(component);
  for (unsigned int i = 0; i < entryWords; ++i) matrix[stored + i] = words[i];
  if (component == first) {
    matrix[7] = words[3];
    matrix[8] = words[4];
  } else {
    matrix[0] = words[2];
    matrix[1] = words[3];
  }
}

}  // namespace detail

/// Entry `index` of the component's table of samples, as 9 words.
GPURUNTIME_HOST_DEVICE void getPrecalcTransitionMatrix(unsigned int* matrix, MRG32K3A_StateIdx component,
                                                       unsigned int index) {
  if (component == first) {
    detail::expandEntry(matrix, component, GPURUNTIME_TABLE(MRG32K3A_TRANSITION1).entry[index]);
  } else {
    detail::expandEntry(matrix, component, GPURUNTIME_TABLE(MRG32K3A_TRANSITION2).entry[index]);
  }
}

namespace detail {

/// Calls use(matrix) with matrices whose product is that of n samples: one for each digit of n in base 8, of which the
/// highest, for level 10, may be any number.
template <unsigned int M, class Use>
GPURUNTIME_HOST_DEVICE void forEachFactor(MRG32K3A_StateIdx component, unsigned long long n, Use use) {
  unsigned int matrix[9];
  const unsigned int top = GPURUNTIME_TABLE(MRG32K3A_LEVELSTARTS).start[levels - 1];
  if (n >= top) {
    const unsigned long long digit = n / top;
    getPrecalcTransitionMatrix(matrix, component, entryCount - 1);
    if (digit >= 2) matPowInplace<M>(matrix, digit);
    use(matrix);
    n -= digit * top;
  }
  for (unsigned int level = levels - 1; level-- > 0;) {
    const unsigned int start = GPURUNTIME_TABLE(MRG32K3A_LEVELSTARTS).start[level];
    if (n < start) continue;
    const auto digit = static_cast<unsigned int>(n / start);
    getPrecalcTransitionMatrix(matrix, component, 7 * level + digit - 1);
    use(matrix);
    n -= static_cast<unsigned long long>(digit) * start;
  }
}

}  // namespace detail

/// The matrix, of 9 words, that moves a component on by n samples.
template <unsigned int M>
GPURUNTIME_HOST_DEVICE void getTransitionMatrix(unsigned int* matrix, MRG32K3A_StateIdx component,
                                                unsigned long long n) {
  setIdentity(matrix);
  detail::forEachFactor<M>(component, n, [=](const unsigned int* factor) { matMatProdInplace<M>(matrix, factor); });
}

/// Moves the six words of a state on by n samples.
///
/// The factors are applied one by one, with a third of the products that multiplying them first would take. Modular
/// arithmetic is exact: the state is the same.
GPURUNTIME_HOST_DEVICE void advance(unsigned int* state, unsigned long long n) {
  detail::forEachFactor<first>(first, n, [=](const unsigned int* factor) { matVecProdInplace<first>(factor, state); });
  detail::forEachFactor<second>(second, n,
                                [=](const unsigned int* factor) { matVecProdInplace<second>(factor, state + 3); });
}

}  // namespace MRG32K3A

/// State: the last three values of both components (3 words each), the oldest first. Not all three of a component are
/// 0, and all are below its modulus; neither is checked.
class MRG32K3AGenerator {
 public:
  static constexpr unsigned int stateWords = 6;

  GPURUNTIME_HOST_DEVICE void setState(const unsigned int* state) {
    for (int i = 0; i < 6; ++i) words_[i] = state[i];
  }

  // Words are held as doubles: in vectors of doubles a step takes the fewest instructions.
  GPURUNTIME_HOST_DEVICE void setWord(int i, double word) { words_[i] = word; }
  GPURUNTIME_HOST_DEVICE double word(int i) const { return words_[i]; }

  /// The next uniform sample, 0 <= u < 1, of two raw steps: the second gives what lies below the first by 2^-24.
  GPURUNTIME_HOST_DEVICE double sample() {
    constexpr double norm = 0x1.000000d00000bp-32;
    const double coarse = rawStep() * norm, fine = rawStep() * (norm * 0x1p-24);
    const double u = gpuruntime::platform::__dadd_rn(coarse, fine);
    return u >= 1 ? u - 1 : u;
  }

 private:
  /// a * x - b * y mod M. Products, differences and the multiple of M are integers below 2^53 and so exact. The
  /// quotient may be off where it lies halfway between two integers: the rest is then still between -M and M.
  template <unsigned int M>
  static GPURUNTIME_HOST_DEVICE double combined(double a, double x, double b, double y) {
    const double sum = gpuruntime::platform::exactMinusProduct(a * x, b, y);
    const double rest = gpuruntime::platform::exactMinusProduct(sum, std::rint(sum * (1.0 / M)), M);
    return rest < 0 ? rest + M : rest;
  }

  GPURUNTIME_HOST_DEVICE double rawStep() {
    const double p1 = combined<MRG32K3A::first>(1403580, words_[1], 810728, words_[0]);
    const double p2 = combined<MRG32K3A::second>(527612, words_[5], 1370589, words_[3]);
    words_[0] = words_[1];
    words_[1] = words_[2];
    words_[2] = p1;
    words_[3] = words_[4];
    words_[4] = words_[5];
    words_[5] = p2;
    const double z = p1 - p2;
    return z < 0 ? z + MRG32K3A::first : z;
  }

  double words_[6];
};

}  // namespace gpucommon::rand
