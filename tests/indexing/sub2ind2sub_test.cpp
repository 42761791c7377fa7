#include "support/subscripts.hpp"
#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();

/// Any NaN as one: its payload is the machine's.
template <class Expected>
void expectNumbers(HostArray<double> actual, Expected expected) {
  for (unsigned long i = 0; i < actual.size(); ++i) actual[i] = withPlainNaN(actual[i]);
  expectElements(actual, [&](unsigned long i) { return withPlainNaN(expected(i)); });
}

/// Subscripts of a box, which fractions and tricky values may come among.
struct Subscripts {
  Subscripts(unsigned long n, bool isTricky) : rows(n), columns(n), pages(n) {
    const double tricky[] = {0, -1, 0.5, nan, inf, -inf, 1e300, 0x1p53, -0.0};
    for (unsigned long i = 0; i < n; ++i) {
      rows[i] = static_cast<double>(i % numRows + 1);
      columns[i] = static_cast<double>(i * 31 % numCols + 1);
      pages[i] = static_cast<double>(i * 17 % numPages + 1);
      if (isTricky && i % 3 == 0) rows[i] = tricky[i / 3 % 9];
      if (isTricky && i % 3 == 1) columns[i] = tricky[i / 27 % 9];
      if (isTricky && i % 5 == 2) pages[i] = tricky[i / 7 % 9];
    }
  }
  static constexpr unsigned long numRows = 1000003, numCols = 77, numPages = 9;
  HostArray<double> rows, columns, pages;

  double linear2D(unsigned long i) const { return std::fma(1000003.0, columns[i] - 1, rows[i]); }
  double linear3D(unsigned long i) const {
    return std::fma(1000003.0, std::fma(77.0, pages[i] - 1, columns[i] - 1), rows[i]);
  }
};

TEST(Sub2IndTest, FusesAndReports) {
  for (const unsigned long n : elementwiseSizes()) {
    for (const bool isTricky : {false, true}) {
      const Subscripts s(n, isTricky);
      const unsigned long R = Subscripts::numRows, C = Subscripts::numCols, P = Subscripts::numPages;
      const GuardedArray<double> rows(s.rows, 1), columns(s.columns, 1), pages(s.pages, 1);
      bool isOut2D = false, isOut3D = false;
      for (unsigned long i = 0; i < n; ++i) {
        const bool isBeyond = s.rows[i] > R || s.columns[i] > C;
        isOut2D |= isBeyond || s.linear2D(i) < 1;
        isOut3D |= isBeyond || s.linear3D(i) < 1 || s.pages[i] > P;
      }
      const auto filled = [&](auto call) {
        GuardedArray<double> linear(n, 1);
        call(linear.data());
        return linear.toHost();
      };
      using namespace gpuruntime;
      const auto flat = [&](unsigned long i) { return s.linear2D(i); };
      const auto deep = [&](unsigned long i) { return s.linear3D(i); };
      expectNumbers(
          filled([&](double* out) { Sub2Ind2D::Invoker<double>()(nullptr, n, out, rows.data(), columns.data(), R); }),
          flat);
      expectNumbers(filled([&](double* out) {
                      Sub2Ind3D::Invoker<double>()(nullptr, n, out, rows.data(), columns.data(), pages.data(), R, C);
                    }),
                    deep);
      expectNumbers(filled([&](double* out) {
                      Sub2Ind2DChecked::Invoker<double>()(nullptr, n, out, rows.data(), columns.data(), R, C);
                    }),
                    flat);
      EXPECT_EQ(Sub2Ind2DChecked().getErrorFlag(nullptr), isOut2D ? 1030u : 1000u);
      expectNumbers(filled([&](double* out) {
                      Sub2Ind3DChecked::Invoker<double>()(nullptr, n, out, rows.data(), columns.data(), pages.data(), R,
                                                          C, P);
                    }),
                    deep);
      EXPECT_EQ(Sub2Ind3DChecked().getErrorFlag(nullptr), isOut3D ? 1030u : 1000u);
    }
  }
}

