#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;
using gpuruntime::FindFirstLast;

constexpr unsigned long spare = 3;  // Elements of the outputs behind those that are asked for.

/// An input, its running count by the chain that callers run, and the positions in memory that are to be listed.
template <class T>
struct Case {
  explicit Case(const HostArray<T>& source) : host(source), input(source, 1), prefix(source.size()) {
    const unsigned long n = source.size();
    GuardedArray<double> total(1);
    typename gpuruntime::FlagNonZero::Invoker<T>()(nullptr, prefix.data(), input.data(), n);
    gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), prefix.data(), n, n, 1);
    for (unsigned long i = 0; i < n; ++i) {
      if (!answersOf(source[i]).zero) listed.push_back(i);
    }
    if (n > 0) {
      EXPECT_EQ(total.toHost()[0], static_cast<double>(listed.size()));
    }
  }

  /// The position that belongs into a slot of outputs for k; `none` for a slot that is to be left alone.
  unsigned long expected(unsigned long slot, unsigned long k, FindFirstLast mode) const {
    const unsigned long total = listed.size();
    if (slot >= k || (mode == FindFirstLast::last && k > total)) return none;
    const unsigned long ordinal = mode == FindFirstLast::first ? slot : total - k + slot;
    return ordinal < total ? listed[ordinal] : none;
  }

  template <class U, class Value>
  void check(const GuardedArray<U>& output, unsigned long k, FindFirstLast mode, Value value) const {
    const HostArray<U> written = output.toHost();
    for (unsigned long slot = 0; slot < written.size(); ++slot) {
      const unsigned long position = expected(slot, k, mode);
      if (position == none ? isUntouched(written, slot) : sameBits<U>(written[slot], value(position))) continue;
      ADD_FAILURE() << "slot " << slot << " of " << listed.size() << " found, k = " << k << ", mode "
                    << static_cast<int>(mode) << ", n = " << host.size();
      return;
    }
  }

  static constexpr unsigned long none = ~0UL;

  HostArray<T> host;
  GuardedArray<T> input;
  GuardedArray<double> prefix;
  std::vector<unsigned long> listed;
};

/// n elements of which about so many in a hundred are not 0, of all kinds of values.
template <class T>
HostArray<T> sparse(unsigned long n, unsigned long percent) {
  const HostArray<T> values = trickyValues<T>();
  HostArray<T> array(n);
  std::minstd_rand next(static_cast<unsigned int>(n + percent));
  for (unsigned long i = 0; i < n; ++i) {
    std::memset(&array[i], 0, sizeof(T));
    const bool isKept = next() / 7 % 100 < percent;
    if (isKept) std::memcpy(&array[i], &values[next() / 7 % values.size()], sizeof(T));
  }
  return array;
}

template <class T, class Check>
void forEachMode(const Case<T>& data, Check check) {
  const unsigned long total = data.listed.size();
  for (const FindFirstLast mode : {FindFirstLast::first, FindFirstLast::last, static_cast<FindFirstLast>(2)}) {
    for (const unsigned long k : {0UL, 1UL, total / 2, total, total + 2}) check(k, mode);
  }
}

template <class T>
struct FindTest : ::testing::Test {};
TYPED_TEST_SUITE(FindTest, TestTypes<gpuruntime::AllTypes>);

TYPED_TEST(FindTest, ListsFirstAndLast) {
  using T = TypeParam;
  for (const unsigned long n : {0UL, 1UL, 255UL, 256UL, 257UL, 4099UL, 70001UL}) {
    for (const unsigned long percent : {0UL, 1UL, 50UL, 100UL}) {
      const Case<T> data(sparse<T>(n, percent));
      forEachMode(data, [&](unsigned long k, FindFirstLast mode) {
        GuardedArray<double> positions(k + spare, 1);
        typename gpuruntime::Find1D::Invoker<T>()(nullptr, positions.data(), data.input.data(), data.prefix.data(), k,
                                                  n, mode);
        if (mode > FindFirstLast::last) return expectUntouched(positions.toHost());
        data.check(positions, k, mode, [](unsigned long i) { return static_cast<double>(i + 1); });
      });
    }
  }
}

TYPED_TEST(FindTest, ListsRowsColumnsAndValues) {
  using T = TypeParam;
  const unsigned long shapes[][2] = {{1, 1}, {0, 5}, {5, 0}, {3, 700}, {1, 300}, {300, 1}, {255, 9}, {257, 9}};
  for (const auto& [R, C] : shapes) {
    const Case<T> data(sparse<T>(R * C, 40));
    forEachMode(data, [&, R = R, C = C](unsigned long k, FindFirstLast mode) {
      GuardedArray<double> rows(k + spare), columns(k + spare, 1), rowsToo(k + spare, 1), columnsToo(k + spare);
      GuardedArray<T> values(k + spare, 1);
      typename gpuruntime::Find2D::Invoker<T>()(nullptr, rows.data(), columns.data(), data.input.data(),
                                                data.prefix.data(), k, R, C, mode);
      typename gpuruntime::Find2DWithValue::Invoker<T>()(nullptr, rowsToo.data(), columnsToo.data(), values.data(),
                                                         data.input.data(), data.prefix.data(), k, R, C, mode);
      if (mode > FindFirstLast::last) return expectUntouched(values.toHost());
      const auto row = [=](unsigned long i) { return static_cast<double>(i % R + 1); };
      const auto column = [=](unsigned long i) { return static_cast<double>(i / R + 1); };
      data.check(rows, k, mode, row);
      data.check(rowsToo, k, mode, row);
      data.check(columns, k, mode, column);
      data.check(columnsToo, k, mode, column);
      data.check(values, k, mode, [&](unsigned long i) { return data.host[i]; });
    });
  }
}

}  // namespace
