#include "plot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace examples {
namespace {

constexpr long scale = 2;
constexpr Colour lines{0.87, 0.87, 0.87};

// From 0 at one end of an axis to 1 at the other.
double shareAlong(const Axis& axis, double value) {
  const double share = axis.isLogarithmic
                           ? std::log(std::max(value, 1e-300) / axis.from) / std::log(axis.to / axis.from)
                           : (value - axis.from) / (axis.to - axis.from);
  return std::clamp(share, 0.0, 1.0);
}

// Multiples of 1, 2 or 5 times a power of ten, `most` of them or fewer; 1, 2 and 5 of each power on a logarithmic axis.
std::vector<double> ticksOf(const Axis& axis, long most) {
  std::vector<double> ticks;
  if (axis.isLogarithmic) {
    for (double power = std::pow(10, std::floor(std::log10(axis.from))); power <= axis.to; power *= 10) {
      for (const double digit : {1, 2, 5}) {
        if (digit * power >= axis.from && digit * power <= axis.to) ticks.push_back(digit * power);
      }
    }
    return ticks;
  }
  const double least = (axis.to - axis.from) / static_cast<double>(std::max(most, 1L));
  const double power = std::pow(10, std::floor(std::log10(least)));
  double step = 10 * power;
  for (const double digit : {5, 2, 1}) {
    if (digit * power >= least) step = digit * power;
  }
  for (double i = std::ceil(axis.from / step - 1e-9); i * step <= axis.to + 1e-9 * step; ++i) ticks.push_back(i * step);
  return ticks;
}

std::string inWords(double value) {
  char text[32];
  if (std::abs(value) >= 1000 && std::fmod(value, 100) == 0) {
    std::snprintf(text, sizeof(text), "%gk", value / 1000);
  } else {
    // What is left of 3 * 0.1 - 0.3 is 0.
    std::snprintf(text, sizeof(text), "%g", std::abs(value) < 1e-12 ? 0 : value);
  }
  return text;
}

}  // namespace

Plot::Plot(PngImage& image, const Box& box, const std::string& title, Axis horizontal, Axis vertical)
    : image_(&image), horizontal_(std::move(horizontal)), vertical_(std::move(vertical)), inner_() {
  const long line = textHeight * scale, half = 4 * scale;
  // Room for "-0.25" beside the plot.
  inner_ = {box.x + line + 5 * textPitch * scale + 3 * scale, box.y + line + 3 * scale, 0, 0};
  inner_.width = box.x + box.width - 2 * textPitch * scale - inner_.x;
  inner_.height = box.y + box.height - 2 * line - 4 * scale - inner_.y;
  const long right = inner_.x + inner_.width, bottom = inner_.y + inner_.height;
  drawBox(image, inner_.x, inner_.y, inner_.width, inner_.height, white);

  for (const double tick : ticksOf(horizontal_, inner_.width / (8 * textPitch * scale))) {
    const long column = columnOf(tick);
    const std::string text = inWords(tick);
    drawLine(image, column, inner_.y, column, bottom - 1, lines);
    drawLine(image, column, bottom, column, bottom + 2 * scale, black);
    drawText(image, column - (textWidth(text, scale) - scale) / 2, bottom + 3 * scale, text, black, scale);
  }
  for (const double tick : ticksOf(vertical_, inner_.height / (2 * line))) {
    const long row = rowOf(tick);
    const std::string text = inWords(tick);
    drawLine(image, inner_.x, row, right - 1, row, lines);
    drawLine(image, inner_.x - 2 * scale, row, inner_.x, row, black);
    drawText(image, inner_.x - 3 * scale - textWidth(text, scale), row - half + scale / 2, text, black, scale);
  }
  for (const long column : {inner_.x, right}) drawLine(image, column, inner_.y, column, bottom, black);
  for (const long row : {inner_.y, bottom}) drawLine(image, inner_.x, row, right, row, black);
  drawText(image, inner_.x, box.y, title, black, scale);
  drawText(image, inner_.x + (inner_.width - textWidth(horizontal_.label, scale)) / 2, bottom + line + 4 * scale,
           horizontal_.label, black, scale);
  drawTextUpwards(image, box.x, inner_.y + (inner_.height + textWidth(vertical_.label, scale)) / 2, vertical_.label,
                  black, scale);
}

void Plot::drawCurve(const std::vector<double>& xs, const std::vector<double>& ys, const Colour& colour) {
  for (std::size_t i = 1; i < xs.size(); ++i) {
    for (long thick = 0; thick < 2; ++thick) {
      drawLine(*image_, columnOf(xs[i - 1]), rowOf(ys[i - 1]) - thick, columnOf(xs[i]), rowOf(ys[i]) - thick, colour);
    }
  }
}

void Plot::drawDense(double from, double step, const std::vector<double>& ys, const Colour& colour) {
  constexpr long none = std::numeric_limits<long>::max();
  long column = none, top = 0, bottom = 0, last = 0;
  const auto draw = [&] { drawBox(*image_, column, top, 1, bottom - top + 1, colour); };
  for (std::size_t i = 0; i < ys.size(); ++i) {
    const long next = columnOf(from + step * static_cast<double>(i)), row = rowOf(ys[i]);
    if (next != column) {
      if (column != none) draw();
      const long before = column == none ? row : last;
      column = next;
      top = bottom = before;
    }
    top = std::min(top, row);
    bottom = std::max(bottom, row);
    last = row;
  }
  if (column != none) draw();
}

long Plot::columnOf(double x) const {
  return inner_.x + std::lround(shareAlong(horizontal_, x) * static_cast<double>(inner_.width - 1));
}

long Plot::rowOf(double y) const {
  return inner_.y + std::lround((1 - shareAlong(vertical_, y)) * static_cast<double>(inner_.height - 1));
}

}  // namespace examples
