/// @file
/// Plots with axes, ticks and labels.
#pragma once

#include <string>
#include <vector>

#include "drawing.hpp"

namespace examples {

struct Axis {
  double from = 0;
  double to = 1;
  std::string label;
  bool isLogarithmic = false;  ///< Both ends are then above 0.
};

/// A place in a picture.
struct Box {
  long x, y, width, height;
};

/// A plot in a box of a picture, its title, ticks and labels included. What lies beyond the axes is drawn at their
/// ends.
class Plot {
 public:
  /// Draws all but the curves.
  Plot(PngImage& image, const Box& box, const std::string& title, Axis horizontal, Axis vertical);

  /// Lines from point to point.
  void drawCurve(const std::vector<double>& xs, const std::vector<double>& ys, const Colour& colour);

  /// Values at from, from + step, ...: from the smallest to the largest within each column of pixels, joined with the
  /// column before.
  void drawDense(double from, double step, const std::vector<double>& ys, const Colour& colour);

 private:
  long columnOf(double x) const;
  long rowOf(double y) const;

  PngImage* image_;
  Axis horizontal_;
  Axis vertical_;
  Box inner_;
};

}  // namespace examples
