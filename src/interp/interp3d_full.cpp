#include <gpuruntime/interp/interp3d_full.hpp>

#include "interp/interp3dKernels.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class GridT, class ValT>
void Interp3d_CompactQuery::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, const GridT* grid0, const GridT* grid1, const GridT* grid2, const ValT* values,
    const GridT* queries0, const GridT* queries1, const GridT* queries2, const long long* bins,
    const std::vector<unsigned long>& querySizes, const std::vector<unsigned long>& valueSizes,
    const ValT& extrapolation, const InterpType& inRange, const InterpType& outOfRange) const {
  interp::Interp3dKernel_CompactQuery_Invoker<const GridT*, GridT>(stream, out, {{grid0, grid1, grid2}}, values,
                                                                   {{queries0, queries1, queries2}}, bins, querySizes,
                                                                   valueSizes, extrapolation, {inRange, outOfRange});
}

template <class GridT, class ValT>
void Interp3d_NonCompactQuery::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, const GridT* grid0, const GridT* grid1, const GridT* grid2, const ValT* values,
    const GridT* queries0, const GridT* queries1, const GridT* queries2, const std::vector<unsigned long>& valueSizes,
    const unsigned long& queryCount, const ValT& extrapolation, const InterpType& inRange,
    const InterpType& outOfRange) const {
  interp::Interp3dKernel_NonCompactQuery_Invoker<const GridT*, GridT>(stream, out, {{grid0, grid1, grid2}}, values,
                                                                      {{queries0, queries1, queries2}}, valueSizes,
                                                                      queryCount, extrapolation, {inRange, outOfRange});
}

GPURUNTIME_INSTANTIATE_PAIRS(Interp3d_CompactQuery, REAL_FLOAT_TYPES, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE_PAIRS(Interp3d_NonCompactQuery, REAL_FLOAT_TYPES, FLOAT_TYPES);

}  // namespace gpuruntime
