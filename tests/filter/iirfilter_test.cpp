#include "support/trickyvalues.hpp"

namespace {

using namespace testsupport;

/// p * q of complex numbers, with the products in memory: compilers fuse them otherwise.
template <class T>
T times(const T& p, const T& q) {
  if constexpr (isComplex<T>) {
    volatile auto xx = p.x * q.x, yy = p.y * q.y, yx = p.y * q.x;
    return {xx - yy, std::fma(p.x, q.y, static_cast<gpuruntime::RealOf<T>>(yx))};
  } else {
    return p * q;
  }
}

/// p * q + c, fused for real numbers.
template <class T>
T timesPlus(const T& p, const T& q, const T& c) {
  if constexpr (isComplex<T>) {
    const T pq = times(p, q);
    return {pq.x + c.x, pq.y + c.y};
  } else {
    return std::fma(p, q, c);
  }
}

template <class T>
T minus(const T& a, const T& b) {
  if constexpr (isComplex<T>) {
    return {a.x - b.x, a.y - b.y};
  } else {
    return a - b;
  }
}

template <class T>
T plusZero(const T& z) {
  if constexpr (isComplex<T>) {
    return {z.x + 0, z.y + 0};
  } else {
    return z + 0;
  }
}

template <class T>
T inverse(const T& a) {
  if constexpr (isComplex<T>) {
    using R = gpuruntime::RealOf<T>;
    const volatile R r = 1 / (std::abs(a.x) + std::abs(a.y));
    const volatile R uy = 0 * r, vx = a.x * r, vy = a.y * r;
    const volatile R xx = vx * vx, yy = vy * vy, ac = r * vx, bd = uy * vy, bc = uy * vx, ad = r * vy;
    const volatile R q = 1 / (xx + yy);
    return {(ac + bd) * q, (bc - ad) * q};
  } else {
    return 1 / a;
  }
}

struct Shape {
  unsigned int length, columns, stride, pages;

  unsigned long at(unsigned int page, unsigned int column, unsigned int t) const {
    return page * columns * length + column * (stride == 1 ? length : 1) + t * stride;
  }
  unsigned long size() const { return length == 0 ? 0 : at(pages - 1, columns - 1, length - 1) + 1; }
};

enum class Initial { none, shared, perColumn };
enum class Values { plain, tricky, zeros };

template <class T>
HostArray<T> randomArray(unsigned long n, unsigned int seed, Values kind = Values::plain) {
  const HostArray<T> values = trickyValues<T>();
  HostArray<T> array(n);
  std::mt19937 engine(seed);
  const auto part = [&] {
    const auto fraction = static_cast<gpuruntime::RealOf<T>>(static_cast<int>(engine() % 2001) - 1000) / 1024;
    return kind == Values::zeros ? std::copysign(gpuruntime::RealOf<T>(0), fraction) : fraction;
  };
  for (unsigned long i = 0; i < n; ++i) {
    T value{};
    const auto re = part(), im = part();
    std::memcpy(&value, &re, sizeof re);
    if constexpr (isComplex<T>) value.y = im;
    array[i] = kind == Values::tricky && engine() % 16 == 0 ? values[engine() % values.size()] : value;
  }
  return array;
}

template <class T, int N>
struct Filter {
  HostArray<T> b, a;

  Filter(unsigned int nb, unsigned int na, Values kind)
      : b(randomArray<T>(nb, 1 + N, kind)), a(randomArray<T>(na, 2 + N, kind)) {}

  /// Filters one column step by step.
  void run(std::vector<T>& z, HostArray<T>& y, const HostArray<T>& x, const Shape& shape, unsigned int page,
           unsigned int column) const {
    std::vector<T> B(N + 1), A(N + 1);
    for (unsigned long i = 0; i <= N; ++i) {
      if (i < b.size()) B[i] = times(b[i], inverse(a[0]));
      if (i < a.size()) A[i] = times(a[i], inverse(a[0]));
    }
    for (unsigned int t = 0; t < shape.length; ++t) {
      const T xt = x[shape.at(page, column, t)], yt = timesPlus(B[0], xt, z[0]);
      y[shape.at(page, column, t)] = yt;
      for (unsigned long j = 0; j < N; ++j) {
        z[j] = minus(timesPlus(B[j + 1], xt, j + 1 < N ? plusZero(z[j + 1]) : T{}), times(A[j + 1], yt));
      }
    }
  }

