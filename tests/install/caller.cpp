// A caller of the installed library, on a backend whose device memory is ordinary memory.
#include <gpuruntime/gpuruntime.hpp>

int main() {
  double2 ramp[3] = {}, turned[3] = {};
  gpuruntime::Linspace::Invoker<double2>()(nullptr, 3, ramp, double2{0, 0}, double2{4, 2});
  gpuruntime::CTranspose::Invoker<double2>()(nullptr, turned, ramp, 3, 1);
  gpuruntime::util::checkAndThrow(cudaSuccess);
  try {
    gpuruntime::util::checkAndThrow(cudaErrorInvalidValue);
    return 1;
  } catch (const gpuruntime::MessageError&) {
  }
  return turned[1].x == 2 && turned[1].y == -1 && turned[2].y == -2 ? 0 : 1;
}
