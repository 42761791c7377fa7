#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct DiagTest : ::testing::Test {};
TYPED_TEST_SUITE(DiagTest, TestTypes<gpuruntime::AllTypes>);

// Every diagonal of matrices of 3 rows, of a wide, a high and a large one, and none.
TYPED_TEST(DiagTest, MovesDiagonalsOutOfMatricesAndIntoThem) {
  using T = TypeParam;
  struct Case {
    long rows, columns, first, last;
  };
  for (const Case& matrix : {Case{3, 3, -4, 4}, Case{2, 5, -2, 5}, Case{5, 2, -5, 2}, Case{700, 900, -299, -299},
                             Case{700, 900, 301, 301}, Case{1, 300, 7, 7}, Case{300, 1, -7, -7}}) {
    const auto rows = static_cast<unsigned long>(matrix.rows), columns = static_cast<unsigned long>(matrix.columns);
    const HostArray<T> in = HostArray<T>::counting(rows * columns);
    const GuardedArray<T> input(in, 1);
    for (long k = matrix.first; k <= matrix.last; ++k) {
      std::vector<unsigned long> diagonal;
      for (unsigned long i = 0; i < in.size(); ++i) {
        if (static_cast<long>(i / rows) - static_cast<long>(i % rows) == k) diagonal.push_back(i);
      }
      GuardedArray<T> vector(diagonal.size()), output(in.size());
      typename gpuruntime::DiagMatToVec::Invoker<T>()(nullptr, vector.data(), input.data(), rows, k, diagonal.size());
      typename gpuruntime::DiagVecToMat::Invoker<T>()(nullptr, output.data(), vector.data(), rows, k, diagonal.size());
      const std::string context = "diagonal " + std::to_string(k);
      expectElements(
          vector.toHost(), [&](unsigned long i) { return in[diagonal[i]]; }, context);

      const HostArray<T> written = output.toHost();
      for (unsigned long i = 0; i < written.size(); ++i) {
        const bool isOnDiagonal = std::binary_search(diagonal.begin(), diagonal.end(), i);
        ASSERT_TRUE(isOnDiagonal ? sameBits(written[i], in[i]) : isUntouched(written, i)) << context << ", " << i;
      }
    }
  }
}

}  // namespace
