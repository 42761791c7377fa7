/// @file
/// Threefry-4x64-20, counter-based: J. K. Salmon et al., "Parallel random numbers: as easy as 1, 2, 3", SC 2011. The
/// rounds are those of Random123.
#pragma once

#include <gpuruntime/randgenerators.hpp>

#include <Random123/threefry.h>

#include "gpucommon/randUniform.hpp"
#include "platform/platform.hpp"

namespace gpucommon::rand {

/// State: key and counter (4 values of 64 bits each, as pairs of words with the high half first; the lowest value of
/// the counter first), position in the block (its lowest two bits).
class ThreeFry4x64Generator {
 public:
  static constexpr unsigned int stateWords = 17;
  static constexpr unsigned int samplesPerBlock = 4;

  GPURUNTIME_HOST_DEVICE void setState(const unsigned int* state) {
    for (int i = 0; i < 4; ++i) {
      key_.v[i] = static_cast<unsigned long>(state[2 * i]) << 32 | state[2 * i + 1];
      counter_.v[i] = static_cast<unsigned long>(state[8 + 2 * i]) << 32 | state[9 + 2 * i];
    }
    position_ = state[16] & 3;
  }
  GPURUNTIME_HOST_DEVICE void getState(unsigned int* state) const {
    for (int i = 0; i < 4; ++i) {
      state[8 + 2 * i] = static_cast<unsigned int>(counter_.v[i] >> 32);
      state[9 + 2 * i] = static_cast<unsigned int>(counter_.v[i]);
    }
    state[16] = position_;
  }

  GPURUNTIME_HOST_DEVICE unsigned int position() const { return position_; }
  GPURUNTIME_HOST_DEVICE void setPosition(unsigned int position) { position_ = position; }

  /// Moves on by one block, of four samples, or by any number of blocks.
  GPURUNTIME_HOST_DEVICE void advanceFour() { counter_.incr(); }
  GPURUNTIME_HOST_DEVICE void advanceBlock() { advanceFour(); }
  GPURUNTIME_HOST_DEVICE void advanceBlocks(unsigned long blocks) { counter_.incr(blocks); }

  /// The uniform samples of the block.
  GPURUNTIME_HOST_DEVICE void uniformBlock(double (&samples)[4]) const {
    const r123array4x64 out = threefry4x64(counter_, key_);
    for (int i = 0; i < 4; ++i) samples[i] = uniformOf(out.v[i] >> 11);
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
    const r123array4x64 key = key_, start = counter_;
    block.forEachThread(live, [&](gpuruntime::platform::Thread thread) {
      // Without branches, which would keep the loop from being vectorised: a carry shows as a sum below its summand.
      const unsigned long offset = first + thread.x, word0 = start.v[0] + offset;
      const unsigned long carry1 = word0 < offset ? 1 : 0, word1 = start.v[1] + carry1;
      const unsigned long carry2 = word1 < carry1 ? 1 : 0, word2 = start.v[2] + carry2;
      const unsigned long carry3 = word2 < carry2 ? 1 : 0, word3 = start.v[3] + carry3;
      const r123array4x64 counter = {{word0, word1, word2, word3}};
      const r123array4x64 out = threefry4x64(counter, key);
      double samples[4];
      gpuruntime::platform::unrolled<4>([&](auto i) { samples[i] = uniformOf(out.v[i] >> 11); });
      use(thread, samples);
    });
  }

 private:
  r123array4x64 key_;
  r123array4x64 counter_;
  unsigned int position_;
};

}  // namespace gpucommon::rand
