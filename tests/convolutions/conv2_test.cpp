#include "support/convolution.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;
using gpuruntime::convolutioncommon::KernelType;
using gpuruntime::convolutioncommon::KernelTypeColumn;
using gpuruntime::convolutioncommon::KernelTypeRow;
using Offsets = gpuruntime::convn::OffsetsAndSzs;
using Sizes = std::vector<unsigned long>;

template <class T>
constexpr unsigned long perThread = std::is_same_v<T, float>     ? 12
                                    : std::is_same_v<T, double2> ? 2
                                                                 : 4;

/// A pass, its dimensions named by what they are to the filter's line: {along it, across it}.
struct Pass {
  unsigned long extraTaps;
  Sizes inSize, outSize, regionStart, outStart, shift, extent;
  bool hasPages = false, special = false;
};

template <class T>
struct Member {
  unsigned long N;
  std::function<void(T*, const T*, const T*, const Sizes&, const Sizes&, const Offsets&, unsigned long, KernelType)>
      call;
};

std::string inWords(const Pass& pass) {
  std::string text = "extra " + std::to_string(pass.extraTaps);
  for (const Sizes& pair : {pass.inSize, pass.outSize, pass.regionStart, pass.outStart, pass.shift, pass.extent}) {
    text += ", " + std::to_string(pair[0]) + " " + std::to_string(pair[1]);
  }
  return text;
}

template <class T>
void check(const Member<T>& member, KernelType type, bool overwrite, const Pass& pass) {
  const bool isColumn = type == KernelTypeColumn;
  const unsigned long taps = member.N + pass.extraTaps;
  // As the two dimensions of the page.
  const auto onPage = [&](const Sizes& pair) { return isColumn ? pair : Sizes{pair[1], pair[0]}; };
  const Sizes in = onPage(pass.inSize), out = onPage(pass.outSize), region = onPage(pass.regionStart);
  const Sizes outStart = onPage(pass.outStart), extent = onPage(pass.extent);
  Offsets offsets{pass.shift[0], pass.shift[1], pass.extraTaps, {}, outStart, 3, 2, 5, 1,
                  extent[0],     extent[1],     overwrite};
  offsets.regionBounds = {region[0], region[1], in[0], in[1]};
  const unsigned long inPage = pass.hasPages ? 3 : 0, outPage = pass.hasPages ? 5 : 0;
  const auto data = convolutionData<T>(inPage + in[0] * in[1], 1, pass.special);
  const auto filter = convolutionData<T>(3 + taps, 2, pass.special);
  HostArray<T> expected = convolutionData<T>(outPage + out[0] * out[1], 3);
  const GuardedArray<T> deviceData(data, 1), deviceFilter(filter, 1);
  GuardedArray<T> output(expected, 2);
  member.call(output.data(), deviceData.data(), deviceFilter.data(), in, out, offsets, pass.hasPages ? 3 : 2, type);

  const unsigned long threads = isColumn ? 32 : 8, tile = threads * perThread<T>, lines = isColumn ? 4 : 16;
  const auto covered = [](unsigned long extent, unsigned long block) { return (extent + block - 1) / block * block; };
  const unsigned long reach = pass.extent[1] == 0 ? 0 : std::max(tile, covered(pass.extent[0], tile));
  for (unsigned long along = 0; along < pass.outSize[0]; ++along) {
    // Where the position stands in the region's blocks; before it, it wraps.
    const unsigned long x = along + pass.outStart[0] - pass.shift[0], inRegion = x - pass.regionStart[0];
    const unsigned long firstOfThread = along + pass.outStart[0] - inRegion % tile / threads * threads;
    if (inRegion >= reach || firstOfThread < pass.outStart[0]) continue;
    for (unsigned long across = 0; across < pass.outSize[1]; ++across) {
      const unsigned long y = across + pass.outStart[1] - pass.shift[1];
      if (y - pass.regionStart[1] >= covered(pass.extent[1], lines)) continue;
      T sum{};
      for (unsigned long j = 0; j < taps; ++j) {
        const bool isInside = x - j < pass.inSize[0] && y < pass.inSize[1];
        const unsigned long at = isColumn ? y * in[0] + x - j : (x - j) * in[0] + y;
        sum = plusProduct(sum, isInside ? data[inPage + at] : T{}, filter[3 + j]);
      }
      T& wanted = expected[outPage + (isColumn ? across * out[0] + along : along * out[0] + across)];
      wanted = overwrite ? sum : plusSum(wanted, sum);
    }
  }
  expectSums(output.toHost(), expected, inWords(pass));
}

template <class T>
void checkMember(const Member<T>& member) {
  const unsigned long N = member.N, most = gpuruntime::conv::haloOf<T>(N) + 1 - N;
  for (const KernelType type : {KernelTypeColumn, KernelTypeRow}) {
    const bool isColumn = type == KernelTypeColumn;
    const unsigned long tile = (isColumn ? 32 : 8) * perThread<T>, n = 2 * tile + 7, m = isColumn ? 11 : 31;
    for (const bool overwrite : {true, false}) {
      SCOPED_TRACE(std::string(isColumn ? "column" : "row") + (overwrite ? ", stored" : ", added"));
      const auto run = [&](const Pass& pass) { check<T>(member, type, overwrite, pass); };
      const unsigned long full = n + N - 1;
      run({0, {n, m}, {full, m}, {0, 0}, {0, 0}, {0, 0}, {full, m}});           // All of the convolution.
      run({most, {n, m}, {n, m}, {2, 0}, {5, 1}, {3, 1}, {n, m}, true, true});  // Extra taps, pages, infinities.
      run({1, {n, m}, {n, m}, {0, 0}, {7, 2}, {2, 0}, {n + 1, m}, true});       // Begins before the section,
      run({0, {n, m}, {n, m}, {tile / 2, 2}, {1, 0}, {1, 1}, {1, 1}});          // inside it, on short extents.
      run({0, {3, 1}, {tile + 3, 2}, {0, 0}, {0, 0}, {2, 1}, {tile + 3, 2}});   // Little to convolve.
      run({1, {1, 40}, {2, 40}, {0, 0}, {0, 0}, {0, 0}, {0, 40}});              // Lines of one element.
      run({0, {n, m}, {n, m}, {0, 0}, {0, 0}, {0, 0}, {n, 0}});                 // Nothing to do.
    }
  }
}

TEST(ConvolutionMatrixTest, EveryMemberTakesTheTapsInOrder) {
  forEachPassMember([](auto type, auto N) {
    using T = decltype(type);
    SCOPED_TRACE(std::to_string(sizeof(T)) + " bytes, N = " + std::to_string(N.value));
    checkMember<T>({static_cast<unsigned long>(N.value),
                    [](T* out, const T* in, const T* filter, const Sizes& inSizes, const Sizes& outSizes,
                       const Offsets& pass, unsigned long dimensions, KernelType direction) {
                      typename gpuruntime::ConvolutionMatrix::Invoker<T, decltype(N)>()(
                          nullptr, out, in, filter, inSizes, outSizes, pass, dimensions, direction);
                    }});
  });
}

}  // namespace
