#include <gpuruntime/sorting/sortMatrix.hpp>

#include "sorting/sortByValue.hpp"
#include "util/force_instantiate_util.hpp"

namespace gpuruntime {

// All columns at once, whatever their number: by value first, then by column. The second sort keeps the order of equal
// columns, which is that of the values.
template <class T>
void SortMatrix::Invoker<T>::operator()(T* data, double* index, int* keys, unsigned long n, bool ascending) const {
  if (index == nullptr) {
    sortByValue<Zeros::byBits>(ascending, n, data, keys);
    sortNumbers<Zeros::byBits>(true, n, keys, data);
  } else {
    sortByValue<Zeros::asEquals>(ascending, n, data, index, keys);
    sortNumbers<Zeros::byBits>(true, n, keys, data, index);
  }
}

GPURUNTIME_INSTANTIATE(SortMatrix, SORT_TYPES);

}  // namespace gpuruntime
