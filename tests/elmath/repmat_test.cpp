#include "support/familytest.hpp"

namespace {

using namespace testsupport;

template <class T>
struct RepmatTest : ::testing::Test {};
TYPED_TEST_SUITE(RepmatTest, TestTypes<gpuruntime::AllTypes>);

struct Box {
  unsigned long x, y, z;
};

// Narrow and long ones, more rows than a grid has, and empty ones.
const Box smallBoxes[] = {{3, 2, 2},   {1, 1, 1},   {1, 300, 5},  {1, 2, 420},   {5, 1, 1000},
                          {256, 3, 2}, {17, 30, 1}, {300, 7, 11}, {2, 70001, 1}, {1, 2, 70001},
                          {0, 4, 4},   {4, 0, 4},   {4, 4, 0}};

/// Holds `call(output, box)` against `in[source(i)]`, with an output that begins within a line.
template <class T, class Call, class Source>
void check(const Box& box, const HostArray<T>& in, Call call, Source source) {
  GuardedArray<T> output(box.x * box.y * box.z, 3);
  call(output.data());
  expectElements(
      output.toHost(), [&](unsigned long i) { return in[source(i)]; },
      std::to_string(box.x) + " by " + std::to_string(box.y) + " by " + std::to_string(box.z));
}

TYPED_TEST(RepmatTest, RepeatsVectorsAndColumns) {
  using T = TypeParam;
  // These are large enough to be written past the caches.
  const unsigned long large = (17UL << 18) / sizeof(T);
  std::vector<Box> boxes{{3, large / 3, 1}, {3, large / 63, 21}, {99991, large / 99991, 1}, {1000, 9, large / 9000}};
  boxes.insert(boxes.end(), std::begin(smallBoxes), std::end(smallBoxes));
  for (Box box : boxes) {
    const HostArray<T> columns = HostArray<T>::counting(box.x * std::max(1UL, box.z)),
                       row = HostArray<T>::counting(box.y);
    const GuardedArray<T> columnsOnDevice(columns, 1), rowOnDevice(row, 1);
    check<T>(
        box, row,
        [&](T* out) {
          typename gpuruntime::RepmatRowVector::Invoker<T>()(nullptr, out, rowOnDevice.data(), box.y, box.x, box.z);
        },
        [&](unsigned long i) { return i / box.x % box.y; });
    check<T>(
        box, columns,
        [&](T* out) {
          typename gpuruntime::RepmatMatrixRows::Invoker<T>()(nullptr, out, columnsOnDevice.data(), box.x, box.z,
                                                              box.y);
        },
        [&](unsigned long i) { return i / (box.x * box.y) * box.x + i % box.x; });
    box.z = 1;
    check<T>(
        box, columns,
        [&](T* out) {
          typename gpuruntime::RepmatColumnVector::Invoker<T>()(nullptr, out, columnsOnDevice.data(), box.x, box.y);
        },
        [&](unsigned long i) { return i % box.x; });
  }
}

}  // namespace
