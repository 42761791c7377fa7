// The same work by a recipe and by the families that it calls, in turns. Recipes take their memory of a workspace, as
// the families take theirs of arrays that are there; "FromDevice" takes it anew at each call.
#include <gpuruntime/recipes/recipes.hpp>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

#include "support/bench.hpp"

namespace {

using namespace benchsupport;
namespace recipes = gpuruntime::recipes;

constexpr unsigned long count = 1UL << 24, side = 1UL << 12;
constexpr int turns = 11;

/// Seconds of each turn of one of the two.
class Times {
 public:
  template <class Call>
  void add(const Call& call) {
    const Clock::time_point start = Clock::now();
    call();
    recipes::synchronise();
    seconds_.push_back(std::chrono::duration<double>(Clock::now() - start).count());
  }

  void report(benchmark::State& state, const std::string& name) {
    std::sort(seconds_.begin(), seconds_.end());
    state.counters[name + "Minimum"] = seconds_.front();
    state.counters[name + "Median"] = seconds_[seconds_.size() / 2];
    state.counters[name + "Maximum"] = seconds_.back();
  }

 private:
  using Clock = std::chrono::steady_clock;
  std::vector<double> seconds_;
};

template <class Families, class Recipe>
void inTurns(benchmark::State& state, const Families& families, const Recipe& recipe) {
  families();
  recipe();
  recipes::synchronise();
  Times ofFamilies, ofRecipe;
  bool familiesFirst = true;
  for (auto _ : state) {
    if (familiesFirst) ofFamilies.add(families);
    ofRecipe.add(recipe);
    if (!familiesFirst) ofFamilies.add(families);
    familiesFirst = !familiesFirst;
  }
  ofFamilies.report(state, "families");
  ofRecipe.report(state, "recipe");
}

#define GPURUNTIME_OVERHEAD(function) \
  BENCHMARK(function)->UseRealTime()->Iterations(turns)->Repetitions(1)->Unit(benchmark::kMillisecond)

/// A workspace and its memory.
struct Memory {
  explicit Memory(std::size_t bytes)
      : bytes(std::max<std::size_t>(bytes, 64)), workspace(this->bytes.data(), this->bytes.size()) {}
  DeviceArray<unsigned char> bytes;
  recipes::Workspace workspace;
};

/// Whole numbers below `bound`.
std::vector<double> numbers(unsigned long n, unsigned int bound, unsigned int seed = 1) {
  std::minstd_rand engine(seed);
  std::vector<double> values(n);
  for (double& value : values) value = static_cast<double>(engine() % bound);
  return values;
}

double lastOf(const DeviceArray<double>& array) {
  double last;
  recipes::copyToHost(&last, array.data() + array.size() - 1, sizeof(last));
  recipes::synchronise();
  return last;
}

// Running sums in chunks, as the contract of CumSum tells. `totals` has room for those of the chunks, and one more.
void scanInChunks(DeviceArray<double>& data, DeviceArray<double>& totals) {
  constexpr unsigned long chunks = count / recipes::chunkLength;
  const gpuruntime::CumSum::Invoker<double> scan;
  scan(nullptr, totals.data(), data.data(), count, recipes::chunkLength, 1);
  scan(nullptr, totals.data() + chunks, totals.data(), chunks, chunks, 1);
  gpuruntime::CumSumAdjust::Invoker<double>()(nullptr, totals.data(), data.data(), count, recipes::chunkLength, chunks,
                                              1);
}

DeviceArray<double> chunkTotals() {
  return DeviceArray<double>(count / recipes::chunkLength + 1);
}

// Half of the elements are not 0.
void nonZeros(benchmark::State& state, recipes::Allocator& allocator) {
  const DeviceArray<double> input(numbers(count, 2));
  DeviceArray<double> prefix(count), totals = chunkTotals(), positions(count);
  inTurns(
      state,
      [&] {
        gpuruntime::FlagNonZero::Invoker<double>()(nullptr, prefix.data(), input.data(), count);
        scanInChunks(prefix, totals);
        gpuruntime::Find1D::Invoker<double>()(nullptr, positions.data(), input.data(), prefix.data(),
                                              static_cast<unsigned long>(lastOf(prefix)), count,
                                              gpuruntime::FindFirstLast::first);
      },
      [&] { recipes::NonZeros<double>(nullptr, input, allocator).list(positions); });
}
void findNonZeros(benchmark::State& state) {
  Memory memory(recipes::NonZeros<double>::workspace(count));
  nonZeros(state, memory.workspace);
}
void findNonZerosFromDevice(benchmark::State& state) {
  nonZeros(state, recipes::deviceAllocator());
}
GPURUNTIME_OVERHEAD(findNonZeros);
GPURUNTIME_OVERHEAD(findNonZerosFromDevice);

void sum(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 1000));
  DeviceArray<double> output(1);
  Memory memory(recipes::sumWorkspace<double>(count));
  inTurns(
      state, [&] { gpuruntime::SumNative::Invoker<double>()(nullptr, output.data(), input.data(), count, count, 1); },
      [&] { recipes::sum<double>(nullptr, output, input, memory.workspace); });
}
GPURUNTIME_OVERHEAD(sum);

