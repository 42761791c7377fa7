// A photograph from file to file: blurred twice, its edges found, resized and rotated, all side by side on one sheet.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/recipes.hpp>

#include "support/command_line.hpp"
#include "support/drawing.hpp"
#include "support/png_image.hpp"
#include "support/step.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using examples::PngImage;
using examples::Step;
using examples::UsageError;
using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::Extents;
using gpuruntime::recipes::Section;
using gpuruntime::recipes::Subscript;
using gpuruntime::recipes::View;

constexpr unsigned long longTaps = 101;
constexpr double longSigma = 17, squareSigma = 2;
constexpr examples::Colour edgeColour{1, 0.75, 0.1};

const char* const usage =
    "usage: photograph [--output FILE] [--size WIDTHxHEIGHT] [--threshold PERCENT] [IMAGE]\n"
    "  IMAGE                the picture, a PNG file; without it, a photograph that ships with the example\n"
    "  --output FILE        where the sheet goes, photograph.png unless given\n"
    "  --size WIDTHxHEIGHT  to what size the picture is resized, 1.5 times its own unless given\n"
    "  --threshold PERCENT  of the steepest brightness, from which on a pixel is an edge, 25 unless given\n";

struct Options {
  std::string image = PHOTOGRAPH_SAMPLE;
  std::string output = "photograph.png";
  unsigned long width = 0;
  unsigned long height = 0;
  double threshold = 0.25;
};

// --- between pictures and pages ---

// A picture on the device: rows x columns x channels, column-major, so that each channel is a matrix.
using Pages = DeviceArray<float>;

// The dimensions of an array in reverse.
Pages reversed(const Pages& array) {
  Pages result(array.extent(2), array.extent(1), array.extent(0));
  const unsigned long from[] = {array.extent(0), array.extent(1), array.extent(2)};
  const unsigned long to[] = {from[2], from[1], from[0]}, order[] = {3, 2, 1};
  gpuruntime::Permute::Invoker<float>()(nullptr, result.data(), 3, to, array.data(), 3, from, 3, order);
  return result;
}

// The samples of a file, channel by channel and row by row, are an array of channels x columns x rows.
Pages pagesOf(const PngImage& image) {
  const DeviceArray<unsigned short> samples(image.samples, image.channels, image.width, image.height);
  Pages interleaved(image.channels, image.width, image.height);
  gpuruntime::CastToReal::Invoker<float, unsigned short>()(nullptr, samples.size(), interleaved.data(), samples.data());
  return reversed(interleaved);
}

// The cast rounds, and clamps to what an integer of T holds.
template <class T>
std::vector<unsigned short> samplesAs(const Pages& pages) {
  const Pages interleaved = reversed(pages);
  DeviceArray<T> samples(pages.size());
  gpuruntime::CastToReal::Invoker<T, float>()(nullptr, samples.size(), samples.data(), interleaved.data());
  const std::vector<T> host = samples.toHost();
  return std::vector<unsigned short>(host.begin(), host.end());
}

PngImage imageOf(const Pages& pages, unsigned int bitDepth) {
  return {pages.extent(1), pages.extent(0), static_cast<unsigned int>(pages.extent(2)), bitDepth,
          bitDepth == 8 ? samplesAs<unsigned char>(pages) : samplesAs<unsigned short>(pages)};
}

// --- what the library does ---

// The colours of a picture, without its alpha channel.
View<const float> coloursOf(const Pages& pages) {
  const unsigned long channels = pages.extent(2);
  return View<const float>(pages.data(), {pages.extent(0), pages.extent(1), channels - (channels % 2 == 0 ? 1 : 0)});
}

// As indices: 1 repeated, 1 to n, n repeated.
DeviceArray<double> withMargins(unsigned long n, unsigned long margin) {
  std::vector<double> indices(n + 2 * margin);
  for (unsigned long i = 0; i < indices.size(); ++i) {
    indices[i] = static_cast<double>(std::clamp(i, margin, margin + n - 1) - margin + 1);
  }
  return DeviceArray<double>(indices);
}

