// Turns a picture by the library's kernels: reads a PNG, rotates and transposes its planes, dims it along a ramp,
// writes the results side by side, and tells how fast that was.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include "support/command_line.hpp"
#include "support/png_image.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using examples::PngImage;
using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::Stream;

constexpr float darkest = 0.35f;
constexpr float background = 0.9f;
constexpr std::size_t timedBytes = std::size_t{64} << 20;

struct Options {
  std::string image = TURN_PICTURE_SAMPLE;
  std::string output = "turned.png";
  bool noTiming = false;
};

const char* const usage =
    "usage: turn_picture [--output FILE] [--no-timing] [IMAGE]\n"
    "  IMAGE          the picture, a PNG file; without it, a photograph that ships with the example\n"
    "  --output FILE  where the result goes, turned.png unless given\n"
    "  --no-timing    write the result and measure nothing\n";

// --- from pixels to column-major pages and back ---

// A stack of column-major matrices, one for each channel of a picture: element (row, column) of a page stands at
// column * rows + row, as the library takes it.
template <class T>
struct Pages {
  std::vector<T> values;
  unsigned long rows;
  unsigned long columns;
  unsigned long count;

  T at(unsigned long row, unsigned long column, unsigned long page) const {
    return values[(page * columns + column) * rows + row];
  }
};

template <class T>
Pages<T> pagesOf(const PngImage& image) {
  Pages<T> pages{std::vector<T>(image.samples.size()), image.height, image.width, image.channels};
  const unsigned short* sample = image.samples.data();
  for (unsigned long row = 0; row < pages.rows; ++row) {
    for (unsigned long column = 0; column < pages.columns; ++column) {
      for (unsigned long page = 0; page < pages.count; ++page) {
        pages.values[(page * pages.columns + column) * pages.rows + row] = static_cast<T>(*sample++);
      }
    }
  }
  return pages;
}

// The picture `times` by `times` as one larger picture.
template <class T>
Pages<T> tiled(const Pages<T>& tile, unsigned long times) {
  Pages<T> wall{{}, tile.rows * times, tile.columns * times, tile.count};
  wall.values.reserve(tile.values.size() * times * times);
  for (unsigned long page = 0; page < wall.count; ++page) {
    for (unsigned long column = 0; column < wall.columns; ++column) {
      const auto first =
          tile.values.begin() + static_cast<std::ptrdiff_t>((page * tile.columns + column % tile.columns) * tile.rows);
      for (unsigned long i = 0; i < times; ++i) {
        wall.values.insert(wall.values.end(), first, first + static_cast<std::ptrdiff_t>(tile.rows));
      }
    }
  }
  return wall;
}

// --- what the library does ---

// The picture on the device, with room for the results.
template <class T>
class DevicePicture {
 public:
  explicit DevicePicture(const Pages<T>& pages)
      : rows_(pages.rows),
        columns_(pages.columns),
        count_(pages.count),
        input_(pages.values, rows_, columns_, count_),
        output_(columns_, rows_, count_) {}

  // All pages by a quarter turn clockwise, in one call.
  void rotate(CUstream_st* stream) {
    gpuruntime::Rot90::Invoker<T>()(stream, output_.data(), input_.data(), rows_, columns_, count_, true);
  }

  // A matrix a call.
  void transpose(CUstream_st* stream) {
    for (unsigned long page = 0; page < count_; ++page) {
      const unsigned long offset = page * rows_ * columns_;
      gpuruntime::Transpose::Invoker<T>()(stream, output_.data() + offset, input_.data() + offset, rows_, columns_);
    }
  }

  // For comparison: the same bytes, unturned.
  void copy(CUstream_st* stream) { output_.copyFrom(input_, stream); }

  std::size_t bytes() const { return input_.bytes(); }
  Pages<T> output(CUstream_st* stream) const { return {output_.toHost(stream), columns_, rows_, count_}; }

 private:
  unsigned long rows_;
  unsigned long columns_;
  unsigned long count_;
  DeviceArray<T> input_;
  DeviceArray<T> output_;
};

void fillRamp(DeviceArray<float>& ramp, CUstream_st* stream) {
  gpuruntime::Linspace::Invoker<float>()(stream, ramp.size(), ramp.data(), darkest, 1.0f);
}

// --- the sheet with the results ---

struct Panel {
  unsigned long x;
  unsigned long y;
  unsigned long width;
  unsigned long height;
};

