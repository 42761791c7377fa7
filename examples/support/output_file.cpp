#include "output_file.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace examples {

std::string quoted(const std::string& path) {
  return "'" + path + "'";
}

OutputFile::OutputFile(const std::string& path) : name_(path), target_(path) {
  std::error_code unknown;
  if (std::filesystem::is_symlink(path, unknown)) {
    const std::filesystem::path resolved = std::filesystem::canonical(path, unknown);
    if (!unknown) target_ = resolved.string();
  }
  // To rename over a device would take the device away.
  if (std::filesystem::exists(target_, unknown) && !std::filesystem::is_regular_file(target_, unknown)) {
    fail("it exists and is not a regular file");
  }
  path_ = target_ + ".XXXXXX";
  const int descriptor = mkstemp(path_.data());
  if (descriptor < 0) fail(std::strerror(errno));
  file_ = fdopen(descriptor, "wb");
  if (file_ == nullptr) {
    const int why = errno;
    ::close(descriptor);
    std::remove(path_.c_str());
    fail(std::strerror(why));
  }
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(descriptor, 0666 & ~mask);
}

OutputFile::~OutputFile() {
  if (file_ != nullptr) std::fclose(file_);
  if (!path_.empty()) std::remove(path_.c_str());
}

void OutputFile::write(const void* bytes, std::size_t count) {
  if (count != 0 && std::fwrite(bytes, 1, count, file_) != count) fail(std::strerror(errno));
}

void OutputFile::complete() {
  std::FILE* file = file_;
  file_ = nullptr;
  if (file != nullptr && std::fclose(file) != 0) fail(std::strerror(errno));
}

void OutputFile::publish() {
  complete();
  if (std::rename(path_.c_str(), target_.c_str()) != 0) fail(std::strerror(errno));
  path_.clear();
}

void OutputFile::fail(const char* why) const {
  throw FileError("cannot write " + quoted(name_) + ": " + why);
}

void requireWritable(const std::string& output, std::initializer_list<std::string> inputs) {
  std::error_code unknown;
  for (const std::string& input : inputs) {
    if (std::filesystem::equivalent(input, output, unknown)) {
      throw FileError("the output " + quoted(output) + " would overwrite the input " + quoted(input));
    }
  }
  const OutputFile trial(output);
}

}  // namespace examples
