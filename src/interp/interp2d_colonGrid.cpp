#include <gpuruntime/interp/interp2d_colonGrid.hpp>

#include "interp/interp2dKernels.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class GridT, class ValT>
void Interp2d_CompactQuery_ColonGrid::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, const ValT* values, const GridT* queries0, const GridT* queries1,
    const long long* bins, const std::vector<unsigned long>& querySizes, const std::vector<unsigned long>& valueSizes,
    const ValT& extrapolation, const InterpType& inRange, const InterpType& outOfRange) const {
  interp::Interp2dKernel_CompactQuery_Invoker<double2, GridT>(stream, out, {{interp::colonPair, interp::colonPair}},
                                                              values, {{queries0, queries1}}, bins, querySizes,
                                                              valueSizes, extrapolation, {inRange, outOfRange});
}

template <class GridT, class ValT>
void Interp2d_NonCompactQuery_ColonGrid::Invoker<GridT, ValT>::operator()(
    CUstream_st* stream, ValT* out, const ValT* values, const GridT* queries0, const GridT* queries1,
    const std::vector<unsigned long>& valueSizes, const unsigned long& queryCount, const ValT& extrapolation,
    const InterpType& inRange, const InterpType& outOfRange) const {
  interp::Interp2dKernel_NonCompactQuery_Invoker<double2, GridT>(stream, out, {{interp::colonPair, interp::colonPair}},
                                                                 values, {{queries0, queries1}}, valueSizes, queryCount,
                                                                 extrapolation, {inRange, outOfRange});
}

GPURUNTIME_INSTANTIATE_PAIRS(Interp2d_CompactQuery_ColonGrid, REAL_FLOAT_TYPES, FLOAT_TYPES);
GPURUNTIME_INSTANTIATE_PAIRS(Interp2d_NonCompactQuery_ColonGrid, REAL_FLOAT_TYPES, FLOAT_TYPES);

}  // namespace gpuruntime
