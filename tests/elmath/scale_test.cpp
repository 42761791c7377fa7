#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

template <class T>
struct ScaleTest : ::testing::Test {
  template <class Expected, class Scale>
  static void expectScaled(const HostArray<T>& source, Scale scale, Expected expected) {
    GuardedArray<T> data(source, 1);
    scale(data.data(), source.size());
    HostArray<T> actual = data.toHost();
    for (unsigned long i = 0; i < actual.size(); ++i) actual[i] = withPlainNaN(actual[i]);
    expectElements(actual, [&](unsigned long i) { return withPlainNaN(expected(source[i])); });
  }
};
TYPED_TEST_SUITE(ScaleTest, TestTypes<gpuruntime::FloatTypes>);

// A real divisor divides the parts of a complex element.
template <class T, class Divisor>
T partsDividedBy(const T& value, Divisor s) {
  using R = RealOf<T>;
  if constexpr (isComplex<T>) {
    return {static_cast<R>(value.x / s), static_cast<R>(value.y / s)};
  } else {
    return static_cast<T>(value / s);
  }
}

TYPED_TEST(ScaleTest, DividesByADoubleInDouble) {
  using T = TypeParam;
  for (const double s : {3.0, -0.1, 0.0, 1e-320, std::numeric_limits<double>::infinity(), 1e200}) {
    this->expectScaled(
        trickyValues<T>(),
        [&](T* data, unsigned long n) { gpuruntime::ScaleByDoubleInplace::Invoker<T>()(nullptr, data, s, n); },
        [&](const T& value) { return partsDividedBy(value, s); });
  }
}

TYPED_TEST(ScaleTest, DividesByAScalarOfItsType) {
  using T = TypeParam;
  using R = RealOf<T>;
  for (const R s : {R(3), R(-0.1), std::numeric_limits<R>::infinity(), R(1)}) {
    T divisor{};
    std::memcpy(&divisor, &s, sizeof s);
    this->expectScaled(
        trickyValues<T>(),
        [&](T* data, unsigned long n) { gpuruntime::ScaleInplace::Invoker<T>()(nullptr, data, divisor, n); },
        [&](const T& value) {
          T quotient = partsDividedBy(value, s);
          // A real number makes +0 of a zero imaginary part, or else of a zero real part.
          if constexpr (isComplex<T>) {
            if (value.y == 0) {
              quotient.y = 0;
            } else if (value.x == 0) {
              quotient.x = 0;
            }
          }
          return quotient;
        });
  }
}

TYPED_TEST(ScaleTest, EveryElementOfEverySizeIsDividedOnce) {
  using T = TypeParam;
  for (const unsigned long n : elementwiseSizes()) {
    HostArray<T> source(n);
    for (unsigned long i = 0; i < n; ++i) source[i] = partsDividedBy(T{}, 1);
    auto* parts = reinterpret_cast<RealOf<T>*>(source.data());
    for (unsigned long i = 0; i < n * sizeof(T) / sizeof(*parts); ++i) parts[i] = static_cast<RealOf<T>>(i % 1000 + 1);
    this->expectScaled(
        source,
        [&](T* data, unsigned long size) { gpuruntime::ScaleByDoubleInplace::Invoker<T>()(nullptr, data, 7, size); },
        [&](const T& value) { return partsDividedBy(value, 7.0); });
  }
}

TEST(ScaleComplexTest, DividesByComplexNumbers) {
  struct Case {
    double2 value, s, quotient;
  };
  const double inf = std::numeric_limits<double>::infinity();
  for (const Case& c : {Case{{1, 2}, {1, 0}, {1, 2}}, Case{{1, 2}, {0, 2}, {1, -0.5}}, Case{{4, 2}, {1, 1}, {3, -1}},
                        Case{{-7, 26}, {2, 3}, {64 / 13.0, 73 / 13.0}}, Case{{1, 0}, {0, 0}, {inf, 0}}}) {
    GuardedArray<double2> data(arrayOf(std::vector<double2>(300, c.value)));
    gpuruntime::ScaleInplace::Invoker<double2>()(nullptr, data.data(), c.s, 300);
    const HostArray<double2> actual = data.toHost();
    for (unsigned long i = 0; i < 300; ++i) {
      EXPECT_DOUBLE_EQ(actual[i].x, c.quotient.x);
      EXPECT_DOUBLE_EQ(actual[i].y, c.quotient.y);
    }
  }
}

}  // namespace
