#include "support/sortreference.hpp"
#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

template <class T>
class SortMatrixTest : public ::testing::Test {
 protected:
  static void check(const HostArray<T>& input, const HostArray<int>& keysInput, bool ascending, bool withIndex) {
    const unsigned long n = input.size();
    const HostArray<double> indexInput = HostArray<double>::counting(n);
    GuardedArray<T> data(input, 1);
    GuardedArray<double> index(indexInput, 1);
    GuardedArray<int> keys(keysInput, 1);
    gpuruntime::SortMatrix::Invoker<T>()(data.data(), withIndex ? index.data() : nullptr, keys.data(), n, ascending);
    const auto from = sortedPositions(input, keysInput, !withIndex, ascending);
    const std::string context = std::string(ascending ? "ascending" : "descending") + (withIndex ? ", index" : "");
    expectElements(
        data.toHost(), [&](unsigned long i) { return input[from[i]]; }, context);
    expectElements(
        keys.toHost(), [&](unsigned long i) { return keysInput[from[i]]; }, context);
    expectElements(
        index.toHost(), [&](unsigned long i) { return indexInput[withIndex ? from[i] : i]; }, context);
  }
};
TYPED_TEST_SUITE(SortMatrixTest, TestTypes<gpuruntime::SortTypes>);

TYPED_TEST(SortMatrixTest, SortsEachColumnByItself) {
  struct Shape {
    unsigned long rows, columns;
  };
  for (const Shape& shape : {Shape{1, 1}, {3, 2}, {1, 50}, {1000, 7}, {7, 1000}, {65537, 3}}) {
    const unsigned long n = shape.rows * shape.columns;
    HostArray<int> ascendingKeys(n), anyKeys(n);
    for (unsigned long i = 0; i < n; ++i) {
      ascendingKeys[i] = static_cast<int>(i / shape.rows);
      anyKeys[i] = static_cast<int>(i * 7919 % shape.columns) * 65537 - 100000;
    }
    for (const HostArray<TypeParam>& input : sortInputs<TypeParam>(n)) {
      for (const bool ascending : {true, false}) {
        for (const bool withIndex : {true, false}) this->check(input, ascendingKeys, ascending, withIndex);
        this->check(input, anyKeys, ascending, true);
      }
    }
  }
}

TEST(SortMatrixByHand, ColumnsStayApart) {
  const double NaN = std::numeric_limits<double>::quiet_NaN();
  const std::vector<double> matrix{3, NaN, 1, NaN, 2, 0}, ascending{1, 3, NaN, 0, 2, NaN},
      descending{NaN, 3, 1, NaN, 2, 0};
  const std::vector<int> columns{0, 0, 0, 1, 1, 1};
  for (const bool up : {true, false}) {
    GuardedArray<double> data(arrayOf(matrix));
    GuardedArray<int> keys(arrayOf(columns));
    gpuruntime::SortMatrix::Invoker<double>()(data.data(), nullptr, keys.data(), 6, up);
    expectElements(data.toHost(), [&](unsigned long i) { return (up ? ascending : descending)[i]; });
    expectElements(keys.toHost(), [&](unsigned long i) { return columns[i]; });
  }
}

}  // namespace
