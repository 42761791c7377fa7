/// @file
/// Queries that span a mesh, of which the bins are known: one result at a time, and rows of results at once.
#pragma once

#include <vector>

#include "interp/interpDimensions.hpp"

namespace gpuruntime::interp {

template <unsigned int D, class GridArg, class T, class V>
struct Mesh {
  using C = CoordinateOf<GridArg>;

  Axes<D, GridArg> grids;
  Axes<D, const T*> queries;
  Axes<D, const long long*> bins;
  Sizes<D> querySizes;
  Field<V> field;

  GPURUNTIME_DEVICE Place<C> placeOf(unsigned int d, unsigned long coordinate, const Sizes<D>& sizes) const {
    return placeQuery(grids.of[d], queries.of[d][coordinate], bins.of[d][coordinate], sizes.of[d], field.methods);
  }

  /// The result at these coordinates in the mesh.
  GPURUNTIME_DEVICE V valueAt(const Sizes<D>& coordinates, const Sizes<D>& sizes, const Sizes<D>& strides) const {
    Places<D, C> places;
    platform::unrolled<D>([&](auto d) { places.of[d] = placeOf(d, coordinates.of[d], sizes); });
    return interpolateAt(places, field, strides);
  }
};

/// Where each dimension's bins begin: behind those of the one before, whose stretch is a multiple of 16 elements.
template <unsigned int D>
Axes<D, const long long*> binsOfDimensions(const long long* bins, const std::vector<unsigned long>& querySizes) {
  Axes<D, const long long*> starts;
  for (unsigned int d = 0; d < D; ++d) {
    starts.of[d] = bins;
    bins += gpucommon::hostDeviceMath::roundIntegerUpToMultipleOf(querySizes[d], 16UL);
  }
  return starts;
}

/// Rows of results, one beside the other. A row is made of the values on the 2^(D - 1) lines around it, interpolated
/// along dimension 0. Those are kept: the next row often takes the same ones, or some of them.
template <unsigned int D, class GridArg, class T, class V>
class MeshRows {
 public:
  static constexpr unsigned int width = D == 2 ? 2048 : (D == 3 ? 512 : 256);
  using C = CoordinateOf<GridArg>;

  GPURUNTIME_DEVICE MeshRows(const Mesh<D, GridArg, T, V>& mesh, const Sizes<D>& sizes)
      : mesh_(mesh), sizes_(sizes), strides_(sizes.strides()) {
    for (unsigned int k = 0; k < lines; ++k) sources_[k] = nullptr;
  }

  /// Turns to the results from x on, at most `width` of each row.
  template <class Block>
  GPURUNTIME_DEVICE void select(const Block& block, unsigned long x, unsigned long count) {
    if (x == x_ && count == count_) return;
    x_ = x;
    count_ = count;
    for (unsigned int k = 0; k < lines; ++k) sources_[k] = nullptr;
    const auto& mesh = mesh_;
    const Sizes<D> sizes = sizes_;
    block.template withShape<width>().forEachThread(Live{count}, [=, &mesh](Thread thread) {
      const Place<C> place = mesh.placeOf(0, x + thread.x, sizes);
      bin_[thread] = place.bin;
      t_[thread] = place.t;
      choice_[thread] = place.choice;
    });
    canBePlain_ = !block.template withShape<width>().findsAny(
        Live{count}, [this](Thread thread) { return choice_[thread] != chooseLinear; });
  }

  /// Writes the selected results from `first` on, `count` of them, of the row at `coordinates`.
  template <class Block>
  GPURUNTIME_DEVICE void write(const Block& block, V* out, const Sizes<D>& coordinates, unsigned long first,
                               unsigned long count) {
    const auto row = block.template withShape<width>();
    Places<D, C> places;
    for (unsigned int d = 1; d < D; ++d) places.of[d] = mesh_.placeOf(d, coordinates.of[d], sizes_);
    Corners corners = linesAround(row, places);

    unsigned long index = 0;
    for (unsigned int d = D - 1; d > 0; --d) index = (index + coordinates.of[d]) * mesh_.querySizes.of[d - 1];
    index += x_ + first;
    platform::OutputWindow<V, width> window(out, index, count, mesh_.querySizes.product());
    V* const target = window.pointer() + index;
    const V extrapolation = mesh_.field.extrapolation;
    for (const V*& line : corners.of) line += first;
    bool canBePlain = true;
    for (unsigned int d = 1; d < D; ++d) canBePlain &= places.of[d].choice == chooseLinear;
    runPlainFirst(row, Live{count}, target, canBePlain, [&](auto isPlain) {
      row.forEachThread(Live{count}, [=](Thread thread) {
        target[thread.x] = combined<isPlain.value, D - 1, 0>(places, corners, thread.x, extrapolation);
      });
    });
    window.flush(row);
  }

