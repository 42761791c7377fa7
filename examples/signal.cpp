// A sound from file to file: freed of hum by recursive filters and of hiss by a long one, resampled, and plotted before
// and after.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/recipes.hpp>

#include "support/command_line.hpp"
#include "support/plot.hpp"
#include "support/step.hpp"
#include "support/wav_file.hpp"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using examples::Sound;
using examples::Step;
using examples::UsageError;
using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::View;

constexpr double pi = 3.14159265358979323846;
constexpr unsigned long lowPassTaps = 101;
constexpr unsigned long harmonics = 3;
constexpr double notchQuality = 10;
constexpr examples::Colour beforeColour{0.75, 0.3, 0.2}, afterColour{0.15, 0.35, 0.65};

const char* const usage =
    "usage: signal [--output FILE] [--picture FILE] [--hum HZ] [--cutoff HZ] [--rate HZ] [SOUND]\n"
    "  SOUND           a WAV file, mono or stereo; without it, a melody that ships with the example\n"
    "  --output FILE   where the cleaned sound goes, signal.wav unless given\n"
    "  --picture FILE  where the plots go, signal.png unless given\n"
    "  --hum HZ        frequency of the hum, taken away with its second and third harmonic, 50 unless given\n"
    "  --cutoff HZ     where the low-pass filter takes away half of the amplitude, 4000 unless given\n"
    "  --rate HZ       sampling rate of the result, 16000 unless given\n";

struct Options {
  std::string sound = SIGNAL_SAMPLE;
  std::string output = "signal.wav";
  std::string picture = "signal.png";
  double hum = 50;
  double cutoff = 4000;
  unsigned long rate = 16000;
};

// --- what the library does ---

// Channels on the device: one behind the other, each a column.
using Channels = DeviceArray<double>;

Channels transposed(const Channels& input) {
  Channels output(input.extent(1), input.extent(0));
  gpuruntime::Transpose::Invoker<double>()(nullptr, output.data(), input.data(), input.extent(0), input.extent(1));
  return output;
}

Channels channelsOf(const Sound& sound) {
  return transposed(Channels(sound.samples, sound.channels, sound.length()));
}

// Takes away one frequency by a notch of second order: the analogue filter (s^2 + 1) / (s^2 + s / Q + 1), made digital
// by the bilinear transform s = (1 / w) (1 - z) / (1 + z), with w chosen so that the notch comes to lie at the
// frequency.
void removeTone(Channels& channels, double frequency, unsigned long rate) {
  const double w = std::tan(pi * frequency / static_cast<double>(rate)), square = w * w;
  const DeviceArray<double> b({1 + square, 2 * (square - 1), 1 + square});
  const DeviceArray<double> a({1 + w / notchQuality + square, 2 * (square - 1), 1 - w / notchQuality + square});
  gpuruntime::recipes::filter<double>(nullptr, channels, b, a, channels, 0);
}

// A low-pass filter: the sinc of an ideal one, faded out by a Hamming window, with a sum of 1.
std::vector<double> lowPass(double cutoff, unsigned long rate) {
  std::vector<double> taps(lowPassTaps);
  double sum = 0;
  for (unsigned long i = 0; i < lowPassTaps; ++i) {
    const double t = static_cast<double>(i) - static_cast<double>(lowPassTaps / 2);
    const double x = 2 * pi * cutoff / static_cast<double>(rate) * t;
    const double window = 0.54 + 0.46 * std::cos(2 * pi * t / static_cast<double>(lowPassTaps - 1));
    sum += taps[i] = window * (x == 0 ? 1 : std::sin(x) / x);
  }
  for (double& tap : taps) tap /= sum;
  return taps;
}

Channels smoothed(const Channels& channels, const std::vector<double>& taps) {
  Channels result(channels.extent(0), channels.extent(1));
  const DeviceArray<double> filter(taps);
  gpuruntime::recipes::convolve<double>(nullptr, result, channels, filter, gpuruntime::recipes::Section::same);
  return result;
}

Channels resampled(const Channels& channels, unsigned long from, unsigned long to) {
  const unsigned long length = channels.extent(0), count = (length - 1) * to / from + 1;
  DeviceArray<double> places(count);
  gpuruntime::IntColon::Invoker<double>()(nullptr, count, places.data(), 1,
                                          static_cast<double>(from) / static_cast<double>(to));
  Channels result(count, channels.extent(1));
  // The last place may be rounded to beyond the last sample.
  const gpuruntime::recipes::InterpolationRules<double> rules{gpuruntime::InterpTypeLinear,
                                                              gpuruntime::InterpTypeNearest};
  for (unsigned long channel = 0; channel < channels.extent(1); ++channel) {
    gpuruntime::recipes::interpolate<double, double>(nullptr, View<double>(result.data() + channel * count, count), {},
                                                     View<const double>(channels.data() + channel * length, length),
                                                     {places}, gpuruntime::recipes::Queries::scattered, rules);
  }
  return result;
}

// --- what is measured and drawn, on the host ---