// In 4 by 5 by 2: each limit by itself, and what is not reported.
TEST(Sub2IndTest, ChecksEachLimit) {
  struct Case {
    double row, column, page, linear2D;
    unsigned int flag2D, flag3D;
  };
  const Case cases[] = {{4, 5, 2, 20, 1000, 1000}, {5, 1, 1, 5, 1030, 1030},     {1, 6, 1, 21, 1030, 1030},
                        {0, 1, 1, 0, 1030, 1030},  {4, 5, 3, 20, 1000, 1030},    {0, 2, 1, 4, 1000, 1000},
                        {3, 0, 1, -1, 1030, 1030}, {nan, 1, 1, nan, 1000, 1000}, {1.5, 2.5, 1, 7.5, 1000, 1000},
                        {3, 0, 2, -1, 1030, 1000}};
  for (const Case& c : cases) {
    for (const unsigned long n : {1UL, 258UL}) {
      HostArray<double> subscripts(3 * n);
      for (unsigned long i = 0; i < 3 * n; ++i) subscripts[i] = 1;
      for (unsigned long k = 0; k < 3; ++k) subscripts[k * n + n - 1] = (&c.row)[k];
      const GuardedArray<double> onDevice(subscripts);
      const double* rows = onDevice.data();
      GuardedArray<double> linear(n);
      gpuruntime::Sub2Ind3DChecked::Invoker<double>()(nullptr, n, linear.data(), rows, rows + n, rows + 2 * n, 4, 5, 2);
      EXPECT_EQ(gpuruntime::Sub2Ind3DChecked().getErrorFlag(nullptr), c.flag3D);
      gpuruntime::Sub2Ind2DChecked::Invoker<double>()(nullptr, n, linear.data(), rows, rows + n, 4, 5);
      EXPECT_EQ(gpuruntime::Sub2Ind2DChecked().getErrorFlag(nullptr), c.flag2D);
      expectNumbers(linear.toHost(), [&](unsigned long i) { return i + 1 < n ? 1 : c.linear2D; });
    }
  }
}

/// The integer part of v - 1, from 0 to the largest of 64 bits.
unsigned long truncatedBefore(double v) {
  const double u = v - 1;
  return !(u >= 1) ? 0 : u >= 0x1p64 ? ~0UL : static_cast<unsigned long>(u);
}

// Subscripts as they are computed, step by step; no product may be fused.
void split(double v, unsigned long size, double* rest, unsigned long* quotient) {
  *quotient = truncatedBefore(v) / size;
  const volatile double product = static_cast<double>(*quotient) * static_cast<double>(size);
  *rest = v - product;
}

TEST(Ind2SubTest, DividesIntegersAndKeepsFractions) {
  const double tricky[] = {0,
                           -0.0,
                           -7,
                           0.5,
                           2.5,
                           nan,
                           inf,
                           -inf,
                           1e300,
                           0x1p53,
                           1e9,
                           4.25,
                           1e18,
                           0x1p63,
                           0x1p64,
                           0x1.8p63,
                           0x1p52 + 1,
                           123456789.75,
                           9007199254740993e3};
  struct Size {
    unsigned long rows, columns;
  };
  for (const Size size :
       {Size{4, 5}, {1, 1}, {1000003, 77}, {1, 300}, {300, 1}, {1UL << 32, 3}, {(1UL << 53) + 1, 7}, {~0UL, 1}}) {
    for (const unsigned long n : elementwiseSizes()) {
      if (n > 5000 && size.rows != 4) continue;
      HostArray<double> linear(n);
      for (unsigned long i = 0; i < n; ++i) {
        linear[i] = i % 40 < 20 ? tricky[i % 20 % 19] : static_cast<double>(i) * (i % 3 == 0 ? 1 : 1e6 + 3) + 1;
      }
      const GuardedArray<double> input(linear, 1);
      GuardedArray<double> rows(n, 1), columns(n, 2), pages(n, 3), rows2D(n), columns2D(n);
      gpuruntime::Ind2Sub2D::Invoker<double>()(nullptr, n, rows2D.data(), columns2D.data(), input.data(), size.rows);
      gpuruntime::Ind2Sub3D::Invoker<double>()(nullptr, n, rows.data(), columns.data(), pages.data(), input.data(),
                                               size.rows, size.columns);
      HostArray<double> wanted[] = {HostArray<double>(n), HostArray<double>(n), HostArray<double>(n),
                                    HostArray<double>(n), HostArray<double>(n)};
      for (unsigned long i = 0; i < n; ++i) {
        unsigned long q;
        double inPage;
        split(linear[i], size.rows, &wanted[0][i], &q);
        wanted[1][i] = static_cast<double>(q) + 1;
        split(linear[i], size.rows * size.columns, &inPage, &q);
        wanted[4][i] = static_cast<double>(q) + 1;
        split(inPage, size.rows, &wanted[2][i], &q);
        wanted[3][i] = static_cast<double>(q) + 1;
      }
      const GuardedArray<double>* const results[] = {&rows2D, &columns2D, &rows, &columns, &pages};
      for (unsigned int k = 0; k < 5; ++k) {
        expectNumbers(results[k]->toHost(), [&](unsigned long i) { return wanted[k][i]; });
      }
    }
  }
}

