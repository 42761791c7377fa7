#include "command_line.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <new>

namespace examples {
namespace {

template <class Number>
Number numberOf(const std::string& option, const std::string& text, Number least, Number most,
                const std::string& range) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  // A NaN is in no range.
  if (error != std::errc() || stop != end || !(number >= least && number <= most)) {
    throw UsageError(option + " takes a " + range + ", not '" + text + "'");
  }
  return number;
}

std::string inWords(double value) {
  char text[32];
  std::snprintf(text, sizeof(text), "%g", value);
  return text;
}

}  // namespace

std::vector<std::string> takeOptions(const std::vector<std::string>& arguments, const std::vector<Option>& options,
                                     std::size_t most) {
  std::vector<std::string> others;
  bool haveEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (haveEnded || argument.empty() || argument[0] != '-') {
      if (others.size() == most) throw UsageError("'" + argument + "' is one argument too many");
      others.push_back(argument);
      continue;
    }
    if (argument == "--") {
      haveEnded = true;
      continue;
    }
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto option = std::find_if(options.begin(), options.end(), [&](const Option& o) { return o.name == name; });
    if (option == options.end()) throw UsageError("unknown option '" + name + "'");
    if (option->isGiven != nullptr) {
      if (equals != std::string::npos) throw UsageError(name + " takes no value");
      *option->isGiven = true;
      continue;
    }
    if (equals == std::string::npos && ++i == arguments.size()) throw UsageError(name + " needs a value");
    *option->text = equals == std::string::npos ? arguments[i] : argument.substr(equals + 1);
    if (option->text->empty()) throw UsageError(name + " needs a value");
  }
  return others;
}

unsigned long wholeNumber(const std::string& option, const std::string& text, unsigned long least, unsigned long most) {
  return numberOf(option, text, least, most,
                  "whole number from " + std::to_string(least) + " to " + std::to_string(most));
}

double decimalNumber(const std::string& option, const std::string& text, double least, double most) {
  return numberOf(option, text, least, most, "number from " + inWords(least) + " to " + inWords(most));
}

int runProgram(const char* name, const char* usage, int count, char** arguments,
               const std::function<void(const std::vector<std::string>&)>& run) {
  try {
    const std::vector<std::string> given(arguments + 1, arguments + count);
    const auto end = std::find(given.begin(), given.end(), "--");
    if (std::find(given.begin(), end, "--help") != end) {
      std::fputs(usage, stdout);
    } else {
      run(given);
    }
    return 0;
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s: %s\n%s", name, error.what(), usage);
    return 2;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s: not enough memory\n", name);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", name, error.what());
  }
  return 1;
}

}  // namespace examples