// The mean of the channels.
std::vector<double> mono(const Sound& sound) {
  std::vector<double> mean(sound.length());
  for (std::size_t i = 0; i < sound.samples.size(); ++i) {
    mean[i / sound.channels] += sound.samples[i] / static_cast<double>(sound.channels);
  }
  return mean;
}

// Level at a frequency in decibels: 0 is a sine of full scale. The mean of up to eight stretches of 60 periods, each
// faded in and out.
double levelAt(const std::vector<double>& samples, double rate, double frequency) {
  const auto length = std::min(samples.size(), static_cast<std::size_t>(std::ceil(60 * rate / frequency)));
  const std::size_t room = samples.size() - length, stretches = std::min<std::size_t>(8, samples.size() / length);
  double power = 0;
  for (std::size_t stretch = 0; stretch < stretches; ++stretch) {
    const std::size_t first = stretches == 1 ? room / 2 : room * stretch / (stretches - 1);
    std::complex<double> sum = 0, turn = 1;
    const std::complex<double> step = std::polar(1.0, -2 * pi * frequency / rate);
    const std::complex<double> slow = std::polar(1.0, 2 * pi / static_cast<double>(length));
    std::complex<double> fade = std::polar(1.0, pi / static_cast<double>(length));
    for (std::size_t i = 0; i < length; ++i, turn *= step, fade *= slow) {
      sum += samples[first + i] * (0.5 - 0.5 * fade.real()) * turn;
    }
    // A sine of amplitude A gives A / 2 times the sum of the window, which is half of its length.
    const double amplitude = 4 * std::abs(sum) / static_cast<double>(length);
    power += amplitude * amplitude / static_cast<double>(stretches);
  }
  return 10 * std::log10(std::max(power, 1e-30));
}

// `count` frequencies, each by the same factor above the one before.
std::vector<double> spread(double from, double to, unsigned long count) {
  std::vector<double> frequencies(count);
  for (unsigned long i = 0; i < count; ++i) {
    frequencies[i] = from * std::pow(to / from, static_cast<double>(i) / static_cast<double>(count - 1));
  }
  return frequencies;
}

double meanLevel(const std::vector<double>& samples, double rate, double from, double to) {
  double power = 0;
  const std::vector<double> frequencies = spread(from, to, 50);
  for (const double frequency : frequencies) power += std::pow(10, levelAt(samples, rate, frequency) / 10) / 50;
  return 10 * std::log10(power);
}

// Says how much of hum, hiss and the rest is left at the old rate.
void printLevels(const Sound& before, const Sound& after, const Options& options) {
  const std::vector<double> samples[] = {mono(before), mono(after)};
  const double rate = static_cast<double>(before.rate);
  const auto print = [&](const std::string& name, const auto& level) {
    const double was = level(samples[0]), is = level(samples[1]);
    std::printf("  %-36s %7.1f dB %7.1f dB   %+.1f dB\n", name.c_str(), was, is, is - was);
  };
  std::printf("Levels   0 dB is a sine of full scale      before      after\n");
  for (unsigned long harmonic = 1; harmonic <= harmonics; ++harmonic) {
    const double frequency = static_cast<double>(harmonic) * options.hum;
    char name[64];
    std::snprintf(name, sizeof(name), "hum, %g Hz", frequency);
    print(name, [&](const auto& s) { return levelAt(s, rate, frequency); });
  }
  const double from = 1.25 * options.cutoff, to = 0.48 * rate;
  char name[64];
  std::snprintf(name, sizeof(name), "between, %g to %g Hz", 5 * options.hum, 0.75 * options.cutoff);
  print(name, [&](const auto& s) { return meanLevel(s, rate, 5 * options.hum, 0.75 * options.cutoff); });
  if (from >= to) return;
  std::snprintf(name, sizeof(name), "hiss, %g to %g Hz", from, to);
  print(name, [&](const auto& s) { return meanLevel(s, rate, from, to); });
}

// The smallest of 0.1, 0.2, 0.5, 1, ... that is not exceeded.
double niceLimit(double value) {
  double limit = 0.1;
  for (const double factor : {2.0, 2.5, 2.0}) {
    if (value > limit) limit *= factor;
  }
  return std::max(limit, std::ceil(value));
}

