/// @file
/// Digests of what the families compute on seeded inputs: one line a family and type. The committed lines must come out
/// of every compiler, vector level, number of threads and backend.
#pragma once

#include "support/familytest.hpp"

#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>
#include <vector>

namespace digest {

using testsupport::GuardedArray;
using testsupport::HostArray;
using testsupport::isComplex;

template <class T>
const char* typeName();
#define GPURUNTIME_DIGEST_TYPE_NAME(A, T) \
  template <>                             \
  inline const char* typeName<T>() {      \
    return #T;                            \
  }
GPURUNTIME_ALL_TYPES(GPURUNTIME_DIGEST_TYPE_NAME, )
#undef GPURUNTIME_DIGEST_TYPE_NAME

/// Calls `run(tag)` with a value of every type of a list.
template <class... Types, class Run>
void forEachType(gpuruntime::TypeList<Types...>, Run run) {
  (run(Types{}), ...);
}

/// The n elements that `call(out)` writes.
template <class T, class Call>
HostArray<T> filled(unsigned long n, Call call) {
  GuardedArray<T> out(n);
  call(out.data());
  return out.toHost();
}

/// The lines of one run.
class Lines {
 public:
  /// A family whose every bit is fixed. NaN counts as one value where it comes out of arithmetic: its payload is the
  /// machine's.
  template <class T>
  void exact(const std::string& name, const HostArray<T>& result) {
    for (unsigned long i = 0; i < result.size(); ++i) add(result[i]);
    finish<T>(name);
  }

  /// A family that only moves elements: of NaN, too, every bit is fixed.
  template <class T>
  void moved(const std::string& name, const HostArray<T>& result) {
    HostArray<unsigned char> bytes(result.size() * sizeof(T));
    std::memcpy(bytes.data(), result.data(), bytes.size());
    for (unsigned long i = 0; i < bytes.size(); ++i) add(bytes[i]);
    finish<T>(name);
  }

  /// A family that takes transcendental functions of the platform: some of its values, to be compared within `ulps`
  /// units in the last place.
  template <class T>
  void close(const std::string& name, int ulps, const HostArray<T>& result) {
    std::string line = name + "<" + typeName<T>() + "> ~" + std::to_string(ulps);
    const unsigned long stride = result.size() / 8 + 1;
    for (unsigned long i = 0; i < result.size(); i += stride) {
      if constexpr (isComplex<T>) {
        line += valueInWords(result[i].x) + valueInWords(result[i].y);
      } else {
        line += valueInWords(result[i]);
      }
    }
    lines_.push_back(line);
  }

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  static constexpr std::uint64_t initialHash = 0xcbf29ce484222325;

  template <class T>
  void finish(const std::string& name) {
    char text[32];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash_));
    lines_.push_back(name + "<" + typeName<T>() + "> " + text);
    hash_ = initialHash;
  }

  template <class T>
  void add(const T& value) {
    if constexpr (isComplex<T>) {
      add(value.x);
      add(value.y);
    } else {
      unsigned char bytes[sizeof(T)];
      std::memcpy(bytes, &value, sizeof(T));
      if constexpr (std::is_floating_point_v<T>) {
        if (value != value) std::memset(bytes, 0xFF, sizeof bytes);
      }
      // FNV-1a.
      for (const unsigned char byte : bytes) hash_ = (hash_ ^ byte) * 0x100000001b3;
    }
  }

  // Precise enough to give back the bits, float's too.
  template <class R>
  static std::string valueInWords(R value) {
    char text[64];
    std::snprintf(text, sizeof text, " %s%a", std::is_same_v<R, float> ? "f" : "d", static_cast<double>(value));
    return text;
  }

  std::uint64_t hash_ = initialHash;
  std::vector<std::string> lines_;
};

// One function a subsystem.
void addBuild(Lines& lines);
void addComplex(Lines& lines);
void addConvolutions(Lines& lines);
void addElements(Lines& lines);
void addElmath(Lines& lines);
void addFilter(Lines& lines);
void addIndexing(Lines& lines);
void addInterp(Lines& lines);
void addReductions(Lines& lines);
void addScans(Lines& lines);
void addSearch(Lines& lines);
void addSorting(Lines& lines);

}  // namespace digest
