/// @file
/// The random generators by name. What a caller knows of them is the form of their state.
///
/// A state is an array of 32-bit words in the caller's memory. Position and counter say which sample comes next:
///
/// | generator             | words | what they hold                                                                   |
/// |-----------------------|-------|----------------------------------------------------------------------------------|
/// | Philox4x32Generator   | 7     | 0, 1: key. 2 to 5: counter, lowest word first. 6: position in the block, 0 or 1  |
/// | ThreeFry4x64Generator | 17    | 0 to 7: key, four values of 64 bits as pairs, high half first. 8 to 15: counter, |
/// |                       |       | in the same form, lowest value first. 16: position in the block, 0 to 3          |
/// | MRG32K3AGenerator     | 6     | 0 to 2: last values of the first component, oldest first; below 4294967087, not  |
/// |                       |       | all 0. 3 to 5: of the second component; below 4294944443, not all 0              |
///
/// Of the position only its lowest bit, or its lowest two bits, are read. That a state of MRG32K3AGenerator is valid is
/// not checked. Every key and counter of the others is valid.
#pragma once

#include <gpuruntime/elementtypes.hpp>
#include <gpuruntime/export.hpp>

namespace gpucommon::rand {

class GPURUNTIME_API Philox4x32Generator;    ///< Philox-4x32-10, two samples a block.
class GPURUNTIME_API ThreeFry4x64Generator;  ///< Threefry-4x64-20, four samples a block.
class GPURUNTIME_API MRG32K3AGenerator;      ///< MRG32k3a, two raw steps a sample.

}  // namespace gpucommon::rand

namespace gpuruntime {

/// Generators whose samples come in blocks, each from a counter and a key.
using CounterBasedGenerators = TypeList<gpucommon::rand::Philox4x32Generator, gpucommon::rand::ThreeFry4x64Generator>;
using AllGenerators = TypeList<gpucommon::rand::Philox4x32Generator, gpucommon::rand::ThreeFry4x64Generator,
                               gpucommon::rand::MRG32K3AGenerator>;

}  // namespace gpuruntime

/// Stands first in every random family: a generator outside the family's list is refused by name, at compile time.
#define GPURUNTIME_GENERATOR_FAMILY_TAKES(Family, G, List)                    \
  static_assert(::gpuruntime::detail::IsMember<G, ::gpuruntime::List>::value, \
                "gpuruntime::" #Family " has no member for this generator: it takes gpuruntime::" #List)
