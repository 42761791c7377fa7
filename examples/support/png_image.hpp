/// @file
/// PNG files as arrays of samples.
#pragma once

#include <string>
#include <vector>

#include "output_file.hpp"

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

/// Reads any PNG file, interlaced or not. A palette is expanded to RGB, grey of less than 8 bits to 8, and a
/// transparent colour to an alpha channel.
/// @throws FileError if the file can't be read, is no PNG, is damaged anywhere, or holds more than 2^26 pixels or a
/// side of more than 65535.
PngImage readPng(const std::string& path);

/// Writes a PNG file: it appears as an OutputFile does.
/// @throws FileError
void writePng(const std::string& path, const PngImage& image);

/// The same into a file that the caller publishes.
void writePng(OutputFile& file, const PngImage& image);

}  // namespace examples
