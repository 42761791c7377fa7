/// @file
/// Prints the digests, or holds them against a file of expected lines: `digest [FILE]`.
#include "digest.hpp"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

namespace {

// Distance of two values of one type in units in the last place, as ordered integers.
std::uint64_t distance(double a, double b, bool isFloat) {
  if (a == b || (std::isnan(a) && std::isnan(b))) return 0;
  if (std::isnan(a) || std::isnan(b)) return UINT64_MAX;
  const auto ordered = [=](double value) -> std::int64_t {
    std::int64_t bits = 0;
    if (isFloat) {
      const auto narrow = static_cast<float>(value);
      std::int32_t narrowBits;
      std::memcpy(&narrowBits, &narrow, sizeof narrow);
      bits = narrowBits;
      return bits < 0 ? std::int64_t{INT32_MIN} - bits : bits;
    }
    std::memcpy(&bits, &value, sizeof value);
    return bits < 0 ? INT64_MIN - bits : bits;
  };
  const std::int64_t first = ordered(a), second = ordered(b);
  return first > second ? static_cast<std::uint64_t>(first) - static_cast<std::uint64_t>(second)
                        : static_cast<std::uint64_t>(second) - static_cast<std::uint64_t>(first);
}

// Lines with "~N" behind the name hold values, which may differ by N units in the last place; the others are hashes.
bool agree(const std::string& actual, const std::string& expected) {
  if (actual == expected) return true;
  std::istringstream a(actual), b(expected);
  std::string left, right;
  long ulps = 0;
  bool isClose = false;
  while (a >> left) {
    if (!(b >> right)) return false;
    if (isClose) {
      const double x = std::strtod(left.c_str() + 1, nullptr), y = std::strtod(right.c_str() + 1, nullptr);
      if (left[0] != right[0] || distance(x, y, left[0] == 'f') > static_cast<std::uint64_t>(ulps)) return false;
    } else if (left != right) {
      return false;
    }
    if (left[0] == '~') {
      isClose = true;
      ulps = std::strtol(left.c_str() + 1, nullptr, 10);
    }
  }
  return !(b >> right);
}

// The lines by name and type.
std::map<std::string, std::string> byName(const std::vector<std::string>& lines) {
  std::map<std::string, std::string> named;
  for (const std::string& line : lines) named[line.substr(0, line.find("> "))] = line;
  return named;
}

std::vector<std::string> expectedLines(const char* path) {
  std::ifstream file(path);
  if (!file) {
    std::cerr << "digest: cannot read " << path << "\n";
    std::exit(2);
  }
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  }
  return lines;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2) {
    std::cerr << "usage: digest [FILE]\n";
    return 2;
  }
  digest::Lines run;
  digest::addBuild(run);
  digest::addComplex(run);
  digest::addConvolutions(run);
  digest::addElements(run);
  digest::addElmath(run);
  digest::addFilter(run);
  digest::addIndexing(run);
  digest::addInterp(run);
  digest::addReductions(run);
  digest::addScans(run);
  digest::addSearch(run);
  digest::addSorting(run);
  const std::vector<std::string>& actual = run.lines();
  if (argc == 1) {
    for (const std::string& line : actual) std::cout << line << "\n";
    return 0;
  }
  const std::map<std::string, std::string> ours = byName(actual), expected = byName(expectedLines(argv[1]));
  unsigned long differing = 0;
  const auto report = [&](const std::string& wanted, const std::string& computed) {
    ++differing;
    std::cerr << "digest differs\n  expected " << wanted << "\n  computed " << computed << "\n";
  };
  for (const auto& [name, line] : ours) {
    const auto wanted = expected.find(name);
    if (wanted == expected.end()) {
      report("(no such line)", line);
    } else if (!agree(line, wanted->second)) {
      report(wanted->second, line);
    }
  }
  for (const auto& [name, line] : expected) {
    if (ours.find(name) == ours.end()) report(line, "(no such line)");
  }
  std::cout << actual.size() << " digests, " << differing << " differ\n";
  return differing == 0 ? 0 : 1;
}
