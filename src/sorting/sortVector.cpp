#include <gpuruntime/sorting/sortVector.hpp>

#include "sorting/sortByValue.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

template <class T>
void SortVector::Invoker<T>::operator()(T* data, double* index, unsigned long n, bool ascending) const {
  if (index == nullptr) {
    sortByValue<Zeros::byBits>(ascending, n, data);
  } else {
    sortByValue<Zeros::asEquals>(ascending, n, data, index);
  }
}

template <class T>
void SimpleSort::Invoker<T>::operator()(T* data, unsigned long n) const {
  sortNumbers<Zeros::byBits>(true, n, data);
}

GPURUNTIME_INSTANTIATE(SortVector, SORT_TYPES);
GPURUNTIME_INSTANTIATE(SimpleSort, DOUBLE_TYPES);

}  // namespace gpuruntime
