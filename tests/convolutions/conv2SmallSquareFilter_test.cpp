#include "support/convolution.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using Sizes = std::vector<unsigned long>;

template <class T>
using Call = std::function<void(T*, const T*, const T*, const Sizes&, const Sizes&, const Sizes&)>;

constexpr unsigned long inPage = 5, outPage = 3;

template <class T>
void check(unsigned long K, const Call<T>& call, const Sizes& in, const Sizes& out, const Sizes& offsets,
           bool special = false, unsigned long alignment = 2) {
  const auto data = convolutionData<T>(inPage + in[0] * in[1], 1, special);
  const auto filter = convolutionData<T>(K * K, 2, special);
  HostArray<T> expected = convolutionData<T>(outPage + out[0] * out[1], 3);
  const GuardedArray<T> deviceData(data, 1), deviceFilter(filter, 1);
  GuardedArray<T> output(expected, alignment);
  call(output.data(), deviceData.data(), deviceFilter.data(), out, in, offsets);
  for (unsigned long y = 0; y < out[1]; ++y) {
    for (unsigned long x = 0; x < out[0]; ++x) {
      T sum{};
      for (unsigned long tap = K * K; tap-- > 0;) {
        const unsigned long row = offsets[0] + x - tap % K, column = offsets[1] + y - tap / K;  // May wrap.
        const T value = row < in[0] && column < in[1] ? data[inPage + column * in[0] + row] : T{};
        sum = plusProduct(sum, filter[tap], value);
      }
      expected[outPage + y * out[0] + x] = sum;
    }
  }
  expectSums(output.toHost(), expected,
             std::to_string(in[0]) + " by " + std::to_string(in[1]) + " to " + std::to_string(out[0]) + " by " +
                 std::to_string(out[1]));
}

TEST(ConvolutionSquareTest, EveryMemberTakesTheTapsInReverse) {
  const auto checkMember = [](auto type, auto size) {
    using T = decltype(type);
    constexpr unsigned long K = size.value;
    SCOPED_TRACE(std::to_string(sizeof(T)) + " bytes, K = " + std::to_string(K));
    const Call<T> call = [](T* out, const T* in, const T* filter, const Sizes& outSizes, const Sizes& inSizes,
                            const Sizes& offsets) {
      typename gpuruntime::ConvolutionSquare::Invoker<T, mpl_::size_t<K>>()(nullptr, out, in, filter, outSizes, inSizes,
                                                                            0, offsets, {inPage, 77, outPage});
    };
    const unsigned long half = K / 2, rows = 53, columns = 49;
    check<T>(K, call, {rows, columns}, {rows + K - 1, columns + K - 1}, {0, 0});
    check<T>(K, call, {rows, columns}, {rows, columns}, {half, half}, true);
    check<T>(K, call, {rows, columns}, {rows - K + 1, columns - K + 1}, {K - 1, K - 1});
    check<T>(K, call, {2, 1}, {17, 6}, {0, 0}, true);    // Smaller than the filter.
    check<T>(K, call, {rows, 2}, {20, 3}, {40, 1});      // Beyond the page on all sides.
    check<T>(K, call, {rows, columns}, {0, 5}, {0, 0});  // Empty.
    check<T>(K, call, {rows, columns}, {5, 0}, {0, 0});
    // The output begins with a cache line, and is large enough to be written past the caches.
    if (K == 3)
      check<T>(K, call, {1056, 1040}, {1056, 1040}, {1, 1}, false, 64 / sizeof(T) - outPage % (64 / sizeof(T)));
  };
#define GPURUNTIME_CHECK_MEMBER(A, T, K) checkMember(T(), mpl_::size_t<K>());
  GPURUNTIME_SQUARE_MEMBERS(GPURUNTIME_CHECK_MEMBER, )
}

}  // namespace
