#include "gpucommon/CUDATypes.hpp"

#include <boost/mpl/at.hpp>
#include <boost/mpl/size.hpp>

#include "gpucommon/testvalues.hpp"
#include "gtest/gtest.h"

using namespace gpucommon;

using AllAsVector = MplVector<gpuruntime::AllTypes>;
static_assert(boost::mpl::size<AllAsVector>::value == 21);
static_assert(std::is_same_v<boost::mpl::at_c<AllAsVector, 0>::type, double>);
static_assert(std::is_same_v<boost::mpl::at_c<AllAsVector, 10>::type, bool>);
static_assert(std::is_same_v<boost::mpl::at_c<AllAsVector, 20>::type, ulonglong2>);

template <class T, class Doubled, class DoubledSigned>
constexpr bool doublesTo = std::is_same_v<typename CUDADoubleSizedInteger<T>::type, Doubled>&&
    std::is_same_v<typename CUDADoubleSizedSignedInteger<T>::type, DoubledSigned>;
static_assert(doublesTo<signed char, short, short> && doublesTo<unsigned char, unsigned short, short>);
static_assert(doublesTo<short, int, int> && doublesTo<unsigned short, unsigned int, int>);
static_assert(doublesTo<int, long long, long long> && doublesTo<unsigned int, unsigned long long, long long>);

TEST(CUDATypes, mapsRealAndComplexTypesToEachOther) {
  forEachType(gpuruntime::RealNumericTypes{}, [](auto real) {
    using Real = decltype(real);
    using Complex = typename CUDARealToComplex<Real>::type;
    static_assert(std::is_same_v<typename CUDAComplexToReal<Complex>::type, Real>);
    static_assert(std::is_same_v<typename CUDAComplexToReal<Real>::type, Real>);
    static_assert(std::is_same_v<decltype(Complex::y), Real> && sizeof(StorageOf<Complex>) == 2 * sizeof(Real));
    static_assert(CUDAIsComplex<Complex>::value && !CUDAIsComplex<Real>::value && !CUDAIsComplexDouble<Real>::value);
    static_assert(CUDAIsComplexDouble<Complex>::value == std::is_same_v<Real, double>);
    // Twice the width exists for integers below 64 bits alone.
    constexpr bool canDouble = std::is_integral_v<Real> && sizeof(Real) < 8;
    static_assert(CUDATypesDetail::DoubleSizedIntegerImpl<Real>::hasType == canDouble);
    static_assert(CUDATypesDetail::DoubleSizedSignedIntegerImpl<Real>::hasType == canDouble);
    static_assert(!CUDATypesDetail::DoubleSizedIntegerImpl<Complex>::hasType);
  });
  static_assert(!CUDATypesDetail::DoubleSizedIntegerImpl<bool>::hasType && !CUDAIsComplex<bool>::value);
}

using CUDATypesDetail::IntCastImplHelper;
static_assert(IntCastImplHelper<int, unsigned short>::NoSaturationNeeded &&
              IntCastImplHelper<int, int>::NoSaturationNeeded);
static_assert(IntCastImplHelper<int, unsigned int>::SaturateUpperBoundOnly);
static_assert(IntCastImplHelper<unsigned char, unsigned int>::SaturateUpperBoundOnly);
static_assert(IntCastImplHelper<unsigned long long, signed char>::SaturateLowerBoundOnly);
static_assert(IntCastImplHelper<unsigned int, int>::SaturateLowerBoundOnly);
static_assert(IntCastImplHelper<unsigned short, int>::SaturateLowerAndUpperBounds);

TEST(CUDATypes, castWithSaturationClampsTheExactValue) {
  forEachType(gpuruntime::RealNumericTypes{}, [](auto target) {
    forEachType(gpuruntime::RealNumericTypes{}, [](auto source) {
      using T = decltype(target);
      using U = decltype(source);
      if constexpr (std::is_integral_v<T> && std::is_integral_v<U>) {
        for (const U value : edgeValues<U>()) ASSERT_EQ(castWithSaturation<T>(value), clamped<T>(value)) << +value;
      }
    });
  });
}
