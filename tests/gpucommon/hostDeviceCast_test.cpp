#include "gpucommon/hostDeviceCast.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

// Every bit pattern of a float where that takes seconds, otherwise one of many.
#if defined(GPURUNTIME_CHECKING)
constexpr unsigned int stride = 65537;
#else
constexpr unsigned int stride = 1;
#endif
constexpr unsigned int patterns = 1U << 16;

// In double, in which the sum of a float and a half is exact below 2^52.
template <class I>
I byRule(float value) {
  const double x = value;
  const double magnitude = std::fabs(x) < 0x1p40 ? std::floor(std::fabs(x) + 0.5) : std::fabs(x);
  const double rounded = std::copysign(magnitude, x);
  constexpr double end = 2.0 * static_cast<double>(std::numeric_limits<I>::max() / 2 + 1);
  constexpr double begin = static_cast<double>(std::numeric_limits<I>::min());
  const bool inside = rounded >= begin && rounded < end;
  const I converted = static_cast<I>(inside ? rounded : 0.0);
  return inside || x != x ? converted : (x < 0 ? std::numeric_limits<I>::min() : std::numeric_limits<I>::max());
}

template <class I>
void expectAllFloats() {
  unsigned long wrong = 0;
  for (unsigned int high = 0; high < (1U << 16); ++high) {
    for (unsigned int low = 0; low < patterns; low += stride) {
      const unsigned int bits = high << 16 | low;
      float value;
      std::memcpy(&value, &bits, sizeof value);
      wrong += gpucommon::castNumeric<I>(value) != byRule<I>(value);
    }
  }
  EXPECT_EQ(wrong, 0u);
}

TEST(CastNumeric, everyFloatToShort) {
  expectAllFloats<short>();
}
TEST(CastNumeric, everyFloatToUnsignedInt) {
  expectAllFloats<unsigned int>();
}
TEST(CastNumeric, everyFloatToLongLong) {
  expectAllFloats<long long>();
}

}  // namespace
