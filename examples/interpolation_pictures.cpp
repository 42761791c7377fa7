// Draws what the methods of interpolation do, as two PNG files: one curve with its continuation on both sides, for each
// pair of methods, and a part of a photograph enlarged, by the nearest value (left) and by the linear one (right).
//
//   interpolation_pictures PHOTOGRAPH.png CURVES.png ENLARGED.png
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <exception>
#include <vector>

#include "support/png_image.hpp"

namespace {

using gpuruntime::InterpType;
using gpuruntime::recipes::DeviceArray;
using Colour = std::array<unsigned short, 3>;

constexpr Colour inside{40, 90, 170}, outside{200, 60, 40}, point{20, 20, 20}, frame{220, 220, 220};

void setSquare(examples::PngImage& image, long x, long y, long size, const Colour& colour) {
  for (long dy = 0; dy < size; ++dy) {
    for (long dx = 0; dx < size; ++dx) {
      const auto pixel = static_cast<unsigned long>((y + dy) * static_cast<long>(image.width) + x + dx);
      std::copy(colour.begin(), colour.end(), &image.samples[pixel * 3]);
    }
  }
}

/// One panel: the curve over the grid and beyond, and the points.
void drawCurve(examples::PngImage& image, long left, long top, long width, long height, InterpType inRange,
               InterpType outOfRange) {
  const std::vector<double> grid{1, 2, 3.5, 4, 5.5, 7}, values{2, 3.2, 1, 2.6, 3.4, 2.2};
  const auto columnOf = [=](double x) { return left + static_cast<long>((x + 1.5) / 11 * static_cast<double>(width)); };
  const auto rowOf = [=](double y) { return top + height - static_cast<long>(y / 4.5 * static_cast<double>(height)); };
  const unsigned long count = static_cast<unsigned long>(width) * 8;
  std::vector<double> queries(count), results(count);
  for (unsigned long i = 0; i < count; ++i) {
    queries[i] = -1.5 + 11 * static_cast<double>(i) / static_cast<double>(count);
  }
  const DeviceArray<double> points(grid), ofPoints(values), at(queries);
  DeviceArray<double> out(count);
  gpuruntime::Interp1dFull::Invoker<double, double, double>()(nullptr, out.data(), points.data(), ofPoints.data(),
                                                              at.data(), grid.size(), count, inRange, outOfRange, 0.5);
  out.copyTo(results.data(), count);

  for (long x = left; x < left + width; ++x) setSquare(image, x, top + height, 1, frame);
  for (unsigned long i = 0; i < count; ++i) {
    const bool isInside = queries[i] >= grid.front() && queries[i] <= grid.back();
    const long row = rowOf(results[i]);
    if (row > top && row < top + height) setSquare(image, columnOf(queries[i]), row, 2, isInside ? inside : outside);
  }
  for (unsigned long i = 0; i < grid.size(); ++i) {
    setSquare(image, columnOf(grid[i]) - 3, rowOf(values[i]) - 2, 6, point);
  }
}

examples::PngImage curves() {
  constexpr unsigned long width = 300, height = 160, gap = 12;
  examples::PngImage image{3 * width + 4 * gap, 2 * height + 3 * gap, 3, 8, {}};
  image.samples.assign(image.width * image.height * 3, 255);
  const InterpType methods[] = {gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeNearest,
                                gpuruntime::InterpTypeConstant};
  for (unsigned long row = 0; row < 2; ++row) {
    for (unsigned long column = 0; column < 3; ++column) {
      drawCurve(image, static_cast<long>(gap + column * (width + gap)), static_cast<long>(gap + row * (height + gap)),
                width, height, methods[row], methods[column]);
    }
  }
  return image;
}

/// A square of the photograph, `side` pixels wide, enlarged to `to` pixels by each method.
examples::PngImage enlarged(const examples::PngImage& photograph, unsigned long side, unsigned long to) {
  examples::PngImage image{2 * to + 12, to, 3, 8, {}};
  image.samples.assign(image.width * image.height * 3, 255);
  const unsigned long firstX = (photograph.width - side) / 2, firstY = (photograph.height - side) / 3;
  std::vector<double> queries(to), plane(side * side), result(to * to);
  for (unsigned long i = 0; i < to; ++i) {
    queries[i] = 1 + static_cast<double>(i) * static_cast<double>(side - 1) / static_cast<double>(to - 1);
  }
  // Both sides of the mesh are the same, and so are their bins; a side's stretch is a multiple of 16.
  const unsigned long stretch = (to + 15) / 16 * 16;
  const DeviceArray<double> at(queries);
  DeviceArray<long long> bins(2 * stretch);
  for (const unsigned long offset : {0UL, stretch}) {
    gpuruntime::IndexSearch_ColonGrid::Invoker<double>()(nullptr, bins.data(), offset, at.data(), side, to);
  }
  DeviceArray<double> out(to * to);
  for (unsigned int channel = 0; channel < 3; ++channel) {
    for (unsigned long i = 0; i < side * side; ++i) {
      const unsigned long x = firstX + i % side, y = firstY + i / side;
      plane[i] = photograph.samples[(y * photograph.width + x) * photograph.channels + channel];
    }
    const DeviceArray<double> values(plane);
    for (const InterpType method : {gpuruntime::InterpTypeNearest, gpuruntime::InterpTypeLinear}) {
      gpuruntime::Interp2d_CompactQuery_ColonGrid::Invoker<double, double>()(
          nullptr, out.data(), values.data(), at.data(), at.data(), bins.data(), {to, to}, {side, side}, 0.0, method,
          gpuruntime::InterpTypeNearest);
      out.copyTo(result.data(), result.size());
      const unsigned long left = method == gpuruntime::InterpTypeLinear ? to + 12 : 0;
      for (unsigned long i = 0; i < result.size(); ++i) {
        image.samples[((i / to) * image.width + left + i % to) * 3 + channel] =
            static_cast<unsigned short>(std::lround(result[i]));
      }
    }
  }
  return image;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: interpolation_pictures PHOTOGRAPH.png CURVES.png ENLARGED.png\n");
    return 2;
  }
  try {
    const examples::PngImage photograph = examples::readPng(argv[1]);
    if (photograph.channels < 3 || photograph.bitDepth != 8 || photograph.width < 48 || photograph.height < 48) {
      throw examples::FileError("the photograph is to be in colours of 8 bits, 48 pixels wide and high at least");
    }
    examples::writePng(argv[2], curves());
    examples::writePng(argv[3], enlarged(photograph, 48, 460));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "interpolation_pictures: %s\n", error.what());
    return 1;
  }
}
