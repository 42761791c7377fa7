/// @file
/// Files that appear whole or not at all.
#pragma once

#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <stdexcept>
#include <string>

namespace examples {

/// What went wrong with a file, in one line.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A path as messages show it: 'path'.
std::string quoted(const std::string& path);

/// A file beside the one that is to be: it takes that one's name, and replaces a file that was there, when publish() is
/// called. Before that, a failure or the end of this object leaves nothing, and a file that was there stays. A link is
/// followed.
class OutputFile {
 public:
  /// @throws FileError if the path names something else than a regular file, or no file can be made there.
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  std::FILE* file() const { return file_; }

  /// @throws FileError
  void write(const void* bytes, std::size_t count);
  void write(const std::string& text) { write(text.data(), text.size()); }

  /// Ends writing. Of several files that belong together, all are complete before the first one is published.
  /// @throws FileError
  void complete();

  /// @throws FileError
  void publish();

  /// @throws FileError that says why this file can't be written.
  [[noreturn]] void fail(const char* why) const;

 private:
  std::string name_;  // As the caller has it.
  std::string target_;
  std::string path_;
  std::FILE* file_ = nullptr;
};

/// Finds out before long work that its result can be written, and that it overwrites none of what is read.
/// @throws FileError
void requireWritable(const std::string& output, std::initializer_list<std::string> inputs);

}  // namespace examples
