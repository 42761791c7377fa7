#include "support/devicemodel.hpp"
#include "support/failedsizes.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

struct CopyToVectorTest : DeviceModelTest {};

template <class T>
void check(const std::vector<unsigned long>& sizes) {
  unsigned long count = 1;
  for (const unsigned long size : sizes) count *= size;
  const HostArray<T> full = HostArray<T>::counting(count);
  const GuardedArray<T> fullOnDevice(full);
  unsigned long stride = 1;
  for (unsigned long d = 0; d < sizes.size(); stride *= sizes[d++]) {
    GuardedArray<T> out(sizes[d]);
    typename gpuruntime::CopyToVector::Invoker<T>()(nullptr, out.data(), fullOnDevice.data(), d, sizes.data(),
                                                    sizes.size(), count);
    expectElements(
        out.toHost(), [&](unsigned long i) { return full[i * stride]; }, "dimension " + std::to_string(d));
  }
}

TEST_F(CopyToVectorTest, TakesTheLineThroughTheFirstElement) {
  for (const std::vector<unsigned long>& sizes :
       std::vector<std::vector<unsigned long>>{{300}, {7, 300}, {3, 1, 260}, {2, 3, 4, 5}, {3, 2, 4, 2, 3}}) {
    check<double>(sizes);
    check<float>(sizes);
  }
}

TEST_F(CopyToVectorTest, StopsWhereTheArrayEndsOrASizeIsZero) {
  const unsigned long sizes[] = {4, 5};
  const GuardedArray<double> full(HostArray<double>::counting(20));
  GuardedArray<double> out(5);
  gpuruntime::CopyToVector::Invoker<double>()(nullptr, out.data(), full.data(), 1, sizes, 2, 9);
  EXPECT_FALSE(isUntouched(out.toHost(), 2));
  EXPECT_TRUE(isUntouched(out.toHost(), 3));
  const unsigned long none[] = {4, 0};
  model().startRecording();
  gpuruntime::CopyToVector::Invoker<double>()(nullptr, out.data(), full.data(), 1, none, 2, 0);
  EXPECT_EQ(model().countOf(Call::launch), 0u);
}

TEST_F(CopyToVectorTest, SaysThatTheSizesDidNotGetThere) {
  const std::vector<unsigned long> sizes(6, 2);
  for (const unsigned long dimensions : {1UL, 6UL}) {
    expectStops("Failed to copy to constant memory\n", dimensions <= 5 ? 1 : 0, [&](double* out) {
      gpuruntime::CopyToVector::Invoker<double>()(nullptr, out, nullptr, 0, sizes.data(), dimensions, 64);
    });
  }
}

}  // namespace