void product(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 2));
  DeviceArray<double> output(1);
  Memory memory(recipes::sumWorkspace<double>(count));
  inTurns(
      state, [&] { gpuruntime::ProdNative::Invoker<double>()(nullptr, output.data(), input.data(), count, count, 1); },
      [&] { recipes::product<double>(nullptr, output, input, memory.workspace); });
}
GPURUNTIME_OVERHEAD(product);

void maximum(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 1U << 30));
  DeviceArray<double> value(1), position(1);
  Memory memory(recipes::extremeWorkspace<double>(count));
  inTurns(
      state,
      [&] {
        gpuruntime::MaxWithIndex::Invoker<double>()(nullptr, value.data(), position.data(), input.data(), count, count,
                                                    1, 1);
      },
      [&] { recipes::maximum<double>(nullptr, value, position, input, memory.workspace); });
}
GPURUNTIME_OVERHEAD(maximum);

void cumulativeSum(benchmark::State& state) {
  DeviceArray<double> data(count), totals = chunkTotals();
  recipes::fillOnDevice(data.data(), 0, data.bytes());
  Memory memory(recipes::cumulativeWorkspace<double>({count}, 0));
  inTurns(
      state, [&] { scanInChunks(data, totals); },
      [&] { recipes::cumulativeSum<double>(nullptr, data, 0, memory.workspace); });
}
void cumulativeSumInOneCall(benchmark::State& state) {
  DeviceArray<double> data(count), total(1);
  recipes::fillOnDevice(data.data(), 0, data.bytes());
  Memory memory(recipes::cumulativeWorkspace<double>({count}, 0));
  inTurns(
      state, [&] { gpuruntime::CumSum::Invoker<double>()(nullptr, total.data(), data.data(), count, count, 1); },
      [&] { recipes::cumulativeSum<double>(nullptr, data, 0, memory.workspace); });
}
GPURUNTIME_OVERHEAD(cumulativeSum);
GPURUNTIME_OVERHEAD(cumulativeSumInOneCall);

// Each turn sorts the same numbers, which it copies first.
void sortWithPlaces(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 1U << 30));
  DeviceArray<double> data(count), places(count);
  Memory memory(recipes::sortWorkspace<double>({count}, 0, true));
  const auto refill = [&] { recipes::copyOnDevice(data.data(), input.data(), input.bytes()); };
  inTurns(
      state,
      [&] {
        refill();
        gpuruntime::IntColon::Invoker<double>()(nullptr, count, places.data(), 1, 1);
        gpuruntime::SortVector::Invoker<double>()(data.data(), places.data(), count, true);
      },
      [&] {
        refill();
        recipes::sort<double>(nullptr, data, places, 0, true, memory.workspace);
      });
}
GPURUNTIME_OVERHEAD(sortWithPlaces);

