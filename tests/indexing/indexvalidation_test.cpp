#include "support/familytest.hpp"

namespace {

using namespace testsupport;

TEST(IndexValidationTest, TellsPositiveIntegers) {
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    double value;
    bool valid;
  };
  const Case cases[] = {{1, true},
                        {2, true},
                        {0, false},
                        {-0.0, false},
                        {0.5, false},
                        {std::nextafter(1.0, 0.0), false},
                        {std::nextafter(1.0, 2.0), false},
                        {1.5, false},
                        {-1, false},
                        {-3, false},
                        {inf, false},
                        {-inf, false},
                        {std::nan(""), false},
                        {4503599627370495.5, false},
                        {0x1p53, true},
                        {0x1p53 + 2, true},
                        {1.7976931348623157e308, true},
                        {5e-324, false}};
  for (const unsigned long n : elementwiseSizes()) {
    HostArray<double> values(n);
    for (unsigned long i = 0; i < n; ++i) values[i] = cases[i % std::size(cases)].value;
    const GuardedArray<double> input(values, 1);
    GuardedArray<bool> valid(n, 1);
    gpuruntime::IndexValidation::Invoker<double>()(nullptr, n, valid.data(), input.data());
    expectElements(valid.toHost(), [&](unsigned long i) { return cases[i % std::size(cases)].valid; });
  }
}

}  // namespace
