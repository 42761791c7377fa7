#include "support/familytest.hpp"
#include "support/randreference.hpp"

namespace {

using namespace testsupport;

// Around a thread's eight samples and a block's 512, several blocks, and enough for writes past the caches.
const std::vector<unsigned long> sizes{0, 1, 2, 7, 8, 9, 511, 512, 513, 1031, 20011, 600011};

template <class Family, class T, class... Bounds>
HostArray<T> filled(const Words& state, unsigned long n, Bounds... bounds) {
  GuardedArray<T> out(n, 1);
  Words words = state;
  typename Family::template Invoker<T>()(nullptr, out.data(), words.data(), bounds..., n);
  HostArray<T> elements = out.toHost();
  EXPECT_EQ(words, state) << "the caller's state was written";
  return elements;
}

/// Position 0 to the last of a block, arbitrary words; and, for the counter-based ones, a counter that wraps around.
template <class G>
std::vector<Words> states() {
  std::vector<Words> all;
  for (unsigned int position = 0; position < blockSamples<G>; ++position) {
    all.push_back(stateAt<G>(position, 7 + position));
    if (blockSamples<G> == 1) continue;
    all.push_back(stateAt<G>(position));
    const long counterWords = blockSamples<G> == 2 ? 4 : 8;
    std::fill(all.back().end() - 1 - counterWords, all.back().end() - 1, ~0U);
    // 100 generator blocks before the last: the lowest word of the counter.
    *(all.back().end() - 1 - counterWords + (counterWords == 8 ? 1 : 0)) -= 100;
  }
  return all;
}

template <class G>
struct RandTest : ::testing::Test {};
using Generators = ::testing::Types<Of<Philox4x32Generator>, Of<ThreeFry4x64Generator>, Of<MRG32K3AGenerator>>;
TYPED_TEST_SUITE(RandTest, Generators);

template <class G, class T>
void checkUniform() {
  for (const Words& state : states<G>()) {
    const std::vector<Sample> expected = samplesOf<G>(state, sizes.back());
    for (const unsigned long n : sizes) {
      expectElements(
          filled<gpuruntime::Rand<G>, T>(state, n),
          [&](unsigned long i) { return static_cast<T>(expected[i].uniform()); }, "n = " + std::to_string(n));
    }
  }
}

TYPED_TEST(RandTest, ElementIsSampleOfTheStream) {
  checkUniform<typename TypeParam::G, double>();
  checkUniform<typename TypeParam::G, float>();
}

template <class T>
T convertedInteger(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    using Limits = std::numeric_limits<T>;
    const long double rounded = std::round(static_cast<long double>(value));
    if (rounded >= static_cast<long double>(Limits::max())) return Limits::max();
    return rounded <= static_cast<long double>(Limits::min()) ? Limits::min() : static_cast<T>(rounded);
  }
}

template <class G, class... Types>
void checkIntegers(gpuruntime::TypeList<Types...>) {
  const unsigned long n = 3001;
  const Words state = stateAt<G>(1);
  const std::vector<Sample> samples = samplesOf<G>(state, n);
  const auto check = [&](auto tag, double lo, double hi) {
    using T = decltype(tag);
    expectElements(
        filled<gpuruntime::RandI<G>, T>(state, n, lo, hi),
        [&](unsigned long i) {
          volatile const double range = hi - lo + 1, product = range * samples[i].uniform();
          return convertedInteger<T>(lo + std::floor(product));
        },
        "from " + std::to_string(lo) + " to " + std::to_string(hi));
  };
  // A die, saturation at both ends, one value, fractions, all of 64 bits and more.
  for (const auto& [lo, hi] : std::vector<std::pair<double, double>>{
           {1, 6}, {-300, 300}, {7, 7}, {-2.5, 9.25}, {-1e19, 2e19}, {0, 18446744073709551615.0}}) {
    (check(Types{}, lo, hi), ...);
  }
}

TYPED_TEST(RandTest, IntegersFollowTheRuleInEveryType) {
  checkIntegers<typename TypeParam::G>(gpuruntime::RealNumericTypes{});
}

// Distance in units in the last place of T, of the expected value.
template <class T>
double ulps(T actual, long double expected) {
  const T nearest = static_cast<T>(expected);
  const T unit = std::nextafter(std::abs(nearest), std::numeric_limits<T>::infinity()) - std::abs(nearest);
  return static_cast<double>(std::abs(actual - expected) / unit);
}

