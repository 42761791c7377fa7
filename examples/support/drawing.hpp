/// @file
/// Boxes, lines and text in a picture.
#pragma once

#include <array>
#include <string>

#include "png_image.hpp"

namespace examples {

/// Red, green and blue from 0 to 1. A grey picture takes their brightness.
using Colour = std::array<double, 3>;

constexpr Colour black{0, 0, 0}, white{1, 1, 1};

/// Height of a line of text at scale 1, with a row between lines; a character is textPitch wide, its space included.
constexpr long textHeight = 9, textPitch = 6;

/// A picture of one colour; an alpha channel is opaque.
PngImage blankImage(unsigned long width, unsigned long height, unsigned int channels, unsigned int bitDepth,
                    const Colour& colour);

/// All of these leave out what lies beyond the picture.
void drawBox(PngImage& image, long x, long y, long width, long height, const Colour& colour);
void drawLine(PngImage& image, long fromX, long fromY, long toX, long toY, const Colour& colour);

/// Another picture of the same kind of samples, with its upper left corner at (x, y).
void drawImage(PngImage& image, long x, long y, const PngImage& other);

/// ASCII text whose upper left corner is (x, y), each dot `scale` pixels wide and high. Other characters become '?'.
void drawText(PngImage& image, long x, long y, const std::string& text, const Colour& colour, long scale = 1);

/// The same turned counter-clockwise: it runs upwards from (x, y), its lower left corner.
void drawTextUpwards(PngImage& image, long x, long y, const std::string& text, const Colour& colour, long scale = 1);

/// Width of a text in pixels.
long textWidth(const std::string& text, long scale = 1);

}  // namespace examples
