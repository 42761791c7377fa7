#include "digest.hpp"

namespace digest {
namespace {

/// Fractions from -1 to 1.
template <class T>
HostArray<T> fractions(unsigned long n, unsigned int seed) {
  using R = gpuruntime::RealOf<T>;
  HostArray<T> array(n);
  std::minstd_rand next(seed);
  for (unsigned long i = 0; i < n; ++i) {
    for (unsigned long part = 0; part < sizeof(T) / sizeof(R); ++part) {
      reinterpret_cast<R*>(&array[i])[part] = static_cast<R>(static_cast<int>(next() / 7 % 2001) - 1000) / 1000;
    }
  }
  return array;
}

/// Interleaved columns, then those of that result one after the other, from the states left.
template <class T, int N>
void addOrder(Lines& lines) {
  constexpr unsigned int length = 75, columns = 70;
  HostArray<T> denominator = fractions<T>(N + 1, 3);
  std::memset(&denominator[0], 0, sizeof(T));
  const gpuruntime::RealOf<T> leading = 3;
  std::memcpy(&denominator[0], &leading, sizeof leading);
  const GuardedArray<T> b(fractions<T>(N + 1, 2)), a(denominator);
  GuardedArray<T> samples(fractions<T>(length * columns, 5)), states(N * columns);
  const gpuruntime::IIRFilter::Invoker<T, mpl_::integral_c<int, N>> filter;
  filter(nullptr, samples.data(), states.data(), b.data(), a.data(), samples.data(), nullptr, N + 1, N + 1, length,
         columns, columns, 1, 0);
  filter(nullptr, samples.data(), states.data(), b.data(), a.data(), samples.data(), states.data(), N + 1, N + 1,
         length, columns, 1, 1, 0);
  lines.exact("IIRFilterOrder" + std::to_string(N), samples.toHost());
  if constexpr (N < 10) addOrder<T, N + 1>(lines);
}

}  // namespace

void addFilter(Lines& lines) {
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) { addOrder<decltype(tag), 1>(lines); });
  forEachType(gpuruntime::DiffTypes{}, [&](auto tag) {
    using T = decltype(tag);
    constexpr unsigned long S = 7, Lo = 61, groups = 3;
    HostArray<T> elements = HostArray<T>::counting(S * (Lo + 1) * groups);
    if constexpr (!std::is_integral_v<T>) elements = fractions<T>(elements.size(), 4);
    const GuardedArray<T> input(elements);
    lines.exact("Diff", filled<T>(S * Lo * groups, [&](T* out) {
                  typename gpuruntime::Diff::Invoker<T>()(nullptr, out, input.data(), S, Lo, S * Lo * groups);
                }));
  });
}

}  // namespace digest
