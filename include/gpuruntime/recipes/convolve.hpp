/// @file
/// Convolution of arrays of any number of dimensions with filters of any length.
///
/// **Order.** It depends on the extents alone. Taps come from the array with fewer elements, the second one of two as
/// large. Vectors along one dimension go by ConvolutionVector, in stretches of taps from the first on, each as long as
/// the largest member and its steps allow. Matrices and more go by ConvolutionSquare, page by page, where the taps are
/// a square that it has and the extents behind the second are 1. Otherwise they go by ConvolutionMatrix: for each page
/// of the output over the pages of taps in the order of memory, over the lines of such a page, and over the stretches
/// of a line. Lines are columns, unless rows make fewer passes. The first pass stores, the others add.
#pragma once

#include <gpuruntime/convolutions/conv2.hpp>
#include <gpuruntime/convolutions/conv2SmallSquareFilter.hpp>
#include <gpuruntime/elmath/transpose.hpp>
#include <gpuruntime/recipes/allocator.hpp>
#include <gpuruntime/recipes/view.hpp>

#include <algorithm>

namespace gpuruntime::recipes {

/// Which part of the convolution of n by k elements: along each dimension
///
/// | section | elements  | from position |
/// |---------|-----------|---------------|
/// | full    | n + k - 1 | 0             |
/// | same    | n         | k / 2         |
/// | valid   | n - k + 1 | k - 1         |
///
/// with k / 2 rounded down, and none where n - k + 1 is below 1. Of no input elements there are none.
enum class Section { full, same, valid };

namespace detail {

inline unsigned long sectionExtent(unsigned long n, unsigned long k, Section section) {
  if (n == 0 || k == 0) return 0;
  if (section == Section::same) return n;
  return section == Section::full ? n + k - 1 : n < k ? 0 : n - k + 1;
}

inline unsigned long sectionStart(unsigned long k, Section section) {
  return section == Section::full ? 0 : section == Section::same ? k / 2 : k - 1;
}

// Some taps of a line: the member of the families of passes, and how many more it takes.
struct Stretch {
  unsigned long from, member, extraTaps;
};

template <class T>
unsigned long largestMember(unsigned long taps) {
  unsigned long member = 1;
#define GPURUNTIME_LARGER_MEMBER(A, Type, N) \
  if (std::is_same_v<T, Type> && N <= taps && N > member) member = N;
  GPURUNTIME_PASS_MEMBERS(GPURUNTIME_LARGER_MEMBER, )
#undef GPURUNTIME_LARGER_MEMBER
  return member;
}

// Each stretch takes as many taps as a pass can, but for the last.
template <class T>
std::vector<Stretch> stretchesOf(unsigned long taps) {
  std::vector<Stretch> stretches;
  for (unsigned long from = 0; from < taps;) {
    const unsigned long member = largestMember<T>(taps - from);
    const unsigned long taken = std::min(taps - from, conv::haloOf<T>(member) + 1);
    stretches.push_back({from, member, taken - member});
    from += taken;
  }
  return stretches;
}

// call(N) with the member as a type, mpl_::int_<N>.
template <class T, class Call>
void withMember(unsigned long member, const Call& call) {
#define GPURUNTIME_CALL_MEMBER(A, Type, N)         \
  if constexpr (std::is_same_v<T, Type>) {         \
    if (member == N) return call(mpl_::int_<N>()); \
  }
  GPURUNTIME_PASS_MEMBERS(GPURUNTIME_CALL_MEMBER, )
#undef GPURUNTIME_CALL_MEMBER
}

// True if there was a member for squares of this side.
template <class T, class Call>
bool withSquare(unsigned long side, const Call& call) {
#define GPURUNTIME_CALL_SQUARE(A, Type, K)               \
  if constexpr (std::is_same_v<T, Type>) {               \
    if (side == K) return call(mpl_::size_t<K>()), true; \
  }
  GPURUNTIME_SQUARE_MEMBERS(GPURUNTIME_CALL_SQUARE, )
#undef GPURUNTIME_CALL_SQUARE
  return false;
}

// Extents of both arrays, as many as the one of more dimensions has and two at least, and the section.
struct ConvolutionShape {
  Extents in, taps, out, start;

