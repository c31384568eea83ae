// The kernels with SSE2.
#include "engine/lanes/KernelSet.h"

namespace LS::Lanes {

constinit const ToneKernels SSE2_KERNELS = KernelSet<Sse2>::Table();

} // namespace LS::Lanes