template <class G, class Family, class T, class Expected>
void checkNormal(double tolerance, Expected expected) {
  for (const Words& state : states<G>()) {
    const unsigned long n = 20011;
    const std::vector<Sample> samples = samplesOf<G>(state, n);
    const HostArray<T> out = filled<Family, T>(state, n);
    for (unsigned long i = 0; i < n; ++i) {
      ASSERT_LE(ulps(out[i], expected(samples[i])), tolerance) << "element " << i << " is " << inWords(out[i]);
    }
  }
}

/// Newton's method in long double: on erf near the middle, on erfc towards the ends, where each is the exact one.
long double normalQuantile(double u) {
  const long double y = 2.0L * std::min(u, 1 - u), distance = 1 - y;
  long double x = y > 0.5L ? distance : std::sqrt(-std::log(y / 1.2L));
  for (int i = 0; i < 60; ++i) {
    const long double error = y > 0.5L ? distance - std::erf(x) : std::erfc(x) - y;
    const long double step = error / (-1.1283791670955125739L * std::exp(-x * x));
    x -= step / (1 + x * step);
    if (std::abs(step) < 1e-19L * x) break;
  }
  return (u < 0.5 ? -1 : 1) * 1.4142135623730951L * x;
}

TYPED_TEST(RandTest, NormalsByInversionFollowTheRule) {
  const auto expected = [](const Sample& sample) { return normalQuantile(sample.uniform()); };
  checkNormal<typename TypeParam::G, gpuruntime::RandNInversion<typename TypeParam::G>, double>(8, expected);
  checkNormal<typename TypeParam::G, gpuruntime::RandNInversion<typename TypeParam::G>, float>(0.6, expected);
}

template <class G>
struct BoxMullerTest : ::testing::Test {};
using PairGenerators = ::testing::Types<Of<Philox4x32Generator>, Of<ThreeFry4x64Generator>>;
TYPED_TEST_SUITE(BoxMullerTest, PairGenerators);

TYPED_TEST(BoxMullerTest, NormalsInPairsFollowTheRule) {
  const auto expected = [](const Sample& sample) -> long double {
    const long double radius = std::sqrt(-2 * std::log(static_cast<long double>(sample.first)));
    const long double angle = 6.283185307179586 * sample.second;
    return radius * (sample.isSecond ? std::sin(angle) : std::cos(angle));
  };
  checkNormal<typename TypeParam::G, gpuruntime::RandNBoxMuller<typename TypeParam::G>, double>(5, expected);
  checkNormal<typename TypeParam::G, gpuruntime::RandNBoxMuller<typename TypeParam::G>, float>(0.6, expected);
}

template <class G, class Family, class T>
void checkPieces() {
  const unsigned long n = 1543;
  for (const Words& state : states<G>()) {
    const HostArray<T> whole = filled<Family, T>(state, n);
    for (const unsigned long cut : {0UL, 1UL, 2UL, 3UL, 4UL, 5UL, 511UL, 514UL, n - 1, n}) {
      Words second = state;
      gpuruntime::rand::advanceState<G>(second.data(), cut);
      const HostArray<T> before = filled<Family, T>(state, cut), after = filled<Family, T>(second, n - cut);
      expectElements(
          whole, [&](unsigned long i) { return i < cut ? before[i] : after[i - cut]; },
          "cut at " + std::to_string(cut));
    }
  }
}

TYPED_TEST(RandTest, PiecesGiveTheWhole) {
  checkPieces<typename TypeParam::G, gpuruntime::Rand<typename TypeParam::G>, double>();
  checkPieces<typename TypeParam::G, gpuruntime::RandNInversion<typename TypeParam::G>, float>();
}
TYPED_TEST(BoxMullerTest, PiecesGiveTheWhole) {
  checkPieces<typename TypeParam::G, gpuruntime::RandNBoxMuller<typename TypeParam::G>, double>();
}

/// The number of samples of a counter-based stream that lie before a state, modulo 2^128.
template <class G>
unsigned __int128 placeOf(const Words& state) {
  unsigned __int128 place = 0;
  // The lowest four words of the counter, from the highest to the lowest.
  for (const unsigned int i : {3U, 2U, 1U, 0U}) place = place << 32 | state[blockSamples<G> == 2 ? 2 + i : 8 + (i ^ 1)];
  return place * blockSamples<G> + state.back() % blockSamples<G>;
}