  void check(const Shape& shape, Initial initial, bool inPlace, bool wantsFinal,
             Values samples = N % 2 == 0 ? Values::tricky : Values::plain) const {
    const unsigned int columns = shape.columns * shape.pages;
    const HostArray<T> x = randomArray<T>(shape.size(), shape.columns, samples);
    const HostArray<T> zi = randomArray<T>(initial == Initial::shared ? N : N * columns, 7,
                                           samples == Values::zeros ? samples : Values::plain);
    const GuardedArray<T> deviceB(b), deviceA(a), deviceX(x, 1), deviceZi(zi, 1);
    GuardedArray<T> y = inPlace ? GuardedArray<T>(x) : GuardedArray<T>(x.size(), 1), zf(N * columns, 1);
    HostArray<T> expected = y.toHost(), expectedStates = zf.toHost();
    typename gpuruntime::IIRFilter::Invoker<T, mpl_::integral_c<int, N>>()(
        nullptr, y.data(), wantsFinal ? zf.data() : nullptr, deviceB.data(), deviceA.data(),
        inPlace ? y.data() : deviceX.data(), initial == Initial::none ? nullptr : deviceZi.data(),
        static_cast<unsigned int>(b.size()), static_cast<unsigned int>(a.size()), shape.length, shape.columns,
        shape.stride, shape.pages, initial == Initial::shared ? 6 : 0);
    for (unsigned int c = 0; c < columns; ++c) {
      std::vector<T> z(N);
      if (initial != Initial::none) std::copy_n(zi.data() + (initial == Initial::shared ? 0 : N * c), N, z.begin());
      run(z, expected, x, shape, c / shape.columns, c % shape.columns);
      if (wantsFinal) std::copy(z.begin(), z.end(), expectedStates.data() + N * c);
    }
    const std::string context = "N = " + std::to_string(N) + ", length " + std::to_string(shape.length) + ", columns " +
                                std::to_string(shape.columns) + ", stride " + std::to_string(shape.stride);
    expectSame(y.toHost(), expected, context);
    expectSame(zf.toHost(), expectedStates, context + ", states");
  }

  static void expectSame(const HostArray<T>& actual, const HostArray<T>& expected, const std::string& context) {
    HostArray<T> plain = actual;
    for (unsigned long i = 0; i < plain.size(); ++i) plain[i] = withPlainNaN(plain[i]);
    expectElements(
        plain, [&](unsigned long i) { return withPlainNaN(expected[i]); }, context);
  }
};

template <class Member>
struct IIRFilterTest : ::testing::Test {};
TYPED_TEST_SUITE(IIRFilterTest, TestTypes<gpuruntime::FloatTypes>);

template <class T, int N>
void checkOrder() {
  const Shape shapes[] = {{0, 3, 1, 1},  {1, 1, 1, 1},    {8, 3, 1, 2},     {29, 70, 1, 2},  {17, 8, 1, 1},
                          {40, 1, 3, 1}, {29, 70, 70, 2}, {9, 130, 130, 1}, {7, 65, 100, 1}, {24, 64, 64, 1}};
  unsigned int which = N;
  for (const unsigned int length : {1U, N / 2 + 1U, N + 1U, N + 3U}) {
    for (const Values kind : {Values::plain, Values::tricky}) {
      const Filter<T, N> filter(length, which % 3 == 0 ? 1 : N + 2 - length % 2, kind);
      for (const Shape& shape : shapes) {
        filter.check(shape, static_cast<Initial>(which % 3), which % 2 == 0, which % 5 != 0);
        ++which;
      }
    }
  }
}

TYPED_TEST(IIRFilterTest, StepsOfEveryOrder) {
  checkOrder<TypeParam, 1>();
  checkOrder<TypeParam, 2>();
  checkOrder<TypeParam, 3>();
  checkOrder<TypeParam, 4>();
  checkOrder<TypeParam, 5>();
  checkOrder<TypeParam, 6>();
  checkOrder<TypeParam, 7>();
  checkOrder<TypeParam, 8>();
  checkOrder<TypeParam, 9>();
  checkOrder<TypeParam, 10>();
}

TYPED_TEST(IIRFilterTest, SpecialCoefficients) {
  using T = TypeParam;
  for (const double a0 : {0.0, -0.0, 1.0, 1e-30, 1e30}) {
    Filter<T, 2> filter(3, 3, Values::plain);
    const gpuruntime::RealOf<T> part = static_cast<gpuruntime::RealOf<T>>(a0);
    filter.a[0] = T{};
    std::memcpy(&filter.a[0], &part, sizeof part);
    filter.check({21, 5, 5, 1}, Initial::perColumn, false, true);
    filter.b[0] = filter.b[1] = T{};
    filter.check({21, 5, 1, 1}, Initial::none, false, true);
  }
}

TYPED_TEST(IIRFilterTest, SignsOfZero) {
  const Filter<TypeParam, 3> filter(4, 4, Values::plain);
  filter.check({11, 200, 200, 1}, Initial::perColumn, false, true, Values::zeros);
  filter.check({1, 200, 1, 1}, Initial::perColumn, false, true, Values::zeros);
}

TYPED_TEST(IIRFilterTest, InPiecesAsAtOnce) {
  using T = TypeParam;
  constexpr unsigned int length = 100, columns = 3;
  const Filter<T, 4> filter(5, 5, Values::plain);
  const GuardedArray<T> b(filter.b), a(filter.a), x(randomArray<T>(length * columns, 9));
  GuardedArray<T> whole(length * columns), pieces(length * columns), states(4 * columns);
  const auto run = [&](T* y, T* zf, const T* from, const T* zi, unsigned int samples) {
    typename gpuruntime::IIRFilter::Invoker<T, mpl_::integral_c<int, 4>>()(nullptr, y, zf, b.data(), a.data(), from, zi,
                                                                           5, 5, samples, columns, columns, 1, 0);
  };
  run(whole.data(), nullptr, x.data(), nullptr, length);
  unsigned int done = 0;
  for (const unsigned int piece : {0U, 1U, 13U, 64U, 22U}) {
    const T* const zi = done == 0 ? nullptr : states.data();
    run(pieces.data() + done * columns, states.data(), x.data() + done * columns, zi, piece);
    done += piece;
  }
  Filter<T, 4>::expectSame(pieces.toHost(), whole.toHost(), "in pieces");
}

}  // namespace
