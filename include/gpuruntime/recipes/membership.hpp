/// @file
/// Which elements of an array occur in another one, and where.
#pragma once

#include <gpuruntime/indexing/ismember.hpp>
#include <gpuruntime/indexing/ismembercmplx.hpp>
#include <gpuruntime/recipes/sort.hpp>

namespace gpuruntime::recipes {
namespace detail {

template <class T>
void requireMembers(const View<bool>& member, const View<double>& location, const View<const T>& A) {
  requireSize("isMember", "member", member, A.size());
  requireSize("isMember", "location", location, A.size());
}

}  // namespace detail

/// Bytes that isMember takes for a B of nB elements; none for complex ones.
inline std::size_t isMemberWorkspace(unsigned long nB) {
  return 2 * detail::bytesOf<double>(nB);
}

/// `member[i]` = 1 if some element of B equals `A[i]`, else 0; `location[i]` = the place of the first such element in
/// B, from 1, or 0.0. B is in any order and stays as it is.
///
/// `T` is a real type of at most 32 bits, or `double`; B holds doubles, which are compared in the type T as
/// IsMember2Arg says: those out of the range of an integer T count as its ends, and for `bool` B holds no negative
/// numbers, unchecked. NaN is in no array; -0 is where 0 is. Shapes do not matter, sizes do. Outputs overlap neither
/// each other nor the inputs, unchecked.
///
/// Waits for the stream, and sorts a copy of B on the default stream, for which the stream must wait.
/// @throws std::invalid_argument unless both outputs hold as many elements as A; std::bad_alloc if memory is missing.
/// Nothing is written then.
template <class T>
void isMember(CUstream_st* stream, View<bool> member, View<double> location, View<const T> A, View<const double> B,
              Allocator& allocator = deviceAllocator()) {
  detail::requireMembers(member, location, A);
  const unsigned long nB = B.size();
  detail::Temporary memory(allocator, isMemberWorkspace(nB));
  double* const sorted = memory.take<double>(nB);
  double* const places = memory.take<double>(nB);
  if (nB != 0) copyOnDevice(sorted, B.data(), nB * sizeof(double), stream);
  detail::sortLines(stream, sorted, places, nullptr, std::max(nB, 1UL), nB == 0 ? 0 : 1, true);
  IsMember2Arg::Invoker<T>()(stream, A.data(), A.size(), sorted, nB, places, member.data(), location.data());
}

/// The same of complex elements, equal if both parts are. The library takes the memory of the sort itself.
inline void isMember(CUstream_st* stream, View<bool> member, View<double> location, View<const double2> A,
                     View<const double2> B) {
  detail::requireMembers(member, location, A);
  synchronise(stream);  // B is sorted on the default stream.
  IsMember2ArgCmplx::Invoker<double2>()(stream, A.data(), A.size(), B.data(), B.size(), member.data(), location.data());
}

}  // namespace gpuruntime::recipes
