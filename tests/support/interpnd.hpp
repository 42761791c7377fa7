/// @file
/// The families of several dimensions held against the rules: meshes and scattered queries of any rank.
#pragma once

#include "support/interpreference.hpp"

namespace testsupport {

template <class Grid, class Val>
struct MemberNd {
  using GridT = Grid;
  using ValT = Val;
  template <class Family>
  using Of = typename Family::template Invoker<Grid, Val>;
};

using MembersNd = ::testing::Types<MemberNd<double, double>, MemberNd<double, float>, MemberNd<double, double2>,
                                   MemberNd<double, float2>, MemberNd<float, double>, MemberNd<float, float>,
                                   MemberNd<float, double2>, MemberNd<float, float2>>;

using Sizes = std::vector<unsigned long>;

/// What a call takes beside its queries.
template <class T, class V>
struct CallOnGrids {
  std::vector<const T*> grids;
  const V* values;
  Sizes valueSizes;
  V extrapolation;
  MethodPair methods;
};

/// Full grids of these sizes, of another spacing along each dimension, or colon grids.
template <class T>
std::vector<TestGrid<T>> gridsOf(const Sizes& sizes, bool isColon) {
  const Spacing spacings[] = {Spacing::random, Spacing::even, Spacing::geometric};
  std::vector<TestGrid<T>> grids;
  for (unsigned long d = 0; d < sizes.size(); ++d) {
    grids.push_back(isColon ? colonGrid<T>(sizes[d]) : fullGrid<T>(sizes[d], spacings[d % 3]));
  }
  return grids;
}

/// Device arrays of one vector for each dimension, and where they begin.
template <class T>
struct ArraysOnDevice {
  std::vector<GuardedArray<T>> arrays;
  std::vector<const T*> pointers;

  void add(const std::vector<T>& values) {
    arrays.push_back(onDevice(values));
    pointers.push_back(nullptr);
    for (unsigned long d = 0; d < arrays.size(); ++d) pointers[d] = arrays[d].data();
  }
};

/// Grids and values on the device, for calls with any queries.
template <class T, class V>
class GridsOnDevice {
 public:
  /// With isPlain, finite values and queries within the grids alone.
  GridsOnDevice(const Sizes& sizes, bool isColon, bool isPlain = false)
      : grids_(gridsOf<T>(sizes, isColon)),
        sizes_(sizes),
        values_(trickyValuesOfGrid<V>(product(sizes), isPlain)),
        isPlain_(isPlain) {
    for (const TestGrid<T>& grid : grids_) points_.add(grid.points);
  }

  /// `call(out, on, queries, bins, querySizes)`, each dimension with so many queries.
  template <class Call>
  void checkMesh(const Sizes& querySizes, MethodPair methods, Call call) const {
    std::vector<std::vector<T>> queries;
    std::vector<long long> bins;
    ArraysOnDevice<T> queriesOnDevice;
    for (unsigned long d = 0; d < grids_.size(); ++d) {
      queries.push_back(trickyQueries(grids_[d], querySizes[d] + d, d % 2 == 0, isPlain_));
      queries[d].erase(queries[d].begin(), queries[d].begin() + static_cast<long>(d));
      queriesOnDevice.add(queries[d]);
      for (const T q : queries[d]) bins.push_back(grids_[d].bin(q));
      // Padding holds what no grid has, and is not read.
      do bins.push_back(-99);
      while (bins.size() % 16 != 0);
      if (querySizes[d] % 16 == 0 && querySizes[d] != 0) bins.resize(bins.size() - 16);
    }
    const unsigned long count = product(querySizes);
    expect(count, methods, call, queriesOnDevice, bins, querySizes, [&](unsigned long i, unsigned long d) {
      for (unsigned long k = 0; k < d; ++k) i /= querySizes[k];
      return queries[d][i % querySizes[d]];
    });
  }

  /// `call(out, on, queries, bins, {count})`, without bins that mean anything.
  template <class Call>
  void checkScattered(unsigned long count, bool isSorted, MethodPair methods, Call call) const {
    std::vector<std::vector<T>> queries;
    ArraysOnDevice<T> queriesOnDevice;
    for (unsigned long d = 0; d < grids_.size(); ++d) {
      queries.push_back(trickyQueries(grids_[d], count, isSorted && d == 1, isPlain_));
      // Not all of the first ones special at once.
      std::rotate(queries[d].begin(), queries[d].begin() + static_cast<long>(std::min(count, d)), queries[d].end());
      queriesOnDevice.add(queries[d]);
    }
    expect(count, methods, call, queriesOnDevice, {}, {count},
           [&](unsigned long i, unsigned long d) { return queries[d][i]; });
  }

 private:
  static unsigned long product(const Sizes& sizes) {
    unsigned long product = 1;
    for (const unsigned long size : sizes) product *= size;
    return product;
  }