// A sixteenth as many values as queries.
void isMember(benchmark::State& state) {
  constexpr unsigned long values = count / 16;
  const DeviceArray<double> A(numbers(count, 2 * values)), B(numbers(values, 2 * values, 2));
  DeviceArray<double> sorted(values), places(values), location(count);
  DeviceArray<bool> member(count);
  Memory memory(recipes::isMemberWorkspace(values));
  inTurns(
      state,
      [&] {
        recipes::copyOnDevice(sorted.data(), B.data(), B.bytes());
        gpuruntime::IntColon::Invoker<double>()(nullptr, values, places.data(), 1, 1);
        gpuruntime::SortVector::Invoker<double>()(sorted.data(), places.data(), values, true);
        gpuruntime::IsMember2Arg::Invoker<double>()(nullptr, A.data(), count, sorted.data(), values, places.data(),
                                                    member.data(), location.data());
      },
      [&] { recipes::isMember<double>(nullptr, member, location, A, B, memory.workspace); });
}
GPURUNTIME_OVERHEAD(isMember);

// Groups of four.
void distinct(benchmark::State& state) {
  DeviceArray<double> sorted(count), prefix(count), totals = chunkTotals(), values(count / 4), starts(count / 4);
  gpuruntime::FillArrayWithRunningIndex::Invoker<double>()(nullptr, count, sorted.data(), 4, count);
  DeviceArray<bool> begins(count), equal(count), never(count);
  Memory memory(recipes::Distinct<double>::workspace(count));
  inTurns(
      state,
      [&] {
        gpuruntime::GenericOnes::Invoker<bool>()(nullptr, count, never.data(), false);
        gpuruntime::GenericOnes::Invoker<bool>()(nullptr, 1, begins.data(), true);
        gpuruntime::ElementwiseCompare::Invoker<double, double>()(nullptr, count - 1, equal.data(), sorted.data() + 1,
                                                                  sorted.data(), false);
        gpuruntime::ElementwiseCompare::Invoker<bool, bool>()(nullptr, count - 1, begins.data() + 1, equal.data(),
                                                              never.data(), false);
        gpuruntime::FlagNonZero::Invoker<bool>()(nullptr, prefix.data(), begins.data(), count);
        scanInChunks(prefix, totals);
        const auto found = static_cast<unsigned long>(lastOf(prefix));
        gpuruntime::Find1D::Invoker<bool>()(nullptr, starts.data(), begins.data(), prefix.data(), found, count,
                                            gpuruntime::FindFirstLast::first);
        gpuruntime::Subsref3D<const double*, void*, void*>::Invoker<double>()(
            nullptr, found, values.data(), sorted.data(), count, found, starts.data(), 1, 1, nullptr, 1, 1, nullptr);
      },
      [&] { recipes::Distinct<double>(nullptr, sorted, false, memory.workspace).list(values, starts); });
}
GPURUNTIME_OVERHEAD(distinct);

void convolveVector(benchmark::State& state) {
  constexpr unsigned long taps = 16;
  const DeviceArray<float> input(std::vector<float>(count, 1)), filter(std::vector<float>(taps, 1));
  DeviceArray<float> output(count);
  inTurns(
      state,
      [&] {
        gpuruntime::ConvolutionVector::Invoker<float, mpl_::int_<taps>>()(
            nullptr, output.data(), input.data(), filter.data(), {0, count, count, 0, taps / 2, taps / 2, true});
      },
      [&] { recipes::convolve<float>(nullptr, output, input, filter, recipes::Section::same); });
}
GPURUNTIME_OVERHEAD(convolveVector);

