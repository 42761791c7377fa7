#include "support/subscripts.hpp"

namespace {

using namespace testsupport;
using gpuruntime::SubscriptKinds;
using gpuruntime::Subsref3D;

template <class T>
struct SubsrefTest : ::testing::Test {};
TYPED_TEST_SUITE(SubsrefTest, OfEachWidth);

bool isGuarded() {
  Subsref3D<double2, void*, void*>::Invoker<double>()(nullptr, 0, nullptr, nullptr, 0, 0, {}, 0, 0, {}, 0, 0, {});
  return gpuruntime::SubsrefGuard().getErrorFlag(nullptr) != 0;
}

template <class T, class I1, class I2, class I3>
void checkKinds(SubscriptKinds<I1, I2, I3> kinds) {
  forEachSelection<T>(kinds, [](const auto& subscripted, const std::string& context) {
    const HostArray<T> array = HostArray<T>::counting(subscripted.arraySize());
    const std::vector<unsigned long> places = subscripted.places();
    const GuardedArray<T> input(array, 1);
    GuardedArray<T> output(places.size(), 3);
    subscripted.call(typename Subsref3D<I1, I2, I3>::template Invoker<T>(), output.data(), input.data(), isGuarded());
    expectElements(
        output.toHost(), [&](unsigned long i) { return array[places[i]]; }, context);
  });
}

TYPED_TEST(SubsrefTest, GathersByEveryKindOfSubscript) {
  forEachKinds(gpuruntime::AllSubscriptKinds{}, [](auto kinds) { checkKinds<TypeParam>(kinds); });
}

TEST(SubsrefEdges, ACountOfZeroWritesNothing) {
  using List = const double*;
  GuardedArray<float> output(8);
  const auto call = [&](unsigned long count1, unsigned long count2, unsigned long count3) {
    Subsref3D<List, double2, List>::Invoker<float>()(nullptr, 8, output.data(), nullptr, 2, count1, nullptr, 2, count2,
                                                     {1, 1}, 2, count3, nullptr);
  };
  call(0, 2, 2);
  call(2, 0, 2);
  call(2, 2, 0);
  Subsref3D<double2, List, void*>::Invoker<float>()(nullptr, 8, output.data(), nullptr, 2, 2, {1, 1}, 2, 0, nullptr, 1,
                                                    1, nullptr);
  Subsref3D<List, void*, void*>::Invoker<float>()(nullptr, 0, output.data(), nullptr, 2, 2, nullptr, 1, 1, nullptr, 1,
                                                  1, nullptr);
  expectUntouched(output.toHost());
}

// Each index in turn lies outside its extent, and the others don't.
TEST(SubsrefGuarded, RefusesIndicesOutsideTheirExtent) {
  const gpuruntime::SubsrefGuard guard;
  if (!isGuarded()) return;
  const HostArray<double> array = HostArray<double>::counting(60);
  const GuardedArray<double> input(array);
  for (const double bad : {0.0, -1.0, 0.9, 6.0, 1e300, std::nan("")}) {
    for (unsigned int dim = 0; dim < 4; ++dim) {
      HostArray<double> lists(6);
      for (unsigned int k = 0; k < 6; ++k) lists[k] = 1 + k % 2;
      if (dim < 3) lists[2 * dim + 1] = bad;
      const GuardedArray<double> onDevice(lists);
      GuardedArray<double> output(8);
      using List = const double*;
      const List list = onDevice.data();
      Subsref3D<List, List, List>::Invoker<double>()(nullptr, 8, output.data(), input.data(), 5, 2, list, 4, 2,
                                                     list + 2, 3, 2, list + 4);
      EXPECT_EQ(guard.getErrorFlag(nullptr), dim < 3 ? 1030u : 1000u);
      const HostArray<double> result = output.toHost();
      for (unsigned long i = 0; i < 8; ++i) {
        const unsigned long at[] = {i & 1, i >> 1 & 1, i >> 2};
        if (dim < 3 && at[dim] == 1) {
          EXPECT_TRUE(isUntouched(result, i));
        } else {
          EXPECT_TRUE(sameBits(result[i], array[at[0] + 5 * (at[1] + 4 * at[2])]));
        }
      }
    }
  }
  GuardedArray<double> output(7);
  Subsref3D<double2, void*, void*>::Invoker<double>()(nullptr, 7, output.data(), input.data(), 60, 0, {3, -1}, 0, 0,
                                                      nullptr, 0, 0, nullptr);
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1030u);
  const HostArray<double> result = output.toHost();
  for (unsigned long i = 0; i < 7; ++i) {
    EXPECT_TRUE(i < 3 ? sameBits(result[i], array[2 - i]) : isUntouched(result, i));
  }
}

}  // namespace
