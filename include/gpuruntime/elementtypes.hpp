/// @file
/// The 21 element types, the lists of them that families take, and the check that a family's member is in its list.
///
/// GPURUNTIME_ELEMENT_ROWS is the one table. Every list, every explicit instantiation and every typed test comes from
/// it.
#pragma once

#include <gpuruntime/platformtypes.hpp>

#include <type_traits>

// One row per numeric type: ROW(X, A, real type, complex type), in the order in which the lists are walked.
#define GPURUNTIME_ELEMENT_ROWS(ROW, X, A) \
  ROW(X, A, double, double2)               \
  ROW(X, A, float, float2)                 \
  ROW(X, A, signed char, char2)            \
  ROW(X, A, unsigned char, uchar2)         \
  ROW(X, A, short, short2)                 \
  ROW(X, A, unsigned short, ushort2)       \
  ROW(X, A, int, int2)                     \
  ROW(X, A, unsigned int, uint2)           \
  ROW(X, A, long long, longlong2)          \
  ROW(X, A, unsigned long long, ulonglong2)

#define GPURUNTIME_REAL_OF_ROW(X, A, Real, Complex) X(A, Real)
#define GPURUNTIME_COMPLEX_OF_ROW(X, A, Real, Complex) X(A, Complex)

// The lists as macros: each expands to X(A, T) for its members T in order, with A handed through.
#define GPURUNTIME_REAL_NUMERIC_TYPES(X, A) GPURUNTIME_ELEMENT_ROWS(GPURUNTIME_REAL_OF_ROW, X, A)
#define GPURUNTIME_REAL_TYPES(X, A) GPURUNTIME_REAL_NUMERIC_TYPES(X, A) X(A, bool)
#define GPURUNTIME_COMPLEX_TYPES(X, A) GPURUNTIME_ELEMENT_ROWS(GPURUNTIME_COMPLEX_OF_ROW, X, A)
#define GPURUNTIME_ALL_TYPES(X, A) GPURUNTIME_REAL_TYPES(X, A) GPURUNTIME_COMPLEX_TYPES(X, A)
#define GPURUNTIME_REAL_FLOAT_TYPES(X, A) X(A, double) X(A, float)
#define GPURUNTIME_COMPLEX_FLOAT_TYPES(X, A) X(A, double2) X(A, float2)
#define GPURUNTIME_FLOAT_TYPES(X, A) GPURUNTIME_REAL_FLOAT_TYPES(X, A) GPURUNTIME_COMPLEX_FLOAT_TYPES(X, A)
#define GPURUNTIME_DOUBLE_AND_INT_TYPES(X, A) X(A, double) X(A, int)
#define GPURUNTIME_REAL_AND_COMPLEX_FLOAT_TYPES(X, A) GPURUNTIME_REAL_TYPES(X, A) GPURUNTIME_COMPLEX_FLOAT_TYPES(X, A)
#define GPURUNTIME_SORT_TYPES(X, A) X(A, long long) X(A, unsigned long long) X(A, double) X(A, double2)
#define GPURUNTIME_DOUBLE_TYPES(X, A) X(A, double)
#define GPURUNTIME_DIFF_TYPES(X, A) GPURUNTIME_REAL_NUMERIC_TYPES(X, A) GPURUNTIME_COMPLEX_FLOAT_TYPES(X, A)
#define GPURUNTIME_MEMBER_TYPES(X, A) \
  GPURUNTIME_REAL_FLOAT_TYPES(X, A)   \
  X(A, signed char) X(A, unsigned char) X(A, short) X(A, unsigned short) X(A, int) X(A, unsigned int) X(A, bool)
#define GPURUNTIME_COMPLEX_MEMBER_TYPES(X, A) \
  GPURUNTIME_COMPLEX_FLOAT_TYPES(X, A)        \
  X(A, char2) X(A, uchar2) X(A, short2) X(A, ushort2) X(A, int2) X(A, uint2)

