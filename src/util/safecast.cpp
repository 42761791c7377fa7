#include "safecast.hpp"

#include "hostenvironment.hpp"

namespace gpuruntime::util::detail {

void throwBadNumericCast() {
  qxErrMsgId(vantor::gpu::array::InvalidValue());
}

}  // namespace gpuruntime::util::detail