examples::PngImage plotsOf(const Sound& before, const Sound& after) {
  constexpr long width = 640, height = 330, gap = 16;
  examples::PngImage image = examples::blankImage(2 * width + 3 * gap, 2 * height + 3 * gap, 3, 8, {0.96, 0.96, 0.96});
  double largest = 0;
  for (const Sound* sound : {&before, &after}) {
    for (const double sample : sound->samples) largest = std::max(largest, std::abs(sample));
  }
  const double limit = niceLimit(largest), seconds = std::max(before.seconds(), after.seconds());
  const double highest = static_cast<double>(std::max(before.rate, after.rate)) / 2;
  for (const Sound* sound : {&before, &after}) {
    const bool isBefore = sound == &before;
    const examples::Colour& colour = isBefore ? beforeColour : afterColour;
    const std::string name = isBefore ? "before, " : "after, ", rate = std::to_string(sound->rate) + " Hz: ";
    const std::vector<double> samples = mono(*sound);
    const long x = gap + (isBefore ? 0 : width + gap);
    examples::Plot wave(image, {x, gap, width, height}, name + rate + "waveform", {0, seconds, "time in seconds"},
                        {-limit, limit, "amplitude"});
    wave.drawDense(0, 1 / static_cast<double>(sound->rate), samples, colour);

    const std::vector<double> frequencies = spread(20, 0.49 * static_cast<double>(sound->rate), 400);
    std::vector<double> levels;
    for (const double frequency : frequencies) {
      levels.push_back(levelAt(samples, static_cast<double>(sound->rate), frequency));
    }
    examples::Plot spectrum(image, {x, height + 2 * gap, width, height}, name + rate + "spectrum",
                            {20, highest, "frequency in Hz", true}, {-120, 0, "level in dB"});
    spectrum.drawCurve(frequencies, levels, colour);
  }
  return image;
}

// --- one sound from end to end ---

Sound soundOf(const Channels& channels, const Sound& like, unsigned long rate) {
  return {rate, like.channels, like.format, transposed(channels).toHost()};
}

Sound load(const Options& options) {
  Step step("load");
  Sound sound = examples::readWav(options.sound);
  if (sound.length() < 2) {
    throw examples::FileError("cannot use " + examples::quoted(options.sound) + ": a single sample can't be resampled");
  }
  char text[128];
  std::snprintf(text, sizeof(text), "%.2f s, %s, %lu Hz, %s", sound.seconds(), sound.channels == 1 ? "mono" : "stereo",
                sound.rate, examples::nameOf(sound.format));
  step.finish(text);
  const auto require = [&](const char* option, double frequency, unsigned long rate, const char* whose) {
    if (frequency < 0.5 * static_cast<double>(rate)) return;
    char words[160];
    std::snprintf(words, sizeof(words), "%s: %g Hz is not below half the %s rate, %lu Hz", option, frequency, whose,
                  rate);
    throw UsageError(words);
  };
  require("--hum, its third harmonic", harmonics * options.hum, sound.rate, "sound's");
  require("--cutoff", options.cutoff, sound.rate, "sound's");
  require("--cutoff", options.cutoff, options.rate, "result's");
  return sound;
}

void process(const Options& options) {
  std::printf("Device   %s\nSound    %s\n", gpuruntime::recipes::deviceName().c_str(), options.sound.c_str());
  const Sound sound = load(options);
  examples::requireWritable(options.output, {options.sound});
  examples::requireWritable(options.picture, {options.sound});

  Channels channels = channelsOf(sound);
  Step hum("take away the hum");
  for (unsigned long harmonic = 1; harmonic <= harmonics; ++harmonic) {
    removeTone(channels, static_cast<double>(harmonic) * options.hum, sound.rate);
  }
  hum.finish(std::to_string(harmonics) + " recursive filters of second order");

  Step hiss("take away the hiss");
  const Channels clean = smoothed(channels, lowPass(options.cutoff, sound.rate));
  hiss.finish(std::to_string(lowPassTaps) + " taps");

  Step resample("resample");
  const Sound result = soundOf(resampled(clean, sound.rate, options.rate), sound, options.rate);
  resample.finish(std::to_string(sound.length()) + " to " + std::to_string(result.length()) + " samples");

  Step draw("plot before and after");
  const examples::PngImage picture = plotsOf(sound, result);
  draw.finish();

  Step save("save");
  examples::OutputFile soundFile(options.output), pictureFile(options.picture);
  const unsigned long clamped = examples::writeWav(soundFile, result);
  examples::writePng(pictureFile, picture);
  soundFile.complete();
  pictureFile.complete();
  soundFile.publish();
  pictureFile.publish();
  save.finish(clamped == 0 ? "" : std::to_string(clamped) + " samples beyond full scale were clamped");

  printLevels(sound, soundOf(clean, sound, sound.rate), options);
  std::printf("Written  %s and %s\n", options.output.c_str(), options.picture.c_str());
}

void run(const std::vector<std::string>& arguments) {
  Options options;
  std::string hum, cutoff, rate;
  const std::vector<std::string> sounds = examples::takeOptions(arguments,
                                                                {{"--output", &options.output},
                                                                 {"--picture", &options.picture},
                                                                 {"--hum", &hum},
                                                                 {"--cutoff", &cutoff},
                                                                 {"--rate", &rate}},
                                                                1);
  if (!sounds.empty()) options.sound = sounds[0];
  if (!hum.empty()) options.hum = examples::decimalNumber("--hum", hum, 1, 1000);
  if (!cutoff.empty()) options.cutoff = examples::decimalNumber("--cutoff", cutoff, 10, 1e6);
  if (!rate.empty()) options.rate = examples::wholeNumber("--rate", rate, 100, 1000000);
  if (options.output == options.picture) throw UsageError("--output and --picture name the same file");
  process(options);
}

}  // namespace

int main(int count, char** arguments) {
  return examples::runProgram("signal", usage, count, arguments, run);
}