namespace gpuruntime {

/// A list of element types, in order.
template <class... Types>
struct TypeList {
  static constexpr unsigned long size = sizeof...(Types);
};

namespace detail {

// Stands behind the last member of a list, whose macro ends every member with a comma.
struct ListEnd;

template <class List, class... Members>
struct ListBuilder;
template <class... Done, class Next, class... Rest>
struct ListBuilder<TypeList<Done...>, Next, Rest...> : ListBuilder<TypeList<Done..., Next>, Rest...> {};
template <class... Done>
struct ListBuilder<TypeList<Done...>, ListEnd> {
  using type = TypeList<Done...>;
};

// A real and a complex type for each element type, which is itself one of the two. The complex of bool is none.
template <class T>
struct Parts {
  using Real = T;
};
#define GPURUNTIME_DEFINE_PARTS(X, A, RealType, ComplexType) \
  template <>                                                \
  struct Parts<RealType> {                                   \
    using Real = RealType;                                   \
    using Complex = ComplexType;                             \
  };                                                         \
  template <>                                                \
  struct Parts<ComplexType> : Parts<RealType> {};
GPURUNTIME_ELEMENT_ROWS(GPURUNTIME_DEFINE_PARTS, , )
#undef GPURUNTIME_DEFINE_PARTS

template <class T, class List>
struct IsMember;
template <class T, class... Types>
struct IsMember<T, TypeList<Types...>> : std::bool_constant<(std::is_same_v<T, Types> || ...)> {};

}  // namespace detail

#define GPURUNTIME_LIST_MEMBER(A, T) T,
#define GPURUNTIME_DEFINE_LIST(Name, MEMBERS) \
  using Name = detail::ListBuilder<TypeList<>, MEMBERS(GPURUNTIME_LIST_MEMBER, ) detail::ListEnd>::type

/// The type of the parts of a complex type; a real type is its own.
template <class T>
using RealOf = typename detail::Parts<T>::Real;

/// The complex type whose parts have a numeric real type; a complex type is its own.
template <class T>
using ComplexOf = typename detail::Parts<T>::Complex;

GPURUNTIME_DEFINE_LIST(RealNumericTypes, GPURUNTIME_REAL_NUMERIC_TYPES);
GPURUNTIME_DEFINE_LIST(RealTypes, GPURUNTIME_REAL_TYPES);
GPURUNTIME_DEFINE_LIST(ComplexTypes, GPURUNTIME_COMPLEX_TYPES);
GPURUNTIME_DEFINE_LIST(AllTypes, GPURUNTIME_ALL_TYPES);
GPURUNTIME_DEFINE_LIST(FloatTypes, GPURUNTIME_FLOAT_TYPES);
GPURUNTIME_DEFINE_LIST(RealFloatTypes, GPURUNTIME_REAL_FLOAT_TYPES);
GPURUNTIME_DEFINE_LIST(ComplexFloatTypes, GPURUNTIME_COMPLEX_FLOAT_TYPES);
GPURUNTIME_DEFINE_LIST(DoubleAndIntTypes, GPURUNTIME_DOUBLE_AND_INT_TYPES);
GPURUNTIME_DEFINE_LIST(RealAndComplexFloatTypes, GPURUNTIME_REAL_AND_COMPLEX_FLOAT_TYPES);
GPURUNTIME_DEFINE_LIST(SortTypes, GPURUNTIME_SORT_TYPES);
GPURUNTIME_DEFINE_LIST(DoubleTypes, GPURUNTIME_DOUBLE_TYPES);
GPURUNTIME_DEFINE_LIST(DiffTypes, GPURUNTIME_DIFF_TYPES);
GPURUNTIME_DEFINE_LIST(MemberTypes, GPURUNTIME_MEMBER_TYPES);
GPURUNTIME_DEFINE_LIST(ComplexMemberTypes, GPURUNTIME_COMPLEX_MEMBER_TYPES);

/// `double` for a real type, `double2` for a complex one.
template <class T>
using DoubleOf = std::conditional_t<detail::IsMember<T, ComplexTypes>::value, double2, double>;

}  // namespace gpuruntime

/// Stands first in every Invoker: a type outside the family's list is refused by name, at compile time.
#define GPURUNTIME_FAMILY_TAKES(Family, T, List)                              \
  static_assert(::gpuruntime::detail::IsMember<T, ::gpuruntime::List>::value, \
                "gpuruntime::" #Family " has no member for this element type: it takes gpuruntime::" #List)