 private:
  static constexpr unsigned int lines = 1U << (D - 1);

  // Bit d - 1 of a corner's number tells the upper from the lower of dimension d.
  struct Corners {
    const V* of[lines];
  };

  template <bool isPlain, unsigned int d, unsigned int corner>
  static GPURUNTIME_DEVICE V combined(const Places<D, C>& places, const Corners& corners, unsigned long x,
                                      const V& extrapolation) {
    if constexpr (d == 0) {
      return corners.of[corner][x];
    } else {
      constexpr unsigned int other = corner + (1U << (d - 1));
      return interpolateCachedVal<V, isPlain>(
          places.of[d], combined<isPlain, d - 1, corner>(places, corners, x, extrapolation),
          combined<isPlain, d - 1, other>(places, corners, x, extrapolation), extrapolation);
    }
  }

  /// The interpolated lines at a row's corners: those that are there already, and the others made anew in the places
  /// that are left.
  template <class Row>
  GPURUNTIME_DEVICE Corners linesAround(const Row& row, const Places<D, C>& places) {
    Corners corners;
    bool isTaken[lines] = {}, isMissing[lines] = {};
    const V* sources[lines];
    for (unsigned int corner = 0; corner < lines; ++corner) {
      unsigned long offset = 0;
      for (unsigned int d = 1; d < D; ++d) offset += (places.of[d].bin + (corner >> (d - 1) & 1)) * strides_.of[d];
      sources[corner] = mesh_.field.values + offset;
      unsigned int k = 0;
      while (k < lines && sources_[k] != sources[corner]) ++k;
      isMissing[corner] = k == lines;
      if (k == lines) continue;
      isTaken[k] = true;
      corners.of[corner] = lines_[k].slots();
    }
    unsigned int k = 0;
    for (unsigned int corner = 0; corner < lines; ++corner) {
      if (!isMissing[corner]) continue;
      while (isTaken[k]) ++k;
      makeLine(row, k, sources[corner]);
      corners.of[corner] = lines_[k++].slots();
    }
    return corners;
  }

  template <class Row>
  GPURUNTIME_DEVICE void makeLine(const Row& row, unsigned int k, const V* source) {
    sources_[k] = source;
    PerThread<V, width>& line = lines_[k];
    const V extrapolation = mesh_.field.extrapolation;
    runPlainFirst(row, Live{count_}, line.slots(), canBePlain_, [&](auto isPlain) {
      row.forEachThread(Live{count_}, [=, &line](Thread thread) {
        const Place<C> place{bin_[thread], t_[thread], choice_[thread]};
        line[thread] = interpolate<V, isPlain.value>(place, source, extrapolation);
      });
    });
  }

  const Mesh<D, GridArg, T, V>& mesh_;
  Sizes<D> sizes_;
  Sizes<D> strides_;
  unsigned long x_ = 0;
  unsigned long count_ = 0;
  bool canBePlain_ = false;
  PerThread<unsigned long, width> bin_;
  PerThread<C, width> t_;
  PerThread<long long, width> choice_;
  PerThread<V, width> lines_[lines];
  const V* sources_[lines];
};

/// The results of a box of the mesh, in strips as wide as MeshRows.
template <class Block, unsigned int D, class GridArg, class T, class V>
GPURUNTIME_DEVICE void interpolateBox(const Block& block, launchdetail::Distances first, launchdetail::Distances live,
                                      V* out, const Mesh<D, GridArg, T, V>& mesh, const Sizes<D>& sizes) {
  using Rows = MeshRows<D, GridArg, T, V>;
  Rows rows(mesh, sizes);
  for (unsigned long x = first.x; x < first.x + live.x; x += Rows::width) {
    const unsigned long left = first.x + live.x - x, count = left < Rows::width ? left : Rows::width;
    rows.select(block, x, count);
    for (unsigned long z = first.z; z < first.z + live.z; ++z) {
      for (unsigned long y = first.y; y < first.y + live.y; ++y) {
        Sizes<D> coordinates{{0, y}};
        if constexpr (D == 3) coordinates.of[2] = z;
        rows.write(block, out, coordinates, 0, count);
      }
    }
  }
}

/// Neighbouring blocks that are done as one, so that rows share lines.
constexpr unsigned int joinedMeshBlocks = 256;

}  // namespace gpuruntime::interp
