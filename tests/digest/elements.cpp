#include "digest.hpp"
#include "support/trickyvalues.hpp"

namespace digest {
namespace {

using gpuruntime::RealOf;
using testsupport::trickyValues;

// Every source in turn: casts to T, then comparisons with T, each family on one line.
template <class T, class U>
void appendCasts(std::vector<T>& casts) {
  using Cast = std::conditional_t<isComplex<T>, gpuruntime::CastToComplex, gpuruntime::CastToReal>;
  const HostArray<U> source = trickyValues<U>();
  const GuardedArray<U> input(source);
  const HostArray<T> converted = filled<T>(source.size(), [&](T* out) {
    typename Cast::template Invoker<T, U>()(nullptr, source.size(), out, input.data());
  });
  casts.insert(casts.end(), converted.data(), converted.data() + converted.size());
}

template <class T, class U>
void appendComparisons(std::vector<unsigned char>& equals) {
  const GuardedArray<T> a(trickyValues<T>());
  const GuardedArray<U> b(trickyValues<U>());
  const unsigned long n = std::min(trickyValues<T>().size(), trickyValues<U>().size());
  for (const bool nanEqual : {false, true}) {
    const HostArray<bool> result = filled<bool>(n, [&](bool* out) {
      typename gpuruntime::ElementwiseCompare::Invoker<T, U>()(nullptr, n, out, a.data(), b.data(), nanEqual);
    });
    equals.insert(equals.end(), result.data(), result.data() + n);
  }
}

template <class T, class... Sources>
void addCasts(Lines& lines, gpuruntime::TypeList<Sources...>) {
  std::vector<T> casts;
  (appendCasts<T, Sources>(casts), ...);
  lines.exact(isComplex<T> ? "CastToComplex" : "CastToReal", testsupport::arrayOf(casts));
}

template <class T, class... Others>
void addComparisons(Lines& lines, gpuruntime::TypeList<Others...>) {
  std::vector<unsigned char> equals;
  (appendComparisons<T, Others>(equals), ...);
  lines.exact(std::string("ElementwiseCompareOf[") + typeName<T>() + "]", testsupport::arrayOf(equals));
}

// A family of one input, whose results have another type or not.
template <class Family, class Out, class T>
HostArray<Out> ofTrickyValues() {
  const GuardedArray<T> input(trickyValues<T>());
  const unsigned long n = trickyValues<T>().size();
  return filled<Out>(n, [&](Out* out) { typename Family::template Invoker<T>()(nullptr, out, input.data(), n); });
}

template <class Family, class Out, class T>
void addAnswers(Lines& lines, const std::string& name) {
  lines.exact(name + "Of[" + typeName<T>() + "]", ofTrickyValues<Family, Out, T>());
}

template <class T>
void addFloating(Lines& lines) {
  using R = RealOf<T>;
  const HostArray<T> source = trickyValues<T>();
  const unsigned long n = source.size();
  const GuardedArray<T> input(source);
  addAnswers<gpuruntime::IsNaN, bool, T>(lines, "IsNaN");
  addAnswers<gpuruntime::IsInf, bool, T>(lines, "IsInf");
  addAnswers<gpuruntime::IsNaNOrInf, bool, T>(lines, "IsNaNOrInf");
  const std::string ofType = isComplex<T> ? "OfComplex" : "";
  lines.exact("Abs" + ofType, ofTrickyValues<gpuruntime::Abs, R, T>());
  for (const double p : {2.0, 3.0, -1.7}) {
    lines.exact("AbsPower" + ofType + "To[" + std::to_string(p) + "]", filled<R>(n, [&](R* out) {
                  typename gpuruntime::AbsPower::Invoker<T>()(nullptr, out, input.data(), p, n);
                }));
  }
  if constexpr (isComplex<T>) {
    GuardedArray<T> scaled(source);
    typename gpuruntime::ScaleInplace::Invoker<T>()(nullptr, scaled.data(), T{3, -7}, n);
    lines.exact("ScaleInplaceByComplex", scaled.toHost());
  }
  T three{};
  const R value = 3;
  std::memcpy(&three, &value, sizeof value);
  GuardedArray<T> scaled(source), scaledByDouble(source);
  typename gpuruntime::ScaleInplace::Invoker<T>()(nullptr, scaled.data(), three, n);
  typename gpuruntime::ScaleByDoubleInplace::Invoker<T>()(nullptr, scaledByDouble.data(), 3, n);
  lines.exact("ScaleInplace", scaled.toHost());
  lines.exact("ScaleByDoubleInplace", scaledByDouble.toHost());
  // Small integers, whose powers are products.
  HostArray<T> V(300 * 300), d(300);
  for (unsigned long i = 0; i < V.size(); ++i) {
    const R element = static_cast<R>(i % 97) / 7, eigenvalue = static_cast<R>(i % 5);
    std::memcpy(&V[i], &element, sizeof element);
    if (i < 300) std::memcpy(&d[i], &eigenvalue, sizeof eigenvalue);
  }
  const GuardedArray<T> matrix(V), diagonal(d);
  lines.exact("MPowerMatrixScalar", filled<T>(V.size(), [&](T* out) {
                typename gpuruntime::MPowerMatrixScalar::Invoker<T>()(nullptr, out, matrix.data(), diagonal.data(),
                                                                      three, 300);
              }));
  if constexpr (!isComplex<T>) {
    lines.exact("MPowerScalarMatrix", filled<T>(V.size(), [&](T* out) {
                  typename gpuruntime::MPowerScalarMatrix::Invoker<T>()(nullptr, out, matrix.data(), matrix.data(),
                                                                        three, 300);
                }));
  }
}

}  // namespace

void addElements(Lines& lines) {
  forEachType(gpuruntime::RealNumericTypes{},
              [&](auto tag) { addCasts<decltype(tag)>(lines, gpuruntime::RealTypes{}); });
  forEachType(gpuruntime::ComplexTypes{}, [&](auto tag) { addCasts<decltype(tag)>(lines, gpuruntime::AllTypes{}); });
  forEachType(gpuruntime::AllTypes{}, [&](auto tag) {
    using T = decltype(tag);
    addComparisons<T>(lines, gpuruntime::AllTypes{});
    addAnswers<gpuruntime::FlagNonZero, double, T>(lines, "FlagNonZero");
    addAnswers<gpuruntime::IsNonZero, bool, T>(lines, "IsNonZero");
    addAnswers<gpuruntime::IsNeitherZeroNorNaN, bool, T>(lines, "IsNeitherZeroNorNaN");
  });
  forEachType(gpuruntime::RealNumericTypes{}, [&](auto tag) {
    using T = decltype(tag);
    const GuardedArray<T> input(trickyValues<T>());
    const unsigned long n = trickyValues<T>().size();
    lines.exact(std::string("CastToBoolOf[") + typeName<T>() + "]", filled<bool>(n, [&](bool* out) {
                  typename gpuruntime::CastToBool::Invoker<T>()(nullptr, n, out, input.data());
                }));
    lines.exact(std::string("CastBlockToRealOf[") + typeName<T>() + "]", filled<short>(n + n / 7 * 3, [&](short* out) {
                  typename gpuruntime::CastBlockToReal::Invoker<short, T>()(nullptr, n / 7 * 7, out, input.data(), 2,
                                                                            10, 7);
                }));
    addAnswers<gpuruntime::FlagNegative, double, T>(lines, "FlagNegative");
  });
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) { addFloating<decltype(tag)>(lines); });
}

}  // namespace digest
