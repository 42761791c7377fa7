#include "gpucommon/ptxmathunsafe.hpp"

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"

using namespace gpucommon;
namespace platform = gpuruntime::platform;

namespace {

GPURUNTIME_DEVICE_SYMBOL(double, powerOfKernel);

template <class T>
struct PowerKernel {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block, T x, T y) {
    block.forEachThread([&](platform::Thread) { powerOfKernel = scalarmath::realPowerOrRaise(x, y); });
  }
};

struct RaiseTwiceKernel {
  static GPURUNTIME_DEVICE void run(const platform::Block<>& block) {
    block.forEachThread([&](platform::Thread) {
      scalarmath::errorbody<float, PtxError::SubscriptOutOfRange>();
      powerOfKernel = scalarmath::errorbody<double, PtxError::NaNToLogical>();
    });
  }
};

template <class... Args>
unsigned int wordAfter(platform::Kernel<Args...> kernel, unsigned int wordBefore,
                       typename platform::NonDeduced<Args>::type... args) {
  unsigned int word = wordBefore;
  EXPECT_EQ(platform::cudaMemcpyToSymbol(__QRD_PTX_ERROR_CODE, &word, sizeof word), cudaSuccess);
  EXPECT_EQ(platform::launch(kernel, {1, 1, 1}, {1, 1, 1}, nullptr, args...), cudaSuccess);
  EXPECT_EQ(platform::cudaMemcpyFromSymbol(&word, __QRD_PTX_ERROR_CODE, sizeof word), cudaSuccess);
  return word;
}

double lastPower() {
  double power;
  EXPECT_EQ(platform::cudaMemcpyFromSymbol(&power, powerOfKernel, sizeof power), cudaSuccess);
  return power;
}

template <class T>
void expectPowersRaise() {
  struct Case {
    double x, y, power;
    unsigned int word;
  };
  for (const Case& c :
       {Case{-8, 0.5, NaN, 1014}, Case{-inf, 0.5, inf, 1014}, Case{-8, NaN, NaN, 1014}, Case{-8, 3, -512, 1000},
        Case{-2, inf, -inf, 1000}, Case{-0.0, 0.5, 0, 1000}, Case{4, 0.5, 2, 1000}, Case{NaN, 0.5, NaN, 1000}}) {
    EXPECT_EQ(wordAfter(platform::kernelOf<PowerKernel<T>, T, T>(), 1000, T(c.x), T(c.y)), c.word) << c.x << "^" << c.y;
    EXPECT_TRUE(isSame(lastPower(), c.power)) << c.x << "^" << c.y << " is " << lastPower();
  }
}

}  // namespace

TEST(PtxMathUnsafe, powerRaisesForNegativeBaseWithFractionalExponent) {
  expectPowersRaise<double>();
  expectPowersRaise<float>();
}

TEST(PtxMathUnsafe, onlyAnArmedWordTakesTheFirstError) {
  EXPECT_EQ(wordAfter(platform::kernelOf<RaiseTwiceKernel>(), PtxError::NoError), 1030u);
  EXPECT_TRUE(std::isnan(lastPower()) && std::signbit(lastPower()));
  EXPECT_EQ(wordAfter(platform::kernelOf<RaiseTwiceKernel>(), PtxError::NeverArmed), 0u);
  EXPECT_EQ(wordAfter(platform::kernelOf<RaiseTwiceKernel>(), 1014), 1014u);
}
