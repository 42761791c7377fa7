// Find and membership on devices with small grids, and where a query, a launch or an allocation fails.
#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

constexpr unsigned long rows = 300, columns = 40, n = rows * columns;

struct SearchFailuresTest : DeviceModelTest {
  SearchFailuresTest() : input(ones()), prefix(counts()) {}

  static HostArray<double> ones() {
    HostArray<double> array(n);
    std::fill_n(array.data(), n, 1.0);
    return array;
  }
  static HostArray<double> counts() {
    HostArray<double> array(n);
    for (unsigned long i = 0; i < n; ++i) array[i] = static_cast<double>(i + 1);
    return array;
  }

  const GuardedArray<double> input, prefix;
};

TEST_F(SearchFailuresTest, FindsInManySteps) {
  useDevice(deviceWithGrid(1, 3, 1));
  GuardedArray<double> row(n), column(n);
  callsOf([&] {
    gpuruntime::Find2D::Invoker<double>()(nullptr, row.data(), column.data(), input.data(), prefix.data(), n, rows,
                                          columns, gpuruntime::FindFirstLast::last);
  });
  EXPECT_EQ(launched()[0], 1u);
  expectElements(row.toHost(), [](unsigned long i) { return static_cast<double>(i % rows + 1); });
  expectElements(column.toHost(), [](unsigned long i) { return static_cast<double>(i / rows + 1); });
}

TEST_F(SearchFailuresTest, ModesOfNoMeaningAndEmptyArraysMakeNoCall) {
  const gpuruntime::Find1D::Invoker<double> find;
  EXPECT_EQ(callsOf([&] { find(nullptr, nullptr, nullptr, nullptr, 1, 0, gpuruntime::FindFirstLast::first); }), "");
  EXPECT_EQ(callsOf([&] { find(nullptr, nullptr, nullptr, nullptr, 1, 9, gpuruntime::FindFirstLast(7)); }), "");
  EXPECT_EQ(callsOf([&] {
              gpuruntime::IsMember2ArgCmplx::Invoker<double2>()(nullptr, nullptr, 0, nullptr, 0, nullptr, nullptr);
            }),
            "");
}

TEST_F(SearchFailuresTest, QueriesRaiseAndLaunchesStaySilent) {
  const GuardedArray<double2> pairs(n);
  GuardedArray<double> out(n);
  GuardedArray<bool> member(n);
  const auto find = [&] {
    gpuruntime::Find1D::Invoker<double>()(nullptr, out.data(), input.data(), prefix.data(), n, n,
                                          gpuruntime::FindFirstLast::first);
  };
  const auto search = [&] {
    gpuruntime::IsMember2Arg::Invoker<double>()(nullptr, input.data(), n, prefix.data(), n, prefix.data(),
                                                member.data(), out.data());
  };
  const auto searchPairs = [&] {
    gpuruntime::IsMember2ArgCmplx::Invoker<double2>()(nullptr, pairs.data(), n, pairs.data(), n, member.data(),
                                                      out.data());
  };
  const std::string failed = "vantor::gpu::device::UnknownCUDAError";
  for (const Call call : {Call::getDevice, Call::launch}) {
    const auto fail = [&] { model().reset(), model().failCall(call, 1, cudaErrorLaunchFailure); };
    const auto expectHandled = [&](auto action) {
      fail();
      if (call == Call::launch) {
        action();
      } else {
        expectRaises(failed, action);
      }
    };
    expectHandled(find);
    expectHandled(search);
    expectHandled(searchPairs);
  }
  expectUntouched(out.toHost());
  expectUntouched(member.toHost());
}

TEST_F(SearchFailuresTest, MissingMemoryIsTold) {
  GuardedArray<bool> member(1);
  const GuardedArray<double2> one(1);
  // More bytes than can be counted, and more than there are addresses for.
  for (const unsigned long elements : {1UL << 62, 1UL << 61, 1UL << 58, 1UL << 48}) {
    EXPECT_THROW(
        gpuruntime::IsMember1ArgCmplx::Invoker<double2>()(nullptr, one.data(), 1, one.data(), elements, member.data()),
        std::bad_alloc);
  }
  expectUntouched(member.toHost());
}

}  // namespace