// Convolves each page with a filter of odd sides. The picture's border is repeated beyond it: were it 0 there, the
// result would darken towards the border.
Pages filtered(View<const float> pages, const std::vector<float>& taps, unsigned long rows, unsigned long columns) {
  const Extents size = pages.extents();
  const DeviceArray<float> filter(taps, rows, columns);
  Pages wider(size[0] + rows - 1, size[1] + columns - 1, size[2]), result(size[0], size[1], size[2]);
  const DeviceArray<double> rowsTaken = withMargins(size[0], rows / 2);
  const DeviceArray<double> columnsTaken = withMargins(size[1], columns / 2);
  gpuruntime::recipes::gather<float>(nullptr, wider, pages, {rowsTaken, columnsTaken, Subscript::all()});
  gpuruntime::recipes::convolve<float>(nullptr, result, wider, filter, Section::valid);
  return result;
}

// A Gaussian of `count` taps with a sum of 1.
std::vector<float> gaussian(unsigned long count, double sigma) {
  std::vector<double> taps(count);
  double sum = 0;
  for (unsigned long i = 0; i < count; ++i) {
    const double distance = static_cast<double>(i) - static_cast<double>(count / 2);
    sum += taps[i] = std::exp(-distance * distance / (2 * sigma * sigma));
  }
  std::vector<float> result;
  for (const double tap : taps) result.push_back(static_cast<float>(tap / sum));
  return result;
}

// The colours of one array with the alpha channel of another.
Pages withAlpha(const Pages& colours, const Pages& pages) {
  Pages result(pages.extent(0), pages.extent(1), pages.extent(2));
  const std::size_t more = result.bytes() - colours.bytes();
  gpuruntime::recipes::copyOnDevice(result.data(), colours.data(), colours.bytes());
  gpuruntime::recipes::copyOnDevice(result.data() + colours.size(), pages.data() + colours.size(), more);
  return result;
}

Pages blurredBySquare(const Pages& pages) {
  const std::vector<float> line = gaussian(9, squareSigma);
  std::vector<float> square;
  for (const float column : line) {
    for (const float row : line) square.push_back(row * column);
  }
  return withAlpha(filtered(coloursOf(pages), square, 9, 9), pages);
}

Pages blurredByLines(const Pages& pages) {
  const std::vector<float> line = gaussian(longTaps, longSigma);
  const Pages byColumns = filtered(coloursOf(pages), line, longTaps, 1);
  return withAlpha(filtered(byColumns, line, 1, longTaps), pages);
}

// How steep the brightness is at each pixel.
DeviceArray<float> steepness(const Pages& pages) {
  // A filter along the channels weighs them; as convolution goes, its last tap is that of the first channel.
  const View<const float> colours = coloursOf(pages);
  const Extents size = colours.extents();
  const DeviceArray<float> weights = size[2] == 1 ? DeviceArray<float>(std::vector<float>{1}, 1, 1, 1)
                                                  : DeviceArray<float>({0.114f, 0.587f, 0.299f}, 1, 1, 3);
  Pages brightness(size[0], size[1], 1);
  gpuruntime::recipes::convolve<float>(nullptr, brightness, colours, weights, Section::valid);

  const std::vector<float> down{1, 0, -1, 2, 0, -2, 1, 0, -1}, right{1, 2, 1, 0, 0, 0, -1, -2, -1};
  const Pages byRow = filtered(brightness, down, 3, 3), byColumn = filtered(brightness, right, 3, 3);
  DeviceArray<float2> slopes(brightness.size());
  gpuruntime::ComplexifyPtrPtr::Invoker<float>()(nullptr, slopes.data(), byRow.data(), byColumn.data(), slopes.size());
  DeviceArray<float> result(size[0], size[1]);
  gpuruntime::Abs::Invoker<float2>()(nullptr, result.data(), slopes.data(), slopes.size());
  return result;
}

// The positions, from 1, at which an array is at least `share` of its largest element.
DeviceArray<double> positionsFrom(const DeviceArray<float>& array, double share) {
  DeviceArray<float> largest(1);
  DeviceArray<double> position(1);
  gpuruntime::recipes::maximum<float>(nullptr, largest, position, View<const float>(array.data(), array.size()));
  const float threshold = static_cast<float>(share) * largest.toHost()[0];
  if (threshold <= 0) return DeviceArray<double>(0);

  // In units of twice the threshold, what is below it rounds to 0.
  DeviceArray<float> scaled(array.size());
  scaled.copyFrom(array);
  gpuruntime::ScaleInplace::Invoker<float>()(nullptr, scaled.data(), 2 * threshold, scaled.size());
  DeviceArray<unsigned char> steps(array.size());
  gpuruntime::CastToReal::Invoker<unsigned char, float>()(nullptr, steps.size(), steps.data(), scaled.data());
  const gpuruntime::recipes::NonZeros<unsigned char> found(nullptr, steps);
  DeviceArray<double> positions(found.count());
  found.list(positions);
  return positions;
}

