#include "support/convolution.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using Pass = gpuruntime::conv::OffsetsAndSzs;

template <class T>
constexpr unsigned long tile = 128 * (std::is_same_v<T, float>    ? 16
                                      : std::is_same_v<T, float2> ? 8
                                                                  : 4);

template <class T>
using Call = std::function<void(T*, const T*, const T*, const Pass&)>;

template <class T, class N>
Call<T> callOf(N) {
  return [](T* out, const T* in, const T* filter, const Pass& pass) {
    typename gpuruntime::ConvolutionVector::Invoker<T, N>()(nullptr, out, in, filter, pass);
  };
}

/// What a pass of so many taps makes of `out`.
template <class T>
HostArray<T> afterPass(HostArray<T> out, const HostArray<T>& in, const HostArray<T>& filter, unsigned long taps,
                       const Pass& pass) {
  const unsigned long begin = pass.inStart + pass.filterStart;
  const unsigned long tiles = std::max(1UL, (pass.outCount + tile<T> - 1) / tile<T>);
  for (unsigned long o = 0; o < pass.outCount; ++o) {
    const unsigned long k = o + pass.outStart;
    if (k < begin || k >= begin + tiles * tile<T>) continue;
    // The positions of a thread are 128 apart; all are left out if its first lies before the section.
    const unsigned long inTile = (k - begin) % tile<T>;
    if (k - inTile / 128 * 128 < pass.outStart) continue;
    T sum{};
    for (unsigned long j = 0; j < taps; ++j) {
      const unsigned long x = k - pass.filterStart - j;
      sum = plusProduct(sum, x < pass.inCount ? in[x] : T{}, filter[pass.filterStart + j]);
    }
    out[o] = pass.overwrite ? sum : plusSum(out[o], sum);
  }
  return out;
}

template <class T>
void checkPass(const Call<T>& call, unsigned long taps, const Pass& pass, bool special = false) {
  const auto in = convolutionData<T>(pass.inCount + 1, 1, special);  // The last must not count.
  const auto filter = convolutionData<T>(pass.filterStart + taps + 2, 2, special);
  const auto before = convolutionData<T>(pass.outCount, 3);
  const GuardedArray<T> deviceIn(in, 1), deviceFilter(filter, 3);
  GuardedArray<T> out(before, 2);
  call(out.data(), deviceIn.data(), deviceFilter.data(), pass);
  std::string text = "filterStart, outCount, inCount, extraTaps, inStart, outStart:";
  for (const unsigned long value :
       {pass.filterStart, pass.outCount, pass.inCount, pass.extraTaps, pass.inStart, pass.outStart}) {
    text += " " + std::to_string(value);
  }
  expectSums(out.toHost(), afterPass(before, in, filter, taps, pass), text + " of " + std::to_string(taps) + " taps");
}

template <class T>
void checkMember(const Call<T>& call, unsigned long N) {
  const unsigned long most = gpuruntime::conv::haloOf<T>(N) + 1 - N, n = 2 * tile<T> + 77;
  for (const bool overwrite : {true, false}) {
    checkPass(call, N, {0, n + N - 1, n, 0, 0, 0, overwrite});                          // The full convolution.
    checkPass(call, N + most, {5, n, n, most, 40, 45, overwrite}, true);                // All extra taps; infinities.
    checkPass(call, N + 1, {2, tile<T> + 1, 3, 1, 0, 1, overwrite});                    // Fewer elements than taps.
    checkPass(call, N, {0, n, n, 0, 20, 25, overwrite});                                // Five threads cut off.
    checkPass(call, N, {1, 300, 300, 0, 0, tile<T> + 130, overwrite});                  // A tile and more cut off.
    checkPass(call, N, {7, 200, n, 0, 100, 90, overwrite});                             // Begins inside of the section.
    checkPass(call, N, {0, 0, n, 0, 0, 0, overwrite});                                  // No output.
    checkPass(call, N, {0, 2 * tile<T>, 3 * tile<T>, 0, tile<T>, tile<T>, overwrite});  // Whole tiles far inside.
    checkPass(call, N, {0, tile<T>, 2 * tile<T> - 1, 0, tile<T>, tile<T>, overwrite});  // One that the input ends in.
  }
}

TEST(ConvolutionVectorTest, EveryMemberTakesTheTapsInOrder) {
  EXPECT_EQ((gpuruntime::conv::haloOf<double>(16)), 32u);
  forEachPassMember([](auto type, auto N) {
    using T = decltype(type);
    SCOPED_TRACE(std::to_string(sizeof(T)) + " bytes, N = " + std::to_string(N.value));
    checkMember<T>(callOf<T>(N), N.value);
  });
}

TEST(ConvolutionVectorTest, AddsThePassesOfALongFilterInOrder) {
  constexpr unsigned long taps = 1000, n = 5000, outCount = n + taps - 1;
  const auto in = convolutionData<float>(n, 4), filter = convolutionData<float>(taps, 5);
  const GuardedArray<float> deviceIn(in), deviceFilter(filter);
  GuardedArray<float> out(outCount);
  HostArray<float> expected(outCount);
  unsigned int passes = 0;
  forEachPass<float>(taps, [&](unsigned long N, unsigned long extra, unsigned long first) {
    const Pass pass{first, outCount, n, extra, 0, 0, first == 0};
    forEachPassMember([&](auto type, auto size) {
      if constexpr (std::is_same_v<decltype(type), float>) {
        if (size.value == static_cast<int>(N))
          callOf<float>(size)(out.data(), deviceIn.data(), deviceFilter.data(), pass);
      }
    });
    expected = afterPass(expected, in, filter, N + extra, pass);
    ++passes;
  });
  EXPECT_EQ(passes, 7u);
  expectSums(out.toHost(), expected, "1000 taps");
}

// Such an output is written past the caches.
TEST(ConvolutionVectorTest, FillsLargeArrays) {
  constexpr unsigned long n = 1100003;
  for (const bool overwrite : {true, false}) {
    checkPass<float>(callOf<float>(mpl_::int_<3>()), 3, {0, n, n, 0, 1, 1, overwrite});
    checkPass<double2>(callOf<double2>(mpl_::int_<2>()), 2, {1, n, n, 0, 0, 1, overwrite});
  }
}

}  // namespace
