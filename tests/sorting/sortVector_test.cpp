#include "support/sortreference.hpp"
#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

template <class T>
class SortVectorTest : public ::testing::Test {
 protected:
  static void check(const HostArray<T>& input, bool ascending, bool withIndex) {
    const unsigned long n = input.size();
    const HostArray<double> indexInput = HostArray<double>::counting(n);
    GuardedArray<T> data(input, 1);
    GuardedArray<double> index(indexInput, 1);
    gpuruntime::SortVector::Invoker<T>()(data.data(), withIndex ? index.data() : nullptr, n, ascending);
    const auto from = sortedPositions(input, HostArray<int>(n), !withIndex, ascending);
    const std::string context = std::string(ascending ? "ascending" : "descending") + (withIndex ? ", index" : "");
    expectElements(
        data.toHost(), [&](unsigned long i) { return input[from[i]]; }, context);
    expectElements(
        index.toHost(), [&](unsigned long i) { return indexInput[withIndex ? from[i] : i]; }, context);
  }
};
TYPED_TEST_SUITE(SortVectorTest, TestTypes<gpuruntime::SortTypes>);

TYPED_TEST(SortVectorTest, StableInBothDirections) {
  for (const unsigned long n : sortSizes()) {
    for (const HostArray<TypeParam>& input : sortInputs<TypeParam>(n)) {
      for (const bool ascending : {true, false}) {
        for (const bool withIndex : {true, false}) this->check(input, ascending, withIndex);
      }
    }
  }
}

template <class T>
void expectSorted(std::vector<T> elements, bool ascending, std::vector<double> expectedIndex) {
  std::vector<double> places;
  for (unsigned long i = 0; i < elements.size(); ++i) places.push_back(static_cast<double>(i + 1));
  GuardedArray<T> data(arrayOf(elements));
  GuardedArray<double> index(arrayOf(places));
  gpuruntime::SortVector::Invoker<T>()(data.data(), index.data(), elements.size(), ascending);
  expectElements(index.toHost(), [&](unsigned long i) { return expectedIndex[i]; });
  expectElements(data.toHost(),
                 [&](unsigned long i) { return elements[static_cast<unsigned long>(expectedIndex[i]) - 1]; });
}

TEST(SortVectorByHand, NaNsTiesAndComplexOrder) {
  const double NaN = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  expectSorted<double>({NaN, 1, NaN, 0}, true, {4, 2, 1, 3});
  expectSorted<double>({NaN, 1, NaN, 0}, false, {1, 3, 2, 4});
  expectSorted<double>({2, 1, 2}, false, {1, 3, 2});
  expectSorted<double>({0.0, -0.0, -1}, true, {3, 1, 2});
  expectSorted<double2>({{1, 1}, {1, -1}, {-1, 0}, {1, 0}}, true, {4, 3, 2, 1});
  expectSorted<double2>({{inf, NaN}, {3, 4}, {NaN, 1}, {5, 0}, {inf, 0}}, true, {4, 2, 5, 1, 3});
  expectSorted<double2>({{inf, NaN}, {3, 4}, {NaN, 1}, {5, 0}, {inf, 0}}, false, {1, 3, 5, 2, 4});
}

TEST(SimpleSortTest, AscendsWithZerosByTheirBits) {
  for (const unsigned long n : sortSizes()) {
    for (const HostArray<double>& input : sortInputs<double>(n)) {
      if (std::any_of(input.data(), input.data() + n, hasNaN<double>)) continue;
      GuardedArray<double> data(input, 1);
      gpuruntime::SimpleSort::Invoker<double>()(data.data(), n);
      const auto from = sortedPositions(input, HostArray<int>(n), true, true);
      expectElements(data.toHost(), [&](unsigned long i) { return input[from[i]]; });
    }
  }
}

}  // namespace