// The picture at a third of its brightness, with bright pixels at these positions.
Pages withEdges(const Pages& pages, const DeviceArray<double>& positions, float largest) {
  Pages result(pages.extent(0), pages.extent(1), pages.extent(2));
  result.copyFrom(pages);
  const View<const float> colours = coloursOf(pages);
  gpuruntime::ScaleInplace::Invoker<float>()(nullptr, result.data(), 3, colours.size());
  for (unsigned long page = 0; page < colours.extent(2); ++page) {
    const double share = colours.extent(2) == 1 ? 1 : edgeColour[page];
    const unsigned long pixels = pages.extent(0) * pages.extent(1);
    gpuruntime::recipes::assign<float>(nullptr, View<float>(result.data() + page * pixels, pixels),
                                       std::round(static_cast<float>(share) * largest), {positions});
  }
  return result;
}

// Where the middles of `count` pixels lie among those of `n`, which are at 1 to n.
DeviceArray<float> middles(unsigned long count, unsigned long n) {
  const float half = static_cast<float>(n) / static_cast<float>(count) / 2;
  DeviceArray<float> result(count);
  const float last = count == 1 ? 0.5f + half : static_cast<float>(n) + 0.5f - half;
  gpuruntime::Linspace::Invoker<float>()(nullptr, count, result.data(), 0.5f + half, last);
  return result;
}

Pages resized(const Pages& pages, unsigned long width, unsigned long height) {
  const unsigned long rows = pages.extent(0), columns = pages.extent(1);
  const DeviceArray<float> atRows = middles(height, rows), atColumns = middles(width, columns);
  Pages result(height, width, pages.extent(2));
  // Outside of the pixels' middles the border goes on.
  const gpuruntime::recipes::InterpolationRules<float> rules{gpuruntime::InterpTypeLinear,
                                                             gpuruntime::InterpTypeNearest};
  for (unsigned long page = 0; page < pages.extent(2); ++page) {
    gpuruntime::recipes::interpolate<float, float>(
        nullptr, View<float>(result.data() + page * height * width, {height, width}), {},
        View<const float>(pages.data() + page * rows * columns, {rows, columns}), {atRows, atColumns},
        gpuruntime::recipes::Queries::mesh, rules);
  }
  return result;
}

Pages rotated(const Pages& pages) {
  Pages result(pages.extent(1), pages.extent(0), pages.extent(2));
  gpuruntime::Rot90::Invoker<float>()(nullptr, result.data(), pages.data(), pages.extent(0), pages.extent(1),
                                      pages.extent(2), true);
  return result;
}

// --- the sheet ---

struct Panel {
  std::string label;
  PngImage image;
  long x = 0, y = 0;  // Of its upper left corner; the label stands above.
};

PngImage sheetOf(std::vector<Panel>& panels, unsigned long perRow) {
  const PngImage& first = panels.front().image;
  const long gap = std::max(6L, static_cast<long>(first.width + first.height) / 50);
  const long scale = std::max(1L, static_cast<long>(first.width) / 220);
  long width = 0, y = gap;
  for (std::size_t row = 0; row < panels.size(); row += perRow) {
    long x = gap, height = 0;
    for (std::size_t i = row; i < std::min<std::size_t>(row + perRow, panels.size()); ++i) {
      panels[i].x = x;
      panels[i].y = y + (examples::textHeight + 2) * scale;
      x += std::max(static_cast<long>(panels[i].image.width), examples::textWidth(panels[i].label, scale)) + gap;
      height = std::max(height, static_cast<long>(panels[i].image.height));
    }
    width = std::max(width, x);
    y += (examples::textHeight + 2) * scale + height + gap;
  }
  PngImage sheet = examples::blankImage(static_cast<unsigned long>(width), static_cast<unsigned long>(y),
                                        first.channels, first.bitDepth, {0.95, 0.95, 0.95});
  for (const Panel& panel : panels) {
    examples::drawText(sheet, panel.x, panel.y - (examples::textHeight + 2) * scale, panel.label, examples::black,
                       scale);
    examples::drawImage(sheet, panel.x, panel.y, panel.image);
  }
  return sheet;
}

