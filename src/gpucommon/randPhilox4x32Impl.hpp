/// @file
/// Philox-4x32-10, counter-based: J. K. Salmon et al., "Parallel random numbers: as easy as 1, 2, 3", SC 2011. The
/// rounds are those of Random123.
#pragma once

#include <gpuruntime/randgenerators.hpp>

#include <Random123/philox.h>

#include "gpucommon/randUniform.hpp"
#include "platform/platform.hpp"

namespace gpucommon::rand {
namespace detail {

// Random123 makes its functions from macros over a word. Here they make philox4xWords_R, whose word is a pack's: one
// 32-bit word for each thread.
using PackWords = gpuruntime::platform::Words;
struct r123array2xWords {
  PackWords v[2];
};
struct r123array4xWords {
  PackWords v[4];
};
inline constexpr unsigned int PHILOX_M4xWords_0 = PHILOX_M4x32_0, PHILOX_M4xWords_1 = PHILOX_M4x32_1;
inline constexpr unsigned int PHILOX_WWords_0 = PHILOX_W32_0, PHILOX_WWords_1 = PHILOX_W32_1;
inline constexpr unsigned int PHILOX4xWords_DEFAULT_ROUNDS = PHILOX4x32_DEFAULT_ROUNDS;
GPURUNTIME_HOST_DEVICE PackWords mulhiloWords(unsigned int factor, PackWords words, PackWords* upper) {
  return gpuruntime::platform::mulhilo(words, factor, upper);
}
_philox4xWbumpkey_tpl(Words);
_philox4xWround_tpl(Words, PackWords);
_philoxNxW_tpl(4, 2, Words, PackWords);

}  // namespace detail

/// State: key (2 words), counter (4 words, the lowest first), position in the block (its lowest bit).
class Philox4x32Generator {
 public:
  static constexpr unsigned int stateWords = 7;
  static constexpr unsigned int samplesPerBlock = 2;

  GPURUNTIME_HOST_DEVICE void setState(const unsigned int* state) {
    key_ = {{state[0], state[1]}};
    counter_ = {{state[2], state[3], state[4], state[5]}};
    position_ = state[6] & 1;
  }
  GPURUNTIME_HOST_DEVICE void getState(unsigned int* state) const {
    for (int i = 0; i < 4; ++i) state[2 + i] = counter_.v[i];
    state[6] = position_;
  }

  GPURUNTIME_HOST_DEVICE unsigned int position() const { return position_; }
  GPURUNTIME_HOST_DEVICE void setPosition(unsigned int position) { position_ = position; }

  /// Moves on by one block, of two samples, or by any number of blocks.
  GPURUNTIME_HOST_DEVICE void advanceTwo() { counter_.incr(); }
  GPURUNTIME_HOST_DEVICE void advanceBlock() { advanceTwo(); }
  GPURUNTIME_HOST_DEVICE void advanceBlocks(unsigned long blocks) { counter_.incr(blocks); }

  /// The uniform samples of the block.
  GPURUNTIME_HOST_DEVICE void uniformBlock(double (&samples)[2]) const {
    const r123array4x32 out = philox4x32(counter_, key_);
    samples[0] = uniformOf(bitsOf<unsigned long>(out.v[0], out.v[1]));
    samples[1] = uniformOf(bitsOf<unsigned long>(out.v[2], out.v[3]));
  }

  template <class T, class Conversion>
  GPURUNTIME_HOST_DEVICE void sampleAndAdvanceRange(T* out, unsigned long count, const Conversion& conversion) {
    detail::sampleAndAdvanceRange(*this, position_, out, count, conversion);
  }

  /// Calls use(thread, samples) for each thread t, with the uniform samples of generator block `first + t`, counted
  /// from this one. `use` may change them.
  template <class Block, class Use>
  GPURUNTIME_DEVICE void forEachBlock(const Block& block, gpuruntime::platform::Live live, unsigned long first,
                                      Use use) const {
    using namespace gpuruntime::platform;
    const unsigned long lower = static_cast<unsigned long>(counter_.v[1]) << 32 | counter_.v[0];
    const unsigned long upper = static_cast<unsigned long>(counter_.v[3]) << 32 | counter_.v[2];
    const unsigned int key0 = key_.v[0], key1 = key_.v[1];
    PerThread<unsigned long, Block::size> bits[2];
    block.forEachPack(live, [&](Pack pack) {
      const LongWords low = pack.threads() + first + lower;
      // So little was added that a carry shows as the highest bit going out.
      const LongWords high = ((~low & lower) >> 63) + upper;
      const detail::PackWords none{};
      const detail::r123array4xWords counter = {
          {narrowed(low), narrowed(low >> 32), narrowed(high), narrowed(high >> 32)}};
      const detail::r123array4xWords out = detail::philox4xWords_R(10, counter, {{none + key0, none + key1}});
      bits[0].set(pack, bitsOf<LongWords>(widened(out.v[0]), widened(out.v[1])));
      bits[1].set(pack, bitsOf<LongWords>(widened(out.v[2]), widened(out.v[3])));
    });
    block.forEachThread(live, [&](Thread thread) {
      double samples[2] = {uniformOf(bits[0][thread]), uniformOf(bits[1][thread])};
      use(thread, samples);
    });
  }

 private:
  // The two words overlap in bits 21 to 31.
  template <class Word>
  static GPURUNTIME_HOST_DEVICE Word bitsOf(Word high, Word low) {
    return (high << 21) ^ low;
  }

  r123array2x32 key_;
  r123array4x32 counter_;
  unsigned int position_;
};

}  // namespace gpucommon::rand
