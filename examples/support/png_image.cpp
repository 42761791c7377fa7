#include "png_image.hpp"

#include <png.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>

namespace examples {
namespace {

constexpr unsigned long mostPixels = 1UL << 26;
constexpr unsigned long longestSide = 65535;
constexpr std::size_t signatureBytes = 8;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// libpng reports a failure by a jump. What it jumps over is in the functions named ...OrJump below and in libpng
// itself: they hold nothing that needs a destructor.
struct Failure {
  std::jmp_buf whereTo;
  char text[256];
};

[[noreturn]] void onError(png_structp png, png_const_charp text) {
  auto* failure = static_cast<Failure*>(png_get_error_ptr(png));
  std::snprintf(failure->text, sizeof(failure->text), "%s", text);
  std::longjmp(failure->whereTo, 1);
}

// Warnings are about what the picture does without, such as a text chunk.
void onWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep bytes, std::size_t count) {
  auto* file = static_cast<std::FILE*>(png_get_io_ptr(png));
  if (std::fread(bytes, 1, count, file) != count) {
    png_error(png, std::ferror(file) != 0 ? std::strerror(errno) : "it ends too early");
  }
}

void writeBytes(png_structp png, png_bytep bytes, std::size_t count) {
  auto* file = static_cast<std::FILE*>(png_get_io_ptr(png));
  if (std::fwrite(bytes, 1, count, file) != count) png_error(png, std::strerror(errno));
}

void flushBytes(png_structp) {}

class Reader {
 public:
  explicit Reader(std::FILE* file)
      : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, &failure_, onError, onWarning)),
        info_(png_ == nullptr ? nullptr : png_create_info_struct(png_)) {
    if (info_ == nullptr) {
      png_destroy_read_struct(&png_, nullptr, nullptr);
      throw std::bad_alloc();
    }
    png_set_read_fn(png_, file, readBytes);
  }
  Reader(const Reader&) = delete;
  ~Reader() { png_destroy_read_struct(&png_, &info_, nullptr); }

  // False after a failure, with its text in failure().
  bool readHeader() {
    if (setjmp(failure_.whereTo) != 0) return false;
    readHeaderOrJump();
    return true;
  }
  bool readRows(png_bytep* rows) {
    if (setjmp(failure_.whereTo) != 0) return false;
    png_read_image(png_, rows);
    png_read_end(png_, nullptr);
    return true;
  }

  const char* failure() const { return failure_.text; }
  unsigned long width() const { return png_get_image_width(png_, info_); }
  unsigned long height() const { return png_get_image_height(png_, info_); }
  unsigned int channels() const { return png_get_channels(png_, info_); }
  unsigned int bitDepth() const { return png_get_bit_depth(png_, info_); }
  std::size_t rowBytes() const { return png_get_rowbytes(png_, info_); }
  std::size_t storedRowBytes() const { return storedRowBytes_; }

 private:
  void readHeaderOrJump() {
    png_set_sig_bytes(png_, signatureBytes);
    png_read_info(png_, info_);
    storedRowBytes_ = png_get_rowbytes(png_, info_);
    png_set_expand(png_);
    png_set_interlace_handling(png_);
    const unsigned short one = 1;
    unsigned char firstByte;
    std::memcpy(&firstByte, &one, 1);
    // The file has the high byte first.
    if (firstByte == 1 && png_get_bit_depth(png_, info_) == 16) png_set_swap(png_);
    png_read_update_info(png_, info_);
  }

  Failure failure_{};
  png_structp png_;
  png_infop info_;
  std::size_t storedRowBytes_ = 0;
};