// Original, rotated and transposed from left to right; under the original a band of it, dimmed along the ramp. Of a
// picture in landscape format the band fills what the taller panels beside it leave free.
struct Layout {
  explicit Layout(const PngImage& image) {
    const unsigned long width = image.width;
    const unsigned long height = image.height;
    const unsigned long gap = std::max(2UL, (width + height) / 40);
    unsigned long bandHeight = (height + 3) / 4;
    if (width > height + gap + bandHeight) bandHeight = std::min(height, width - height - gap);
    original = {gap, gap, width, height};
    band = {gap, height + 2 * gap, width, bandHeight};
    rotated = {width + 2 * gap, gap, height, width};
    transposed = {width + height + 3 * gap, gap, height, width};
    sheetWidth = width + 2 * height + 4 * gap;
    sheetHeight = 2 * gap + std::max(width, height + gap + bandHeight);
  }

  Panel original;
  Panel band;
  Panel rotated;
  Panel transposed;
  unsigned long sheetWidth;
  unsigned long sheetHeight;
};

PngImage blankSheet(const Layout& layout, const PngImage& like) {
  PngImage sheet;
  sheet.width = layout.sheetWidth;
  sheet.height = layout.sheetHeight;
  sheet.channels = like.channels;
  sheet.bitDepth = like.bitDepth;
  const unsigned short largest = like.largestSample();
  sheet.samples.assign(sheet.width * sheet.height * sheet.channels, static_cast<unsigned short>(largest * background));
  if (sheet.hasAlpha()) {
    for (std::size_t i = sheet.channels - 1; i < sheet.samples.size(); i += sheet.channels) sheet.samples[i] = largest;
  }
  return sheet;
}

// Draws value(row, column, page) for every sample of the panel.
template <class Value>
void draw(PngImage& sheet, const Panel& panel, const Value& value) {
  for (unsigned long row = 0; row < panel.height; ++row) {
    unsigned short* sample = &sheet.samples[((panel.y + row) * sheet.width + panel.x) * sheet.channels];
    for (unsigned long column = 0; column < panel.width; ++column) {
      for (unsigned long page = 0; page < sheet.channels; ++page) *sample++ = value(row, column, page);
    }
  }
}

template <class T>
PngImage makeSheet(const PngImage& image, const Pages<T>& pages, DevicePicture<T>& picture, Stream& stream) {
  const Layout layout(image);
  PngImage sheet = blankSheet(layout, image);
  const auto drawPages = [&sheet](const Panel& panel, const Pages<T>& source) {
    draw(sheet, panel, [&source](unsigned long row, unsigned long column, unsigned long page) {
      return source.at(row, column, page);
    });
  };
  drawPages(layout.original, pages);
  picture.rotate(stream);
  drawPages(layout.rotated, picture.output(stream));
  picture.transpose(stream);
  drawPages(layout.transposed, picture.output(stream));

  DeviceArray<float> rampOnDevice(image.width);
  fillRamp(rampOnDevice, stream);
  const std::vector<float> ramp = rampOnDevice.toHost(stream);
  const unsigned long firstRow = (image.height - layout.band.height) / 2;
  const unsigned long colors = image.channels - (image.hasAlpha() ? 1 : 0);
  draw(sheet, layout.band, [&](unsigned long row, unsigned long column, unsigned long page) {
    const T value = pages.at(firstRow + row, column, page);
    return page < colors ? static_cast<T>(std::lround(static_cast<float>(value) * ramp[column])) : value;
  });
  return sheet;
}

// --- how fast it was ---

template <class Work>
double medianSeconds(Stream& stream, const Work& work) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> seconds(15);
  work(stream);  // Not timed: the first run pays for what is set up once.
  stream.synchronise();
  for (double& time : seconds) {
    const Clock::time_point start = Clock::now();
    work(stream);
    stream.synchronise();
    time = std::chrono::duration<double>(Clock::now() - start).count();
  }
  std::nth_element(seconds.begin(), seconds.begin() + 7, seconds.end());
  return seconds[7];
}

struct Times {
  double copy;
  double rotate;
  double transpose;
  double ramp;
};

template <class T>
Times measure(DevicePicture<T>& picture, unsigned long rampLength, Stream& stream) {
  DeviceArray<float> ramp(rampLength);
  return {medianSeconds(stream, [&](CUstream_st* s) { picture.copy(s); }),
          medianSeconds(stream, [&](CUstream_st* s) { picture.rotate(s); }),
          medianSeconds(stream, [&](CUstream_st* s) { picture.transpose(s); }),
          medianSeconds(stream, [&](CUstream_st* s) { fillRamp(ramp, s); })};
}

