#include "digest.hpp"
#include "support/convolution.hpp"

namespace digest {
namespace {

using testsupport::convolutionData;

constexpr unsigned long rows = 211, columns = 97, size = rows * columns;

template <class T>
struct Data {
  GuardedArray<T> in{convolutionData<T>(size, 1)}, filter{convolutionData<T>(200, 2)};
};

// All members of a type one after the other, each adding to what the one before left.
template <class T>
HostArray<T> passesOverVectors() {
  const Data<T> data;
  return filled<T>(size, [&](T* out) {
    bool overwrite = true;
    testsupport::forEachPassMember([&](auto type, auto N) {
      if constexpr (std::is_same_v<decltype(type), T>) {
        gpuruntime::ConvolutionVector::Invoker<T, decltype(N)>()(nullptr, out, data.in.data(), data.filter.data(),
                                                                 {3, size, size, 5, 0, 3, overwrite});
        overwrite = false;
      }
    });
  });
}

template <class T>
HostArray<T> passesOverMatrices() {
  const Data<T> data;
  const std::vector<unsigned long> sizes{rows, columns};
  const gpuruntime::convn::OffsetsAndSzs stored{1,    1,       5,   {0, 0, rows, columns}, {1, 1}, 0, 0, 0, 3,
                                                rows, columns, true};
  return filled<T>(size, [&](T* out) {
    gpuruntime::convn::OffsetsAndSzs pass = stored;
    testsupport::forEachPassMember([&](auto type, auto N) {
      if constexpr (std::is_same_v<decltype(type), T>) {
        for (const auto direction :
             {gpuruntime::convolutioncommon::KernelTypeColumn, gpuruntime::convolutioncommon::KernelTypeRow}) {
          gpuruntime::ConvolutionMatrix::Invoker<T, decltype(N)>()(nullptr, out, data.in.data(), data.filter.data(),
                                                                   sizes, sizes, pass, 2, direction);
          pass.overwrite = false;
        }
      }
    });
  });
}

template <class T, class K>
void addSquare(Lines& lines) {
  const Data<T> data;
  lines.exact("ConvolutionSquare " + std::to_string(K::value), filled<T>(size, [&](T* out) {
                gpuruntime::ConvolutionSquare::Invoker<T, K>()(nullptr, out, data.in.data(), data.filter.data(),
                                                               {rows, columns}, {rows, columns}, 0, {1, 2}, {0, 0, 0});
              }));
}

}  // namespace

void addConvolutions(Lines& lines) {
  forEachType(gpuruntime::FloatTypes{}, [&](auto tag) {
    using T = decltype(tag);
    lines.exact("ConvolutionVector", passesOverVectors<T>());
    lines.exact("ConvolutionMatrix", passesOverMatrices<T>());
  });
#define GPURUNTIME_DIGEST_SQUARE(A, T, K) addSquare<T, mpl_::size_t<K>>(lines);
  GPURUNTIME_SQUARE_MEMBERS(GPURUNTIME_DIGEST_SQUARE, )
}

}  // namespace digest
