#include "support/devicemodel.hpp"
#include "support/familytest.hpp"

namespace {

using namespace testsupport;

struct VerifyCartesianGridTest : DeviceModelTest {
  template <class T>
  static bool verify(const HostArray<T>& full, const HostArray<T>& grid, unsigned long dimension,
                     const std::vector<unsigned long>& sizes) {
    const GuardedArray<T> fullOnDevice(full), gridOnDevice(grid);
    return typename gpuruntime::VerifyNDCartesianGrid::Invoker<T>()(nullptr, fullOnDevice.data(), gridOnDevice.data(),
                                                                    dimension, sizes.data(), sizes.size());
  }

  /// A spread grid is one; any element that differs, at the ends and in between, makes it none.
  template <class T>
  static void check(const std::vector<unsigned long>& sizes) {
    unsigned long count = 1, stride = 1;
    for (const unsigned long size : sizes) count *= size;
    for (unsigned long d = 0; d < sizes.size(); stride *= sizes[d++]) {
      HostArray<T> grid(sizes[d]), full(count);
      for (unsigned long i = 0; i < sizes[d]; ++i) grid[i] = static_cast<T>(i) - 1;
      for (unsigned long i = 0; i < count; ++i) full[i] = grid[i / stride % sizes[d]];
      const std::string context = std::to_string(sizes.size()) + " dimensions, along " + std::to_string(d);
      EXPECT_TRUE(verify(full, grid, d, sizes)) << context;
      if (count == 0) continue;
      for (const unsigned long i : {0UL, count / 2, count - 1}) {
        for (const T wrong : {std::nextafter(full[i], T(9)), std::numeric_limits<T>::quiet_NaN()}) {
          HostArray<T> other = full;
          other[i] = wrong;
          EXPECT_FALSE(verify(other, grid, d, sizes)) << context << ", element " << i;
        }
      }
      for (unsigned long i = 0; i < count; ++i) full[i] = full[i] == 0 ? -full[i] : full[i];
      EXPECT_TRUE(verify(full, grid, d, sizes)) << context << ", with -0";
    }
  }
};

TEST_F(VerifyCartesianGridTest, ComparesEveryElement) {
  for (const std::vector<unsigned long>& sizes : std::vector<std::vector<unsigned long>>{{700},
                                                                                         {300, 7},
                                                                                         {3, 900},
                                                                                         {1, 1},
                                                                                         {300, 3, 5},
                                                                                         {3, 70, 70},
                                                                                         {2, 3, 700},
                                                                                         {3, 4, 5, 6},
                                                                                         {2, 3, 4, 3, 50},
                                                                                         {0, 4},
                                                                                         {3, 0, 4},
                                                                                         {3, 4, 0, 2}}) {
    check<double>(sizes);
    check<float>(sizes);
  }
}

TEST_F(VerifyCartesianGridTest, IsFalseWhereACopyFails) {
  const HostArray<double> one = HostArray<double>(1);
  const std::vector<unsigned long> sizes[] = {{1, 1}, {1, 1, 1}, {1, 1, 1, 1}};
  for (const std::vector<unsigned long>& size : sizes) {
    EXPECT_TRUE(verify(one, one, 0, size));
    const std::pair<Call, unsigned int> failures[] = {{Call::memcpyToSymbol, 1}, {Call::memcpyFromSymbol, 1}};
    for (const auto& [call, occurrence] : failures) {
      model().failCall(call, occurrence, cudaErrorLaunchFailure);
      EXPECT_FALSE(verify(one, one, 0, size));
    }
  }
  model().failCall(Call::memcpyToSymbol, 2, cudaErrorLaunchFailure);
  EXPECT_FALSE(verify(one, one, 0, sizes[2]));
  EXPECT_FALSE(verify(one, one, 0, std::vector<unsigned long>(6, 1)));
}

}  // namespace
