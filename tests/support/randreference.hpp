/// @file
/// The random generators once more, in plain steps from their published rules: uniform sample by uniform sample.
#pragma once

#include <gpuruntime/randgenerators.hpp>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace testsupport {

using gpucommon::rand::MRG32K3AGenerator;
using gpucommon::rand::Philox4x32Generator;
using gpucommon::rand::ThreeFry4x64Generator;
using Words = std::vector<unsigned int>;

/// Stands for a generator in typed tests, which can't take the name of an incomplete class.
template <class Generator>
struct Of {
  using G = Generator;
};

/// Words of a state, as in randgenerators.hpp.
template <class G>
inline constexpr unsigned int stateWords = 6;
template <>
inline constexpr unsigned int stateWords<Philox4x32Generator> = 7;
template <>
inline constexpr unsigned int stateWords<ThreeFry4x64Generator> = 17;

/// Samples of a generator block.
template <class G>
inline constexpr unsigned int blockSamples = 1;
template <>
inline constexpr unsigned int blockSamples<Philox4x32Generator> = 2;
template <>
inline constexpr unsigned int blockSamples<ThreeFry4x64Generator> = 4;

inline std::vector<std::uint32_t> philoxBlock(std::vector<std::uint32_t> c, std::uint32_t key0, std::uint32_t key1) {
  for (int round = 0; round < 10; ++round, key0 += 0x9E3779B9, key1 += 0xBB67AE85) {
    const std::uint64_t a = std::uint64_t{0xD2511F53} * c[0], b = std::uint64_t{0xCD9E8D57} * c[2];
    c = {static_cast<std::uint32_t>(b >> 32) ^ c[1] ^ key0, static_cast<std::uint32_t>(b),
         static_cast<std::uint32_t>(a >> 32) ^ c[3] ^ key1, static_cast<std::uint32_t>(a)};
  }
  return c;
}

inline std::vector<std::uint64_t> threefryBlock(std::vector<std::uint64_t> x, std::vector<std::uint64_t> key) {
  static const int rotation[8][2] = {{14, 16}, {52, 57}, {23, 40}, {5, 37}, {25, 33}, {46, 12}, {58, 22}, {32, 32}};
  key.push_back(0x1BD11BDAA9FC1A22 ^ key[0] ^ key[1] ^ key[2] ^ key[3]);
  const auto mix = [](std::uint64_t& a, std::uint64_t& b, int bits) {
    a += b;
    b = (b << bits | b >> (64 - bits)) ^ a;
  };
  for (std::uint64_t round = 0; round <= 20; ++round) {
    if (round % 4 == 0) {
      for (std::uint64_t i = 0; i < 4; ++i) x[i] += key[(round / 4 + i) % 5];
      x[3] += round / 4;
    }
    if (round == 20) break;
    mix(x[0], x[1], rotation[round % 8][0]);
    mix(x[2], x[3], rotation[round % 8][1]);
    std::swap(x[1], x[3]);
  }
  return x;
}

inline double uniformOfBits(std::uint64_t u53) {
  const double c = 0x1.fffffffffffffp-54;
  return std::fma(static_cast<double>(u53), c, c);
}

/// Adds one to a number of several words, the lowest first.
template <class Word>
void increment(std::vector<Word>& words) {
  for (Word& word : words) {
    if (++word != 0) return;
  }
}

/// The samples of a generator block: `skip` of them have been taken.
inline std::vector<double> blockOf(Philox4x32Generator*, Words& state, unsigned int& skip) {
  std::vector<std::uint32_t> counter(state.begin() + 2, state.begin() + 6);
  const auto out = philoxBlock(counter, state[0], state[1]);
  skip = state[6] & 1;
  increment(counter);
  std::copy(counter.begin(), counter.end(), state.begin() + 2);
  state[6] = 0;
  return {uniformOfBits((std::uint64_t{out[0]} << 21) ^ out[1]), uniformOfBits((std::uint64_t{out[2]} << 21) ^ out[3])};
}

inline std::vector<double> blockOf(ThreeFry4x64Generator*, Words& state, unsigned int& skip) {
  const auto value = [&](unsigned int i) { return std::uint64_t{state[i]} << 32 | state[i + 1]; };
  std::vector<std::uint64_t> counter{value(8), value(10), value(12), value(14)};
  const auto out = threefryBlock(counter, {value(0), value(2), value(4), value(6)});
  skip = state[16] & 3;
  increment(counter);
  for (unsigned int i = 0; i < 4; ++i) {
    state[8 + 2 * i] = static_cast<unsigned int>(counter[i] >> 32);
    state[9 + 2 * i] = static_cast<unsigned int>(counter[i]);
  }
  state[16] = 0;
  std::vector<double> samples;
  for (const std::uint64_t word : out) samples.push_back(uniformOfBits(word >> 11));
  return samples;
}

/// One raw step of MRG32k3a, with plain remainders.
inline std::int64_t mrgRawStep(Words& s) {
  const std::int64_t m1 = 4294967087, m2 = 4294944443;
  std::int64_t p1 = (1403580 * std::int64_t{s[1]} - 810728 * std::int64_t{s[0]}) % m1;
  std::int64_t p2 = (527612 * std::int64_t{s[5]} - 1370589 * std::int64_t{s[3]}) % m2;
  if (p1 < 0) p1 += m1;
  if (p2 < 0) p2 += m2;
  s = {s[1], s[2], static_cast<unsigned int>(p1), s[4], s[5], static_cast<unsigned int>(p2)};
  return p1 < p2 ? p1 - p2 + m1 : p1 - p2;
}

inline std::vector<double> blockOf(MRG32K3AGenerator*, Words& state, unsigned int& skip) {
  const double norm = 2.328306549295728e-10;
  volatile const double coarse = static_cast<double>(mrgRawStep(state)) * norm;
  volatile const double fine = static_cast<double>(mrgRawStep(state)) * norm * 0x1p-24;
  const double u = coarse + fine;
  skip = 0;
  return {u >= 1 ? u - 1 : u};
}

/// The first n samples of a stream, each with its partner: the other one of its pair, for what takes samples in pairs.
struct Sample {
  double first;   ///< The sample with the even place in its generator block.
  double second;  ///< The one behind it.
  bool isSecond;  ///< Which of them the sample is.
  double uniform() const { return isSecond ? second : first; }
};
template <class G>
std::vector<Sample> samplesOf(Words state, unsigned long n) {
  std::vector<Sample> samples;
  while (samples.size() < n) {
    unsigned int place = 0;
    const std::vector<double> block = blockOf(static_cast<G*>(nullptr), state, place);
    for (; place < block.size() && samples.size() < n; ++place) {
      const unsigned int even = place & ~1U;
      samples.push_back({block[even], block.size() > 1 ? block[even + 1] : 0, place != even});
    }
  }
  return samples;
}

/// A state of a generator with arbitrary words, all of them valid, that begins at a position of its block.
template <class G>
Words stateAt(unsigned int position, unsigned int seed = 1) {
  Words state(stateWords<G>);
  std::uint64_t word = seed;
  for (unsigned int& entry : state) {
    word = word * 6364136223846793005 + 1442695040888963407;
    entry = static_cast<unsigned int>(word >> 33);
  }
  if (blockSamples<G> != 1) state.back() = position | 0xABCDEF00;  // Only the lowest bits are read.
  return state;
}

}  // namespace testsupport
