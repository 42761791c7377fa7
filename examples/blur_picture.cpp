// Blurs a picture as a lens out of focus does, by a disc of 41 by 41 taps: one pass for each column of the filter.
//
//   blur_picture OUTPUT.png [PICTURE.png]
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <vector>

#include "support/png_image.hpp"

namespace {

using gpuruntime::convolutioncommon::KernelTypeColumn;
using gpuruntime::recipes::DeviceArray;
using Sizes = std::vector<unsigned long>;

constexpr unsigned long side = 41, radius = side / 2;

std::vector<float> disc() {
  std::vector<float> filter(side * side);
  float sum = 0;
  for (unsigned long i = 0; i < filter.size(); ++i) {
    const double x = double(i % side) - double(radius), y = double(i / side) - double(radius);
    filter[i] = x * x + y * y <= 20.3 * 20.3 ? 1.0F : 0.0F;
    sum += filter[i];
  }
  for (float& tap : filter) tap /= sum;
  return filter;
}

// The middle part of the convolution: as large as the page, `radius` from the corner of all of it.
void convolve(DeviceArray<float>& out, const DeviceArray<float>& in, const DeviceArray<float>& filter, Sizes size) {
  // 32 taps and 9 extra ones: the largest member that is not above a line of 41.
  using Pass = gpuruntime::ConvolutionMatrix::Invoker<float, mpl_::int_<32>>;
  for (unsigned long column = 0; column < side; ++column) {
    gpuruntime::convn::OffsetsAndSzs pass{};
    pass.extraTaps = side - 32;
    pass.filterLineOffset = column * side;
    pass.crossShift = column;
    pass.outStart = {radius, radius};
    // The region is that of the input which, shifted, gives the section. What the shift takes beyond the page is 0.
    pass.regionBounds = {radius, column < radius ? radius - column : 0, size[0],
                         std::min(size[1], size[1] + radius - column)};
    pass.xExtent = size[0];
    pass.yExtent = size[1];
    pass.overwrite = column == 0;
    Pass()(nullptr, out.data(), in.data(), filter.data(), size, size, pass, 2, KernelTypeColumn);
  }
}

// The largest distance from a plain sum in double, over some pixels.
double largestError(const std::vector<float>& out, const std::vector<float>& in, const std::vector<float>& filter,
                    Sizes size) {
  double largest = 0;
  for (unsigned long at = 0; at < out.size(); at += 997) {
    double sum = 0;
    for (unsigned long i = 0; i < filter.size(); ++i) {
      const unsigned long x = at % size[0] + radius - i % side, y = at / size[0] + radius - i / side;  // May wrap.
      if (x < size[0] && y < size[1]) sum += double(filter[i]) * in[y * size[0] + x];
    }
    largest = std::max(largest, std::abs(sum - out[at]));
  }
  return largest;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: blur_picture OUTPUT.png [PICTURE.png]\n");
    return 2;
  }
  try {
    examples::PngImage image = examples::readPng(argc == 3 ? argv[2] : BLUR_PICTURE_SAMPLE);
    // A row of the picture is a column of the matrix.
    const Sizes size{image.width, image.height};
    const std::vector<float> filter = disc();
    DeviceArray<float> deviceFilter(filter.size()), in(size[0], size[1]), out(size[0], size[1]);
    deviceFilter.copyFrom(filter.data(), filter.size());
    std::vector<float> samples(size[0] * size[1]), blurred(samples.size());
    double error = 0;
    for (unsigned int channel = 0; channel < image.channels; ++channel) {
      for (unsigned long i = 0; i < samples.size(); ++i) samples[i] = image.samples[i * image.channels + channel];
      in.copyFrom(samples.data(), samples.size());
      convolve(out, in, deviceFilter, size);
      out.copyTo(blurred.data(), blurred.size());
      error = std::max(error, largestError(blurred, samples, filter, size) / image.largestSample());
      for (unsigned long i = 0; i < samples.size(); ++i) {
        const float value = std::min(std::round(blurred[i]), float(image.largestSample()));
        image.samples[i * image.channels + channel] = static_cast<unsigned short>(value);
      }
    }
    examples::writePng(argv[1], image);
    std::printf("%lu passes a channel, %s\n", side, error < 1e-5 ? "as the plain sum" : "not as the plain sum");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "blur_picture: %s\n", error.what());
    return 1;
  }
}
