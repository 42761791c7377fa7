#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

template <class T>
T differenceByRule(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return {differenceByRule(a.x, b.x), differenceByRule(a.y, b.y)};
  } else if constexpr (std::is_floating_point_v<T>) {
    return withPlainNaN(static_cast<T>(b - a));
  } else {
    using Limits = std::numeric_limits<T>;
    const __int128 exact = static_cast<__int128>(b) - a;
    return static_cast<T>(std::min<__int128>(std::max<__int128>(exact, Limits::min()), Limits::max()));
  }
}

template <class T>
struct DiffTest : ::testing::Test {};
TYPED_TEST_SUITE(DiffTest, TestTypes<gpuruntime::DiffTypes>);

TYPED_TEST(DiffTest, SubtractsNeighbours) {
  using T = TypeParam;
  const HostArray<T> tricky = trickyValues<T>();
  struct Shape {
    unsigned long S, Lo, groups;
  };
  // Small groups and large ones, several to a block and several blocks to one, and an array past the caches.
  for (const auto& [S, Lo, groups] : {Shape{1, 1, 1}, Shape{1, 2, 2}, Shape{3, 1, 1}, Shape{1, 1, 700}, Shape{7, 9, 20},
                                      Shape{64, 1, 9}, Shape{5, 13, 30}, Shape{1, 255, 3}, Shape{256, 1, 3},
                                      Shape{17, 61, 4}, Shape{1, 5000, 1}, Shape{2, 0, 1}, Shape{1401, 999, 3}}) {
    const unsigned long n = S * Lo * groups, group = S * Lo;
    HostArray<T> host(S * (Lo + 1) * groups);
    std::minstd_rand next(static_cast<unsigned int>(n + 1));
    for (unsigned long i = 0; i < host.size(); ++i) host[i] = tricky[next() / 7 % tricky.size()];
    const GuardedArray<T> input(host, 1);
    GuardedArray<T> output(n, 1);
    typename gpuruntime::Diff::Invoker<T>()(nullptr, output.data(), input.data(), S, Lo, n);
    HostArray<T> actual = output.toHost();
    for (unsigned long i = 0; i < n; ++i) actual[i] = withPlainNaN(actual[i]);
    const auto expected = [&, S = S](unsigned long i) {
      const unsigned long at = i % group + i / group * (group + S);
      return differenceByRule(host[at], host[at + S]);
    };
    expectElements(actual, expected, "S = " + std::to_string(S) + ", Lo = " + std::to_string(Lo));
  }
}

}  // namespace
