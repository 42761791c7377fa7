#include <type_traits>

#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::RealOf;

// The rule in long double, which holds every value of every type.
template <class T, class U>
T castByRule(const U& element) {
  if constexpr (std::is_same_v<T, U>) {
    return element;
  } else if constexpr (isComplex<U>) {
    return {castByRule<RealOf<T>>(element.x), castByRule<RealOf<T>>(element.y)};
  } else if constexpr (isComplex<T>) {
    return {castByRule<RealOf<T>>(element), 0};
  } else {
    const long double value = exactValue(element);
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) return static_cast<T>(value);
    if (std::isnan(value)) return 0;
    const long double rounded = std::round(value);
    return rounded < Limits::min() ? Limits::min() : rounded > Limits::max() ? Limits::max() : static_cast<T>(rounded);
  }
}

template <class T, class U>
T expectedOf(const U& element) {
  if constexpr (std::is_same_v<T, U>) return element;
  return withPlainNaN(castByRule<T>(element));
}

// What came out with every NaN as one, but for the same type, of which every bit is to be kept.
template <class T, class U>
HostArray<T> comparable(HostArray<T> values) {
  if (!std::is_same_v<T, U>) {
    for (unsigned long i = 0; i < values.size(); ++i) values[i] = withPlainNaN(values[i]);
  }
  return values;
}

template <class T>
struct CastTest : ::testing::Test {
  using Cast = std::conditional_t<isComplex<T>, gpuruntime::CastToComplex, gpuruntime::CastToReal>;
  using CastBlock = std::conditional_t<isComplex<T>, gpuruntime::CastBlockToComplex, gpuruntime::CastBlockToReal>;
  using Sources = std::conditional_t<isComplex<T>, gpuruntime::AllTypes, gpuruntime::RealTypes>;

  template <class U>
  static void expectCast(const HostArray<U>& source, const std::string& context) {
    const GuardedArray<U> input(source, 1);
    GuardedArray<T> output(source.size(), 1);
    typename Cast::template Invoker<T, U>()(nullptr, source.size(), output.data(), input.data());
    expectElements(
        comparable<T, U>(output.toHost()), [&](unsigned long i) { return expectedOf<T>(source[i]); }, context);
  }

  // Blocks of 3 at a pitch of 5 behind 2; what lies between them stays.
  template <class U>
  static void expectBlocks(const HostArray<U>& source) {
    const unsigned long n = source.size(), offset = 2, pitch = 5, length = 3;
    const GuardedArray<U> input(source);
    GuardedArray<T> output(offset + (n / length + 1) * pitch);
    const HostArray<T> before = output.toHost();
    typename CastBlock::template Invoker<T, U>()(nullptr, n, output.data(), input.data(), offset, pitch, length);
    HostArray<T> expected = before;
    for (unsigned long i = 0; i < n; ++i) {
      expected[offset + i / length * pitch + i % length] = castByRule<T>(source[i]);
    }
    expectElements(comparable<T, U>(output.toHost()),
                   [&](unsigned long i) { return std::is_same_v<T, U> ? expected[i] : withPlainNaN(expected[i]); });
  }

  template <class... Types, class Expect>
  static void forEachSource(gpuruntime::TypeList<Types...>, Expect expect) {
    (expect(trickyValues<Types>()), ...);
  }
};
TYPED_TEST_SUITE(CastTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(CastTest, ConvertsTheTrickyValuesOfEveryType) {
  if constexpr (!std::is_same_v<TypeParam, bool>) {
    this->forEachSource(typename TestFixture::Sources{}, [&](const auto& source) {
      this->expectCast(source, "cast");
      this->expectBlocks(source);
    });
  }
}

TYPED_TEST(CastTest, CopiesTheSameTypeBitByBit) {
  using T = TypeParam;
  if constexpr (!std::is_same_v<T, bool>) {
    for (const unsigned long n : elementwiseSizes()) this->expectCast(HostArray<T>::counting(n), "same type");
  }
}

TEST(CastSizesTest, EveryElementOfEverySizeIsConverted) {
  for (const unsigned long n : elementwiseSizes()) {
    HostArray<double> source(n);
    for (unsigned long i = 0; i < n; ++i) source[i] = static_cast<double>(i % 1000) * 0.5 - 200;
    CastTest<unsigned char>::expectCast(source, "to unsigned char");
    CastTest<float2>::expectCast(source, "to float2");
  }
}

template <class T>
struct CastToBoolTest : ::testing::Test {
  gpuruntime::CastToBool family;
  typename gpuruntime::CastToBool::Invoker<T> cast;
};
TYPED_TEST_SUITE(CastToBoolTest, TestTypes<gpuruntime::RealNumericTypes>);

TYPED_TEST(CastToBoolTest, ReportsNaNThroughTheErrorWord) {
  using T = TypeParam;
  const HostArray<T> tricky = trickyValues<T>();
  for (const unsigned long n : elementwiseSizes()) {
    HostArray<T> source(n);
    bool hasNaN = false;
    for (unsigned long i = 0; i < n; ++i) {
      source[i] = tricky[i % tricky.size()];
      hasNaN |= source[i] != source[i];
    }
    const GuardedArray<T> input(source, 1);
    GuardedArray<bool> output(n, 1);
    this->cast(nullptr, n, output.data(), input.data());
    EXPECT_EQ(this->family.getErrorFlag(nullptr), hasNaN ? 1023u : 1000u);
    expectElements(output.toHost(), [&](unsigned long i) { return source[i] != 0; });
  }
  if constexpr (std::is_floating_point_v<T>) {
    // One NaN, wherever it stands.
    for (const unsigned long at : {0UL, 255UL, 256UL, 1000UL}) {
      HostArray<T> source(1001);
      source[at] = -std::numeric_limits<T>::quiet_NaN();
      const GuardedArray<T> input(source);
      GuardedArray<bool> output(1001);
      this->cast(nullptr, 1001, output.data(), input.data());
      EXPECT_EQ(this->family.getErrorFlag(nullptr), 1023u) << at;
      expectElements(output.toHost(), [&](unsigned long i) { return i == at; });
    }
  }
  this->cast(nullptr, 0, nullptr, nullptr);
  EXPECT_EQ(this->family.getErrorFlag(nullptr), 1000u);
}

}  // namespace
