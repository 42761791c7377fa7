#include "transcendental.hpp"

#include <boost/math/special_functions/erf.hpp>

namespace gpuruntime::platform::detail {

double erfcinvOfEnds(double x) {
  using namespace boost::math::policies;
  using Policy = policy<promote_double<false>, overflow_error<ignore_error>>;
  return boost::math::erfc_inv(x, Policy());
}

}  // namespace gpuruntime::platform::detail
