#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include "gpucommon/randConversions.hpp"
#include "gpucommon/randMRG32K3AImpl.hpp"
#include "gpucommon/randPhilox4x32Impl.hpp"
#include "gpucommon/randThreeFry4x64Impl.hpp"
#include "support/randreference.hpp"

namespace {

namespace rand = gpucommon::rand;
namespace mrg = gpucommon::rand::MRG32K3A;
using namespace testsupport;

constexpr unsigned long m1 = 4294967087, m2 = 4294944443;

using Matrix = std::vector<std::uint64_t>;

Matrix product(const Matrix& a, const Matrix& b, std::uint64_t m) {
  Matrix c(9);
  for (unsigned int i = 0; i < 9; ++i) {
    for (unsigned int k = 0; k < 3; ++k) c[i] = (c[i] + a[i / 3 * 3 + k] * b[k * 3 + i % 3] % m) % m;
  }
  return c;
}
/// The transpose of the one-step matrix, to the power factor * 2^logPower.
Matrix power(std::uint64_t m, std::uint64_t factor, unsigned int logPower) {
  Matrix base =
      m == m1 ? Matrix{0, 0, m1 - 810728, 1, 0, 1403580, 0, 1, 0} : Matrix{0, 0, m2 - 1370589, 1, 0, 0, 0, 1, 527612};
  for (unsigned int i = 0; i < logPower; ++i) base = product(base, base, m);
  Matrix result{1, 0, 0, 0, 1, 0, 0, 0, 1};
  for (; factor > 0; factor >>= 1, base = product(base, base, m)) {
    if (factor & 1) result = product(result, base, m);
  }
  return result;
}
/// The state a number of raw steps later.
Words moved(const Words& state, std::uint64_t factor, unsigned int logPower) {
  const Matrix ofFirst = power(m1, factor, logPower), ofSecond = power(m2, factor, logPower);
  Words result(6);
  for (unsigned int j = 0; j < 3; ++j) {
    std::uint64_t a = 0, b = 0;
    for (unsigned int i = 0; i < 3; ++i) {
      a = (a + state[i] * ofFirst[3 * i + j] % m1) % m1;
      b = (b + state[3 + i] * ofSecond[3 * i + j] % m2) % m2;
    }
    result[j] = static_cast<unsigned int>(a);
    result[3 + j] = static_cast<unsigned int>(b);
  }
  return result;
}
Words advanced(Words state, unsigned long long n) {
  mrg::advance(state.data(), n);
  return state;
}

template <class T>
std::vector<T> numbers(const std::string& text, int base) {
  std::istringstream words(text);
  std::vector<T> found;
  for (std::string word; words >> word;) found.push_back(static_cast<T>(std::stoull(word, nullptr, base)));
  return found;
}

TEST(RandGenerators, GiveThePublishedAnswers) {
  std::ifstream file(GPURUNTIME_KNOWN_GENERATORS);
  unsigned int answers = 0;
  for (std::string line; std::getline(file, line); ++answers) {
    if (line[0] == '#') continue;
    std::vector<std::string> column(1);
    for (const char c : line) {
      if (c == '|') {
        column.emplace_back();
      } else {
        column.back() += c;
      }
    }
    ASSERT_EQ(column.size(), 4u) << line;
    if (line.rfind("philox", 0) == 0) {
      Words state = numbers<unsigned int>(column[2] + column[1] + " 0", 16);
      const auto out = numbers<std::uint64_t>(column[3], 16);
      rand::Philox4x32Generator generator;
      generator.setState(state.data());
      double samples[2];
      generator.uniformBlock(samples);
      for (int i : {0, 1}) EXPECT_EQ(samples[i], uniformOfBits((out[2 * i] << 21) ^ out[2 * i + 1])) << line;
    } else if (line.rfind("threefry", 0) == 0) {
      Words state;
      for (const std::uint64_t word : numbers<std::uint64_t>(column[2] + column[1], 16)) {
        state.insert(state.end(), {static_cast<unsigned int>(word >> 32), static_cast<unsigned int>(word)});
      }
      state.push_back(0);
      const auto out = numbers<std::uint64_t>(column[3], 16);
      rand::ThreeFry4x64Generator generator;
      generator.setState(state.data());
      double samples[4];
      generator.uniformBlock(samples);
      for (int i = 0; i < 4; ++i) EXPECT_EQ(samples[i], uniformOfBits(out[i] >> 11)) << line;
    } else {
      const Words before = numbers<unsigned int>(column[2], 10), after = numbers<unsigned int>(column[3], 10);
      const bool isPower = column[1].find('^') != std::string::npos;
      Matrix ofFirst, ofSecond;
      unsigned int first[9], second[9];
      mrg::detail::setOneStep<mrg::first>(first);
      mrg::detail::setOneStep<mrg::second>(second);
      if (isPower) {
        for (int i = 0; i < 127; ++i) {
          rand::matSquareInplace<mrg::first>(first);
          rand::matSquareInplace<mrg::second>(second);
        }
      } else {
        rand::matPowInplace<mrg::first>(first, 35);
        rand::matPowInplace<mrg::second>(second, 35);
      }
      Words state = before;
      rand::matVecProdInplace<mrg::first>(first, state.data());
      rand::matVecProdInplace<mrg::second>(second, state.data() + 3);
      EXPECT_EQ(state, after) << line;
      EXPECT_EQ(isPower ? moved(before, 1, 127) : moved(before, 35, 0), after) << "the reference itself";
    }
  }
  EXPECT_EQ(answers, 10u);
}

TEST(RandGenerators, Mrg32k3aStepsByPlainRemainders) {
  for (const unsigned long x : {0UL, 1UL, m2 - 1, m2, m1 - 1, m1, 1UL << 32, m1 * m1, (1UL << 63) + 12345, ~0UL}) {
    EXPECT_EQ((rand::intMod<4294967087U, unsigned long long>(x)), x % m1);
    EXPECT_EQ((rand::intMod<4294944443U, unsigned long long>(x)), x % m2);
  }
  // The largest and smallest words, too.
  for (Words state : {Words{1, 2, 3, 4, 5, 6}, Words{0, 0, 1, 4294944442, 0, 0}, Words(6, 4294944442),
                      Words{4294967086, 4294967086, 4294967086, 4294944442, 4294944442, 4294944442}}) {
    rand::MRG32K3AGenerator generator;
    generator.setState(state.data());
    const std::vector<Sample> expected = samplesOf<rand::MRG32K3AGenerator>(state, 3000);
    for (const Sample& sample : expected) ASSERT_EQ(generator.sample(), sample.uniform());
  }
}

TEST(RandGenerators, Mrg32k3aStaysBelowOne) {
  // A state whose next raw result is the largest, m1 - 1: 1403580 * s1[1] is -1 modulo m1, and the second component
  // gives 0.
  std::uint64_t inverse = 1, base = 1403580;
  for (std::uint64_t exponent = m1 - 2; exponent > 0; exponent >>= 1, base = base * base % m1) {
    if (exponent & 1) inverse = inverse * base % m1;
  }
  Words state{0, static_cast<unsigned int>(m1 - inverse), 99, 0, 7, 0}, stepped = state;
  ASSERT_EQ(mrgRawStep(stepped), static_cast<long>(m1 - 1));
  ASSERT_GT(mrgRawStep(stepped), 1 << 26) << "the second result would not lift the sum above 1";
  rand::MRG32K3AGenerator generator;
  generator.setState(state.data());
  const double u = generator.sample();
  EXPECT_EQ(u, samplesOf<rand::MRG32K3AGenerator>(state, 1)[0].uniform());
  EXPECT_LT(u, 1e-7);
  // Both components give 0, and so does their difference.
  state = {0, 0, 99, 0, 7, 0};
  generator.setState(state.data());
  EXPECT_EQ(generator.sample(), samplesOf<rand::MRG32K3AGenerator>(state, 1)[0].uniform());
}

template <mrg::MRG32K3A_StateIdx M>
void expectTable(const mrg::detail::Table& table, unsigned int logStep) {
  for (unsigned int k = 0; k < 71; ++k) {
    unsigned int matrix[9];
    mrg::detail::expandEntry(matrix, M, table.entry[k]);
    const Matrix expected = power(M, k % 7 + 1, 3 * (k / 7) + logStep);
    ASSERT_EQ(Matrix(matrix, matrix + 9), expected) << "entry " << k;
  }
}

TEST(RandGenerators, Mrg32k3aTablesHoldThePowers) {
  expectTable<mrg::first>(GPURUNTIME_TABLE(mrg::MRG32K3A_TRANSITION1), 1);
  expectTable<mrg::second>(GPURUNTIME_TABLE(mrg::MRG32K3A_TRANSITION2), 1);
  expectTable<mrg::first>(GPURUNTIME_TABLE(mrg::MRG32K3A_SUBSTREAMTRANSITION1), 76);
  expectTable<mrg::second>(GPURUNTIME_TABLE(mrg::MRG32K3A_SUBSTREAMTRANSITION2), 76);
  const auto row = [](const mrg::detail::Table& table) { return Words(table.entry[0], table.entry[0] + 7); };
  EXPECT_EQ(row(GPURUNTIME_TABLE(mrg::MRG32K3A_TRANSITION1)), (Words{0, 4294156359, 0, 0, 1403580, 4294156359, 1}));
  EXPECT_EQ(row(GPURUNTIME_TABLE(mrg::MRG32K3A_TRANSITION2)),
            (Words{2706407399, 0, 0, 4293573854, 1, 527612, 3497978192}));
  for (unsigned int l = 0; l < 11; ++l) EXPECT_EQ(GPURUNTIME_TABLE(mrg::MRG32K3A_LEVELSTARTS).start[l], 1U << 3 * l);
}

TEST(RandGenerators, Mrg32k3aAdvancesByAnyNumberOfSamples) {
  const Words start = stateAt<rand::MRG32K3AGenerator>(0);
  const unsigned long long top = 1ULL << 30;
  for (const unsigned long long n : {0ULL, 1ULL, 7ULL, 8ULL, 63ULL, 4097ULL, 123456789ULL, top - 1, top, top + 1,
                                     2 * top, 2 * top + 7, 3 * top - 1, 1ULL << 40, (1ULL << 63) - 5}) {
    EXPECT_EQ(advanced(start, n), moved(start, n, 1)) << n;
    EXPECT_EQ(advanced(advanced(start, n / 3), n - n / 3), advanced(start, n)) << n;
    unsigned int matrix[9];
    mrg::getTransitionMatrix<mrg::second>(matrix, mrg::second, n);
    EXPECT_EQ(Matrix(matrix, matrix + 9), power(m2, n, 1)) << n;
  }
}

template <class G>
struct CounterBased : ::testing::Test {};
using CounterBasedTypes = ::testing::Types<rand::Philox4x32Generator, rand::ThreeFry4x64Generator>;
TYPED_TEST_SUITE(CounterBased, CounterBasedTypes);

TYPED_TEST(CounterBased, ReadsTheStreamInAnyPieces) {
  using G = TypeParam;
  for (unsigned int position = 0; position < blockSamples<G>; ++position) {
    for (const bool carries : {false, true}) {
      Words state = stateAt<G>(position);
      // The counter of all ones wraps around to 0 within the first samples.
      if (carries) std::fill(state.end() - (blockSamples<G> == 2 ? 5 : 9), state.end() - 1, ~0U);
      const std::vector<Sample> expected = samplesOf<G>(state, 64);
      G generator;
      generator.setState(state.data());
      unsigned long read = 0;
      for (const unsigned long count : {0UL, 1UL, 1UL, 2UL, 3UL, 4UL, 5UL, 7UL, 0UL, 16UL}) {
        double out[16];
        generator.sampleAndAdvanceRange(out, count, rand::RandConversion<double>());
        for (unsigned long i = 0; i < count; ++i) ASSERT_EQ(out[i], expected[read + i].uniform()) << read + i;
        read += count;
        EXPECT_EQ(generator.position(), (position + read) % blockSamples<G>);
      }
    }
  }
}

TEST(RandConversions, KeepToTheirRangesAtTheExtremes) {
  double ends[2] = {rand::uniformOf(0), rand::uniformOf((1UL << 53) - 1)};
  EXPECT_EQ(ends[0], 0x1.fffffffffffffp-54);
  EXPECT_EQ(ends[1], 1 - 0x1p-53);
  EXPECT_EQ(rand::RandConversion<double>().stored(ends[1]), 1 - 0x1p-53);
  EXPECT_EQ(rand::RandConversion<float>().stored(ends[1]), 1.0F);

  double die[2] = {ends[0], ends[1]};
  const rand::RandIConversion<unsigned char> sides{1, 6};
  sides(die);
  EXPECT_EQ(sides.stored(die[0]), 1);
  EXPECT_EQ(sides.stored(die[1]), 6);

  // Every pair of extremes: finite, and as far out as the smallest sample goes.
  for (const double first : ends) {
    for (const double second : ends) {
      double pair[2] = {first, second};
      rand::NormalConversionBoxMuller<double>()(pair);
      EXPECT_NEAR(pair[0], first < 0.5 ? 8.5717 : 0, 1e-4);
      EXPECT_NEAR(pair[1], 0, 1e-7);
    }
  }
  double quantiles[4] = {0, 0.5, ends[0], ends[1]};
  rand::NormalConversionInversion<double>()(quantiles);
  EXPECT_EQ(quantiles[0], -std::numeric_limits<double>::infinity());
  EXPECT_EQ(quantiles[1], 0);
  EXPECT_NEAR(quantiles[2], -8.2095, 1e-4);
  EXPECT_NEAR(quantiles[3], 8.2095, 1e-4);
}

}  // namespace
