// Draws the histogram of standard normal values as a PNG file, with the density of the normal distribution behind it:
// above by pairs (Box-Muller), below by inversion, each from a generator of its own.
//
//   normal_histogram FILE.png
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <cmath>
#include <cstdio>
#include <exception>
#include <vector>

#include "support/png_image.hpp"

namespace {

using gpuruntime::recipes::DeviceArray;

constexpr unsigned long count = 1UL << 24;
constexpr unsigned long width = 900, panel = 300, gap = 20;
constexpr double widest = 4.5;

std::vector<double> densities(const DeviceArray<double>& values) {
  std::vector<double> host(count);
  values.copyTo(host.data(), count);
  const double column = 2 * widest / width;
  std::vector<double> density(width);
  for (const double value : host) {
    const double place = (value + widest) / column;
    if (place >= 0 && place < width) density[static_cast<unsigned long>(place)] += 1 / (column * count);
  }
  return density;
}

void draw(examples::PngImage& image, unsigned long top, const std::vector<double>& density) {
  const auto set = [&](unsigned long x, unsigned long y, unsigned short red, unsigned short green,
                       unsigned short blue) {
    unsigned short* pixel = &image.samples[((top + y) * width + x) * 3];
    pixel[0] = red;
    pixel[1] = green;
    pixel[2] = blue;
  };
  const auto heightOf = [](double value) { return static_cast<unsigned long>(value / 0.42 * panel); };
  for (unsigned long x = 0; x < width; ++x) {
    const unsigned long bar = heightOf(density[x]);
    for (unsigned long y = 0; y < bar && y < panel; ++y) set(x, panel - 1 - y, 130, 170, 215);
    const double value = (static_cast<double>(x) + 0.5) / width * 2 * widest - widest;
    const unsigned long curve = heightOf(std::exp(-value * value / 2) / std::sqrt(2 * 3.141592653589793));
    for (unsigned long y = curve; y < curve + 2; ++y) set(x, panel - 1 - y, 200, 60, 40);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: normal_histogram FILE.png\n");
    return 2;
  }
  try {
    examples::PngImage image{width, 2 * panel + gap, 3, 8, {}};
    image.samples.assign(image.width * image.height * 3, 255);
    DeviceArray<double> values(count);

    unsigned int philox[7] = {2026, 11, 0, 0, 0, 0, 0};
    gpuruntime::RandNBoxMuller<gpucommon::rand::Philox4x32Generator>::Invoker<double>()(nullptr, values.data(), philox,
                                                                                        count);
    draw(image, 0, densities(values));

    unsigned int mrg[6] = {12345, 12345, 12345, 12345, 12345, 12345};
    gpuruntime::RandNInversion<gpucommon::rand::MRG32K3AGenerator>::Invoker<double>()(nullptr, values.data(), mrg,
                                                                                      count);
    draw(image, panel + gap, densities(values));
    examples::writePng(argv[1], image);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "normal_histogram: %s\n", error.what());
    return 1;
  }
}