class Writer {
 public:
  explicit Writer(std::FILE* file)
      : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &failure_, onError, onWarning)),
        info_(png_ == nullptr ? nullptr : png_create_info_struct(png_)) {
    if (info_ == nullptr) {
      png_destroy_write_struct(&png_, nullptr);
      throw std::bad_alloc();
    }
    png_set_write_fn(png_, file, writeBytes, flushBytes);
  }
  Writer(const Writer&) = delete;
  ~Writer() { png_destroy_write_struct(&png_, &info_); }

  // `row` has room for one row of the file.
  bool write(const PngImage& image, unsigned char* row) {
    if (setjmp(failure_.whereTo) != 0) return false;
    writeOrJump(image, row);
    return true;
  }

  const char* failure() const { return failure_.text; }

 private:
  void writeOrJump(const PngImage& image, unsigned char* row) {
    constexpr int colorTypes[] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB,
                                  PNG_COLOR_TYPE_RGB_ALPHA};
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(image.width), static_cast<png_uint_32>(image.height),
                 static_cast<int>(image.bitDepth), colorTypes[image.channels - 1], PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png_, 4);
    png_write_info(png_, info_);
    const unsigned long count = image.width * image.channels;
    for (unsigned long y = 0; y < image.height; ++y) {
      const unsigned short* samples = image.samples.data() + y * count;
      unsigned char* bytes = row;
      for (unsigned long i = 0; i < count; ++i) {
        if (image.bitDepth == 16) *bytes++ = static_cast<unsigned char>(samples[i] >> 8);
        *bytes++ = static_cast<unsigned char>(samples[i] & 0xFF);
      }
      png_write_row(png_, row);
    }
    png_write_end(png_, info_);
  }

  Failure failure_{};
  png_structp png_;
  png_infop info_;
};

}  // namespace

PngImage readPng(const std::string& path) {
  const File file(std::fopen(path.c_str(), "rb"));
  const auto require = [&path](bool condition, const std::string& why) {
    if (!condition) throw FileError("cannot read " + quoted(path) + ": " + why);
  };
  require(file != nullptr, std::strerror(errno));
  unsigned char signature[signatureBytes];
  const std::size_t got = std::fread(signature, 1, signatureBytes, file.get());
  require(std::ferror(file.get()) == 0, std::strerror(errno));
  require(got != 0, "it is empty");
  require(got == signatureBytes && png_sig_cmp(signature, 0, signatureBytes) == 0, "it is not a PNG image");

  Reader reader(file.get());
  require(reader.readHeader(), std::string("damaged PNG image: ") + reader.failure());
  PngImage image;
  image.width = reader.width();
  image.height = reader.height();
  image.channels = reader.channels();
  image.bitDepth = reader.bitDepth();
  const std::string size = std::to_string(image.width) + " x " + std::to_string(image.height) + " pixels";
  require(std::max(image.width, image.height) <= longestSide && image.width * image.height <= mostPixels,
          "it has " + size + ", of which there may be 65535 a side and 2^26 in all");

  // Compression shrinks 1032 times at best. A file that promises more than it can hold is not worth the memory.
  struct stat status;
  if (fstat(fileno(file.get()), &status) == 0 && S_ISREG(status.st_mode)) {
    require(reader.storedRowBytes() * image.height / 1032 <= static_cast<std::size_t>(status.st_size),
            "damaged PNG image: it is too short for " + size);
  }

  const std::size_t rowBytes = reader.rowBytes();
  const std::size_t rowSamples = image.width * image.channels;
  image.samples.resize(rowSamples * image.height);
  // Rows of 16 bits are read in place. Rows of 8 bits are read into the second half of the samples' memory and widened
  // from the front, which never overtakes what is still to be widened.
  auto* const memory = reinterpret_cast<unsigned char*>(image.samples.data());
  unsigned char* const start = memory + (image.bitDepth == 8 ? image.samples.size() : 0);
  std::vector<png_bytep> rows(image.height);
  for (std::size_t y = 0; y < image.height; ++y) rows[y] = start + y * rowBytes;
  require(reader.readRows(rows.data()), std::string("damaged PNG image: ") + reader.failure());
  if (image.bitDepth == 8) {
    for (std::size_t i = 0; i < image.samples.size(); ++i) {
      const unsigned short sample = start[i];
      std::memcpy(memory + 2 * i, &sample, 2);
    }
  }
  return image;
}

void writePng(const std::string& path, const PngImage& image) {
  OutputFile file(path);
  writePng(file, image);
  file.publish();
}

void writePng(OutputFile& file, const PngImage& image) {
  std::vector<unsigned char> row(image.width * image.channels * (image.bitDepth / 8));
  Writer writer(file.file());
  if (!writer.write(image, row.data())) file.fail(writer.failure());
}

}  // namespace examples
