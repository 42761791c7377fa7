#include "wav_file.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

namespace examples {
namespace {

// How the formats stand in a file: their code, and the bytes of a sample.
struct Stored {
  SampleFormat format;
  unsigned int code;
  unsigned int bytes;
  const char* name;
};
constexpr unsigned int codeOfIntegers = 1, codeOfFloats = 3, codeInExtension = 0xFFFE;
constexpr Stored storedFormats[] = {{SampleFormat::integer8, codeOfIntegers, 1, "8-bit integers"},
                                    {SampleFormat::integer16, codeOfIntegers, 2, "16-bit integers"},
                                    {SampleFormat::integer24, codeOfIntegers, 3, "24-bit integers"},
                                    {SampleFormat::integer32, codeOfIntegers, 4, "32-bit integers"},
                                    {SampleFormat::float32, codeOfFloats, 4, "32-bit floats"}};

const Stored& storedAs(SampleFormat format) {
  return storedFormats[static_cast<std::size_t>(format)];
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Reads chunk by chunk. All numbers have their low byte first.
class Reader {
 public:
  explicit Reader(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
    if (file_ == nullptr) fail(std::strerror(errno));
  }

  // The next `count` bytes; fewer only if the file ends.
  std::vector<unsigned char> take(std::size_t count) {
    std::vector<unsigned char> bytes;
    // In pieces: a damaged length may ask for much more than there is.
    while (bytes.size() < count) {
      const std::size_t before = bytes.size(), piece = std::min<std::size_t>(count - before, 1U << 24);
      bytes.resize(before + piece);
      const std::size_t got = std::fread(bytes.data() + before, 1, piece, file_.get());
      bytes.resize(before + got);
      if (std::ferror(file_.get()) != 0) fail(std::strerror(errno));
      if (got != piece) break;
    }
    return bytes;
  }

  // The same, but all of them have to be there.
  std::vector<unsigned char> require(std::size_t count) {
    std::vector<unsigned char> bytes = take(count);
    if (bytes.size() != count) fail("damaged WAV file: it ends too early");
    return bytes;
  }

  [[noreturn]] void fail(const std::string& why) const { throw FileError("cannot read " + quoted(path_) + ": " + why); }

 private:
  std::string path_;
  std::unique_ptr<std::FILE, CloseFile> file_;
};

std::uint32_t numberAt(const unsigned char* bytes, unsigned int count) {
  std::uint32_t number = 0;
  for (unsigned int i = 0; i < count; ++i) number |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
  return number;
}

bool isNamed(const unsigned char* bytes, const char* name) {
  return std::memcmp(bytes, name, 4) == 0;
}

// What a format chunk says; the samples are still to come.
Sound formatOf(const std::vector<unsigned char>& chunk, const Reader& reader) {
  if (chunk.size() < 16) reader.fail("damaged WAV file: its format is cut off");
  Sound sound;
  unsigned int code = numberAt(&chunk[0], 2);
  sound.channels = numberAt(&chunk[2], 2);
  sound.rate = numberAt(&chunk[4], 4);
  const unsigned int perMoment = numberAt(&chunk[12], 2), bits = numberAt(&chunk[14], 2);
  if (code == codeInExtension && chunk.size() >= 40) code = numberAt(&chunk[24], 2);
  const auto stored = std::find_if(std::begin(storedFormats), std::end(storedFormats),
                                   [&](const Stored& s) { return s.code == code && s.bytes * 8 == bits; });
  if (stored == std::end(storedFormats)) {
    reader.fail("its samples are of format " + std::to_string(code) + " with " + std::to_string(bits) +
                " bits; integers of 8, 16, 24 or 32 bits and floats of 32 bits can be read");
  }
  sound.format = stored->format;
  if (sound.channels < 1 || sound.channels > 2) {
    reader.fail("it has " + std::to_string(sound.channels) + " channels; 1 or 2 can be read");
  }
  if (sound.rate == 0 || perMoment != sound.channels * stored->bytes) {
    reader.fail("damaged WAV file: its format contradicts itself");
  }
  return sound;
}

double sampleAt(const unsigned char* bytes, const Stored& stored) {
  if (stored.format == SampleFormat::integer8) return (static_cast<double>(*bytes) - 128) / 128;
  const std::uint32_t number = numberAt(bytes, stored.bytes);
  if (stored.format == SampleFormat::float32) {
    float value;
    std::memcpy(&value, &number, sizeof(value));
    return static_cast<double>(value);
  }
  // Moved up, so that the sign stands in the highest bit.
  return static_cast<double>(static_cast<std::int32_t>(number << (32 - 8 * stored.bytes))) / 2147483648.0;
}

void append(std::string& bytes, std::uint32_t number, unsigned int count) {
  for (unsigned int i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

}  // namespace

const char* nameOf(SampleFormat format) {
  return storedAs(format).name;
}

Sound readWav(const std::string& path) {
  Reader reader(path);
  const std::vector<unsigned char> head = reader.take(12);
  if (head.empty()) reader.fail("it is empty");
  if (head.size() != 12 || !isNamed(&head[0], "RIFF") || !isNamed(&head[8], "WAVE")) reader.fail("it is no WAV file");

  Sound sound;
  for (;;) {
    const std::vector<unsigned char> title = reader.take(8);
    if (title.size() != 8) reader.fail("damaged WAV file: it has no samples");
    const std::uint32_t size = numberAt(&title[4], 4);
    if (isNamed(&title[0], "data")) {
      if (sound.channels == 0) reader.fail("damaged WAV file: its samples come before their format");
      const Stored& stored = storedAs(sound.format);
      if (size == 0) reader.fail("it holds no samples");
      if (size % (stored.bytes * sound.channels) != 0) reader.fail("damaged WAV file: a sample is cut off");
      const std::vector<unsigned char> bytes = reader.require(size);
      sound.samples.resize(size / stored.bytes);
      for (std::size_t i = 0; i < sound.samples.size(); ++i) {
        sound.samples[i] = sampleAt(&bytes[i * stored.bytes], stored);
        if (!std::isfinite(sound.samples[i])) {
          reader.fail("sample " + std::to_string(i + 1) + " is infinite or not a number");
        }
      }
      return sound;
    }
    // A chunk of odd length is followed by a byte that fills it up.
    const std::vector<unsigned char> chunk = reader.require(size);
    if (isNamed(&title[0], "fmt ")) sound = formatOf(chunk, reader);
    if (size % 2 != 0) reader.require(1);
  }
}

unsigned long writeWav(OutputFile& file, const Sound& sound) {
  const Stored& stored = storedAs(sound.format);
  const std::size_t size = sound.samples.size() * stored.bytes;
  if (size > std::numeric_limits<std::uint32_t>::max() - 64) file.fail("a WAV file holds 4 GB at most");
  const auto word = [](std::size_t value) { return static_cast<std::uint32_t>(value); };

  std::string bytes = "RIFF";
  append(bytes, word(36 + size + size % 2), 4);
  bytes += "WAVEfmt ";
  append(bytes, 16, 4);
  append(bytes, stored.code, 2);
  append(bytes, word(sound.channels), 2);
  append(bytes, word(sound.rate), 4);
  append(bytes, word(sound.rate * sound.channels * stored.bytes), 4);
  append(bytes, word(sound.channels * stored.bytes), 2);
  append(bytes, 8 * stored.bytes, 2);
  bytes += "data";
  append(bytes, word(size), 4);

  unsigned long clamped = 0;
  const double scale = std::ldexp(1, static_cast<int>(8 * stored.bytes) - 1);
  for (const double sample : sound.samples) {
    std::uint32_t number;
    if (stored.format == SampleFormat::float32) {
      const float value = static_cast<float>(sample);
      std::memcpy(&number, &value, sizeof(number));
    } else {
      const double rounded = std::round(sample * scale), fitting = std::clamp(rounded, -scale, scale - 1);
      if (fitting != rounded) ++clamped;
      // Integers of 8 bits have their zero at 128.
      const auto integer = static_cast<std::int64_t>(fitting) + (stored.bytes == 1 ? 128 : 0);
      number = static_cast<std::uint32_t>(integer);
    }
    append(bytes, number, stored.bytes);
    if (bytes.size() >= (1U << 20)) {
      file.write(bytes);
      bytes.clear();
    }
  }
  if (size % 2 != 0) bytes += '\0';
  file.write(bytes);
  return clamped;
}

}  // namespace examples