template <class T>
struct SelectTest : ::testing::Test {};
TYPED_TEST_SUITE(SelectTest, OfEachWidth);

TYPED_TEST(SelectTest, TakesOneElementOfEachRowOrColumn) {
  using T = TypeParam;
  for (const unsigned long n : {1UL, 3UL, 255UL, 257UL, 1000UL, (17UL << 18) / sizeof(T)}) {
    const unsigned long width = n > 100000 ? 3 : 11;
    const HostArray<T> matrix = HostArray<T>::counting(n * width);
    HostArray<double> index(n);
    for (unsigned long i = 0; i < n; ++i) index[i] = static_cast<double>(i * i % 101 % width + 1) + 0.25 * (i % 4);
    const GuardedArray<T> input(matrix, 1);
    const GuardedArray<double> indices(index, 1);
    GuardedArray<T> ofRows(n, 1), ofColumns(n, 1);
    typename gpuruntime::SelectFromRows::Invoker<T>()(nullptr, n, ofRows.data(), input.data(), indices.data(), n);
    typename gpuruntime::SelectFromColumns::Invoker<T>()(nullptr, n, ofColumns.data(), input.data(), indices.data(),
                                                         width);
    const auto k = [&](unsigned long i) { return static_cast<unsigned long>(index[i]) - 1; };
    expectElements(ofRows.toHost(), [&](unsigned long i) { return matrix[k(i) * n + i]; });
    expectElements(ofColumns.toHost(), [&](unsigned long i) { return matrix[i * width + k(i)]; });
  }
}

TEST(SelectGuarded, RefusesIndicesOutside) {
  const gpuruntime::Sub2Ind2DChecked guard;
  const HostArray<double> matrix = HostArray<double>::counting(6);
  HostArray<double> index(3);
  const double indices[] = {2, 0.5, 3};
  std::copy(std::begin(indices), std::end(indices), index.data());
  const GuardedArray<double> input(matrix), indicesOnDevice(index);
  gpuruntime::Sub2Ind2D::Invoker<double>()(nullptr, 0, nullptr, nullptr, nullptr, 1);
  const auto isGuarded = [&] {  // A guarded call sets the word anew.
    gpuruntime::Sub2Ind2DChecked::Invoker<double>()(nullptr, 1, GuardedArray<double>(1).data(), input.data(),
                                                    indicesOnDevice.data() + 1, 0, 0);
    gpuruntime::SelectFromRows::Invoker<double>()(nullptr, 0, nullptr, nullptr, nullptr, 1);
    return guard.getErrorFlag(nullptr) == 1000;
  };
  if (!isGuarded()) return;
  GuardedArray<double> ofRows(3), ofColumns(3);
  gpuruntime::SelectFromRows::Invoker<double>()(nullptr, 2, ofRows.data(), input.data(), indicesOnDevice.data(), 3);
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1030u);
  gpuruntime::SelectFromColumns::Invoker<double>()(nullptr, 3, ofColumns.data(), input.data(), indicesOnDevice.data(),
                                                   2);
  EXPECT_EQ(guard.getErrorFlag(nullptr), 1030u);
  EXPECT_TRUE(sameBits(ofRows.toHost()[0], matrix[3]) && isUntouched(ofRows.toHost(), 1));
  EXPECT_TRUE(sameBits(ofColumns.toHost()[0], matrix[1]) && isUntouched(ofColumns.toHost(), 1) &&
              isUntouched(ofColumns.toHost(), 2));
}

}  // namespace
