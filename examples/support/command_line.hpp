/// @file
/// What the programs have in common: options, errors in one line, exit codes.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace examples {

/// What is wrong with the command line, in one line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// `--name VALUE` or `--name=VALUE` sets the text; `--name` alone sets the switch.
struct Option {
  Option(const char* name, std::string* text) : name(name), text(text) {}
  Option(const char* name, bool* isGiven) : name(name), isGiven(isGiven) {}

  std::string name;
  std::string* text = nullptr;
  bool* isGiven = nullptr;
};

/// Takes the options out of the arguments and returns the others. Behind `--` all are others.
/// @throws UsageError for an option that is unknown or lacks its value, and for more than `most` others.
std::vector<std::string> takeOptions(const std::vector<std::string>& arguments, const std::vector<Option>& options,
                                     std::size_t most);

/// The number that an option's text says, all of it.
/// @throws UsageError that names the option, what it takes and what came.
unsigned long wholeNumber(const std::string& option, const std::string& text, unsigned long least, unsigned long most);
double decimalNumber(const std::string& option, const std::string& text, double least, double most);

/// Runs a program and returns its exit code: 0, or 1 after an exception, or 2 after a UsageError, each with one line on
/// stderr. `--help` prints the usage and runs nothing.
int runProgram(const char* name, const char* usage, int count, char** arguments,
               const std::function<void(const std::vector<std::string>&)>& run);

}  // namespace examples