  unsigned long pageOf(const Extents& extents) const { return extents[0] * extents[1]; }
  unsigned long dimensions() const { return in.size(); }
};

inline ConvolutionShape shapeOf(Extents n, Extents k, Section section) {
  const std::size_t dimensions = std::max({n.size(), k.size(), std::size_t{2}});
  n.resize(dimensions, 1);
  k.resize(dimensions, 1);
  ConvolutionShape shape{n, k, Extents(dimensions), Extents(dimensions)};
  for (std::size_t i = 0; i < dimensions; ++i) {
    shape.out[i] = sectionExtent(n[i], k[i], section);
    shape.start[i] = sectionStart(k[i], section);
  }
  return shape;
}

// The one dimension along which all arrays extend, or none of them.
inline bool isAlongOne(const ConvolutionShape& shape, std::size_t* dimension) {
  std::size_t longer = 0;
  for (std::size_t i = 0; i < shape.dimensions(); ++i) {
    if (shape.in[i] != 1 || shape.taps[i] != 1) {
      *dimension = i;
      ++longer;
    }
  }
  if (longer == 0) *dimension = 0;
  return longer <= 1;
}

template <class T>
void convolveVector(CUstream_st* stream, T* output, const T* input, const T* taps, const ConvolutionShape& shape,
                    std::size_t along) {
  const unsigned long start = shape.start[along];
  for (const Stretch& stretch : stretchesOf<T>(shape.taps[along])) {
    const conv::OffsetsAndSzs pass{stretch.from,
                                   shape.out[along],
                                   shape.in[along],
                                   stretch.extraTaps,
                                   start < stretch.from ? 0 : start - stretch.from,
                                   start,
                                   stretch.from == 0};
    withMember<T>(stretch.member,
                  [&](auto N) { ConvolutionVector::Invoker<T, decltype(N)>()(stream, output, input, taps, pass); });
  }
}

// One pass for each line and stretch of a page of taps. Rows stand transposed, so that each is contiguous.
template <class T>
void convolvePage(CUstream_st* stream, T* output, const T* input, const T* taps, const ConvolutionShape& shape,
                  bool byRows, convn::OffsetsAndSzs pass) {
  const std::size_t along = byRows ? 1 : 0, across = 1 - along;
  const bool overwrite = pass.overwrite;
  for (unsigned long line = 0; line < shape.taps[across]; ++line) {
    for (const Stretch& stretch : stretchesOf<T>(shape.taps[along])) {
      unsigned long shift[2], extent[2];
      shift[along] = stretch.from;
      shift[across] = line;
      bool reachesOutput = true;
      for (std::size_t i = 0; i < 2; ++i) {
        // In the input's coordinates: where the section begins, and where it ends.
        const unsigned long begin = shape.start[i] > shift[i] ? shape.start[i] - shift[i] : 0;
        const unsigned long end = shape.out[i] + shape.start[i];
        reachesOutput = reachesOutput && begin + shift[i] < end;
        pass.regionBounds[i] = begin;
        pass.regionBounds[2 + i] = reachesOutput ? end - shift[i] : 0;
        extent[i] = reachesOutput ? end - shift[i] - begin : 0;
      }
      if (!reachesOutput) continue;
      pass.lineShift = stretch.from;
      pass.crossShift = line;
      pass.extraTaps = stretch.extraTaps;
      pass.filterLineOffset = line * shape.taps[along] + stretch.from;
      pass.xExtent = extent[0];
      pass.yExtent = extent[1];
      pass.overwrite = overwrite && line == 0 && stretch.from == 0;
      withMember<T>(stretch.member, [&](auto N) {
        ConvolutionMatrix::Invoker<T, decltype(N)>()(
            stream, output, input, taps, shape.in, shape.out, pass, shape.dimensions(),
            byRows ? convolutioncommon::KernelTypeRow : convolutioncommon::KernelTypeColumn);
      });
    }
  }
}

// Coordinates of the pages behind the first two dimensions: calls visit(number of the page) in the order of memory.
inline bool nextPage(Extents& page, const Extents& extents) {
  for (std::size_t i = 2; i < extents.size(); ++i) {
    if (++page[i] < extents[i]) return true;
    page[i] = 0;
  }
  return false;
}

template <class T>
void convolvePages(CUstream_st* stream, T* output, const T* input, const T* taps, const ConvolutionShape& shape,
                   bool byRows) {
  const std::size_t dimensions = shape.dimensions();
  convn::OffsetsAndSzs pass{};
  pass.regionBounds.resize(4);
  pass.outStart = {shape.start[0], shape.start[1]};
  Extents outPage(dimensions, 0);
  do {
    Extents tapPage(dimensions, 0);
    pass.overwrite = true;
    pass.filterPageOffset = 0;
    do {
      // The input's page at the difference of the two, if there is one.
      unsigned long inPage = 0, stride = 1;
      bool isInside = true;
      for (std::size_t i = 2; i < dimensions; ++i) {
        const unsigned long at = outPage[i] + shape.start[i];
        isInside = isInside && at >= tapPage[i] && at - tapPage[i] < shape.in[i];
        inPage += (at - tapPage[i]) * stride;
        stride *= shape.in[i];
      }
      if (isInside) {
        pass.inPageOffset = inPage * shape.pageOf(shape.in);
        convolvePage(stream, output, input, taps, shape, byRows, pass);
        pass.overwrite = false;
      }
      pass.filterPageOffset += shape.pageOf(shape.taps);
    } while (nextPage(tapPage, shape.taps));
    pass.outPageOffset += shape.pageOf(shape.out);
  } while (nextPage(outPage, shape.out));
}

// Pages of a square of taps; false if there is no member for it.
template <class T>
bool convolveSquares(CUstream_st* stream, T* output, const T* input, const T* taps, const ConvolutionShape& shape) {
  if (shape.taps[0] != shape.taps[1] || product(shape.taps) != shape.pageOf(shape.taps)) return false;
  return withSquare<T>(shape.taps[0], [&](auto K) {
    const unsigned long pages = product(shape.in) / shape.pageOf(shape.in);
    for (unsigned long page = 0; page < pages; ++page) {
      ConvolutionSquare::Invoker<T, decltype(K)>()(stream, output, input, taps, {shape.out[0], shape.out[1]},
                                                   {shape.in[0], shape.in[1]}, 0, {shape.start[0], shape.start[1]},
                                                   {page * shape.pageOf(shape.in), 0, page * shape.pageOf(shape.out)});
    }
  });
}

template <class T>
bool isByRows(const Extents& taps) {
  return taps[0] * stretchesOf<T>(taps[1]).size() < taps[1] * stretchesOf<T>(taps[0]).size();
}

// Bytes for transposed taps.
template <class T>
std::size_t transposedBytes(const ConvolutionShape& shape) {
  return isByRows<T>(shape.taps) && shape.taps[0] > 1 ? bytesOf<T>(product(shape.taps)) : 0;
}

// Taps come from the array with fewer elements.
inline ConvolutionShape orientedShape(const Extents& input, const Extents& filter, Section section) {
  ConvolutionShape shape = shapeOf(input, filter, section);
  if (product(filter) > product(input)) std::swap(shape.in, shape.taps);
  return shape;
}

}  // namespace detail

/// Extents of a section of the convolution of two arrays, as many as the longer list has.
inline Extents convolvedExtents(const Extents& input, const Extents& filter, Section section) {
  Extents out(std::max(input.size(), filter.size()));
  for (std::size_t i = 0; i < out.size(); ++i) {
    out[i] = detail::sectionExtent(i < input.size() ? input[i] : 1, i < filter.size() ? filter[i] : 1, section);
  }
  return out;
}

/// Bytes that convolve takes: those of the taps where their rows make fewer passes than their columns.
template <class T>
std::size_t convolveWorkspace(const Extents& input, const Extents& filter) {
  if (detail::product(input) == 0 || detail::product(filter) == 0) return 0;
  const detail::ConvolutionShape shape = detail::orientedShape(input, filter, Section::full);
  std::size_t along = 0;
  return detail::isAlongOne(shape, &along) ? 0 : detail::transposedBytes<T>(shape);
}

/// A section of the convolution of two column-major arrays, which are 0 outside: with p the position of an output
/// element in the full convolution, a vector of as many coordinates as there are dimensions,
///
///     output(p) = sum of filter(q) * input(p - q) over all q
///
/// `T` is `double`, `float`, `double2` or `float2`. Extents of 1 may be left out at the end; a column and a row are
/// vectors along different dimensions. The output has the elements of convolvedExtents(). Sums are rounded by the rules
/// of the families named above. Nothing is skipped: an infinite or NaN tap makes NaN also of output elements at which
/// it meets what lies outside of the input.
///
/// Waits for nothing. The families keep their taps in one place: calls on different streams must not overlap, and a
/// stream must be one that waits for the default stream. The output overlaps neither input nor filter, unchecked.
/// @throws std::invalid_argument for an output of another size or a filter without taps; std::bad_alloc if memory is
/// missing. Nothing is written then.
template <class T>
void convolve(CUstream_st* stream, View<T> output, View<const T> input, View<const T> filter, Section section,
              Allocator& allocator = deviceAllocator()) {
  if (filter.size() == 0) detail::refuse("convolve", "filter: expected at least one tap, came none");
  const Extents expected = convolvedExtents(input.extents(), filter.extents(), section);
  if (output.size() != detail::product(expected)) {
    detail::refuse("convolve", "output: expected " + detail::inWords(expected) + " elements, came " +
                                   detail::inWords(output.extents()));
  }
  if (output.size() == 0) return;
  const bool isSwapped = filter.size() > input.size();
  const detail::ConvolutionShape shape = detail::orientedShape(input.extents(), filter.extents(), section);
  const T* const in = isSwapped ? filter.data() : input.data();
  const T* taps = isSwapped ? input.data() : filter.data();

  std::size_t along = 0;
  if (detail::isAlongOne(shape, &along)) {
    return detail::convolveVector(stream, output.data(), in, taps, shape, along);
  }
  if (detail::convolveSquares(stream, output.data(), in, taps, shape)) return;

  detail::Temporary memory(allocator, detail::transposedBytes<T>(shape));
  const bool byRows = detail::isByRows<T>(shape.taps);
  if (byRows && shape.taps[0] > 1) {
    T* const rows = memory.template take<T>(detail::product(shape.taps));
    const unsigned long page = shape.pageOf(shape.taps);
    for (unsigned long at = 0; at < detail::product(shape.taps); at += page) {
      Transpose::Invoker<T>()(stream, rows + at, taps + at, shape.taps[0], shape.taps[1]);
    }
    taps = rows;
  }
  detail::convolvePages(stream, output.data(), in, taps, shape, byRows);
}

}  // namespace gpuruntime::recipes