  template <class Call, class QueryOf>
  void expect(unsigned long count, MethodPair methods, Call call, const ArraysOnDevice<T>& queriesOnDevice,
              const std::vector<long long>& bins, const Sizes& querySizes, QueryOf queryOf) const {
    const V extrapolation = extrapolationValue<V>(count % 2 == 1);
    const GuardedArray<V> valuesOnDevice = onDevice(values_);
    const GuardedArray<long long> binsOnDevice = onDevice(bins);
    GuardedArray<V> out(count, 1);
    call(out.data(), CallOnGrids<T, V>{points_.pointers, valuesOnDevice.data(), sizes_, extrapolation, methods},
         queriesOnDevice.pointers, binsOnDevice.data(), querySizes);
    ExpectedValues<V, T> expected;
    for (unsigned long i = 0; i < count; ++i) {
      std::vector<T> q;
      std::vector<long long> bin;
      for (unsigned long d = 0; d < grids_.size(); ++d) {
        q.push_back(queryOf(i, d));
        bin.push_back(grids_[d].bin(q[d]));
      }
      expected.add(grids_, values_.data(), q, bin, methods, extrapolation);
    }
    std::string context = inWords(methods) + (grids_[0].isColon ? ", colon grid" : ", full grid") + ", queries";
    for (const unsigned long size : querySizes) context += " " + std::to_string(size);
    expectValues(out.toHost(), expected, context);
  }

  std::vector<TestGrid<T>> grids_;
  Sizes sizes_;
  std::vector<V> values_;
  bool isPlain_;
  ArraysOnDevice<T> points_;
};

/// Meshes in one to five dimensions, on colon grids or full ones; `mesh` as checkMesh takes it.
template <class Member, class Call>
void checkMeshesOfAllRanks(bool isColon, Call mesh) {
  struct Case {
    Sizes sizes, querySizes;
  };
  const Case cases[] = {{{6}, {300}},
                        {{4, 3}, {17, 9}},
                        {{3, 2, 4}, {17, 1, 9}},
                        {{3, 2, 4, 3}, {17, 1, 3, 2}},
                        {{4, 3, 2, 2}, {300, 3, 2, 3}},
                        {{2, 3, 2, 2, 3}, {7, 4, 5, 3, 5}},
                        {{2, 2, 2, 2, 2}, {4, 0, 4, 4, 4}}};
  unsigned int turn = 0;
  for (const bool isPlain : {false, true}) {
    for (const Case& one : cases) {
      const GridsOnDevice<typename Member::GridT, typename Member::ValT> grids(one.sizes, isColon, isPlain);
      for (int k = 0; k < 3; ++k) grids.checkMesh(one.querySizes, methodPairs[turn++ % 6], mesh);
    }
  }
}

/// Scattered queries in one to five dimensions.
template <class Member, class Call>
void checkScatteredOfAllRanks(bool isColon, Call scattered) {
  unsigned int turn = 0;
  for (const bool isPlain : {false, true}) {
    for (const Sizes& sizes : {Sizes{6}, Sizes{4, 3}, Sizes{3, 2, 4}, Sizes{3, 2, 4, 3}, Sizes{2, 3, 2, 2, 3}}) {
      const GridsOnDevice<typename Member::GridT, typename Member::ValT> grids(sizes, isColon, isPlain);
      for (const unsigned long count : {0UL, 1UL, 255UL, 1281UL}) {
        grids.checkScattered(count, count % 2 == 0, methodPairs[turn++ % 6], scattered);
        grids.checkScattered(count, false, methodPairs[turn++ % 6], scattered);
      }
    }
  }
}

/// Both forms of queries on grids of one rank, by all pairs of methods. The last sizes are those of plain values.
template <class Member, class Mesh, class Scattered>
void checkBothForms(const std::vector<Sizes>& gridSizes, bool isColon, const std::vector<Sizes>& meshes, Mesh mesh,
                    const std::vector<unsigned long>& counts, Scattered scattered) {
  for (const Sizes& sizes : gridSizes) {
    const GridsOnDevice<typename Member::GridT, typename Member::ValT> grids(sizes, isColon, sizes == gridSizes.back());
    for (const MethodPair methods : methodPairs) {
      for (const Sizes& querySizes : meshes) grids.checkMesh(querySizes, methods, mesh);
      for (const unsigned long count : counts) {
        grids.checkScattered(count, true, methods, scattered);
        grids.checkScattered(count, false, methods, scattered);
      }
    }
  }
}

template <class Member, class Mesh, class Scattered>
void checkTwoDimensions(bool isColon, Mesh mesh, Scattered scattered) {
  checkBothForms<Member>({{7, 5}, {2, 2}, {40, 30}, {41, 30}}, isColon,
                         {{17, 3}, {16, 40}, {1, 300}, {530, 21}, {0, 5}}, mesh, {0, 1, 257, 1000}, scattered);
}

template <class Member, class Mesh, class Scattered>
void checkThreeDimensions(bool isColon, Mesh mesh, Scattered scattered) {
  checkBothForms<Member>({{4, 3, 5}, {2, 2, 2}, {5, 30, 4}}, isColon, {{17, 3, 16}, {1, 1, 40}, {520, 3, 3}, {5, 0, 5}},
                         mesh, {0, 1, 1281}, scattered);
}

}  // namespace testsupport