// --- one photograph from end to end ---

PngImage load(const Options& options) {
  Step step("load");
  PngImage image = examples::readPng(options.image);
  if (image.width < 2 || image.height < 2) {
    throw examples::FileError("cannot use " + examples::quoted(options.image) + ": it has " +
                              std::to_string(image.width) + " x " + std::to_string(image.height) +
                              " pixels, and 2 x 2 are the least");
  }
  constexpr const char* kinds[] = {"grey", "grey with alpha", "RGB", "RGB with alpha"};
  step.finish(std::to_string(image.width) + " x " + std::to_string(image.height) + ", " + kinds[image.channels - 1] +
              ", " + std::to_string(image.bitDepth) + " bits");
  return image;
}

void process(const Options& options) {
  std::printf("Device   %s\nPicture  %s\n", gpuruntime::recipes::deviceName().c_str(), options.image.c_str());
  const PngImage image = load(options);
  examples::requireWritable(options.output, {options.image});
  std::vector<Panel> panels;
  const auto show = [&](const std::string& label, const Pages& pages) {
    panels.push_back({label, imageOf(pages, image.bitDepth)});
  };

  Step cast("cast to float, by channel");
  const Pages pages = pagesOf(image);
  cast.finish(std::to_string(pages.extent(2)) + " pages");
  show("original", pages);

  Step square("blur with 9 x 9 taps");
  const Pages soft = blurredBySquare(pages);
  square.finish();
  show("blurred, 9 x 9", soft);

  Step lines("blur with 101 x 1, then 1 x 101 taps");
  const Pages softer = blurredByLines(pages);
  lines.finish();
  show("blurred, 101 x 101", softer);

  Step edge("edges by slope, threshold and find");
  const DeviceArray<double> edges = positionsFrom(steepness(soft), options.threshold);
  const std::string count = std::to_string(edges.size()) + " edge pixels";
  const Pages marked = withEdges(pages, edges, image.largestSample());
  edge.finish(count);
  show(count, marked);

  const unsigned long width = options.width != 0 ? options.width : image.width * 3 / 2;
  const unsigned long height = options.height != 0 ? options.height : image.height * 3 / 2;
  const std::string size = std::to_string(width) + " x " + std::to_string(height);
  Step resize("resize by interpolation");
  const Pages larger = resized(pages, width, height);
  resize.finish(size);
  show("resized to " + size, larger);

  Step rotation("rotate");
  const Pages turned = rotated(pages);
  rotation.finish();
  show("rotated", turned);

  Step save("draw the sheet and save it");
  const PngImage sheet = sheetOf(panels, 3);
  examples::writePng(options.output, sheet);
  save.finish(std::to_string(sheet.width) + " x " + std::to_string(sheet.height));
  std::printf("Panels   on the sheet, by upper left corner and size:\n");
  for (const Panel& panel : panels) {
    std::printf("  %-36s %5ld,%5ld  %5lu x %lu\n", panel.label.c_str(), panel.x, panel.y, panel.image.width,
                panel.image.height);
  }
  std::printf("Written  %s\n", options.output.c_str());
}

void run(const std::vector<std::string>& arguments) {
  Options options;
  std::string size, threshold;
  const std::vector<std::string> images = examples::takeOptions(
      arguments, {{"--output", &options.output}, {"--size", &size}, {"--threshold", &threshold}}, 1);
  if (!images.empty()) options.image = images[0];
  if (!size.empty()) {
    const std::size_t x = size.find('x');
    if (x == std::string::npos) throw UsageError("--size takes WIDTHxHEIGHT, such as 640x480, not '" + size + "'");
    options.width = examples::wholeNumber("the width of --size", size.substr(0, x), 1, 16384);
    options.height = examples::wholeNumber("the height of --size", size.substr(x + 1), 1, 16384);
  }
  if (!threshold.empty()) options.threshold = examples::decimalNumber("--threshold", threshold, 0.1, 100) / 100;
  process(options);
}

}  // namespace

int main(int count, char** arguments) {
  return examples::runProgram("photograph", usage, count, arguments, run);
}