TYPED_TEST(RandTest, StatesMoveOnFarAndAddUp) {
  using G = typename TypeParam::G;
  const auto moved = [](Words state, unsigned long n) {
    gpuruntime::rand::advanceState<G>(state.data(), n);
    return state;
  };
  for (const Words& state : states<G>()) {
    for (const unsigned long n : {3UL, 1UL << 31, (1UL << 33) + 1, ~0UL}) {
      EXPECT_EQ(moved(moved(state, n / 3), n - n / 3), moved(state, n)) << n;
      EXPECT_TRUE(blockSamples<G> == 1 || placeOf<G>(moved(state, n)) == placeOf<G>(state) + n) << n;
    }
  }
}

// Statistics of fixed streams. Bounds lie where a good generator comes once in some ten thousand streams.

/// Largest distance of the empirical from the wanted distribution, times sqrt(n): Kolmogorov's statistic. 2.2 is
/// exceeded once in 8000 times.
template <class Distribution>
double kolmogorov(std::vector<double> values, Distribution distribution) {
  std::sort(values.begin(), values.end());
  const auto n = static_cast<double>(values.size());
  double largest = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double wanted = distribution(values[i]), below = static_cast<double>(i);
    largest = std::max({largest, wanted - below / n, (below + 1) / n - wanted});
  }
  return largest * std::sqrt(n);
}

/// Chi-square statistic in standard deviations from its mean.
double chiSquareDeviation(const std::vector<unsigned long>& counts, unsigned long n) {
  const double expected = static_cast<double>(n) / static_cast<double>(counts.size());
  double sum = 0;
  for (const unsigned long count : counts) {
    const double difference = static_cast<double>(count) - expected;
    sum += difference * difference / expected;
  }
  const double freedom = static_cast<double>(counts.size()) - 1;
  return (sum - freedom) / std::sqrt(2 * freedom);
}

template <class T>
std::vector<double> asDoubles(const HostArray<T>& array) {
  return {array.data(), array.data() + array.size()};
}

TYPED_TEST(RandTest, UniformInOneAndTwoDimensions) {
  const unsigned long n = 1UL << 20;
  const auto values =
      asDoubles(filled<gpuruntime::Rand<typename TypeParam::G>, double>(stateAt<typename TypeParam::G>(0), n));
  EXPECT_LT(kolmogorov(values, [](double u) { return u; }), 2.2);
  std::vector<unsigned long> line(1000), square(4096);
  for (unsigned long i = 0; i < n; ++i) ++line[static_cast<std::size_t>(values[i] * 1000)];
  for (unsigned long i = 0; i + 1 < n; i += 2) {
    ++square[static_cast<std::size_t>(values[i] * 64) * 64 + static_cast<std::size_t>(values[i + 1] * 64)];
  }
  EXPECT_LT(std::abs(chiSquareDeviation(line, n)), 4);
  EXPECT_LT(std::abs(chiSquareDeviation(square, n / 2)), 4);
}

template <class Family>
void checkNormality(const Words& state) {
  const unsigned long n = 1UL << 20;
  const auto values = asDoubles(filled<Family, double>(state, n));
  EXPECT_LT(kolmogorov(values, [](double x) { return std::erfc(-x * std::sqrt(0.5)) / 2; }), 2.2);
  // Moments, and the correlation of neighbours, in their standard deviations.
  double moment[5] = {}, neighbours = 0, tail = 0;
  for (unsigned long i = 0; i < n; ++i) {
    for (int k = 1; k < 5; ++k) moment[k] += std::pow(values[i], k);
    if (i % 2 == 1) neighbours += values[i - 1] * values[i];
    tail += std::abs(values[i]) > 4 ? 1 : 0;
  }
  const double count = n, root = std::sqrt(count);
  EXPECT_LT(std::abs(moment[1]) / root, 4);
  EXPECT_LT(std::abs(moment[2] - count) / (std::sqrt(2.0) * root), 4);
  EXPECT_LT(std::abs(moment[3]) / (std::sqrt(15.0) * root), 4);
  EXPECT_LT(std::abs(moment[4] - 3 * count) / (std::sqrt(96.0) * root), 4);
  EXPECT_LT(std::abs(neighbours) / std::sqrt(count / 2), 4);
  const double wantedTail = count * std::erfc(4 * std::sqrt(0.5));
  EXPECT_LT(std::abs(tail - wantedTail) / std::sqrt(wantedTail), 4);
}

TYPED_TEST(RandTest, InversionGivesNormals) {
  checkNormality<gpuruntime::RandNInversion<typename TypeParam::G>>(stateAt<typename TypeParam::G>(0, 3));
}
TYPED_TEST(BoxMullerTest, BoxMullerGivesNormals) {
  checkNormality<gpuruntime::RandNBoxMuller<typename TypeParam::G>>(stateAt<typename TypeParam::G>(1, 3));
}

}  // namespace