void convolveSquare(benchmark::State& state) {
  constexpr unsigned long K = 5;
  const DeviceArray<float> input(std::vector<float>(count, 1), side, side), filter(std::vector<float>(K * K, 1), K, K);
  DeviceArray<float> output(side, side);
  const std::vector<unsigned long> size{side, side}, offsets{K / 2, K / 2};
  inTurns(
      state,
      [&] {
        gpuruntime::ConvolutionSquare::Invoker<float, mpl_::size_t<K>>()(
            nullptr, output.data(), input.data(), filter.data(), size, size, 0, offsets, {0, 0, 0});
      },
      [&] { recipes::convolve<float>(nullptr, output, input, filter, recipes::Section::same); });
}
GPURUNTIME_OVERHEAD(convolveSquare);

void filterColumns(benchmark::State& state) {
  constexpr unsigned int order = 2;
  const DeviceArray<double> b(std::vector<double>{1, 0.5, 0.25}), a(std::vector<double>{1, 0.25, 0.25});
  const DeviceArray<double> x(numbers(count, 1000), side, side);
  DeviceArray<double> y(side, side);
  inTurns(
      state,
      [&] {
        gpuruntime::IIRFilter::Invoker<double, mpl_::integral_c<int, order>>()(nullptr, y.data(), nullptr, b.data(),
                                                                               a.data(), x.data(), nullptr, order + 1,
                                                                               order + 1, side, side, 1, 1, 0);
      },
      [&] { recipes::filter<double>(nullptr, y, b, a, x, 0); });
}
GPURUNTIME_OVERHEAD(filterColumns);

void interpolateScattered(benchmark::State& state) {
  constexpr unsigned long points = 1000;
  std::vector<double> line(points);
  for (unsigned long i = 0; i < points; ++i) line[i] = static_cast<double>(i);
  const DeviceArray<double> grid(line), values(numbers(points, 1000)), queries(numbers(count, points - 1));
  DeviceArray<double> output(count);
  inTurns(
      state,
      [&] {
        gpuruntime::CheckInfNaNAndStrictlyIncreasing::Invoker<double>()(nullptr, grid.data(), points);
        gpuruntime::Interpnd_NonCompactQuery::Invoker<double, double>()(
            nullptr, output.data(), {grid.data()}, values.data(), {queries.data()}, {points}, count, 0.0,
            gpuruntime::InterpTypeLinear, gpuruntime::InterpTypeConstant, 1);
      },
      [&] {
        recipes::interpolate<double, double>(nullptr, output, {grid}, values, {queries}, recipes::Queries::scattered);
      });
}
GPURUNTIME_OVERHEAD(interpolateScattered);

void gatherBySortedList(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 1000));
  DeviceArray<double> index(count), output(count);
  gpuruntime::IntColon::Invoker<double>()(nullptr, count, index.data(), 1, 1);
  inTurns(
      state,
      [&] {
        gpuruntime::CheckValidFindMax::Invoker<double>()(index.data(), count);
        gpuruntime::Subsref3D<const double*, void*, void*>::Invoker<double>()(
            nullptr, count, output.data(), input.data(), count, count, index.data(), 1, 1, nullptr, 1, 1, nullptr);
      },
      [&] { recipes::gather<double>(nullptr, output, input, {index}); });
}
void scatterBySortedList(benchmark::State& state) {
  const DeviceArray<double> input(numbers(count, 1000));
  DeviceArray<double> index(count), output(count);
  gpuruntime::IntColon::Invoker<double>()(nullptr, count, index.data(), 1, 1);
  inTurns(
      state,
      [&] {
        gpuruntime::CheckValidFindMax::Invoker<double>()(index.data(), count);
        gpuruntime::Subsasgn3D<const double*, void*, void*>::Invoker<double>()(
            nullptr, count, output.data(), input.data(), count, count, index.data(), 1, 1, nullptr, 1, 1, nullptr);
      },
      [&] { recipes::scatter<double>(nullptr, output, input, {index}); });
}
GPURUNTIME_OVERHEAD(gatherBySortedList);
GPURUNTIME_OVERHEAD(scatterBySortedList);

}  // namespace
