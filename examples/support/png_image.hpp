/// @file
/// PNG files as arrays of samples.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace examples {

/// A picture as it stands in a PNG file: rows from top to bottom, pixels from left to right, the channels of a pixel
/// side by side.
struct PngImage {
  unsigned long width = 0;
  unsigned long height = 0;
  unsigned int channels = 0;  ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGB and alpha.
  unsigned int bitDepth = 0;  ///< 8 or 16.
  std::vector<unsigned short> samples;

  bool hasAlpha() const { return channels % 2 == 0; }
  unsigned short largestSample() const { return bitDepth == 8 ? 0xFF : 0xFFFF; }
};

/// What went wrong with a file, in one line.
class PngError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads any PNG file, interlaced or not. A palette is expanded to RGB, grey of less than 8 bits to 8, and a
/// transparent colour to an alpha channel.
/// @throws PngError if the file can't be read, is no PNG, is damaged anywhere, or holds more than 2^26 pixels or a side
/// of more than 65535.
PngImage readPng(const std::string& path);

/// Writes a PNG file. It appears under its name when it is complete, and replaces a file that was there; on failure
/// nothing is left, and a file that was there stays.
/// @throws PngError
void writePng(const std::string& path, const PngImage& image);

}  // namespace examples