std::string inWords(double seconds) {
  char text[32];
  std::snprintf(text, sizeof(text), seconds < 1e-3 ? "%.1f us" : "%.2f ms", seconds * (seconds < 1e-3 ? 1e6 : 1e3));
  return text;
}

void printRow(const char* name, double small, double large, double bytes, double copyRate) {
  const double rate = bytes / large;
  std::printf("  %-18s %12s %12s %8.1f GB/s %6.0f %%\n", name, inWords(small).c_str(), inWords(large).c_str(),
              rate / 1e9, 100 * rate / copyRate);
}

template <class T>
void printTimes(const Pages<T>& pages, DevicePicture<T>& picture, Stream& stream) {
  // What a small picture moves stays in the caches and says nothing about bandwidth, so it is laid out as a wall of
  // tiles.
  const double share = static_cast<double>(timedBytes) / static_cast<double>(picture.bytes());
  const auto times = std::max(1UL, static_cast<unsigned long>(std::ceil(std::sqrt(share))));
  const Times small = measure(picture, pages.columns, stream);
  const Pages<T> wall = tiled(pages, times);
  DevicePicture<T> large(wall);
  const unsigned long rampLength = large.bytes() / sizeof(float);
  const Times big = measure(large, rampLength, stream);

  const double moved = 2.0 * static_cast<double>(large.bytes());
  const double copyRate = moved / big.copy;
  const std::string copies = std::to_string(times);
  std::printf("\nMedian of 15 runs, on the picture and on %s x %s of it (%lu x %lu pixels, %.0f MB):\n\n",
              copies.c_str(), copies.c_str(), wall.columns, wall.rows, static_cast<double>(large.bytes()) / 1e6);
  std::printf("  %-18s %12s %12s %13s %8s\n", "", "picture", (copies + " x " + copies).c_str(), "bandwidth", "of copy");
  printRow("copy", small.copy, big.copy, moved, copyRate);
  printRow("Rot90, clockwise", small.rotate, big.rotate, moved, copyRate);
  printRow("Transpose", small.transpose, big.transpose, moved, copyRate);
  printRow("Linspace", small.ramp, big.ramp, static_cast<double>(rampLength * sizeof(float)), copyRate);
  std::printf("\nLinspace makes a row of the picture, and as many bytes as the large picture has; it only writes.\n");
}

// --- one picture from end to end ---

const char* colorName(const PngImage& image) {
  constexpr const char* names[] = {"grey", "grey with alpha", "RGB", "RGB with alpha"};
  return names[image.channels - 1];
}

template <class T>
void turn(const PngImage& image, const Options& options) {
  Stream stream;
  const Pages<T> pages = pagesOf<T>(image);
  DevicePicture<T> picture(pages);
  const PngImage sheet = makeSheet(image, pages, picture, stream);
  examples::writePng(options.output, sheet);

  std::printf("Device   %s\n", gpuruntime::recipes::deviceName().c_str());
  std::printf("Picture  %s: %lu x %lu pixels, %s, %u bits\n", options.image.c_str(), image.width, image.height,
              colorName(image), image.bitDepth);
  std::printf("Pages    %lu of %lu rows and %lu columns, %s\n", pages.count, pages.rows, pages.columns,
              sizeof(T) == 1 ? "unsigned char" : "unsigned short");
  std::printf("Result   %s: %lu x %lu pixels\n", options.output.c_str(), sheet.width, sheet.height);
  std::printf("         original | turned clockwise by Rot90 | mirrored at the diagonal by Transpose\n");
  std::printf("         below the original: a band of it, brightness from %.2f to 1 by Linspace\n", darkest);
  if (!options.noTiming) printTimes(pages, picture, stream);
}

void run(const std::vector<std::string>& arguments) {
  Options options;
  const std::vector<std::string> images =
      examples::takeOptions(arguments, {{"--output", &options.output}, {"--no-timing", &options.noTiming}}, 1);
  if (!images.empty()) options.image = images[0];
  const PngImage image = examples::readPng(options.image);
  examples::requireWritable(options.output, {options.image});
  if (image.bitDepth == 8) {
    turn<unsigned char>(image, options);
  } else {
    turn<unsigned short>(image, options);
  }
}

}  // namespace

int main(int count, char** arguments) {
  return examples::runProgram("turn_picture", usage, count, arguments, run);
}
