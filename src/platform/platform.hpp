/// @file
/// What a backend gives to the rest of the library. This page is the contract; `backend.hpp` is found on the include
/// path, in `cpu/` or in `cuda/`, and is the only place where the two differ.
///
/// 1. **Qualifiers.** GPURUNTIME_DEVICE and GPURUNTIME_HOST_DEVICE stand before functions that kernels call.
///    `GPURUNTIME_DEVICE_SYMBOL(T, name)` and `GPURUNTIME_CONSTANT_SYMBOL(T, name)` define a variable that kernels see,
///    one copy per source unit, zero at load. `GPURUNTIME_CONSTANT_TABLE(T, name, value)` defines one with a value
///    known at compile time, which `GPURUNTIME_TABLE(name)` reads, on the host too. `GPURUNTIME_SHARED(T, name)`
///    defines a block's shared storage inside a block functor: raw, never initialised. GPURUNTIME_INLINE stands before
///    functions, for kernels and the host, whose calls must leave no trace, and GPURUNTIME_INLINE_LAMBDA behind the
///    parameters of such lambdas: there are limits to what compilers inline by themselves. GPURUNTIME_CALLED stands
///    before functions that a GPU had better call, since copies of them would take a kernel's registers.
/// 2. **Runtime calls** under their platform names, in `gpuruntime::platform`: `cudaGetDevice`,
///    `cudaGetDeviceProperties`, `cudaGetErrorString`, `cudaFuncGetAttributes`, `cudaMemcpyAsync`,
///    `cudaMemcpyToSymbolAsync`, `cudaMemcpyFromSymbolAsync`, `cudaMemcpyToSymbol`, `cudaMemcpyFromSymbol`,
///    `cudaStreamSynchronize`; and their records `cudaDeviceProp`, `cudaFuncAttributes`.
/// 3. **Kernels.** A kernel is a struct with `static GPURUNTIME_DEVICE void run(const Block<>& block, Args... args)`.
///    `kernelOf<K, Args...>()` is its handle, a `Kernel<Args...>`; `launch(kernel, grid, block, stream, args...)`
///    starts it without dynamic shared memory and returns the status, which callers drop. A kernel of several steps
///    has `steps(args...)` and `runStep(block, step, args...)` instead of `run`; its steps do not depend on each other,
///    and a backend may have all blocks take one before any takes the next. Where a kernel has `joinedBlocks`, threads
///    only matter by their place in the grid, `index() * shape()` and the thread: a backend may run so many neighbours
///    as one block, so many times as large. `walkSide` is a hint.
/// 4. **Block.** `index()`, `grid()` and `shape()` tell where a block stands. `withShape<X, Y>()` is the same block,
///    with a shape that the compiler knows.
/// 5. **Steps.** `block.forEachThread(step)` runs `step(Thread)` for every thread of the block, in no order that a step
///    may rely on; `block.sync()` parts two steps. `Thread` holds `x`, `y`, `z` and `lane`, the flat index in the
///    block, as `ThreadIndex`. A `return` in a step ends that thread's step alone. `block.forEachThread(live, step)`
///    says beforehand that threads with a coordinate at or above `live` have nothing to do, so that a backend may leave
///    them out; inside the step, `isIdle(beyond)` is the bound test for the backend that does not.
///    `block.forEachThreadOfBox(live, step)` is that for blocks of any extent along x.
///    `block.forEachPlace(live, placeOf, step)` runs `step(thread, placeOf(thread))`, where the place, an
///    `unsigned long`, says what the step reads or writes, in any order; a backend may find several places before it
///    runs their steps.
///    `block.forEachRow(live, in, pitch, rows, step)` runs `step(Thread, element, row)` down the rows of a matrix, for
///    each thread in order; a backend may share the threads of a launch with few blocks among its cores.
///    `block.forEachOfRuns<RUN>(live, step)` runs `step(thread, column, k, e)` for elements e = column * RUN + k below
///    `live`, RUN for each thread along x, to move them between an array and columns; a backend chooses by which
///    thread. Where `testsAreCheap` does not hold, a step without tests is worth having for blocks that need none.
///    `block.findsAny(live, test)` tells whether a test of threads holds for one: for some thread of the block, or for
///    each that asks, as the backend likes.
///    `block.forEachListed(live, lists, slotOf, write)` runs `write(thread, slot)` for each thread for which `lists`
///    holds; of a run of threads along x, these follow one another in `slotOf`, which a backend may ask of the first.
///    `unrolled<N>(body)` is a loop inside a step, spelled out. Integer arithmetic that compilers don't vectorise well
///    takes packs of threads: `block.forEachPack(live, step)` runs `step(Pack)`, in which `LongWords` and `Words` hold
///    a 64-bit and a 32-bit word for each thread, `pack.threads()` the threads' indices, `widened` and `narrowed`
///    convert, and `mulhilo` multiplies; `+ - ^ & | ~ << >>` work on all words at once.
/// 6. **State across steps.** `PerThread<T, N>` is one `T` per thread of a block of at most N threads, by `[Thread]`;
///    `set(pack, words)` sets those of a pack.
/// 7. **Outputs, tiles and trees.** `OutputWindow<T, N, PER_THREAD>` is how a block writes elements
///    `[first, first + live)` of an array, each once: write through `pointer()` at the array's own index, then
///    `flush(block)`. A count of 0 writes in place, elements that do not follow one another too. `OutputTile<T, N>`
///    is the same for N rows of N elements, through `at(thread)`. `TransposedTile(tile)` reads a tile in shared storage
///    by columns: `(row, column)` is `tile[column][row]`. `storeRuns(block, live, values, out, pitch, count)` has each
///    thread store eight values behind each other, `loadRuns(block, live, values, in, pitch)` load them.
///    `prefetchNextTile<N>(corner, pitch)`, `prefetchOutputTile<N>(out, corner, pitch)` and `blocksPerLine<T, N>` are
///    hints. `PairTrees<T, N>`, in shared storage, holds binary trees side by side, over `leaves` leaves in all: N, or
///    a multiple where a block had best work on several trees at once. `level(k)[i]` is the node over the leaves from
///    i << k on, 1 << k of them. It may share its place with its right child, so that a step writes it in the thread
///    that has read both children, and these in the one that has read it. `useOwnLeaves()` or, where `standsOnArrays`,
///    `useArray(array)` says what is level 0.
/// 8. **Moves.** `copyRun(block, out, in, live, count)` copies a run of elements, one a thread. `loadTile(block, tile,
///    live, in, pitch)` fills a tile in shared storage, whose rows are `tilePitch<T, N>` apart, and
///    `storeTransposed(block, tile, live, out, pitch, count)` writes its columns as rows; a barrier belongs between
///    them, as after any step. `prefetchRunAhead(run, step, live)` and `prefetchTile<N>(corner, pitch, live)` are
///    hints. Where `joinedRuns<T>` or `joinedTiles<T, N>` is above 1, a block had best do the work of so many
///    neighbours, and so many of its own steps, at once: then a run is so many times as long as the block, and a tile
///    has so many times its edge. `blocksAtOnce` blocks had best be done at once where each has little to do, and
///    `loadRuns<RUNS>(columns, in, n)` gives them their runs, element k of run t at `columns[k * RUNS + t]`. Where
///    `prefersWholeBlocks` is true, a kernel that has such a form had best do its threads' work for the block as a
///    whole, in loops of its own over `withShape<N>()` threads, with what is the same for all of them outside.
/// 9. **Words and loads.** `atomicCAS`, `atomicOr`, `atomicAnd` on 32-bit words; `readOnlyLoad(pointer)`.
/// 10. **Device arithmetic.** `__dmul_rn`, `__dadd_rn` and `sincos`. `hypot(a, b)` and `atan2(y, x)` of
///    `polar.hpp` and `Power<T>(y)(x)` of `power.hpp`, the same on every backend. `exactDouble(x)` of an integer up to
///    2^53, and `exactMinusProduct(x, a, b)`, where x - a * b takes no rounding. Made for loops over threads,
///    `logOfNormal(x)` of a positive normal x, `sincosOfTurn(x, &sine, &cosine)` for x from 0 to 6.3, both within 2
///    units in the last place, and `erfcinv(x)` for x from 0 to 2, within 6; `erfcinvOfEach(block, live, values)` is
///    that for all threads. Everything else is plain operators, each rounded by itself, and `<cmath>` under `std::`,
///    which both backends take in kernels. Nothing is contracted: a fused operation is written `std::fma`.
///
/// A backend never names an operation of the library, and nothing outside this folder names a backend.
#pragma once

#include <gpuruntime/platformtypes.hpp>

#include "backend.hpp"
