#include "support/subscripts.hpp"

namespace {

using namespace testsupport;
using gpuruntime::Subsasgn3D;
using gpuruntime::SubsasgnScalar3D;
using gpuruntime::SubscriptKinds;

template <class T>
struct SubsasgnTest : ::testing::Test {};
TYPED_TEST_SUITE(SubsasgnTest, OfEachWidth);

bool isGuarded() {
  Subsasgn3D<double2, void*, void*>::Invoker<double>()(nullptr, 0, nullptr, nullptr, 0, 0, {}, 0, 0, {}, 0, 0, {});
  return gpuruntime::SubsasgnGuard().getErrorFlag(nullptr) != 0;
}

/// Of several elements that go to one place, any may be there; all other places hold what they did.
template <class T, class Source>
void expectAssigned(const HostArray<T>& before, const HostArray<T>& after, const std::vector<unsigned long>& places,
                    Source source, const std::string& context) {
  std::vector<unsigned char> isRight(before.size());
  for (unsigned long i = 0; i < before.size(); ++i) isRight[i] = sameBits(before[i], after[i]);
  for (const unsigned long place : places) isRight[place] = 0;
  for (unsigned long i = 0; i < places.size(); ++i) isRight[places[i]] |= sameBits(after[places[i]], source(i));
  const auto wrong = std::find(isRight.begin(), isRight.end(), 0) - isRight.begin();
  EXPECT_EQ(static_cast<unsigned long>(wrong), isRight.size()) << context << ": the first wrong element";
}

template <class T, class I1, class I2, class I3>
void checkKinds(SubscriptKinds<I1, I2, I3> kinds) {
  forEachSelection<T>(kinds, [](const auto& subscripted, const std::string& context) {
    const std::vector<unsigned long> places = subscripted.places();
    const HostArray<T> before = HostArray<T>::counting(subscripted.arraySize(), 5),
                       source = HostArray<T>::counting(places.size()), values = HostArray<T>::counting(1, 9);
    const GuardedArray<T> input(source, 1);
    GuardedArray<T> byArray(before, 3), byValue(before, 3);
    subscripted.call(typename Subsasgn3D<I1, I2, I3>::template Invoker<T>(), byArray.data(), input.data(), isGuarded());
    expectAssigned(
        before, byArray.toHost(), places, [&](unsigned long i) { return source[i]; }, context);
    subscripted.call(typename SubsasgnScalar3D<I1, I2, I3>::template Invoker<T>(), byValue.data(), values[0],
                     isGuarded());
    expectAssigned(
        before, byValue.toHost(), places, [&](unsigned long) { return values[0]; }, context + ", one value");
  });
}

TYPED_TEST(SubsasgnTest, ScattersByEveryKindOfSubscript) {
  forEachKinds(gpuruntime::AllSubscriptKinds{}, [](auto kinds) { checkKinds<TypeParam>(kinds); });
}

TEST(SubsasgnEdges, AValueKeepsItsBits) {
  const unsigned int patterns[] = {0x80000000, 0x7FA00001, 0xFFC12345};  // -0, a signalling NaN, a NaN's payload.
  for (const unsigned int bits : patterns) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    GuardedArray<float> destination(3);
    SubsasgnScalar3D<double2, void*, void*>::Invoker<float>()(nullptr, 3, destination.data(), value, 3, 0, {3, -1}, 0,
                                                              0, nullptr, 0, 0, nullptr);
    expectElements(destination.toHost(), [&](unsigned long) { return value; });
  }
}

TEST(SubsasgnEdges, ACountOfZeroWritesNothing) {
  GuardedArray<float> destination(8);
  const auto call = [&](unsigned long count1, unsigned long count2, unsigned long count3) {
    Subsasgn3D<double2, const double*, double2>::Invoker<float>()(nullptr, 8, destination.data(), nullptr, 2, count1,
                                                                  {1, 1}, 2, count2, nullptr, 2, count3, {1, 1});
    SubsasgnScalar3D<double2, double2, double2>::Invoker<float>()(nullptr, 8, destination.data(), 7, 2, count1, {1, 1},
                                                                  2, count2, {1, 1}, 2, count3, {1, 1});
  };
  call(0, 2, 2);
  call(2, 0, 2);
  call(2, 2, 0);
  expectUntouched(destination.toHost());
}

TEST(SubsasgnGuarded, RefusesIndicesOutsideTheirExtent) {
  const gpuruntime::SubsasgnGuard guard;
  if (!isGuarded()) return;
  // Of a 3 by 2 array, indices (2, 5) and (1, 3): the element at (2, 1) alone is inside.
  HostArray<double> lists(4);
  const double indices[] = {2, 5, 1, 3};
  std::copy(std::begin(indices), std::end(indices), lists.data());
  const GuardedArray<double> onDevice(lists);
  GuardedArray<double> destination(6);
  using List = const double*;
  Subsasgn3D<List, List, void*>::Invoker<double>()(nullptr, 4, destination.data(), onDevice.data(), 3, 2,
                                                   onDevice.data(), 2, 2, onDevice.data() + 2, 0, 0, nullptr);
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1030u);
  SubsasgnScalar3D<double2, double2, double2>::Invoker<double>()(nullptr, 0, destination.data(), 7, 3, 1, {3, 1}, 2, 1,
                                                                 {2, 1}, 1, 2, {1, -1});
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1030u);
  const HostArray<double> result = destination.toHost();
  for (unsigned long i = 0; i < 6; ++i) {
    EXPECT_TRUE(i == 1 || i == 5 ? result[i] == (i == 1 ? 2 : 7) : isUntouched(result, i)) << i;
  }
  SubsasgnScalar3D<double2, void*, void*>::Invoker<double>()(nullptr, 6, destination.data(), 8, 6, 0, {6, -1}, 0, 0,
                                                             nullptr, 0, 0, nullptr);
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1000u);
}

}  // namespace
