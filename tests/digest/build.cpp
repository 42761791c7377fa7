#include "digest.hpp"

namespace digest {
namespace {

// Several tasks, an odd end, and for the wider types large enough to be written past the caches.
constexpr unsigned long count = 600011;

template <class Family, class T>
HostArray<T> spaced(unsigned long n, T start, T stop) {
  return filled<T>(n, [&](T* out) { typename Family::template Invoker<T>()(nullptr, n, out, start, stop); });
}

template <class T>
void addSpaced(Lines& lines) {
  if constexpr (isComplex<T>) {
    lines.exact("Linspace", spaced<gpuruntime::Linspace, T>(count, T{-1, 4}, T{3, -7}));
    lines.close("Logspace", 16, spaced<gpuruntime::Logspace, T>(1001, T{-1, 0}, T{2, 3}));
  } else {
    lines.exact("Linspace", spaced<gpuruntime::Linspace, T>(count, T(-0.3), T(3.7)));
    lines.exact(
        "LinspaceOfOverflowingDifference",
        spaced<gpuruntime::Linspace, T>(count, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()));
    lines.exact("LogspaceOfIntegers", spaced<gpuruntime::Logspace, T>(61, T(-30), T(30)));
    lines.exact("Logspace", spaced<gpuruntime::Logspace, T>(1001, T(-5), T(5)));
  }
}

// A stream that begins within a generator block, with arbitrary words.
template <class Family, class T, class... Bounds>
HostArray<T> drawn(unsigned long n, Bounds... bounds) {
  unsigned int state[17];
  for (unsigned int i = 0; i < 17; ++i) state[i] = 2654435769U * (i + 1) >> 1;
  return filled<T>(n, [&](T* out) { typename Family::template Invoker<T>()(nullptr, out, state, bounds..., n); });
}

template <class G>
void addRandom(Lines& lines, const std::string& generator) {
  forEachType(gpuruntime::RealNumericTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("RandI" + generator, drawn<gpuruntime::RandI<G>, T>(count, -50.0, 300.5));
  });
  forEachType(gpuruntime::RealFloatTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("Rand" + generator, drawn<gpuruntime::Rand<G>, T>(count));
    lines.close("RandNInversion" + generator, 16, drawn<gpuruntime::RandNInversion<G>, T>(1001));
    if constexpr (gpuruntime::detail::IsMember<G, gpuruntime::CounterBasedGenerators>::value) {
      lines.close("RandNBoxMuller" + generator, 8, drawn<gpuruntime::RandNBoxMuller<G>, T>(1001));
    }
  });
}

}  // namespace

void addBuild(Lines& lines) {
  forEachType(gpuruntime::RealNumericTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("Colon", filled<T>(count, [](T* out) {
                  typename gpuruntime::Colon::Invoker<T>()(nullptr, count, out, 0.25, 1.0 / 3, 200003.5);
                }));
    lines.exact("IntColon", filled<T>(count, [](T* out) {
                  typename gpuruntime::IntColon::Invoker<T>()(nullptr, count, out, -7, 0.1);
                }));
  });
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("Eye",
                filled<T>(300 * 200, [](T* out) { typename gpuruntime::Eye::Invoker<T>()(nullptr, 200, out, 300); }));
    lines.moved("GenericOnes", filled<T>(count, [](T* out) {
                  typename gpuruntime::GenericOnes::Invoker<T>()(nullptr, count, out, HostArray<T>::counting(1)[0]);
                }));
  });
  forEachType(gpuruntime::DoubleAndIntTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("FillArrayWithRunningIndex", filled<T>(count, [](T* out) {
                  typename gpuruntime::FillArrayWithRunningIndex::Invoker<T>()(nullptr, count, out, 17, 23);
                }));
  });
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) { addSpaced<decltype(tag)>(lines); });
  addRandom<gpucommon::rand::Philox4x32Generator>(lines, "Philox");
  addRandom<gpucommon::rand::ThreeFry4x64Generator>(lines, "ThreeFry");
  addRandom<gpucommon::rand::MRG32K3AGenerator>(lines, "MRG");
}

}  // namespace digest
