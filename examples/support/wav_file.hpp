/// @file
/// WAV files as arrays of samples.
#pragma once

#include <string>
#include <vector>

#include "output_file.hpp"

namespace examples {

/// How a WAV file stores a sample.
enum class SampleFormat { integer8, integer16, integer24, integer32, float32 };

/// "16-bit integers" and the like.
const char* nameOf(SampleFormat format);

/// A sound: the samples of a moment side by side, one a channel; full scale is -1 to 1.
struct Sound {
  unsigned long rate = 0;  ///< Moments a second.
  unsigned long channels = 0;
  SampleFormat format = SampleFormat::integer16;
  std::vector<double> samples;

  unsigned long length() const { return samples.size() / channels; }
  double seconds() const { return static_cast<double>(length()) / static_cast<double>(rate); }
};

/// Reads a WAV file of integers of 8, 16, 24 or 32 bits or of floats of 32 bits, mono or stereo.
/// @throws FileError if the file can't be read, is no WAV file, is damaged, holds nothing, or holds something else.
Sound readWav(const std::string& path);

/// Writes a WAV file in the sound's format, and returns how many samples were beyond full scale, and clamped. The
/// caller publishes the file.
/// @throws FileError, also if the sound is too long for the format.
unsigned long writeWav(OutputFile& file, const Sound& sound);

}  // namespace examples
